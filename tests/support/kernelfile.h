#pragma once

#include <fcntl.h>
#include <string_view>
#include <unistd.h>

/// Writes to one of the kernel's files, in one piece; false when it refuses.
inline bool writeKernelFile(const char* file, std::string_view text) {
    const int descriptor = ::open(file, O_WRONLY | O_CLOEXEC);
    const bool good = descriptor >= 0 && ::write(descriptor, text.data(), text.size()) ==
                                             static_cast<ssize_t>(text.size());
    ::close(descriptor);
    return good;
}
