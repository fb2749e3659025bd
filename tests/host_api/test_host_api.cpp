#include "host_api/backendversions.h"
#include "host_api/guielement.h"
#include "host_api/iomanager.h"
#include "host_api/metatypes.h"
#include "host_api/moduleinterface.h"
#include "host_api/requester.h"

#include <QtTest>

#include <cstddef>
#include <cstring>

struct BackendVersionsLayout {
    static constexpr std::size_t systemPt = offsetof(BackendVersions, sysPt);
    static constexpr std::size_t protocol = offsetof(BackendVersions, prot);
    static constexpr std::size_t systemCt = offsetof(BackendVersions, sysCt);
    static constexpr std::size_t model = offsetof(BackendVersions, mod);
};

namespace {

// In the Itanium C++ ABI a pointer to a virtual member function holds 1 + its byte offset in the
// virtual table.
template <typename MemberFunction>
int slotOf(MemberFunction function) {
    std::ptrdiff_t words[2];
    static_assert(sizeof(function) == sizeof(words));
    std::memcpy(words, &function, sizeof(words));
    return static_cast<int>((words[0] - 1) / static_cast<std::ptrdiff_t>(sizeof(void*))) + 1;
}

} // namespace

Q_DECLARE_METATYPE(VersionInfo)

class TestHostApi : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void ioManagerSlotsAreInTheOrderOfTheContract() {
        QCOMPARE(slotOf(&IOManager::unused_slot_3), 3);
        QCOMPARE(slotOf(&IOManager::set_channel_option), 4);
        QCOMPARE(slotOf(&IOManager::send_command), 5);
        QCOMPARE(slotOf(&IOManager::unused_slot_6), 6);
        QCOMPARE(slotOf(&IOManager::get_parameter_string), 7);
        QCOMPARE(slotOf(&IOManager::get_parameter_int), 8);
        QCOMPARE(slotOf(&IOManager::get_parameter_double), 9);
        QCOMPARE(slotOf(&IOManager::get_parameter_bool), 10);
        QCOMPARE(slotOf(&IOManager::unused_slot_11), 11);
        QCOMPARE(slotOf(&IOManager::unused_slot_12), 12);
        QCOMPARE(slotOf(&IOManager::set_parameter), 13);
        QCOMPARE(slotOf(&IOManager::register_data_requester), 14);
        QCOMPARE(slotOf(&IOManager::unregister_data_requester), 15);
        QCOMPARE(slotOf(&IOManager::register_measurement_requester), 16);
        QCOMPARE(slotOf(&IOManager::unregister_measurement_requester), 17);
        QCOMPARE(slotOf(&IOManager::write_log), 18);
    }

    void requesterSlotsAreInTheOrderOfTheContract() {
        QCOMPARE(slotOf(&Requester::set_ascii_data), 1);
        QCOMPARE(slotOf(&Requester::set_mea_started), 2);
        QCOMPARE(slotOf(&Requester::set_mea_stopped), 3);
    }

    void moduleInterfaceSlotsFollowTheDestructorPair() {
        QCOMPARE(slotOf(&ModuleInterface::about_to_exit_module), 3);
        QCOMPARE(slotOf(&ModuleInterface::exit_module), 4);
        QCOMPARE(slotOf(&ModuleInterface::get_module_name), 5);
        QCOMPARE(slotOf(&ModuleInterface::get_module_version), 6);
        QCOMPARE(slotOf(&ModuleInterface::get_gui_elements), 7);
        QCOMPARE(slotOf(&ModuleInterface::set_param), 8);
    }

    void recordFieldsAreInTheOrderOfTheContract() {
        QCOMPARE(offsetof(VersionInfo, ma), std::size_t(0));
        QCOMPARE(offsetof(VersionInfo, mi), std::size_t(4));
        QCOMPARE(offsetof(VersionInfo, pa), std::size_t(8));
        QCOMPARE(sizeof(VersionInfo), std::size_t(12));
        QCOMPARE(BackendVersionsLayout::systemPt, std::size_t(0));
        QCOMPARE(BackendVersionsLayout::protocol, std::size_t(12));
        QCOMPARE(BackendVersionsLayout::systemCt, std::size_t(24));
        QCOMPARE(BackendVersionsLayout::model, std::size_t(40));
        QCOMPARE(offsetof(_GuiElement, menu_entry), std::size_t(0));
        QCOMPARE(offsetof(_GuiElement, menu_entry_order_number), std::size_t(8));
        QCOMPARE(offsetof(_GuiElement, menu_name), std::size_t(16));
        QCOMPARE(offsetof(_GuiElement, menu_order_number), std::size_t(24));
        QCOMPARE(offsetof(_GuiElement, content), std::size_t(32));
        QCOMPARE(offsetof(_GuiElement, action_active_during_measurement), std::size_t(40));
    }

    void backendVersionsAreReadAsGiven() {
        const BackendVersions versions(VersionInfo(2, 9, 4), VersionInfo(1, 14, -1),
                                       VersionInfo(3, 0, 1), "KESTREL");
        const BackendVersions copy = versions;
        QCOMPARE(copy.systemPt(), VersionInfo(2, 9, 4));
        QCOMPARE(copy.protocol(), VersionInfo(1, 14, -1));
        QCOMPARE(copy.systemCt(), VersionInfo(3, 0, 1));
        QCOMPARE(copy.hubModel(), QString("KESTREL"));
    }

    void versionsCompareLexicographically_data() {
        QTest::addColumn<VersionInfo>("low");
        QTest::addColumn<VersionInfo>("high");
        QTest::newRow("major") << VersionInfo(1, 99, 99) << VersionInfo(2, 0, 0);
        QTest::newRow("minor") << VersionInfo(1, 2, 99) << VersionInfo(1, 10, 0);
        QTest::newRow("patch") << VersionInfo(1, 2, 3) << VersionInfo(1, 2, 4);
        QTest::newRow("unknown patch") << VersionInfo(1, 3, -1) << VersionInfo(1, 3, 0);
    }
    void versionsCompareLexicographically() {
        QFETCH(VersionInfo, low);
        QFETCH(VersionInfo, high);
        QVERIFY(low < high && low <= high && low != high);
        QVERIFY(high > low && high >= low && !(low == high) && !(low >= high) && !(low > high));
        QVERIFY(low >= low && low <= low && low == low && !(low < low) && !(low > low));
    }

    void versionsAreReadFromText_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("good");
        QTest::addColumn<VersionInfo>("version");
        QTest::newRow("three numbers") << "1.13.2" << true << VersionInfo(1, 13, 2);
        QTest::newRow("unknown patch") << "1.13" << true << VersionInfo(1, 13, -1);
        QTest::newRow("its own spelling") << "1.13.-1" << true << VersionInfo(1, 13, -1);
        QTest::newRow("leading v") << "v2.0.1" << true << VersionInfo(2, 0, 1);
        QTest::newRow("empty") << "" << false << VersionInfo();
        QTest::newRow("one number") << "1" << false << VersionInfo();
        QTest::newRow("four numbers") << "1.2.3.4" << false << VersionInfo();
        QTest::newRow("a word") << "1.x.3" << false << VersionInfo();
        QTest::newRow("negative") << "1.-3.3" << false << VersionInfo();
    }
    void versionsAreReadFromText() {
        QFETCH(QString, text);
        QFETCH(bool, good);
        QFETCH(VersionInfo, version);
        bool ok = !good;
        QCOMPARE(VersionInfo::fromString(text, &ok), version);
        QCOMPARE(ok, good);
        QCOMPARE(VersionInfo::fromString(text), version);
    }

    void versionsAreWrittenAsText() {
        VersionInfo version;
        QCOMPARE(version.toString(), QString("0.0.0"));
        version.setVer(1, 13, -1);
        QCOMPARE(version.toString(), QString("1.13.-1"));
        QCOMPARE(VersionInfo::fromString(version.toString()), version);
    }

    void pointersTravelInsideAVariant() {
        BackendVersions versions;
        QCOMPARE(QVariant::fromValue(&versions).value<BackendVersions*>(), &versions);
        QCOMPARE(QByteArray(QMetaType::typeName(qMetaTypeId<IOManager*>())),
                 QByteArray("IOManager*"));
        QCOMPARE(QByteArray(QMetaType::typeName(qMetaTypeId<BackendVersions*>())),
                 QByteArray("BackendVersions*"));
    }

    void interfaceIdentifierEndsAsTheHostExpects() {
        QVERIFY(QByteArray(qobject_interface_iid<ModuleInterface*>())
                    .endsWith(".kestrel2.gui.Module/0.2.0"));
    }
};

QTEST_MAIN(TestHostApi)
#include "test_host_api.moc"
