#pragma once

#include "workbench/controller/command/controlleraddress.h"

#include <QDialog>
#include <QStringList>

#include <memory>

namespace Ui {
class ConnectDialog;
}

namespace workbench {

/// Asks where the controller is.
class ConnectDialog : public QDialog {
    Q_OBJECT

public:
    ConnectDialog(const ControllerAddress& address, const QStringList& recentHosts,
                  QWidget* parent = nullptr);
    ~ConnectDialog() override;

    ControllerAddress address() const;

private:
    bool hostIsGood() const;
    void check();

    std::unique_ptr<Ui::ConnectDialog> m_ui;
};

} // namespace workbench
