#include "workbench/window/dialogs/connectdialog.h"

#include "ui_connectdialog.h"
#include "workbench/window/look/dialogroom.h"

#include <QLineEdit>
#include <QPushButton>

namespace workbench {

ConnectDialog::ConnectDialog(const ControllerAddress& address, const QStringList& recentHosts,
                             QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::ConnectDialog>()) {
    m_ui->setupUi(this);
    QSizePolicy policy = m_ui->label_problem->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_ui->label_problem->setSizePolicy(policy);
    m_ui->comboBox_host->addItems(recentHosts);
    m_ui->comboBox_host->setEditText(address.host);
    m_ui->comboBox_host->lineEdit()->selectAll();
    m_ui->spinBox_port->setValue(address.port);
    m_ui->spinBox_dataPort->setValue(address.dataPort);
    m_ui->buttonBox->button(QDialogButtonBox::Ok)->setText(tr("Connect"));
    m_ui->buttonBox->button(QDialogButtonBox::Cancel)->setText(tr("Cancel"));
    connect(m_ui->comboBox_host, &QComboBox::editTextChanged, this, &ConnectDialog::check);
    // The completion of a name takes the key for itself.
    connect(m_ui->comboBox_host->lineEdit(), &QLineEdit::returnPressed,
            m_ui->buttonBox->button(QDialogButtonBox::Ok), &QPushButton::click);
    check();
    setFixedHeight(sizeHint().height());
    new DialogRoom(*this);
}

ConnectDialog::~ConnectDialog() = default;

ControllerAddress ConnectDialog::address() const {
    ControllerAddress address;
    const QString text = m_ui->comboBox_host->currentText().trimmed();
    if (text.count(QLatin1Char(':')) > 1 && !text.startsWith(QLatin1Char('['))) {
        address.host = text;
    } else {
        address.parse(text);
    }
    // "host:port" in the name field means what it says.
    if (!text.contains(QLatin1Char(':')) || text == address.host) {
        address.port = static_cast<quint16>(m_ui->spinBox_port->value());
    }
    address.dataPort = static_cast<quint16>(m_ui->spinBox_dataPort->value());
    return address;
}

bool ConnectDialog::hostIsGood() const {
    const QString text = m_ui->comboBox_host->currentText().trimmed();
    ControllerAddress ignored;
    return ignored.parse(text) || (text.count(QLatin1Char(':')) > 1 &&
                                   ignored.parse(QLatin1Char('[') + text + QLatin1Char(']')));
}

void ConnectDialog::check() {
    const bool good = hostIsGood();
    m_ui->buttonBox->button(QDialogButtonBox::Ok)->setEnabled(good);
    m_ui->label_problem->setVisible(!good);
}

} // namespace workbench
