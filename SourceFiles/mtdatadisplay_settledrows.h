#pragma once

#include <QObject>

#include <vector>

class QTableWidget;

/// Which rows of a table nobody has touched since they were marked: neither a refresh nor a host
/// that writes into the table, takes a cell away or rebuilds the rows. GUI thread only.
class UntouchedRows {
public:
    void watch(const QTableWidget* table); ///< before the first mark

    bool contains(int row) const;
    void mark(int row);

private:
    QObject m_context; ///< ends the connections
    std::vector<bool> m_marks;
};

/// The rows of a table that a pass of the refresh found as they should be. A refresh passes over
/// them until their content is another or a cell has changed, whoever changed it.
template <class Content>
class SettledRows {
public:
    void watch(const QTableWidget* table) { m_untouched.watch(table); }

    /// True when the row shows `content` already. Otherwise it is about to be written: it is
    /// settled from the first pass on that had nothing to write.
    bool shows(int row, const Content& content) {
        const auto index = static_cast<std::size_t>(row);
        if (m_untouched.contains(row) && m_contents[index] == content) {
            return true;
        }
        if (index >= m_contents.size()) {
            m_contents.resize(index + 1);
        }
        m_contents[index] = content;
        m_untouched.mark(row);
        return false;
    }

private:
    UntouchedRows m_untouched;
    std::vector<Content> m_contents;
};
