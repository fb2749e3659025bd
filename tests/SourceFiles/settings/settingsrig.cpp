#include "tests/SourceFiles/settings/settingsrig.h"

#include <QAbstractButton>
#include <QDoubleSpinBox>
#include <QHeaderView>
#include <QSpinBox>
#include <QTabWidget>
#include <QTimer>
#include <QtTest>

#include <algorithm>
#include <iterator>

namespace {

std::string body(int number) {
    return (number < 10 ? "b0" : "b") + std::to_string(number);
}

} // namespace

SettingsRig::SettingsRig(const VersionInfo& protocol, int patienceMs)
    : versions(VersionInfo(3, 0, 0), protocol, VersionInfo(3, 0, 0), QStringLiteral("KESTREL"))
    , parent(std::make_unique<QWidget>())
    , dialog(new MtSettingsDlg(&host, parent.get(), &versions))
    , m_dog(patienceMs) {
    host.answer("config is_changeable", "yes");
    host.answer("measurementtool available", "yes");
    host.answer("measurementtool max_number_of_tools", "4");
    host.answer("measurementtool number_of_tools", "2");
    host.answer("measurementtool max_number_of_references", "5");
    host.answer("measurementtool number_of_references", "3");
    host.answer("measurementtool number_of_zelwpan_devices", "0");
    host.answer("measurementtool output_6dmt", "no");
    for (int number = 1; number <= 4; ++number) {
        const std::string b = body(number);
        host.answer("measurementtool reference_of_tool " + b, number == 1 ? "b02" : "none");
        host.answer("measurementtool device " + b, "none");
        host.answer("measurementtool tip_radius " + b, number == 1 ? "0.75" : "1.5");
        host.answer("measurementtool measurement_duration " + b, "2.0");
        host.answer("measurementtool measurement_tip_tolerance " + b, "2.5");
        host.answer("measurementtool measurement_start_simulation " + b, "yes");
        host.answer("measurementtool measurement_start_angle " + b, "45.0");
        host.answer("measurementtool measurement_start_lead_time " + b, "0.5");
    }
}

SettingsRig::~SettingsRig() {
    if (!m_dog.strays().isEmpty()) {
        qFatal("a dialog stayed open");
    }
}

void SettingsRig::setDevices(const std::vector<std::string>& replies) {
    host.answer("measurementtool number_of_zelwpan_devices", std::to_string(replies.size()));
    for (std::size_t k = 0; k < replies.size(); ++k) {
        const std::string number = (k < 9 ? "d0" : "d") + std::to_string(k + 1);
        host.answer("measurementtool zelwpan_device " + number, replies[k]);
        const QStringList fields = QString::fromStdString(replies[k]).split(QLatin1Char(' '));
        if (fields.size() >= 2) {
            host.answer("zelwpan device_model_desc " + fields[0].toStdString() + ' ' +
                            fields[1].toStdString(),
                        "\"desc " + fields[1].toStdString() + '"');
        }
    }
}

int SettingsRig::run(const std::function<void()>& whileOpen) {
    const QPointer<MtSettingsDlg> open(dialog);
    QTimer::singleShot(0, dialog, [&] {
        host.clearJournal();
        whileOpen();
        if (!open.isNull() && open->isVisible()) {
            open->reject();
        }
    });
    return dialog->update_and_exec();
}

Lines SettingsRig::showing() {
    host.clearJournal();
    Lines lines;
    QTimer::singleShot(0, dialog, [&] {
        lines = host.operations();
        dialog->reject();
    });
    dialog->update_and_exec();
    return lines;
}

Lines SettingsRig::operations() {
    const Lines lines = host.operations();
    host.clearJournal();
    return lines;
}

Lines SettingsRig::logs() {
    const Lines lines = host.logTexts();
    host.clearJournal();
    return lines;
}

QString SettingsRig::cell(const char* table, int row, int column) const {
    const QTableWidgetItem* const item = child<QTableWidget>(table)->item(row, column);
    return item != nullptr ? item->text() : QStringLiteral("(no item)");
}

QStringList SettingsRig::column(const char* table, int column) const {
    QStringList texts;
    for (int row = 0; row < child<QTableWidget>(table)->rowCount(); ++row) {
        texts << cell(table, row, column);
    }
    return texts;
}

void SettingsRig::setCell(const char* table, int row, int column, const QString& text) const {
    child<QTableWidget>(table)->item(row, column)->setText(text);
}

void SettingsRig::clickCell(const char* table, int row, int column) const {
    auto* const view = child<QTableWidget>(table);
    view->setCurrentCell(row, column);
    Q_EMIT view->cellClicked(row, column);
}

void SettingsRig::setSpin(const char* name, int value) const {
    child<QSpinBox>(name)->setValue(value);
}

void SettingsRig::setDoubleSpin(const char* name, double value) const {
    child<QDoubleSpinBox>(name)->setValue(value);
}

void SettingsRig::click(const char* name) const {
    child<QAbstractButton>(name)->click();
}

bool SettingsRig::isEnabled(const char* name) const {
    return child<QWidget>(name)->isEnabled();
}

void SettingsRig::openTab(int index) const {
    child<QTabWidget>("tabWidget")->setCurrentIndex(index);
}

void SettingsRig::tick() const {
    QVERIFY(QMetaObject::invokeMethod(dialog, "updateTableDevices", Qt::DirectConnection));
}

void SettingsRig::noChild(const char* name) const {
    QStringList names;
    const auto widgets = dialog->findChildren<QWidget*>();
    for (const QWidget* widget : widgets) {
        names << widget->objectName();
    }
    qFatal("no child %s in: %s", name, qPrintable(names.join(QLatin1Char(' '))));
}

QString asText(const Lines& lines) {
    QStringList texts;
    for (const std::string& line : lines) {
        texts << QString::fromStdString(line);
    }
    return texts.join(QLatin1Char('\n'));
}

Lines without(const Lines& lines, const std::string& fragment) {
    Lines rest;
    std::copy_if(
        lines.begin(), lines.end(), std::back_inserter(rest),
        [&fragment](const std::string& line) { return line.find(fragment) == std::string::npos; });
    return rest;
}

Lines forProtocol(const Lines& lines, const VersionInfo& protocol) {
    Lines rest = lines;
    const VersionInfo known(protocol.ma, protocol.mi, std::max(protocol.pa, 0));
    if (known < VersionInfo(1, 14, 0)) {
        rest = without(without(rest, "measurementtool device"), "zelwpan");
    }
    if (known < VersionInfo(1, 13, 0)) {
        rest = without(without(rest, "tip_radius"), "output_6dmt");
    }
    return known < VersionInfo(1, 3, 0) ? Lines() : rest;
}

void addProtocolRows() {
    QTest::addColumn<VersionInfo>("protocol");
    const int versions[][2] = {{1, 2}, {1, 12}, {1, 13}, {1, 14}, {2, 0}};
    for (const auto& version : versions) {
        for (const int patch : {0, -1}) {
            const VersionInfo row(version[0], version[1], patch);
            QTest::newRow(qPrintable(row.toString())) << row;
        }
    }
}
