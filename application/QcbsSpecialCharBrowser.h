#ifndef CIFWARD_QCBSSPECIALCHARBROWSER_H
#define CIFWARD_QCBSSPECIALCHARBROWSER_H

#include <QTextBrowser>

// The browser of the special characters help page. Its links are commands as well as pages:
// a target containing "CLOSE_WINDOW" asks to close the window, and one containing "INSERT_"
// names the escape to insert, with the word "blob" for each backslash that a link target cannot
// carry ("INSERT_blobA" stands for \A).
class QcbsSpecialCharBrowser : public QTextBrowser {
    Q_OBJECT
public:
    explicit QcbsSpecialCharBrowser(QWidget* parent = nullptr);

signals:
    void userDone();
    void insertMe(const QString& text);

protected:
    void doSetSource(const QUrl& name, QTextDocument::ResourceType type) override;
};

#endif
