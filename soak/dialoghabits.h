#pragma once

#include <QDeadlineTimer>
#include <QFileDialog>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <QWidget>

#include <random>

/// What a user without a plan does to the modal dialog on top: looks at it for a moment, presses
/// something, and so on until it has gone. Random, from a seed.
class DialogHabits : public QObject {
public:
    DialogHabits();

    void setSeed(quint64 seed) { m_random.seed(seed); }
    void setControllerPort(quint16 port) { m_controllerPort = port; }
    void setRecordingFolder(const QString& folder) { m_recordingFolder = folder; }

    /// While resting every dialog is left as soon as possible.
    void setResting(bool resting) { m_resting = resting; }

private:
    int upTo(int highest); ///< 0 ... highest
    bool chance(int percent) { return upTo(99) < percent; }
    void look();
    void act(QWidget& dialog);
    void leave(QWidget& dialog);
    void playWithSettings(QWidget& dialog);
    void chooseDevice(QWidget& dialog);
    void enterController(QWidget& dialog);
    void chooseRecording(QFileDialog& dialog);
    static void press(QWidget& dialog, const char* button);

    std::mt19937_64 m_random;
    QTimer m_timer;
    QPointer<QWidget> m_current;
    QDeadlineTimer m_due;
    quint16 m_controllerPort = 0;
    QString m_recordingFolder;
    bool m_resting = false;
};
