#pragma once

#include <string>
#include <string_view>

namespace recording {

/// Where the program writes to: a file of its own or standard output.
class Output {
public:
    Output() = default;
    ~Output();
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    /// An empty `path` is standard output. Without `replace` an existing file is refused, and in
    /// any case the file `input`, which would be gone before it was read. False with a reason.
    bool open(const std::string& path, bool replace, const std::string& input, std::string& error);

    /// False when not all of it could be written.
    bool write(std::string_view text);

    /// All is written. False when the system says otherwise.
    bool close();

    /// Removes a file that was not written to its end; standard output stays as it is.
    void discard();

    /// Why write() or close() failed.
    const std::string& error() const { return m_error; }

private:
    std::string m_path;
    std::string m_error;
    int m_file = -1;
    bool m_isOwn = false;
};

} // namespace recording
