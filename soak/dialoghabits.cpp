#include "soak/dialoghabits.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableWidget>

namespace {

constexpr int lookMs = 50;
constexpr int shortestPauseMs = 100;
constexpr int longestPauseMs = 900;

} // namespace

DialogHabits::DialogHabits() {
    connect(&m_timer, &QTimer::timeout, this, &DialogHabits::look);
    m_timer.start(lookMs);
}

int DialogHabits::upTo(int highest) {
    return std::uniform_int_distribution<int>(0, std::max(0, highest))(m_random);
}

void DialogHabits::look() {
    QWidget* const dialog = QApplication::activeModalWidget();
    if (dialog == nullptr) {
        m_current = nullptr;
        return;
    }
    const bool isNew = dialog != m_current;
    if (!isNew && !m_due.hasExpired()) {
        return;
    }
    m_current = dialog;
    const int pause = m_resting ? 0 : upTo(longestPauseMs - shortestPauseMs);
    m_due.setRemainingTime(shortestPauseMs + pause);
    if (!isNew) {
        // Afterwards: what is pressed may run a loop of its own, in which this timer must go on.
        QTimer::singleShot(0, this, [this, seen = m_current] {
            if (seen != nullptr && seen == QApplication::activeModalWidget()) {
                act(*seen);
            }
        });
    }
}

void DialogHabits::act(QWidget& dialog) {
    const QString name = dialog.objectName();
    if (name == QLatin1String("ConnectDialog")) {
        enterController(dialog); // also when resting: the way back to the controller
    } else if (m_resting) {
        leave(dialog);
    } else if (name == QLatin1String("MtSettingsDlgClass")) {
        playWithSettings(dialog);
    } else if (name == QLatin1String("MtCalibrationDlgClass")) {
        press(dialog, chance(50)   ? "pushButton_calibrate"
                      : chance(40) ? "pushButton_help"
                                   : "pushButton_exit");
    } else if (name == QLatin1String("CountdownDialog")) {
        press(dialog, chance(80) ? "pushButton_2" : "pushButton");
    } else if (name == QLatin1String("CalibrationProgressDialog")) {
        if (chance(7)) {
            press(dialog, "pb_cancel");
        }
    } else if (name == QLatin1String("MtResultDlgClass")) {
        press(dialog, chance(60) ? "pushButton_accept" : "pushButton_cancel");
    } else if (auto* const files = qobject_cast<QFileDialog*>(&dialog)) {
        chooseRecording(*files);
    } else {
        leave(dialog);
    }
}

void DialogHabits::leave(QWidget& dialog) {
    const auto* const box = qobject_cast<QMessageBox*>(&dialog);
    if (box != nullptr && !box->buttons().isEmpty()) {
        box->buttons().at(upTo(box->buttons().size() - 1))->click();
    } else {
        dialog.close();
    }
}

void DialogHabits::press(QWidget& dialog, const char* button) {
    if (auto* const found = dialog.findChild<QAbstractButton*>(QLatin1String(button))) {
        found->click();
    }
}

void DialogHabits::playWithSettings(QWidget& dialog) {
    const auto turn = [&](const char* spinBox) {
        auto* const box = dialog.findChild<QSpinBox*>(QLatin1String(spinBox));
        box->setValue(box->minimum() + upTo(box->maximum() - box->minimum()));
    };
    const auto leaf = [&](const char* tabs) {
        auto* const widget = dialog.findChild<QTabWidget*>(QLatin1String(tabs));
        widget->setCurrentIndex(upTo(widget->count() - 1));
    };
    switch (upTo(9)) {
    case 0:
    case 1:
        return turn("spinBox_noOfMeaBodies");
    case 2:
        return turn("spinBox_noOfRefBodies");
    case 3:
        return leaf("tabWidget");
    case 4:
        return leaf("tabWidget_mt");
    case 5:
        return chooseDevice(dialog);
    case 6:
        return press(dialog, "pushButton_deselect");
    case 7:
        return turn("spinBox_startAngle");
    case 8:
        return press(dialog, "pushButton_ok");
    default:
        return press(dialog, "pushButton_cancel");
    }
}

void DialogHabits::chooseDevice(QWidget& dialog) {
    auto* const devices = dialog.findChild<QTableWidget*>(QLatin1String("tableWidget_availableMt"));
    if (devices->rowCount() > 0) {
        devices->selectRow(upTo(devices->rowCount() - 1));
    }
    press(dialog, "pushButton_select");
}

void DialogHabits::enterController(QWidget& dialog) {
    dialog.findChild<QComboBox*>(QLatin1String("comboBox_host"))
        ->setEditText(QStringLiteral("127.0.0.1"));
    dialog.findChild<QSpinBox*>(QLatin1String("spinBox_port"))->setValue(m_controllerPort);
    qobject_cast<QDialog*>(&dialog)->accept();
}

// One name for all recordings; the earlier one goes, so that nobody asks about it. What is opened
// is the last one, whatever became of it.
void DialogHabits::chooseRecording(QFileDialog& dialog) {
    const QString file = QDir(m_recordingFolder).filePath(QStringLiteral("soak.kestrel"));
    const bool isThere = QFile::exists(file);
    if (dialog.acceptMode() == QFileDialog::AcceptSave) {
        QFile::remove(file);
    } else if (!isThere) {
        return dialog.reject();
    }
    // (A dialog in which somebody is typing selects no file.)
    dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(file);
    static_cast<QDialog&>(dialog).accept();
}
