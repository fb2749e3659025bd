#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

namespace workbench {

/// Results that wait for somebody to take them, in order, in a file: one line each. What append()
/// has taken survives the end of the program and of the computer's power; each line is handed out
/// until it is confirmed, at least once. A file beside it, with ".taken" behind the name, says how
/// far they are confirmed; it may lag behind, never run ahead. What is confirmed needs no room for
/// long: when it is more than what waits, the rest moves to a new file of the same name. One thread
/// at a time.
class ResultSpool {
public:
    struct Line {
        std::uint64_t number = 0; ///< for confirm()
        std::string text;
    };

    /// More than that may not wait: something is wrong, and disks are not ours to fill.
    static constexpr std::int64_t usualMostBytes = 256 * 1024 * 1024;
    /// Fewer confirmed bytes than that are not worth a new file.
    static constexpr std::int64_t usualLeastGain = 1024 * 1024;

    explicit ResultSpool(std::string fileName, std::int64_t mostBytes = usualMostBytes,
                         std::int64_t leastGain = usualLeastGain);
    ~ResultSpool();
    ResultSpool(const ResultSpool&) = delete;
    ResultSpool& operator=(const ResultSpool&) = delete;

    enum class Opened {
        Yes,
        InUse, ///< another program has it
        No     ///< errno tells
    };
    /// Opens the file, or makes it and its folder, readable for its user alone. A last line that
    /// was cut goes. Once it is open it stays so.
    Opened open();
    bool isOpen() const { return m_file >= 0; }

    /// `text` without a line end and not empty. False when the disk does not take it (errno tells):
    /// then nothing of it is there.
    bool append(std::string_view text);
    /// The same for several in their order, which wait for the disk together.
    bool append(const std::deque<std::string>& texts);

    /// The line behind the one that was handed out last; nothing when there is none.
    std::optional<Line> next();

    /// That line need not be handed out again. In any order; a number that is not known is ignored.
    void confirm(std::uint64_t number);

    /// Begins anew with the first line that is not confirmed.
    void rewind();

    /// Lines that are not confirmed.
    std::uint64_t waiting() const { return m_waiting; }

private:
    struct Open { // handed out, and not confirmed up to here
        std::uint64_t number = 0;
        std::int64_t end = 0; // in the file
        bool isConfirmed = false;
    };

    bool appendLines(std::string_view lines, std::uint64_t count);
    bool cutLastLine();
    void readTaken();
    void writeTaken();
    bool countLines();
    void forgetTaken();
    bool moveRest(std::int64_t begin);
    bool copyRest(std::int64_t begin, int file) const;

    const std::string m_fileName;
    const std::int64_t m_mostBytes;
    const std::int64_t m_leastGain;
    int m_file = -1;
    int m_takenFile = -1;
    std::int64_t m_size = 0;
    std::int64_t m_taken = 0; // bytes of confirmed lines
    std::int64_t m_nextGain;  // so many of them are worth the next try to move the rest
    std::int64_t m_read = 0;  // bytes of lines that were handed out
    std::uint64_t m_waiting = 0;
    std::uint64_t m_lastNumber = 0;
    std::deque<Open> m_open;
    std::string m_buffer; // read ahead, from m_read on
};

} // namespace workbench
