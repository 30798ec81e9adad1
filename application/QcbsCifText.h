#ifndef CIFWARD_QCBSCIFTEXT_H
#define CIFWARD_QCBSCIFTEXT_H

#include <QByteArrayView>
#include <QString>
#include <QStringDecoder>
#include <QStringList>

// CIF bytes as text: UTF-8 when they decode as UTF-8, otherwise Latin-1, the encoding of older
// CIFs. Decoding Latin-1 bytes as UTF-8 would change them on the next save. `latin1`, when
// given, tells which one it was.
inline QString decodeCifText(QByteArrayView bytes, bool* latin1 = nullptr)
{
    QStringDecoder utf8(QStringDecoder::Utf8);
    QString text = utf8.decode(bytes);
    const bool notUtf8 = utf8.hasError();
    if (latin1)
        *latin1 = notUtf8;
    return notUtf8 ? QString::fromLatin1(bytes) : text;
}

// Text read from a file as the editor holds it: every line ends in a line feed, whether or not
// the file's last one did, and CR LF line ends lose their carriage return. `lines` is the count.
inline QString editorLines(const QString& text, int& lines)
{
    QStringList split = text.split(u'\n');
    if (split.constLast().isEmpty())
        split.removeLast();
    lines = static_cast<int>(split.size());
    QString out;
    out.reserve(text.size() + 1);
    for (const QString& line : std::as_const(split)) {
        out += line.endsWith(u'\r') ? QStringView(line).chopped(1) : QStringView(line);
        out += u'\n';
    }
    return out;
}

#endif
