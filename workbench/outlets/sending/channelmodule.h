#pragma once

#include "workbench/outlets/sending/outletchannel.h"
#include "workbench/outlets/sending/outleturl.h"

#include <QString>

#include <chrono>
#include <memory>

namespace workbench {

/// What a channel is told besides its URL.
struct ChannelSurroundings {
    QString computerName; ///< the station, where the URL names none
    QString dataFolder;   ///< for results that wait; made when it is needed
    std::chrono::milliseconds longestSilence{5000}; ///< of who is to confirm something
    /// After so long a broker that writes down every second what it has confirmed has done so, also
    /// a busy one.
    std::chrono::milliseconds writingTime{10000};
    bool isTrial = false; ///< only whether it works is to be found out: nobody else is to notice
};

/// What a loadable outlet offers: an outlet that needs a library which not everybody has is a file
/// of its own. It stays loaded.
struct ChannelModule {
    static constexpr const char* symbol = "kestrelOutletModule";
    using Get = const ChannelModule* (*)(); ///< the type of the symbol, an extern "C" function

    const char* version; ///< of the workbench that it was built with
    /// Never null.
    std::unique_ptr<OutletChannel> (*make)(const OutletUrl& url,
                                           const ChannelSurroundings& surroundings);
};

} // namespace workbench
