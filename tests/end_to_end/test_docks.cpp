#include "tests/end_to_end/workplace.h"
#include "tests/support/docksinview.h"

#include <QDockWidget>
#include <QtTest>

#include <algorithm>

using namespace processes;

namespace {

constexpr int patienceMs = 20000 * slowness;

} // namespace

class TestDocks : public QObject {
    Q_OBJECT

private:
    Workplace m_place;

    bool isInView(const char* name) const {
        const auto* const dock = m_place.window->findChild<QDockWidget*>(QLatin1String(name));
        return dock != nullptr && !dock->visibleRegion().isEmpty();
    }

    // The one that was docked last is in front.
    void raiseTabs() {
        m_place.window->findChild<QDockWidget*>(QStringLiteral("LogDock"))->raise();
    }

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(m_place.simulate({QStringLiteral("--rate"), QStringLiteral("60")}));
        QVERIFY(m_place.open({true, true}));
        QMainWindow& window = *m_place.window;
        window.resize(2600, 1500); // more than its docks need: they have sizes to be kept
        for (const char* name : {"ReadoutDock", "PlotDock"}) {
            auto* const dock = window.findChild<QDockWidget*>(QLatin1String(name));
            if (dock != nullptr) { // the plot needs a library
                dock->show();
            }
        }
        QTRY_VERIFY_WITH_TIMEOUT(isInView("ReadoutDock"), patienceMs);
        raiseTabs();
        auto* const display = window.findChild<QDockWidget*>(QStringLiteral("MtDataDisplayDock"));
        auto* const readout = window.findChild<QDockWidget*>(QStringLiteral("ReadoutDock"));
        window.resizeDocks({display}, {500}, Qt::Horizontal);
        window.resizeDocks({readout}, {600}, Qt::Horizontal);
        window.resizeDocks({display}, {700}, Qt::Vertical);
        QTRY_VERIFY_WITH_TIMEOUT(display->width() > 400 && readout->width() > 400, patienceMs);
    }
    void cleanupTestCase() { m_place.close(); }

    void theyKeepTheirSizesWhenFloatedAndDockedAgain_data() {
        QTest::addColumn<QStringList>("floated");
        QTest::addColumn<QStringList>("docked");
        QStringList names;
        const auto docks = dockedIn(*m_place.window);
        for (const QDockWidget* const dock : docks) {
            names << dock->objectName();
        }
        QStringList turned = names;
        std::reverse(turned.begin(), turned.end());
        QTest::newRow("in the order of floating") << names << names;
        QTest::newRow("in the other order") << names << turned;
        QTest::newRow("backwards, in the order of floating") << turned << turned;
        for (int first = 1; first < names.size(); ++first) {
            const QStringList rotated = names.mid(first) + names.mid(0, first);
            QTest::addRow("from the one numbered %d on", first) << names << rotated;
            QTest::addRow("floated from the one numbered %d on", first) << rotated << turned;
        }
    }
    void theyKeepTheirSizesWhenFloatedAndDockedAgain() {
        QFETCH(QStringList, floated);
        QFETCH(QStringList, docked);
        QMainWindow& window = *m_place.window;
        const QString before = sizesInView(window);
        for (const QString& name : floated) {
            auto* const dock = window.findChild<QDockWidget*>(name);
            dock->setFloating(true);
            QTRY_VERIFY_WITH_TIMEOUT(dock->isWindow() && dock->isVisible(), patienceMs);
        }
        for (const QString& name : docked) {
            auto* const dock = window.findChild<QDockWidget*>(name);
            dock->setFloating(false);
            QTRY_VERIFY_WITH_TIMEOUT(!dock->visibleRegion().isEmpty(), patienceMs);
        }
        raiseTabs();
        QTRY_COMPARE_WITH_TIMEOUT(sizesInView(window), before, patienceMs);
    }
};

QTEST_MAIN(TestDocks)
#include "test_docks.moc"
