#pragma once

#include "KestrelDatatypes.h"
#include "LineReader.h"

#include <cstddef>
#include <vector>

/// What the line parsers do to their tables; private to the library.
namespace KestrelSDK_Datatypes::Tables {

/// No line makes a table longer than this.
constexpr int mostRecords = 65535;

inline bool tooMany(int count) {
    return count > mostRecords;
}

/// What a line says first that lists some of the objects that are defined.
struct Counts {
    int defined = 0;
    int listed = 0;        ///< 0 when the line does not tell
    bool complete = false; ///< whether it tells both
};

/// False when the line leaves its table as it is.
inline bool readCounts(KestrelSDK_Parse::LineReader& line, Counts& counts) {
    if (!line.number(counts.defined)) {
        return false;
    }
    counts.complete = line.number(counts.listed);
    return !tooMany(counts.defined) && !tooMany(counts.listed);
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

/// A negative count counts as none.
inline std::size_t sizeFor(int count) {
    return count < 0 ? 0 : static_cast<std::size_t>(count);
}

/// Gives the table `count` records. New ones are zero, with their index as id, and not tracked.
template <class Record>
void resize(std::vector<Record>& table, int count) {
    const std::size_t before = table.size();
    table.resize(sizeFor(count));
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

/// As above; what the table is `before` a line finds its place at once, so that the next line of
/// the same size needs no memory.
template <class Record>
void resize(std::vector<Record>& table, int& tableCount, int count, std::vector<Record>& before) {
    resize(table, tableCount, count);
    before.reserve(table.capacity());
}

/// The record of an entry that may grow the table. Null for an id that no record can have; one
/// beyond the bound also brings the table back to what it was `before` the line.
template <class Record>
Record* recordFor(std::vector<Record>& table, int& tableCount, int id,
                  std::vector<Record>& before) {
    if (id < 0) {
        return nullptr;
    }
    if (id >= mostRecords) {
        table.swap(before);
        tableCount = static_cast<int>(table.size());
        return nullptr;
    }
    if (static_cast<std::size_t>(id) >= table.size()) {
        resize(table, tableCount, id + 1, before);
    }
    return &table[static_cast<std::size_t>(id)];
}

/// Bits `word`, lowest first, as button states.
inline void setButtons(int (&buttons)[16], unsigned int word, int count) {
    for (int i = 0; i < count; ++i) {
        buttons[i] = static_cast<int>((word >> static_cast<unsigned int>(i)) & 1U);
    }
}

} // namespace KestrelSDK_Datatypes::Tables
