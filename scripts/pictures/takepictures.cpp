#include "scripts/pictures/walk.h"
#include "workbench/startup.h"
#include "workbench/translations.h"
#include "workbench/window/look/screenpixels.h"
#include "workbench/window/mainwindow.h"
#include "workbench/window/sending/outletcontrol.h"
#include "workbench/window/state/banner.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QCommandLineParser>
#include <QDialog>
#include <QDockWidget>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPalette>
#include <QProgressBar>
#include <QProgressDialog>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QUdpSocket>

#include <utility>

namespace {

constexpr int settleMs = 4000;    // until the figures for the last seconds mean something
constexpr int animationMs = 1000; // until the moving picture has begun
constexpr quint16 udpPort = 9870;
constexpr int recordedMs = 1500;       // of the recording that is played
constexpr double replayedTo = 1.0;     // seconds
constexpr int ringMs = 1300;           // until the ring of a capture of two seconds is well filled
constexpr int layoutMs = 500;          // until new words have their room
constexpr int staleMs = 1000;          // until data that fail to come have been told
constexpr quint64 shownFrames = 10;    // until the display has had some
constexpr QSize windowSize(1100, 800); // at 96 dpi
constexpr QSize tipCheckSize(480, 620);
constexpr QSize pointsSize(760, 520);
constexpr QSize readoutSize(420, 260);
constexpr QSize plotSize(640, 360);
constexpr int hiddenMs = 1500;
constexpr int plottedMs = 8000;
constexpr std::pair<const char*, QSize> readoutSizes[] = {
    {"readout_small", {320, 200}}, {"readout_wide", {900, 300}}, {"readout_large", {1000, 700}}};
const char* const simulatorOptions = "--seed 5 --cal-duration 4 --cal-pause 3 --no-occlusion";

class Tour : public Walk {
public:
    Tour(workbench::MainWindow& window, const QString& folder, bool all)
        : Walk(window, folder) {
        describe(all);
    }

private:
    void describe(bool all) {
        step(
            "start page", [this] { return m_window.isVisible(); },
            [this] {
                m_window.backend().log.clear(); // of the places of this build
                take(m_window, "start");
                m_window.simulate(QString::fromLatin1(simulatorOptions).split(QLatin1Char(' ')));
            });
        describeLiveView(all);
        describeSending();
        describeTipCheck();
        describePoints(all);
        describeLostData();
        describeReadout(all);
        describePlot(all);
        if (all) {
            step(
                "menus", [] { return true; },
                [this] {
                    int number = 0;
                    const auto menus = m_window.menuBar()->actions();
                    for (const QAction* menu : menus) {
                        takeMenu(*menu->menu(), "menu_" + QByteArray::number(++number));
                    }
                });
            describeSmallDialogs();
        }
        describeSettings();
        describeCalibration(all);
        describeReplay();
        step(
            "end", [] { return dialog() == nullptr; }, [] { QCoreApplication::quit(); });
    }

    void describeLiveView(bool all) {
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
                command("kestrel2 sim press tool b02 0"); // they would capture points
                command("kestrel2 sim press tool b03 0");
                command("kestrel2 sim press tool b04 0");
                command("kestrel2 sim occlude tool b02 yes");
                command("kestrel2 sim occlude reference b02 yes");
            });
        step(
            "a tool out of sight",
            [this, shows] {
                return shows(0, "#00ff00") && shows(1, "#ff0000") && shows(2, "#00ff00") &&
                       waitedMs() > settleMs;
            },
            [this] { take(m_window, "workbench"); });
        step(
            "record", [] { return true; }, [this] { m_window.startRecording(recording()); });
        step(
            "a second and a half of frames", [this] { return waitedMs() > recordedMs; },
            [this, all] {
                if (all) {
                    take(m_window, "recording");
                }
                m_window.stopRecording();
            });
        if (all) {
            step(
                "export", [] { return dialog() == nullptr; },
                [this] {
                    auto* const shown = workbench::CsvExport::makeDialog(
                        m_recordings.filePath(QStringLiteral("session.csv")), &m_window);
                    shown->setMinimumDuration(0);
                    shown->setValue(workbench::CsvExport::steps * 2 / 5);
                    take(*shown, "csv_export");
                    delete shown;
                });
        }
    }

    // To a reader that takes them, and to viewers of which none is there.
    void describeSending() {
        step(
            "send", [] { return dialog() == nullptr; },
            [this] {
                m_reader.bind(QHostAddress(QHostAddress::LocalHost), udpPort);
                for (const char* text : {"udp://127.0.0.1", "igtl://"}) {
                    workbench::OutletUrl url;
                    QString error;
                    if (!url.parse(QLatin1String(text), &error) ||
                        !m_window.outlets().add(url, workbench::OutletControl::Memory::ThisRun,
                                                &error)) {
                        qFatal("%s", qPrintable(error));
                    }
                }
                QTimer::singleShot(0, m_window.findChild<QAction*>("actionSendTo"),
                                   &QAction::trigger);
            });
        step(
            "sent frames", [this] { return dialog() != nullptr && waitedMs() > settleMs; },
            [this] {
                take(*dialog(), "send");
                dialog()->close();
                m_window.outlets().remove(QStringLiteral("udp://127.0.0.1"));
                m_window.outlets().remove(QStringLiteral("igtl://"));
            });
    }

    QDockWidget* openApart(const char* name, const QSize& size) {
        auto* const dock = m_window.findChild<QDockWidget*>(QLatin1String(name));
        dock->setFloating(true);
        dock->show();
        dock->resize(workbench::screenPixels(size.width(), *dock),
                     workbench::screenPixels(size.height(), *dock));
        return dock;
    }

    void describeReadout(bool all) {
        const auto figures = [this](const char* button) {
            return m_window.findChild<QDockWidget*>("ReadoutDock")
                ->findChild<QAbstractButton*>(QLatin1String(button));
        };
        step(
            "open the read-out", [] { return true; },
            [this] { openApart("ReadoutDock", readoutSize); });
        step(
            "read-out", [this] { return waitedMs() > settleMs; },
            [this, figures] {
                take(*m_window.findChild<QDockWidget*>("ReadoutDock"), "readout");
                figures("checkBox_angles")->click();
            });
        if (all) {
            for (const auto& [name, size] : readoutSizes) {
                step(
                    name, [] { return true; },
                    [this, room = size] { openApart("ReadoutDock", room); });
                step(
                    name, [this] { return waitedMs() > animationMs; },
                    [this, picture = name] {
                        take(*m_window.findChild<QDockWidget*>("ReadoutDock"), picture);
                    });
            }
            step(
                "freeze", [] { return true; },
                [this, figures] {
                    figures("toolButton_freeze")->click();
                    take(*m_window.findChild<QDockWidget*>("ReadoutDock"), "readout_frozen");
                    figures("toolButton_freeze")->click();
                    m_window.findChild<QComboBox*>("comboBox_tool")->setCurrentIndex(1);
                });
            step(
                "seen", [this] { return waitedMs() > animationMs; },
                [this] { command("kestrel2 sim occlude tool b02 yes"); });
            step(
                "a hidden one", [this] { return waitedMs() > animationMs; },
                [this] {
                    take(*m_window.findChild<QDockWidget*>("ReadoutDock"), "readout_hidden");
                    command("kestrel2 sim occlude tool b02 no");
                });
        }
        step(
            "close the read-out", [] { return true; },
            [this] { m_window.findChild<QDockWidget*>("ReadoutDock")->hide(); });
    }

    // A tool that moves a little, and was out of sight for a moment. (A build may have no plot.)
    void describePlot(bool all) {
        if (m_window.findChild<QDockWidget*>("PlotDock") == nullptr) {
            return;
        }
        const auto hide = [this](const char* hidden) {
            command(qPrintable(QStringLiteral("kestrel2 sim occlude tool b01 %1").arg(hidden)));
        };
        step(
            "open the plot", [] { return true; },
            [this] {
                command("kestrel2 sim place tool b01 120.5 -48.25 310 12 -35.5 4");
                openApart("PlotDock", plotSize)
                    ->findChild<QComboBox*>("comboBox_span")
                    ->setCurrentIndex(0);
            });
        step(
            "before it hides", [this] { return waitedMs() > settleMs; }, [hide] { hide("yes"); });
        step(
            "hidden", [this] { return waitedMs() > hiddenMs; }, [hide] { hide("no"); });
        step(
            "plot", [this] { return waitedMs() > settleMs; },
            [this] { take(*m_window.findChild<QDockWidget*>("PlotDock"), "plot"); });
        if (all) {
            step(
                "pause the plot", [this] { return waitedMs() > plottedMs; },
                [this] {
                    m_window.findChild<QDockWidget*>("PlotDock")
                        ->findChild<QAbstractButton*>("toolButton_zoomIn")
                        ->click();
                });
            step(
                "zoomed plot", [this] { return waitedMs() > animationMs; },
                [this] {
                    auto* const dock = m_window.findChild<QDockWidget*>("PlotDock");
                    take(*dock, "plot_zoomed");
                    dock->findChild<QAbstractButton*>("toolButton_pause")->click();
                    m_window.stopMeasurement();
                });
            step(
                "plot of a stopped measurement", [this] { return waitedMs() > animationMs; },
                [this] {
                    take(*m_window.findChild<QDockWidget*>("PlotDock"), "plot_stopped");
                    m_window.startMeasurement();
                });
        }
        step(
            "close the plot", [] { return true; },
            [this] { m_window.findChild<QDockWidget*>("PlotDock")->hide(); });
    }

    QString recording() const { return m_recordings.filePath(QStringLiteral("session.kestrel")); }

    void describeReplay() {
        const auto state = [this] { return m_window.backend().replay.state(); };
        step(
            "open the recording", [] { return dialog() == nullptr; },
            [this] { m_window.openRecording(recording()); });
        step(
            "replay",
            [this, state] {
                return state() == workbench::ReplayControl::State::Playing &&
                       m_window.backend().receiver.statistics().snapshot().frames > shownFrames;
            },
            [this] {
                for (const char* name : {"ProbeTipCheckDock", "ProbePointsDock"}) {
                    m_window.findChild<QDockWidget*>(QLatin1String(name))->hide();
                }
                m_window.backend().replay.pause();
                m_window.backend().replay.seek(replayedTo);
            });
        step(
            "paused",
            [this, state] {
                return state() == workbench::ReplayControl::State::Paused && waitedMs() > settleMs;
            },
            [this] { take(m_window, "replay"); });
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

    void describeTipCheck() {
        step(
            "tip check", [this] { return m_window.isVisible(); },
            [this] {
                command("kestrel2 sim occlude tool b02 no");
                command("kestrel2 sim occlude reference b02 no");
                command("kestrel2 sim press tool b01 0");
                useTipThatIsWrongBy(0.3, -0.4);
                command("kestrel2 sim move tool b01 cone 40");
                open("ProbeTipCheckDock", tipCheckSize);
            });
        step(
            "start", [this] { return child<QPushButton>("pushButton_start")->isEnabled(); },
            [this] {
                child<QDoubleSpinBox>("doubleSpinBox_tolerance")->setValue(0.3);
                child<QPushButton>("pushButton_start")->click();
            });
        step(
            "half of the directions",
            [this] {
                const QString figures = child<QLabel>("label_figures")->text(); // "5 s, ..."
                return figures.section(QLatin1Char(' '), 0, 0).toDouble() >= 5.0;
            },
            [this] { take(*m_dock, "tip_check"); });
        step(
            "result of the tip check",
            [this] {
                m_overMs =
                    child<QPushButton>("pushButton_stop")->isEnabled() ? waitedMs() : m_overMs;
                return waitedMs() - m_overMs > layoutMs;
            },
            [this] {
                take(*m_dock, "tip_check_result");
                m_dock->hide();
            });
    }

    void describePoints(bool all) {
        step(
            "points", [this] { return m_window.isVisible(); },
            [this] {
                command("kestrel2 sim place reference b01 -400 -14 28 0.5 -6.6 32.6");
                open("ProbePointsDock", pointsSize);
                child<QTableView>("tableView_points")->selectAll();
                child<QPushButton>("pushButton_delete")->click();
                child<QComboBox>("comboBox_tool")->setCurrentIndex(0);
            });
        const char* const places[] = {"10 20 30", "110.05 20 30", "110.05 80.02 30.01"};
        for (int i = 0; i < 3; ++i) {
            step(
                "place of a point",
                [this, i] {
                    return child<QTableView>("tableView_points")->model()->rowCount() == i;
                },
                [this, place = places[i]] {
                    command(qPrintable(QStringLiteral("kestrel2 sim place tool b01 %1 12 -35.5 4")
                                           .arg(QLatin1String(place))));
                });
            step(
                "capture",
                [this] {
                    return waitedMs() > animationMs &&
                           child<QPushButton>("pushButton_capture")->isEnabled();
                },
                [this] { child<QPushButton>("pushButton_capture")->click(); });
        }
        step(
            "three points", // and the last one on the disk
            [this] {
                return child<QTableView>("tableView_points")->model()->rowCount() == 3 &&
                       waitedMs() > 3 * animationMs;
            },
            [this] {
                auto* const table = child<QTableView>("tableView_points");
                child<QDoubleSpinBox>("doubleSpinBox_duration")->setValue(2.0);
                child<QDoubleSpinBox>("doubleSpinBox_nominal")->setValue(100.0);
                for (const int row : {0, 1}) {
                    table->selectionModel()->select(table->model()->index(row, 0),
                                                    QItemSelectionModel::Select |
                                                        QItemSelectionModel::Rows);
                }
                child<QPushButton>("pushButton_capture")->click();
            });
        step(
            "half of a point", [this] { return waitedMs() > ringMs; },
            [this] { take(*m_dock, "points"); });
        step(
            "end of the points",
            [this] { return child<QTableView>("tableView_points")->model()->rowCount() == 4; },
            [this] { m_dock->setFloating(false); });
        step(
            "room for the dock", [this] { return waitedMs() > animationMs; },
            [this, all] {
                if (all) {
                    take(m_window, "points_in_the_window");
                }
                m_dock->hide();
            });
    }

    void describeLostData() {
        step(
            "data that fail to come", [this] { return m_window.isVisible(); },
            [this] { command("kestrel2 sim misbehave lost-data 100"); });
        step(
            "words over the docks",
            [this] { return !m_window.banner().lines().isEmpty() && waitedMs() > staleMs; },
            [this] {
                take(m_window, "no_data");
                command("kestrel2 sim behave");
            });
        step(
            "data again", [this] { return m_window.banner().lines().isEmpty(); }, [] {});
    }

    // A dock of a module by itself, at this size at 96 dpi or as large as it has to be.
    void open(const char* name, QSize size) {
        m_dock = m_window.findChild<QDockWidget*>(QLatin1String(name));
        m_dock->show();
        m_dock->setFloating(true);
        m_dock->resize(QSize(workbench::screenPixels(size.width(), m_window),
                             workbench::screenPixels(size.height(), m_window))
                           .expandedTo(m_dock->minimumSizeHint()));
    }

    template <typename Widget>
    Widget* child(const char* name) const {
        return m_dock->findChild<Widget*>(QLatin1String(name));
    }

    // Millimetres along x and y of the first tool.
    void useTipThatIsWrongBy(double x, double y) {
        double tip[3] = {};
        char reply[200] = {};
        m_window.backend().io.get_parameter_string(reply, "sim tip b01");
        const QStringList numbers = QString::fromLatin1(reply).split(QLatin1Char(' '));
        for (int i = 0; i < 3; ++i) {
            tip[i] = numbers.value(i).toDouble();
        }
        command(qPrintable(QStringLiteral("kestrel2 set sim tip_used b01 %1 %2 %3")
                               .arg(tip[0] + x)
                               .arg(tip[1] + y)
                               .arg(tip[2])));
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

    void describeCalibration(bool all) {
        step(
            "open the calibration", [] { return dialog() == nullptr; },
            [this] {
                command("kestrel2 sim release tool b01");
                openEntry(1);
            });
        step(
            "calibration", [this] { return shown("MtCalibrationDlg") && waitedMs() > animationMs; },
            [this] {
                take(*dialog(), "calibration");
                press("pushButton_help");
            });
        step(
            "help", [] { return shown("MtHelpDlg"); },
            [this, all] {
                if (all) {
                    take(*dialog(), "calibration_help");
                }
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

    void takeMenu(QMenu& menu, const QByteArray& name) {
        menu.popup(m_window.pos());
        take(menu, name);
        menu.hide();
        int number = 0;
        const auto entries = menu.actions();
        for (const QAction* entry : entries) {
            if (entry->menu() != nullptr) {
                takeMenu(*entry->menu(), name + '_' + QByteArray::number(++number));
            }
        }
    }

    const QTemporaryDir m_recordings;
    QUdpSocket m_reader;
    QDockWidget* m_dock = nullptr; ///< that is being shown
    int m_overMs = 0;              ///< when the check ended
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
    qputenv("XDG_DATA_HOME", scratch.path().toLocal8Bit()); // where captured points are kept
    workbench::MainWindow window({scratch.filePath("settings.ini"), false, false});
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
