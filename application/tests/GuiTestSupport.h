#ifndef CIFWARD_GUITESTSUPPORT_H
#define CIFWARD_GUITESTSUPPORT_H

#include "IsolatedSettings.h"

#include <QString>
#include <QtTest>
#include <initializer_list>
#include <utility>

// The shared corpus and dictionaries beside the repository; tests that need them skip without.
inline QString sharedPath(const QString& relative)
{
    return QStringLiteral(CIFWARD_SHARED_DIR "/") + relative;
}

// A data table whose rows are whole structs (declared with Q_DECLARE_METATYPE), so that a row of
// the table is one line; the test reads it back with QFETCH(Row, row).
template <class Row> void addRows(std::initializer_list<std::pair<const char*, Row>> rows)
{
    QTest::addColumn<Row>("row");
    for (const auto& [name, row] : rows)
        QTest::newRow(name) << row;
}

#endif
