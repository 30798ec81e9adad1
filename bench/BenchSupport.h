#ifndef CIFWARD_BENCHSUPPORT_H
#define CIFWARD_BENCHSUPPORT_H

// What the widget benchmarks share: the shared data beside the repository, read and loaded once,
// and a way to wait until a widget is on screen.

#include "QcbsDictionaryLoader.h"

#include <QCoreApplication>
#include <QFile>
#include <QString>
#include <QWidget>

// The file's text, or an empty string when it cannot be read: the caller says which file is missing.
inline QString readText(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
}

// The shared dictionaries, loaded on first use so that no benchmark times the load.
inline HCifDictionaryPool& dictionary()
{
    static HCifDictionaryPool pool = [] {
        QcbsDictionaryLoader loader;
        loader.setSearchDirectories({QStringLiteral(CIFWARD_SHARED_DIR "/dict")});
        return loader.load(QString());
    }();
    return pool;
}

// Shows the widget's current state: an operation is done when the user sees its result.
inline void paint(QWidget* widget)
{
    widget->repaint();
    QCoreApplication::processEvents();
}

#endif
