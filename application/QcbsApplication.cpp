#include "QcbsApplication.h"

#include "ProgramInfo.h"
#include "QcbsMainWindow.h"
#include "QcbsPreferences.h"

#include <QFontMetrics>
#include <QIcon>
#include <QLabel>
#include <QMessageBox>
#include <QPainter>
#include <QPointer>

namespace {

QPointer<QLabel>& splash()
{
    static QPointer<QLabel> label;
    return label;
}

// The logo is drawn rather than shipped as a picture file: a crystal lattice cell in perspective.
QPixmap logo()
{
    QPixmap picture(420, 240);
    picture.fill(QColor(24, 48, 96));
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(170, 200, 255), 3));
    const QPointF front[4] = {{40, 70}, {140, 70}, {140, 170}, {40, 170}};
    const QPointF shift(50, -40);
    for (int i = 0; i < 4; ++i) {
        painter.drawLine(front[i], front[(i + 1) % 4]);
        painter.drawLine(front[i] + shift, front[(i + 1) % 4] + shift);
        painter.drawLine(front[i], front[i] + shift);
    }
    painter.setBrush(QColor(255, 200, 80));
    for (const QPointF& corner : front) {
        painter.drawEllipse(corner, 8, 8);
        painter.drawEllipse(corner + shift, 8, 8);
    }
    QFont title = painter.font();
    title.setPointSize(30);
    title.setBold(true);
    painter.setFont(title);
    painter.setPen(Qt::white);
    painter.drawText(QRect(200, 60, 210, 80), Qt::AlignLeft | Qt::AlignVCenter,
                     QString::fromStdString(programName()));
    return picture;
}

} // namespace

QcbsApplication::QcbsApplication(int& argc, char** argv)
    : QApplication(argc, argv), validity_(buildValidityDate())
{
    setApplicationName(QString::fromStdString(programName()));
    setApplicationVersion(QString::fromStdString(programVersion()));
    // The window's icon and the name of the desktop entry let the desktop show the windows under
    // the program's own icon and entry.
    setWindowIcon(QIcon(QStringLiteral(":/cifward.png")));
    setDesktopFileName(QStringLiteral("cifward"));
}

QLabel* QcbsApplication::splashCreate()
{
    auto* label = new QLabel(nullptr, Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::SplashScreen);
    label->setObjectName(QStringLiteral("splash"));
    label->setAttribute(Qt::WA_DeleteOnClose);
    label->setFrameStyle(QFrame::WinPanel | QFrame::Raised);
    label->setPixmap(logo());
    label->setWindowTitle(QString::fromStdString(programName()));
    label->adjustSize();
    label->show();
    splash() = label;
    return label;
}

void QcbsApplication::splashMessage(const QString& text)
{
    QLabel* label = splash();
    if (!label)
        return;
    QPixmap picture = logo();
    QPainter painter(&picture);
    painter.setPen(Qt::white);
    const QFontMetrics metrics(painter.font());
    painter.drawText(5, picture.height() - metrics.height(),
                     QStringLiteral("Cifward - Version ") + QString::fromStdString(programVersion()) +
                         QStringLiteral(" : ") + text);
    painter.end();
    label->setPixmap(picture);
    label->repaint();
    QApplication::processEvents();
}

void QcbsApplication::splashClose()
{
    if (splash())
        splash()->close();
}

void QcbsApplication::openCommandLineFiles(QcbsMainWindow* first, const QStringList& files)
{
    const auto failed = [first](const QString& path) {
        first->statusBarMessage(QStringLiteral("Error: Could not open file \"") + path + QLatin1Char('"'));
    };
    for (int index = 0; index < files.size(); ++index) {
        const QString& path = files.at(index);
        if (index == 0) {
            if (!first->fileOpen(path, false))
                failed(path);
            continue;
        }
        if (first->isReusable()) {
            if (index == 1) {
                first->hide();
                QMessageBox::information(
                    nullptr, QStringLiteral("Information"),
                    QStringLiteral(
                        "Your preferences are set for single window mode, only the first CIF will be "
                        "opened."));
                first->show();
                return;
            }
            continue;
        }
        if (!first->openInNewWindow(path, false))
            failed(path);
    }
}
