#pragma once

#include "tests/support/scriptedhost.h"

#include <QObject>
#include <QString>

#include <functional>

/// Plays a flow again and again, each time with another of its controller operations going wrong in
/// another way.
///
/// A flow is first played twice undisturbed: its journal must be the same both times. Then each of
/// its operations goes wrong, in each way, once and from there on; after each such run the flow is
/// played undisturbed once more, and everything must be as it was: the same journal, the same
/// number of objects under the widgets.
namespace faultsweep {

/// What goes wrong in a run.
struct Case {
    int operation = -1; ///< negative: nothing
    ScriptedHost::Fault fault = ScriptedHost::Fault::Error;
    bool stays = false; ///< and everything that follows

    bool isSound() const { return operation < 0; }
    bool isFaulty(int index) const;

    /// The operations of the host count from here on. The flow clears the fault when it is over.
    void inject(ScriptedHost& host) const;
};

/// What a run has led to.
struct Outcome {
    std::vector<std::string> journal; ///< from the injection on, log lines included
    QString objection; ///< why the flow did not end in its defined state; empty when it did
};

using Play = std::function<Outcome(const Case&)>;

/// A flow that takes longer than this has hung; the program is aborted with the name of the case.
constexpr int patienceSeconds = 30;
/// A flow that asks more than this follows a nonsense count.
constexpr int mostOperations = 5000;
/// A sweep that needs more memory than this has allocated for a nonsense count.
constexpr long mostMemoryKilobytes = 1'000'000;

/// Keeps windows from being painted while it lives: that is most of the time of a flow with many
/// dialogs.
class NoPainting : public QObject {
public:
    NoPainting();
    bool eventFilter(QObject* watched, QEvent* event) override;
};

class Sweep {
public:
    /// Sweeps a flow and prints its counts. Returns the first objection with the case that led to
    /// it; empty when there is none.
    QString run(const QString& flow, const Play& play);

    /// Prints the counts of all flows. False when there were none.
    bool report(const QString& title) const;

private:
    int m_flows = 0;
    int m_operations = 0;
    int m_faults = 0;
    int m_runs = 0;
};

} // namespace faultsweep
