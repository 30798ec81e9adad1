#ifndef CIFWARD_QCBSCIFTEXT_H
#define CIFWARD_QCBSCIFTEXT_H

#include "CifInputFile.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QFile>
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

// The bytes of a CIF file for the editor: a gzip-compressed file gives its contents. False for a
// file that cannot be opened, with `error` empty, and for one that cannot be read whole or cannot
// be text, with `error` saying why ("a PNG image, not a CIF", "truncated gzip data").
// `compressed`, when given, tells whether the file on disk is compressed.
inline bool readCifFile(const QString& path, QByteArray& bytes, QString& error, bool* compressed = nullptr)
{
    error.clear();
    if (!QFile(path).open(QIODevice::ReadOnly))
        return false;
    CifInputFile input;
    std::string text;
    if (!input.open(QFile::encodeName(path).toStdString()) || !input.read_all(text)) {
        error = QString::fromStdString(input.error());
        return false;
    }
    if (compressed)
        *compressed = input.compressed();
    bytes = QByteArray(text.data(), static_cast<qsizetype>(text.size()));
    return true;
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
