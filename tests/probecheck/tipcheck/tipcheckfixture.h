#pragma once

#include "host_api/metatypes.h"
#include "probecheck/probecheckmodule.h"
#include "probecheck/tipcheck/tipcheckpanel.h"
#include "tests/probecheck/probefixture.h"
#include "tests/probecheck/tipcheck/pivoting.h"

#include <QDockWidget>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <QtTest>

/// A host with a window, the module, and its tip check in sight.
class TipCheckFixture {
public:
    static constexpr int patienceMs = 5000;
    static constexpr double frameStep = 1.0 / 60.0;

    TipCheckFixture() {
        module.set_param("CommandManager",
                         QVariant::fromValue(static_cast<IOManager*>(&controller.host)));
        module.set_param("ModuleParent", QVariant::fromValue(static_cast<QWidget*>(&window)));
        module.set_param("BackendVersions", QVariant::fromValue(&controller.versions));
        dock = qobject_cast<QDockWidget*>(module.get_gui_elements().constFirst()->content);
        panel = dock->findChild<TipCheckPanel*>();
        window.addDockWidget(Qt::RightDockWidgetArea, dock);
        window.show();
        dock->show();
    }
    ~TipCheckFixture() { module.exit_module(); }

    template <typename Widget>
    Widget* find(const char* name) {
        return panel->findChild<Widget*>(QString(name));
    }
    QPushButton* start() { return find<QPushButton>("pushButton_start"); }
    QPushButton* stop() { return find<QPushButton>("pushButton_stop"); }
    QString words() { return find<QLabel>("label_words")->text(); }
    QString table() { return find<QLabel>("label_result")->text(); }

    bool measure() {
        controller.host.startMeasurement();
        return QTest::qWaitFor([this] { return start()->isEnabled(); }, patienceMs);
    }

    // Frames of the tool, as fast as they go; the controller's clock tells the times.
    void deliver(Pivoting& tool, double seconds, unsigned buttons = 0) {
        const double end = time + seconds;
        for (; time < end; time += frameStep) {
            const ProbeSample sample = tool.at(time);
            controller.deliverFrame(++frame, 100.0 + time,
                                    {{sample.position, sample.rotation, 1.0, buttons}, {}});
        }
        controller.host.deliver(probelines::frame(++frame));
    }
    void deliverHidden() {
        controller.deliverFrame(++frame, 100.0 + time, {{{}, {}, -1.0, 0}, {}});
        controller.host.deliver(probelines::frame(++frame));
        time += frameStep;
    }
    bool wordsBecome(const QString& part) {
        return QTest::qWaitFor([&] { return words().contains(part); }, patienceMs);
    }
    bool isRunning() { return stop()->isEnabled(); }

    QJsonObject result() {
        const std::string begin = "log result ProbeCheckModule 1 ";
        QJsonObject object;
        for (const std::string& line : controller.host.journal()) {
            if (line.compare(0, begin.size(), begin) == 0) {
                object =
                    QJsonDocument::fromJson(QByteArray::fromStdString(line.substr(begin.size())))
                        .object();
            }
        }
        return object;
    }

    ProbeController controller;
    QMainWindow window;
    ProbeCheckModule module;
    QPointer<QDockWidget> dock;
    QPointer<TipCheckPanel> panel;
    double time = 0.0;
    unsigned frame = 0;
};
