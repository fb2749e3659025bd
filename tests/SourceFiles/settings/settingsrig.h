#pragma once

#include "SourceFiles/mtsettingsdlg.h"
#include "host_api/backendversions.h"
#include "tests/support/modalwatchdog.h"
#include "tests/support/scriptedhost.h"

#include <QMetaType>
#include <QTableWidget>
#include <QWidget>

#include <functional>
#include <memory>

/// A settings dialog on a scripted controller. As scripted it has two of four tools (M1 on MR2,
/// M2 on none), three of five references, tip radii 0.75 and 1.5, and no radio devices.
class SettingsRig {
public:
    /// A dialog that stays open longer than `patienceMs` is closed and ends the test.
    explicit SettingsRig(const VersionInfo& protocol = VersionInfo(1, 14, 0),
                         int patienceMs = 20000);
    ~SettingsRig();
    SettingsRig(const SettingsRig&) = delete;
    SettingsRig& operator=(const SettingsRig&) = delete;

    /// Scripts radio devices into the controller's list ("V M 00001" and so on) with descriptions
    /// "desc <model>".
    void setDevices(const std::vector<std::string>& replies);

    /// Shows the dialog, runs `whileOpen` inside its loop with an empty journal, then closes the
    /// dialog with Cancel if it is still open. Returns the result of update_and_exec.
    int run(const std::function<void()>& whileOpen = [] {});

    /// The controller operations of a showing, which is cancelled at once.
    std::vector<std::string> showing();

    /// Operations or log texts since the last call.
    std::vector<std::string> operations();
    std::vector<std::string> logs();

    /// A child by object name; fails the test with the names that there are.
    template <typename T>
    T* child(const char* name) const {
        T* const found = dialog->findChild<T*>(QLatin1String(name));
        if (found == nullptr) {
            noChild(name);
        }
        return found;
    }

    QString cell(const char* table, int row, int column) const;
    QStringList column(const char* table, int column) const;
    void setCell(const char* table, int row, int column, const QString& text) const;
    void clickCell(const char* table, int row, int column = 0) const;
    void setSpin(const char* name, int value) const;
    void setDoubleSpin(const char* name, double value) const;
    void click(const char* name) const;
    bool isEnabled(const char* name) const;
    void openTab(int index) const;
    void tick() const;

    ScriptedHost host;
    BackendVersions versions;
    std::unique_ptr<QWidget> parent;
    MtSettingsDlg* dialog; ///< owned by `parent`

private:
    void noChild(const char* name) const;

    ModalWatchdog m_dog;
};

using Lines = std::vector<std::string>;

/// Fails with the first difference of two lists of lines.
#define COMPARE_LINES(actual, ...) QCOMPARE(asText(actual), asText(__VA_ARGS__))

QString asText(const Lines& lines);

/// The lines without those that contain `fragment`.
Lines without(const Lines& lines, const std::string& fragment);

/// What a controller of this protocol is asked, out of what one of 1.14 is asked: devices only from
/// 1.14 on, tip radius and output format from 1.13 on, nothing at all below 1.3.
Lines forProtocol(const Lines& lines, const VersionInfo& protocol);

/// The column "protocol" with the protocols that the dialog tells apart, each also with an unknown
/// patch.
void addProtocolRows();

Q_DECLARE_METATYPE(VersionInfo)
