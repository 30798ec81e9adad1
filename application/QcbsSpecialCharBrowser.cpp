#include "QcbsSpecialCharBrowser.h"

#include <QMessageBox>

QcbsSpecialCharBrowser::QcbsSpecialCharBrowser(QWidget* parent) : QTextBrowser(parent)
{
    setObjectName(QStringLiteral("special character browser"));
}

void QcbsSpecialCharBrowser::doSetSource(const QUrl& name, QTextDocument::ResourceType type)
{
    static const QString closeCommand = QStringLiteral("CLOSE_WINDOW");
    static const QString insertCommand = QStringLiteral("INSERT_");

    // A clicked link arrives resolved against the page, so the command may follow a path.
    const QString target = name.toString();
    if (target.contains(closeCommand)) {
        emit userDone();
        return;
    }
    const qsizetype insertAt = target.indexOf(insertCommand);
    if (insertAt >= 0) {
        QMessageBox::information(this, tr("Special character"),
                                 tr("Sorry, special character insertion not yet implemented."));
        // The escape's marks (%, ", ^, <) reach us percent-encoded.
        QString escape = QUrl::fromPercentEncoding(target.mid(insertAt + insertCommand.size()).toUtf8());
        emit insertMe(escape.replace(QStringLiteral("blob"), QStringLiteral("\\")));
        return;
    }
    QTextBrowser::doSetSource(name, type);
}
