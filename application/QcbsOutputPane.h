#ifndef CIFWARD_QCBSOUTPUTPANE_H
#define CIFWARD_QCBSOUTPUTPANE_H

#include <QString>
#include <QTextEdit>

class QMenu;

// The running log below the editor: what the checks and tools have to say, in rich text, kept
// until the user clears it.
class QcbsOutputPane : public QTextEdit {
    Q_OBJECT
public:
    explicit QcbsOutputPane(QWidget* parent = nullptr);

    // Appends rich text at the end, on a new line when `newLine` is set, and scrolls to it.
    // Angle brackets in `text` are markup.
    void write(const QString& text, bool newLine = true);

    // The menu the context menu event shows; the caller owns it.
    QMenu* createPopupMenu();

public slots:
    // Empties the pane down to the banner.
    void clear();
    void copyAll();

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
};

#endif
