#include "scripts/pictures/walk.h"

#include "workbench/window/mainwindow.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QImage>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QVector>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <unordered_map>
#include <utility>

namespace {

constexpr int pollMs = 50;
constexpr int patienceMs = 60000;
constexpr int paletteSize = 256;

// With a palette, for a third of the room: its colours are the most frequent ones, and all others
// (a few pixels at the rims of letters) become the nearest of these.
QImage withPalette(const QImage& picture) {
    std::unordered_map<QRgb, int> counts;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            ++counts[picture.pixel(x, y)];
        }
    }
    std::vector<std::pair<int, QRgb>> colours;
    for (const auto& [colour, count] : counts) {
        colours.emplace_back(count, colour);
    }
    std::sort(colours.rbegin(), colours.rend());
    colours.resize(std::min<std::size_t>(colours.size(), paletteSize));
    QVector<QRgb> palette;
    for (const auto& [count, colour] : colours) {
        palette += colour;
    }
    return picture.convertToFormat(QImage::Format_Indexed8, palette, Qt::AvoidDither);
}

} // namespace

Walk::Walk(workbench::MainWindow& window, QString folder)
    : m_window(window)
    , m_folder(std::move(folder)) {
    connect(&m_timer, &QTimer::timeout, this, &Walk::poll);
    m_timer.start(pollMs);
}

void Walk::step(const char* name, std::function<bool()> condition, std::function<void()> act) {
    m_steps.push_back({name, std::move(condition), std::move(act)});
}

void Walk::poll() {
    m_waitedMs += pollMs;
    if (m_steps.at(m_next).condition()) {
        m_waitedMs = 0;
        m_steps.at(m_next++).act();
    } else if (m_waitedMs > patienceMs) {
        std::fprintf(stderr, "pictures: waited in vain for: %s\n", m_steps.at(m_next).name);
        const auto windows = QApplication::topLevelWidgets();
        for (QWidget* const window : windows) {
            if (window->isVisible()) {
                take(*window, window == &m_window ? "in_vain_window" : "in_vain");
            }
        }
        std::exit(1);
    }
    if (m_next == m_steps.size()) {
        m_timer.stop();
    }
}

QWidget* Walk::dialog() {
    return QApplication::activeModalWidget();
}

bool Walk::shown(const char* className) {
    return dialog() != nullptr && dialog()->inherits(className) && dialog()->isVisible();
}

void Walk::press(const char* button) {
    QTimer::singleShot(0, dialog()->findChild<QPushButton*>(button), &QPushButton::click);
}

void Walk::openEntry(int index) {
    const auto menus = m_window.menuBar()->findChildren<QMenu*>();
    for (const QMenu* menu : menus) {
        if (menu->title() == QLatin1String("&Tracking")) {
            QTimer::singleShot(0, menu->actions().at(index), &QAction::trigger);
        }
    }
}

void Walk::command(const char* line) {
    char reply[200] = {};
    if (m_window.backend().io.send_command(reply, line) != 0) {
        std::fprintf(stderr, "pictures: %s: %s\n", line, reply);
    }
}

void Walk::take(QWidget& widget, const char* name) {
    const QString file = QDir(m_folder).filePath(QLatin1String(name) + QLatin1String(".png"));
    const QImage picture = widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
    if (!withPalette(picture).save(file)) {
        std::fprintf(stderr, "pictures: %s cannot be written\n", qPrintable(file));
        std::exit(1);
    }
    std::printf("%s\n", qPrintable(file));
}
