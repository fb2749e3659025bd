#pragma once

#include "workbench/outlets/sending/channelmodule.h"

#include <QStringList>

#include <vector>

namespace workbench {

/// Makes the channels of URLs. Those that need a library are loaded from files; where one is
/// missing the URL is refused with a sentence that names the package. GUI thread.
class ChannelMaker {
public:
    /// The first folder that has a file is where it is loaded from.
    ChannelMaker(const QStringList& folders, const ChannelSurroundings& surroundings);

    /// Null with a sentence in `*error` when there is none.
    std::unique_ptr<OutletChannel> make(const OutletUrl& url, QString* error) const;

    /// A way of sending that is a file of its own.
    struct Way {
        QString name; ///< for people
        QString file; ///< empty when it is not there
        QString version;
        QString reason; ///< why it is not loaded; empty when it is
    };
    /// All of them. Loads nothing.
    std::vector<Way> ways() const;

    static QStringList usualFolders();
    /// The user's own folder for data, and the computer's name as one level of a topic.
    static ChannelSurroundings usualSurroundings();

private:
    QString find(const QString& name) const;
    const ChannelModule* load(const QString& name, QString* reason) const;

    const QStringList m_folders;
    const ChannelSurroundings m_surroundings;
};

/// The same with the usual folders and surroundings.
std::unique_ptr<OutletChannel> makeOutletChannel(const OutletUrl& url, QString* error);

/// One that only finds out whether it works.
std::unique_ptr<OutletChannel> makeTrialChannel(const OutletUrl& url, QString* error);

} // namespace workbench
