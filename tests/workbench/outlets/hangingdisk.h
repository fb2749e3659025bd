#pragma once

#include "workbench/outlets/recordingwriter.h"

#include <array>
#include <fcntl.h>
#include <string>
#include <thread>
#include <unistd.h>
#include <utility>

/// A file that takes some bytes and then lets its writer wait, as a frozen disk does: a pipe that
/// nobody reads.
class HangingDisk {
public:
    HangingDisk() { static_cast<void>(::pipe2(m_ends.data(), O_CLOEXEC)); }
    ~HangingDisk() {
        read();
        static_cast<void>(content());
        ::close(m_ends[0]);
    }
    HangingDisk(const HangingDisk&) = delete;
    HangingDisk& operator=(const HangingDisk&) = delete;

    workbench::RecordingWriter::Opener opener() const {
        return [file = m_ends[1]](const QString&, QString*) {
            return ::fcntl(file, F_DUPFD_CLOEXEC, 0);
        };
    }

    /// The disk answers again.
    void read() {
        if (m_reader.joinable()) {
            return;
        }
        m_reader = std::thread([this] {
            std::array<char, 4096> chunk{};
            ssize_t size = 0;
            while ((size = ::read(m_ends[0], chunk.data(), chunk.size())) > 0) {
                m_content.append(chunk.data(), static_cast<std::size_t>(size));
            }
        });
    }

    /// All that was written, once the recorder has closed the file.
    std::string content() {
        ::close(std::exchange(m_ends[1], -1));
        if (m_reader.joinable()) {
            m_reader.join();
        }
        return m_content;
    }

private:
    std::array<int, 2> m_ends{};
    std::thread m_reader;
    std::string m_content; // the reader's until it has ended
};
