#pragma once

#include "workbench/controller/command/controlleraddress.h"
#include "workbench/modules/moduleentries.h"

#include <QMap>
#include <QRect>
#include <QSettings>
#include <QStringList>
#include <QVector>

class QMainWindow;

namespace workbench {

/// What the workbench remembers between two runs: window, docks, the last controllers, the last
/// commands, the modules' entries. A file that cannot be read, or holds values that cannot be
/// meant, gives the defaults for these; it is kept under another name, and takeNotice() has one
/// sentence about it.
class WindowSettings {
public:
    /// An empty file name stands for the user's own settings file.
    explicit WindowSettings(const QString& fileName);

    /// Puts the window back, moved and shrunk to fit a screen, and its docks.
    void restore(QMainWindow& window);
    void save(const QMainWindow& window);

    /// By object name; under a name of their own, as a window may have several sets of them.
    QMap<QString, QSize> dockSizes(const char* name);
    void setDockSizes(const char* name, const QMap<QString, QSize>& sizes);

    ControllerAddress address();
    QStringList recentHosts(); ///< the last one first
    /// With their ports, the last one first; at most three.
    QVector<ControllerAddress> recentControllers();
    void setAddress(const ControllerAddress& address);

    QStringList commandHistory();
    void setCommandHistory(const QStringList& commands);

    /// Nothing when they were kept in another language.
    QVector<EntryMemo> moduleEntries();
    void setModuleEntries(const QVector<EntryMemo>& entries);

    QStringList outlets(); ///< the URLs that data go to
    void setOutlets(const QStringList& urls);

    /// At most one sentence, for the log; empty when all is well. The sentence is handed out once.
    QString takeNotice();

    /// `rect` inside the screen that shows most of it, or inside the first screen when none shows
    /// any; never larger than that screen.
    static QRect clamped(const QRect& rect, const QVector<QRect>& screens);

private:
    void keepAside(bool (*keep)(const QString& from, const QString& to));
    void dropBroken(const QString& key);

    QSettings m_settings;
    bool m_broken = false;
    bool m_told = false;
    QString m_keptFile; // the damaged one, under its new name
};

} // namespace workbench
