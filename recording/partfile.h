#pragma once

#include <string>

namespace recording {

/// A file in the making. Until it is whole it stands beside its place, as "NAME.XXXXXX.part"; when
/// it does not get that far it is removed, also when a signal ends the program. One at a time.
class PartFile {
public:
    /// Moves a file to a name that must be free: 0, else -1 with errno. EINVAL or ENOSYS: here it
    /// cannot be done in one step.
    using Move = int (*)(const char* from, const char* to);

    PartFile() = default;
    ~PartFile();
    PartFile(const PartFile&) = delete;
    PartFile& operator=(const PartFile&) = delete;

    /// Begins a file that is to stand at `place`, no symlink, with the permissions of the file that
    /// stands there, if any. False with errno.
    bool create(const std::string& place);

    bool isOpen() const { return m_file >= 0; }

    /// To write to.
    int descriptor() const { return m_file; }

    /// All is written: on the disk and to its place. Without `replace` a file that is there by now
    /// stays. False with errno; then nothing is left but what was there.
    bool finish(bool replace, Move move = moveToFreeName);

    /// Removes what has not been finished.
    void discard();

    static int moveToFreeName(const char* from, const char* to);

private:
    bool putInPlace(bool replace, Move move) const;

    std::string m_place;
    std::string m_name; // until it is in its place
    int m_file = -1;
};

} // namespace recording
