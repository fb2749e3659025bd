#pragma once

#include "recording/partfile.h"

#include <string>
#include <string_view>
#include <sys/stat.h>

namespace recording {

/// Where the program writes to: standard output, a pipe or device, or a file, which is there when
/// it is whole and not before.
class Output {
public:
    Output() = default;
    ~Output();
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    /// An empty `path` is standard output. Without `replace` an existing file is refused, and in
    /// any case the recording `input` itself, by whatever name ("-": what standard input is). False
    /// with a reason.
    bool open(const std::string& path, bool replace, const std::string& input, std::string& error);

    /// False when not all of it could be written.
    bool write(std::string_view text);

    /// All is written. False when the system says otherwise, or when the file has come to be
    /// meanwhile. Without it no file is made.
    bool close();

    /// Why write() or close() failed.
    const std::string& error() const { return m_error; }

private:
    bool openFile(const std::string& path, const std::string& place, bool exists);
    bool openOther(const std::string& path, mode_t mode);
    bool fail();

    PartFile m_part;
    std::string m_error;
    int m_file = -1;
    bool m_replace = false;
    bool m_isOwn = false; // a pipe or device that this object has opened
};

} // namespace recording
