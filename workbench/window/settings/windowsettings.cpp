#include "workbench/window/settings/windowsettings.h"

#include "workbench/text/textlanguage.h"
#include "workbench/window/look/screenpixels.h"
#include "workbench/window/look/screenroom.h"

#include <QCoreApplication>
#include <QFile>
#include <QGuiApplication>
#include <QMainWindow>
#include <QScreen>

#include <algorithm>

namespace workbench {

namespace {

constexpr int stateVersion = 1;
constexpr int maxRecentHosts = 8;
constexpr int maxRecentControllers = 3;
constexpr int maxCommands = 100;
constexpr int maxEntryText = 200;
constexpr int maxOutlets = 100;
constexpr QSize defaultSize(1080, 820); // at 96 dpi
constexpr int usualLines = 34;
constexpr QSize smallestSize(320, 240);
constexpr int farthest = 32767; // what window systems can express

QVector<QRect> screenRects(const QWidget& window) {
    QVector<QRect> rects;
    if (!areScreensSeen()) {
        return rects;
    }
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (const QScreen* screen : screens) {
        rects += insideFrame(screen->availableGeometry(), window.fontMetrics().height());
    }
    return rects;
}

bool isWithin(int value, int least, int most) {
    return value >= least && value <= most;
}

bool isLargeEnough(const QRect& rect) {
    return rect.width() >= smallestSize.width() && rect.height() >= smallestSize.height();
}

// Looked at edge by edge: the size of an absurd rectangle need not fit into a number.
bool isPlausible(const QRect& rect) {
    return isWithin(rect.left(), -farthest, farthest) &&
           isWithin(rect.top(), -farthest, farthest) &&
           isWithin(rect.right(), -farthest, farthest) &&
           isWithin(rect.bottom(), -farthest, farthest) && isLargeEnough(rect);
}

int area(const QRect& rect) {
    return rect.isEmpty() ? 0 : rect.width() * rect.height();
}

// "192.168.1.5:47300/5000", the data port last.
QString storedText(const ControllerAddress& address) {
    return address.toString() + QLatin1Char('/') + QString::number(address.dataPort);
}

bool readStored(const QString& text, ControllerAddress& address) {
    const int slash = text.indexOf(QLatin1Char('/'));
    bool good = false;
    const uint dataPort = text.midRef(slash + 1).toUInt(&good);
    address.dataPort = static_cast<quint16>(dataPort);
    return good && slash > 0 && dataPort <= 0xffff && address.parse(text.left(slash));
}

// "1080\t250\tLogDock"
QString storedText(const QString& dock, const QSize& size) {
    return QStringLiteral("%1\t%2\t").arg(size.width()).arg(size.height()) + dock;
}

bool readStored(const QString& text, QString& dock, QSize& size) {
    const QStringList parts = text.split(QLatin1Char('\t'));
    size = QSize(parts.value(0).toInt(), parts.value(1).toInt());
    dock = parts.value(2);
    return parts.size() == 3 && !dock.isEmpty() && isWithin(size.width(), 1, farthest) &&
           isWithin(size.height(), 1, farthest);
}

QString dockSizesKey(const char* name) {
    return QStringLiteral("window/dockSizes_") + QLatin1String(name);
}

// "300\t50\t&Tracking\t&Measurement Tool"
QString storedText(const EntryMemo& entry) {
    return QStringList{QString::number(entry.menuOrder), QString::number(entry.entryOrder),
                       entry.menuName, entry.text}
        .join(QLatin1Char('\t'));
}

bool readStored(const QString& text, EntryMemo& entry) {
    const QStringList parts = text.split(QLatin1Char('\t'));
    bool isMenuOrder = false;
    bool isEntryOrder = false;
    entry = {parts.value(2), parts.value(0).toInt(&isMenuOrder), parts.value(3),
             parts.value(1).toInt(&isEntryOrder)};
    const auto isText = [](const QString& part) {
        return !part.isEmpty() && part.size() <= maxEntryText;
    };
    return parts.size() == 4 && isMenuOrder && isEntryOrder && isText(entry.menuName) &&
           isText(entry.text);
}

} // namespace

WindowSettings::WindowSettings(const QString& fileName)
    : m_settings(fileName.isEmpty()
                     ? QSettings(QSettings::IniFormat, QSettings::UserScope,
                                 QStringLiteral("kestrel"), QStringLiteral("kestrel-workbench"))
                           .fileName()
                     : fileName,
                 QSettings::IniFormat) {
    m_settings.allKeys(); // reads the file
    if (m_settings.status() == QSettings::FormatError) {
        keepAside(&QFile::rename);
    }
    if (m_settings.status() != QSettings::NoError) {
        m_broken = true;
        m_settings.clear();
    }
}

// The next save writes the file anew; what it held until then is not for us to throw away.
void WindowSettings::keepAside(bool (*keep)(const QString& from, const QString& to)) {
    const QString kept = m_settings.fileName() + QStringLiteral(".damaged");
    QFile::remove(kept);
    if (keep(m_settings.fileName(), kept)) {
        m_keptFile = kept;
    }
}

void WindowSettings::dropBroken(const QString& key) {
    if (!m_broken) {
        m_broken = true;
        keepAside(&QFile::copy);
    }
    m_settings.remove(key);
}

QString WindowSettings::takeNotice() {
    if (!m_broken || m_told) {
        return {};
    }
    m_told = true;
    const QString notice =
        QCoreApplication::translate("workbench::WindowSettings",
                                    "The settings in %1 are damaged; defaults are used instead")
            .arg(m_settings.fileName());
    return m_keptFile.isEmpty()
               ? notice
               : notice + QCoreApplication::translate("workbench::WindowSettings",
                                                      ", and the file is kept as %1")
                              .arg(m_keptFile);
}

QRect WindowSettings::clamped(const QRect& rect, const QVector<QRect>& screens) {
    if (screens.isEmpty()) {
        return rect;
    }
    const QRect screen =
        *std::max_element(screens.begin(), screens.end(), [&rect](const QRect& a, const QRect& b) {
            return area(a.intersected(rect)) < area(b.intersected(rect));
        });
    QRect result(rect.topLeft(), rect.size().boundedTo(screen.size()));
    result.moveLeft(std::clamp(result.left(), screen.left(), screen.right() - result.width() + 1));
    result.moveTop(std::clamp(result.top(), screen.top(), screen.bottom() - result.height() + 1));
    return result;
}

void WindowSettings::restore(QMainWindow& window) {
    const QVector<QRect> screens = screenRects(window);
    // With a large font the tool bar needs more width, and the docks more height.
    const QSize needed(window.sizeHint().width(), usualLines * window.fontMetrics().height());
    const QSize usual(screenPixels(defaultSize.width(), window),
                      screenPixels(defaultSize.height(), window));
    const QSize size = usual.expandedTo(needed);
    window.resize(clamped(QRect(QPoint(0, 0), size), screens).size());
    const QVariant stored = m_settings.value(QStringLiteral("window/rect"));
    if (stored.isValid()) {
        const QRect rect = stored.toRect();
        if (stored.type() == QVariant::Rect && isPlausible(rect)) {
            window.setGeometry(clamped(rect, screens));
        } else {
            dropBroken(QStringLiteral("window/rect"));
        }
    }
    if (m_settings.value(QStringLiteral("window/maximized"), false).toBool()) {
        window.setWindowState(Qt::WindowMaximized);
    }
    const QByteArray docks = m_settings.value(QStringLiteral("window/docks")).toByteArray();
    if (!docks.isEmpty() && !window.restoreState(docks, stateVersion)) {
        dropBroken(QStringLiteral("window/docks"));
    }
}

void WindowSettings::save(const QMainWindow& window) {
    const QRect rect = window.isMaximized() ? window.normalGeometry() : window.geometry();
    if (isLargeEnough(rect)) { // not every window system tells the normal one of a maximized window
        m_settings.setValue(QStringLiteral("window/rect"), rect);
    }
    m_settings.setValue(QStringLiteral("window/maximized"), window.isMaximized());
    m_settings.setValue(QStringLiteral("window/docks"), window.saveState(stateVersion));
    m_settings.sync();
}

QMap<QString, QSize> WindowSettings::dockSizes(const char* name) {
    QMap<QString, QSize> sizes;
    const QStringList stored = m_settings.value(dockSizesKey(name)).toStringList();
    for (const QString& text : stored) {
        QString dock;
        QSize size;
        if (!readStored(text, dock, size)) {
            dropBroken(dockSizesKey(name));
            return {};
        }
        sizes[dock] = size;
    }
    return sizes;
}

// What cannot be read again is left out.
void WindowSettings::setDockSizes(const char* name, const QMap<QString, QSize>& sizes) {
    QStringList stored;
    for (auto size = sizes.begin(); size != sizes.end(); ++size) {
        if (!size.key().contains(QLatin1Char('\t'))) {
            stored += storedText(size.key(), *size);
        }
    }
    m_settings.setValue(dockSizesKey(name), stored);
}

ControllerAddress WindowSettings::address() {
    ControllerAddress address;
    const QString host = recentHosts().value(0);
    if (!host.isEmpty()) {
        address.host = host;
    }
    const auto port = [this](const QString& key, quint16 fallback) {
        bool good = false;
        const uint value = m_settings.value(key, fallback).toUInt(&good);
        if (!good || value > 0xffff) {
            dropBroken(key);
            return fallback;
        }
        return static_cast<quint16>(value);
    };
    address.port = port(QStringLiteral("connection/port"), ControllerAddress::defaultPort);
    if (address.port == 0) {
        address.port = ControllerAddress::defaultPort;
    }
    address.dataPort = port(QStringLiteral("connection/dataPort"), 0);
    return address;
}

QStringList WindowSettings::recentHosts() {
    QStringList hosts;
    const QStringList stored = m_settings.value(QStringLiteral("connection/hosts")).toStringList();
    for (const QString& host : stored) {
        ControllerAddress address;
        if (address.parse(host.contains(QLatin1Char(':'))
                              ? QLatin1Char('[') + host + QLatin1Char(']')
                              : host)) {
            hosts += host;
        }
    }
    if (hosts.size() < stored.size()) {
        dropBroken(QStringLiteral("connection/hosts"));
        m_settings.setValue(QStringLiteral("connection/hosts"), hosts);
    }
    return hosts.mid(0, maxRecentHosts);
}

QVector<ControllerAddress> WindowSettings::recentControllers() {
    const QString key = QStringLiteral("connection/controllers");
    if (!m_settings.contains(key) && !recentHosts().isEmpty()) {
        return {address()}; // a file of a time when only hosts were kept
    }
    QVector<ControllerAddress> controllers;
    const QStringList stored = m_settings.value(key).toStringList();
    for (const QString& text : stored) {
        ControllerAddress address;
        if (!readStored(text, address)) {
            dropBroken(key);
            return {};
        }
        controllers += address;
    }
    return controllers.mid(0, maxRecentControllers);
}

void WindowSettings::setAddress(const ControllerAddress& address) {
    QStringList controllers{storedText(address)};
    const QVector<ControllerAddress> before = recentControllers();
    for (const ControllerAddress& other : before) {
        if (other.toString() != address.toString()) {
            controllers += storedText(other);
        }
    }
    m_settings.setValue(QStringLiteral("connection/controllers"),
                        QStringList(controllers.mid(0, maxRecentControllers)));
    QStringList hosts = recentHosts();
    hosts.removeAll(address.host);
    hosts.prepend(address.host);
    m_settings.setValue(QStringLiteral("connection/hosts"),
                        QStringList(hosts.mid(0, maxRecentHosts)));
    m_settings.setValue(QStringLiteral("connection/port"), address.port);
    m_settings.setValue(QStringLiteral("connection/dataPort"), address.dataPort);
}

QStringList WindowSettings::commandHistory() {
    return m_settings.value(QStringLiteral("commands/history")).toStringList().mid(0, maxCommands);
}

void WindowSettings::setCommandHistory(const QStringList& commands) {
    m_settings.setValue(QStringLiteral("commands/history"),
                        QStringList(commands.mid(std::max(0, commands.size() - maxCommands))));
}

QVector<EntryMemo> WindowSettings::moduleEntries() {
    const QString key = QStringLiteral("modules/entries");
    QVector<EntryMemo> entries;
    const QStringList stored = m_settings.value(key).toStringList();
    for (const QString& text : stored) {
        EntryMemo entry;
        if (!readStored(text, entry)) {
            dropBroken(key);
            return {};
        }
        entries += entry;
    }
    return m_settings.value(QStringLiteral("modules/language")) == textLanguage()
               ? entries
               : QVector<EntryMemo>();
}

// What cannot be read again is left out.
void WindowSettings::setModuleEntries(const QVector<EntryMemo>& entries) {
    QStringList stored;
    for (const EntryMemo& entry : entries) {
        EntryMemo same;
        if (readStored(storedText(entry), same) && same == entry) {
            stored += storedText(entry);
        }
    }
    m_settings.setValue(QStringLiteral("modules/entries"), stored);
    m_settings.setValue(QStringLiteral("modules/language"), textLanguage());
}

QStringList WindowSettings::outlets() {
    return m_settings.value(QStringLiteral("outlets/urls")).toStringList().mid(0, maxOutlets);
}

void WindowSettings::setOutlets(const QStringList& urls) {
    m_settings.setValue(QStringLiteral("outlets/urls"), QStringList(urls.mid(0, maxOutlets)));
}

} // namespace workbench
