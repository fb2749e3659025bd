#pragma once

#include "KestrelDatatypes.h"

#include <cstddef>
#include <vector>

/// What the line parsers do to their tables; private to the library.
namespace KestrelSDK_Datatypes::Tables {

/// No line makes a table longer than this.
constexpr int mostRecords = 65535;

inline bool tooMany(int count) {
    return count > mostRecords;
}

template <class Record>
void clear(Record& record, int id) {
    record = Record{};
    record.id = id;
}

template <class Record>
auto markUntracked(Record& record, int id) -> decltype(record.quality, void()) {
    record.id = id;
    record.quality = -1.0;
}
inline void markUntracked(Kestrel_Human_Type_d& record, int id) {
    record.id = id;
}
inline void markUntracked(Kestrel_Inertial_Type_d& record, int id) {
    record.id = id;
}

/// Gives the table `count` records, none for a negative count. New ones are zero, with their index
/// as id, and not tracked.
template <class Record>
void resize(std::vector<Record>& table, int count) {
    const std::size_t before = table.size();
    table.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
    for (std::size_t i = before; i < table.size(); ++i) {
        markUntracked(table[i], static_cast<int>(i));
    }
}

/// As above, and keeps the table's count with it.
template <class Record>
void resize(std::vector<Record>& table, int& tableCount, int count) {
    resize(table, count);
    tableCount = static_cast<int>(table.size());
}

/// The record of an entry that may grow the table; `id` is within the bounds.
template <class Record>
Record& recordFor(std::vector<Record>& table, int& tableCount, int id) {
    if (static_cast<std::size_t>(id) >= table.size()) {
        resize(table, tableCount, id + 1);
    }
    return table[static_cast<std::size_t>(id)];
}

/// Bits `word`, lowest first, as button states.
inline void setButtons(int (&buttons)[16], unsigned int word, int count) {
    for (int i = 0; i < count; ++i) {
        buttons[i] = static_cast<int>((word >> static_cast<unsigned int>(i)) & 1U);
    }
}

} // namespace KestrelSDK_Datatypes::Tables
