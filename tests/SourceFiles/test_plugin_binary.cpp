#include "tests/support/loadedplugin.h"

#include <QAction>
#include <QDockWidget>
#include <QFile>
#include <QJsonObject>
#include <QTableWidget>
#include <QTimer>
#include <QtTest>

namespace {

constexpr int patienceMs = 5000;
const QString pluginFile = QStringLiteral(KESTREL_PLUGIN_FILE);

bool isMapped() {
    return LoadedPlugin::isMapped(QStringLiteral("libMeasurementToolModule.so"));
}

struct Loaded : LoadedPlugin {
    Loaded()
        : LoadedPlugin(pluginFile) {
        host.answer("measurementtool available", "yes");
        host.answer("measurementtool output_6dmt", "no");
        host.answer("body calibrated measurementtool b01", "yes");
        host.answer("measurementtool tip_calibrated b01", "yes");
    }
};

} // namespace

class TestPluginBinary : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void metadataIsReadBeforeLoading() {
        const QPluginLoader loader(pluginFile);
        const QJsonObject data = loader.metaData();
        QVERIFY(!isMapped());
        QVERIFY(data.value("IID").toString().endsWith(".MeasurementToolModule"));
        QCOMPARE(data.value("className").toString(), QString("MeasurementToolModule"));
        QCOMPARE(data.value("version").toInt() >> 8, QT_VERSION >> 8);
        QVERIFY(data.value("debug").isBool());
        QVERIFY(data.value("MetaData").toObject().isEmpty());
    }

    void theInstanceIsOneModule() {
        Loaded f;
        QVERIFY2(f.module != nullptr, qPrintable(f.loader.errorString()));
        QCOMPARE(f.loader.instance(), f.loader.instance());
        QCOMPARE(f.module->get_module_name(), QString("GUI Measurement Tool"));
        QCOMPARE(f.module->get_module_version(), QString("v1.3.12"));
        QVERIFY(f.loader.instance()->qt_metacast("MeasurementToolModule") != nullptr);
    }

    void aMeasurementIsShown() {
        Loaded f;
        f.setUp(true);
        const QList<_GuiElement*> elements = f.module->get_gui_elements();
        QCOMPARE(elements.size(), 1);
        auto* const dock = qobject_cast<QDockWidget*>(elements.first()->content);
        QVERIFY(dock != nullptr);
        f.window.addDockWidget(Qt::BottomDockWidgetArea, dock);
        f.window.show();
        f.host.startMeasurement();
        const std::string line =
            "6dmt2 1 1 [0 1.0 1 0.5][1.5 -2.25 0.125][1 0 0 0 1 0 0 0 1][1][0 0 0 0 0 0]";
        QTRY_COMPARE_WITH_TIMEOUT(f.host.deliver(line), 0, patienceMs);
        auto* const table = dock->findChild<QTableWidget*>("tableWidget6dmt");
        QVERIFY(table != nullptr);
        QTRY_COMPARE_WITH_TIMEOUT(table->rowCount(), 1, patienceMs);
        QTRY_COMPARE_WITH_TIMEOUT(table->item(0, 12)->text(), QString("1.50"), patienceMs);
        QCOMPARE(table->item(0, 13)->text(), QString("-2.25"));
        QCOMPARE(table->item(0, 14)->text(), QString("0.12"));
        QCOMPARE(table->item(0, 0)->background(), QBrush(Qt::green));
        QCOMPARE(table->item(0, 4)->background(), QBrush(Qt::blue));
    }

    void slotsAreCalledByTheirIndex() {
        Loaded f;
        f.setUp(true);
        auto* const dock =
            qobject_cast<QDockWidget*>(f.module->get_gui_elements().constFirst()->content);
        QWidget* const display = dock->widget();
        const int first = display->metaObject()->methodOffset();
        QCOMPARE(display->metaObject()->className(), "MtDataDisplay");
        QVERIFY(display->metaObject()->method(first + 3).invoke(display));
        Requester* const requester = f.host.measurementRequesters().front();
        QCOMPARE(requester->set_ascii_data("6dmt", "6dmt 0"), 0);
        QCOMPARE(requester->set_ascii_data("6dmtr", "6dmtr 1 0"), 0);
        QVERIFY(display->metaObject()->method(first + 2).invoke(display));
        QCOMPARE(display->findChild<QTableWidget*>("tableWidget6dmtref")->rowCount(), 1);
    }

    void allEntriesAreOffered() {
        Loaded f;
        f.setUp(false);
        QCOMPARE(f.module->get_gui_elements().size(), 3);
    }

    void unloadingWithAStartPendingLeavesNothingBehind() {
        constexpr int longAfterTheStartMs = 50;
        Loaded f;
        f.setUp(true);
        f.module->get_gui_elements();
        f.host.startMeasurement();
        QVERIFY(f.unload());
        QVERIFY(!isMapped());
        QTimer later;
        later.setSingleShot(true);
        later.start(longAfterTheStartMs);
        QTRY_VERIFY_WITH_TIMEOUT(!later.isActive(), patienceMs);
    }

    void unloadingUnmapsAndLoadingAgainWorks() {
        for (int round = 0; round < 3; ++round) {
            Loaded f;
            QVERIFY2(f.module != nullptr, qPrintable(f.loader.errorString()));
            QVERIFY(isMapped());
            QVERIFY(QFile::exists(":/lock.png"));
            f.setUp(false);
            auto* const dock =
                qobject_cast<QDockWidget*>(f.module->get_gui_elements().constLast()->content);
            f.window.addDockWidget(Qt::BottomDockWidgetArea, dock);
            f.window.show();
            f.host.startMeasurement();
            QTRY_COMPARE_WITH_TIMEOUT(f.host.deliver("6dmt2 0 0"), 0, patienceMs);
            QCoreApplication::processEvents();
            QVERIFY(f.unload());
            QVERIFY(f.host.measurementRequesters().empty());
            QVERIFY(f.host.requesters("6dmt2").empty());
            QVERIFY(!isMapped());
            QVERIFY(!QFile::exists(":/lock.png"));
            f.window.repaint();
            QCoreApplication::processEvents();
        }
    }
};

QTEST_MAIN(TestPluginBinary)
#include "test_plugin_binary.moc"
