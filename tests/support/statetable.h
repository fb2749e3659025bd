#pragma once

#include <QString>
#include <QStringList>
#include <QtTest>

#include <cstddef>

/// A state table as text: a header that names the states before an event behind a bar, and a row
/// for each event with its name, a bar, and the state after it for each state before it.
template <typename Event>
struct StateTableRow {
    const char* text;
    Event event;
};

/// The states that a line of the table names behind its bar.
inline QStringList statesOf(const char* line) {
    return QString(line).section('|', 1).simplified().split(' ');
}

/// Calls `add(name, before, event, after)` for each cell. A row with another number of states than
/// the header has fails the test.
template <typename Event, std::size_t size, typename Add>
void forEachCell(const char* header, const StateTableRow<Event> (&table)[size], Add add) {
    const QStringList before = statesOf(header);
    for (const StateTableRow<Event>& row : table) {
        const QStringList after = statesOf(row.text);
        QCOMPARE(after.size(), before.size());
        const QString name = QString(row.text).section('|', 0, 0).simplified();
        for (int i = 0; i < before.size(); ++i) {
            add(name, before[i], row.event, after[i]);
        }
    }
}
