#ifndef CIFWARD_QCBSSTYLESTORE_H
#define CIFWARD_QCBSSTYLESTORE_H

#include <QColor>
#include <QFont>
#include <QMap>
#include <QString>
#include <QStringList>

struct QcbsStyle {
    QFont font;
    QColor color;
};
using QcbsStyles = QMap<QString, QcbsStyle>;

// The fonts and colours of the editor's highlighting, kept in the settings under
// "/Cifward/styles/<name>/" so that every editor and the styles dialog share them.
class QcbsStyleStore {
public:
    // In the order of the highlighter's format ids 0..12.
    static const QStringList& styleNames();
    static QFont fixedWidthBase();
    static QFont variableWidthBase();
    static QcbsStyles shipped(const QFont& base);

    // The stored styles with the preference "font changesize" added to every size, so that zoom
    // persists without rewriting the styles. A store without a "Standard" family gets the
    // shipped set on the fixed-width base written back.
    static QcbsStyles read();
    // The same with `sizeChange` added instead: 0 gives the sizes as stored.
    static QcbsStyles read(int sizeChange);
    static void write(const QcbsStyles& styles);
    static void writeFont(const QString& name, const QFont& font);
    static void writeColor(const QString& name, const QColor& color);

    static constexpr int maxPointSize = 400;
};

#endif
