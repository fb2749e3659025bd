#include "workbench/startup.h"
#include "workbench/translations.h"
#include "workbench/window/mainwindow.h"
#include "workbench/window/screenpixels.h"

#include <QAction>
#include <QApplication>
#include <QCommandLineParser>
#include <QDialog>
#include <QDir>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPalette>
#include <QProgressBar>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <functional>
#include <utility>
#include <vector>

namespace {

constexpr int pollMs = 50;
constexpr int patienceMs = 60000;
constexpr int settleMs = 4000;         // until the figures for the last seconds mean something
constexpr int animationMs = 1000;      // until the moving picture has begun
constexpr QSize windowSize(1100, 800); // at 96 dpi
const char* const simulatorOptions = "--seed 5 --cal-duration 4 --cal-pause 3";

// A walk through the window and its dialogs. Each step waits until its condition holds and then
// acts; the steps go on inside the dialogs' own loops.
class Tour : public QObject {
public:
    Tour(workbench::MainWindow& window, QString folder, bool all)
        : m_window(window)
        , m_folder(std::move(folder)) {
        connect(&m_timer, &QTimer::timeout, this, &Tour::poll);
        describe(all);
        m_timer.start(pollMs);
    }

private:
    struct Step {
        const char* name;
        std::function<bool()> condition;
        std::function<void()> act;
    };

    void step(const char* name, std::function<bool()> condition, std::function<void()> act) {
        m_steps.push_back({name, std::move(condition), std::move(act)});
    }

    void describe(bool all) {
        step(
            "start page", [this] { return m_window.isVisible(); },
            [this] {
                m_window.backend().log.clear(); // of the places of this build
                take(m_window, "start");
                m_window.simulate(QString::fromLatin1(simulatorOptions).split(QLatin1Char(' ')));
            });
        describeLiveView();
        if (all) {
            describeSmallDialogs();
        }
        describeSettings();
        describeCalibration();
        step(
            "end", [] { return dialog() == nullptr; }, [] { QCoreApplication::quit(); });
    }

    void describeLiveView() {
        const auto shows = [this](int row, const QString& colour) {
            const auto* const table = m_window.findChild<QTableWidget*>("tableWidget6dmt");
            return table != nullptr && table->rowCount() > row && table->item(row, 0) != nullptr &&
                   table->item(row, 0)->background().color().name() == colour;
        };
        step(
            "live rows", [shows] { return shows(0, "#00ff00"); },
            [this] {
                command("kestrel2 sim place tool b01 120.5 -48.25 310 12 -35.5 4");
                command("kestrel2 sim press tool b01 1");
                command("kestrel2 sim occlude tool b02 yes");
                command("kestrel2 sim occlude reference b02 yes");
            });
        step(
            "a tool out of sight",
            [this, shows] {
                return shows(0, "#00ff00") && shows(1, "#ff0000") && shows(2, "#00ff00") &&
                       m_waitedMs > settleMs;
            },
            [this] { take(m_window, "workbench"); });
    }

    void describeSmallDialogs() {
        const std::pair<const char*, const char*> dialogs[] = {
            {"actionConnect", "connect"}, {"actionModules", "modules"}, {"actionAbout", "about"}};
        for (const auto& [action, picture] : dialogs) {
            step(
                action, [] { return dialog() == nullptr; },
                [this, name = action] {
                    QTimer::singleShot(0, m_window.findChild<QAction*>(name), &QAction::trigger);
                });
            step(
                picture, [] { return dialog() != nullptr && dialog()->isVisible(); },
                [this, name = picture] {
                    take(*dialog(), name);
                    dialog()->close();
                });
        }
    }

    void describeSettings() {
        step(
            "open the settings", [] { return true; }, [this] { openEntry(0); });
        step(
            "settings", [] { return shown("MtSettingsDlg"); },
            [this] {
                take(*dialog(), "settings");
                dialog()->findChild<QTabWidget*>("tabWidget")->setCurrentIndex(1);
            });
        step(
            "radio devices", [] { return shown("MtSettingsDlg"); },
            [this] {
                take(*dialog(), "settings_radio_devices");
                dialog()->findChild<QTabWidget*>("tabWidget_mt")->setCurrentIndex(1);
            });
        step(
            "second tab", [] { return shown("MtSettingsDlg"); },
            [this] {
                if (dialog()->findChild<QTabWidget*>("tabWidget_mt")->count() > 1) {
                    take(*dialog(), "settings_measurement");
                }
                press("pushButton_cancel");
            });
    }

    void describeCalibration() {
        step(
            "open the calibration", [] { return dialog() == nullptr; },
            [this] {
                command("kestrel2 sim release tool b01");
                openEntry(1);
            });
        step(
            "calibration", [this] { return shown("MtCalibrationDlg") && m_waitedMs > animationMs; },
            [this] {
                take(*dialog(), "calibration");
                press("pushButton_help");
            });
        step(
            "help", [] { return shown("MtHelpDlg"); },
            [this] {
                take(*dialog(), "calibration_help");
                press("pushButton_exit");
            });
        step(
            "calibrate", [] { return shown("MtCalibrationDlg"); },
            [] { press("pushButton_calibrate"); });
        step(
            "countdown", [] { return shown("CountdownDlg"); },
            [this] { take(*dialog(), "calibration_countdown"); });
        step(
            "progress",
            [] {
                return shown("CalibrationProgressDlg") &&
                       dialog()->findChild<QProgressBar*>("progressBar_overall")->value() >= 40;
            },
            [this] { take(*dialog(), "calibration_progress"); });
        step(
            "result", [] { return shown("MtResultDlg"); },
            [this] {
                take(*dialog(), "calibration_result");
                press("pushButton_accept");
            });
        step(
            "leave", [] { return shown("MtCalibrationDlg"); }, [] { press("pushButton_exit"); });
    }

    void poll() {
        m_waitedMs += pollMs;
        if (m_steps.at(m_next).condition()) {
            m_waitedMs = 0;
            m_steps.at(m_next++).act();
        } else if (m_waitedMs > patienceMs) {
            std::fprintf(stderr, "pictures: waited in vain for: %s\n", m_steps.at(m_next).name);
            std::exit(1);
        }
        if (m_next == m_steps.size()) {
            m_timer.stop();
        }
    }

    static QWidget* dialog() { return QApplication::activeModalWidget(); }

    static bool shown(const char* className) {
        return dialog() != nullptr && dialog()->inherits(className) && dialog()->isVisible();
    }

    // Afterwards, for what it opens has its own loop, in which the tour goes on.
    static void press(const char* button) {
        QTimer::singleShot(0, dialog()->findChild<QPushButton*>(button), &QPushButton::click);
    }

    void openEntry(int index) {
        const auto menus = m_window.menuBar()->findChildren<QMenu*>();
        for (const QMenu* menu : menus) {
            if (menu->title() == QLatin1String("&Tracking")) {
                QTimer::singleShot(0, menu->actions().at(index), &QAction::trigger);
            }
        }
    }

    void command(const char* line) {
        char reply[200] = {};
        if (m_window.backend().io.send_command(reply, line) != 0) {
            std::fprintf(stderr, "pictures: %s: %s\n", line, reply);
        }
    }

    void take(QWidget& widget, const char* name) {
        const QString file = QDir(m_folder).filePath(QLatin1String(name) + QLatin1String(".png"));
        if (!widget.grab().save(file)) {
            std::fprintf(stderr, "pictures: %s cannot be written\n", qPrintable(file));
            std::exit(1);
        }
        std::printf("%s\n", qPrintable(file));
    }

    workbench::MainWindow& m_window;
    const QString m_folder;
    std::vector<Step> m_steps;
    std::size_t m_next = 0;
    int m_waitedMs = 0;
    QTimer m_timer;
};

QPalette darkPalette() {
    const QColor ground(0x35, 0x35, 0x35);
    QPalette palette(ground); // with its text and its shades
    palette.setColor(QPalette::Base, QColor(0x23, 0x23, 0x23));
    palette.setColor(QPalette::AlternateBase, ground);
    palette.setColor(QPalette::Highlight, QColor(0x2a, 0x82, 0xda));
    palette.setColor(QPalette::ToolTipBase, ground);
    palette.setColor(QPalette::ToolTipText, Qt::white);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, Qt::gray);
    }
    return palette;
}

} // namespace

int main(int argc, char* argv[]) {
    workbench::prepareForWindows();
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addPositionalArgument(QStringLiteral("folder"),
                                 QStringLiteral("Where the pictures go."));
    parser.addOptions({{"language", "Language of the texts.", "LANGUAGE", "en"},
                       {"font", "Size of the font in percent.", "PERCENT", "100"},
                       {"dark", "Light letters on a dark ground."},
                       {"all", "All windows."}});
    parser.addHelpOption();
    parser.process(application);

    QFont font = QApplication::font();
    font.setPointSizeF(font.pointSizeF() * parser.value("font").toDouble() / 100.0);
    QApplication::setFont(font);
    if (parser.isSet("dark")) {
        QApplication::setPalette(darkPalette());
    }
    const workbench::Translations translations(parser.value("language"),
                                               workbench::Translations::usualFolders());
    const QTemporaryDir scratch;
    workbench::MainWindow window({scratch.filePath("settings.ini"), false, true});
    const QStringList folders = workbench::ModuleHost::usualFolders();
    for (const QString& folder : folders) {
        window.modules().loadFolder(folder);
    }
    window.modulesLoaded();
    QObject::connect(&window, &workbench::MainWindow::modulesBuilt, &window,
                     &workbench::MainWindow::startMeasurement);
    const QSize size(workbench::screenPixels(windowSize.width(), window),
                     workbench::screenPixels(windowSize.height(), window));
    window.resize(size.expandedTo(window.sizeHint())); // more with a large font
    window.show();
    Tour tour(window, parser.positionalArguments().value(0, QStringLiteral(".")),
              parser.isSet("all"));
    return QApplication::exec();
}
