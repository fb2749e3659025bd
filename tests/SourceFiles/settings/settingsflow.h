#pragma once

#include "tests/SourceFiles/settings/settingsrig.h"
#include "tests/support/faultsweep.h"

#include <functional>
#include <memory>

/// Something that a user does with the settings dialog.
struct SettingsFlow {
    /// What the dialog is doing: the same failure has other words and another end elsewhere.
    enum class Phase { Showing, Edit, Cancel, Ok };
    using Act = std::function<void(SettingsRig&)>;

    Phase phase = Phase::Showing;
    Act action;        ///< what is swept, inside the dialog's loop; the showing itself has none
    Act prepare;       ///< what the user does before it
    int protocol = 14; ///< 1.x
    bool locked = false;
    bool available = true;
    bool tradesBodies = false; ///< more references lower the maximum of tools
    bool neverFilled = false;  ///< the dialog has no earlier showing to fall back to
    Lines always;              ///< the operations, whatever goes wrong; empty: they may differ
};

/// Plays a flow and closes the dialog. The dialog is made anew for each kind of fault or, for a
/// flow that says so, for each fault.
class SettingsPlayer {
public:
    explicit SettingsPlayer(SettingsFlow flow);

    faultsweep::Outcome play(const faultsweep::Case& fault);

    /// The controller of all flows.
    static void script(SettingsRig& rig, const SettingsFlow& flow);

private:
    QString objectionTo(const Lines& journal, const faultsweep::Case& fault);
    QString objectionToShowing(const faultsweep::Case& fault) const;
    QString objectionToOperations(const Lines& operations, const faultsweep::Case& fault);

    SettingsFlow m_flow;
    std::unique_ptr<SettingsRig> m_rig;
    Lines m_written; ///< when nothing goes wrong
};
