#include "QcbsSpecialCharDialog.h"

#include "QcbsSpecialCharBrowser.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

// The page is compiled into the library, and a static library's resources are registered only
// by a call from code that the program keeps.
static void registerHelpResources()
{
    static const bool registered = [] {
        Q_INIT_RESOURCE(application);
        return true;
    }();
    Q_UNUSED(registered);
}

QcbsSpecialCharDialog::QcbsSpecialCharDialog(QWidget* parent)
    : QDialog(parent), browser_(new QcbsSpecialCharBrowser(this))
{
    registerHelpResources();
    setObjectName(QStringLiteral("special characters"));
    setWindowTitle(tr("Special characters"));
    browser_->setSource(QUrl(QStringLiteral("qrc:/docs/special-characters.html")));

    auto* closeButton = new QPushButton(tr("Close"), this);
    closeButton->setObjectName(QStringLiteral("close"));
    closeButton->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(closeButton);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(browser_);
    layout->addLayout(buttons);
    resize(620, 700);

    connect(browser_, &QcbsSpecialCharBrowser::userDone, this, &QWidget::close);
    connect(closeButton, &QPushButton::clicked, this, &QWidget::close);
}
