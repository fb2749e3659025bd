#pragma once

#include "workbench/outlets/sending/outlethub.h"

#include <QDialog>
#include <QTimer>

#include <chrono>
#include <memory>

namespace Ui {
class SendDialog;
}

namespace workbench {

class OutletControl;

/// Where data go: a list with the state of each outlet, in words and numbers that follow, and a
/// line to try and to add another.
class SendDialog : public QDialog {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds usualTrial{4000};

    /// `trialMaker` makes the channels that only find out whether they work, for `longestTrial` at
    /// most.
    SendDialog(OutletControl& control, OutletHub::Maker trialMaker, QWidget* parent = nullptr,
               std::chrono::milliseconds longestTrial = usualTrial);
    ~SendDialog() override;

private:
    using Clock = std::chrono::steady_clock;

    void addOutlet();
    void removeSelected();
    void tryOutlet();
    void followTrial();
    void endTrial(const QString& text);
    bool readUrl(OutletUrl* url);
    void say(const QString& text);
    void showEntries();
    void showButtons();

    std::unique_ptr<Ui::SendDialog> m_ui;
    OutletControl& m_control;
    const OutletHub::Maker m_trialMaker;
    std::unique_ptr<Outlet> m_trial; // while one runs
    const std::chrono::milliseconds m_longestTrial;
    Clock::time_point m_trialBegin;
    QTimer m_trialTimer;
    QTimer m_showTimer;
};

} // namespace workbench
