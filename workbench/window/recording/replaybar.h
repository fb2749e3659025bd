#pragma once

#include <QToolBar>

class QComboBox;
class QLabel;
class QMainWindow;
class QSlider;
class QToolButton;

namespace workbench {

class ReplayControl;

/// What is replayed, in words, and what can be done with it: play and pause, one frame, speed, a
/// slider over its time. There as long as a recording is replayed.
class ReplayBar : public QToolBar {
    Q_OBJECT

public:
    explicit ReplayBar(ReplayControl& control, QWidget* parent = nullptr);

    /// Puts the bar on a line of its own under the window's other tool bars; again after
    /// restoreState(), which may not know of it.
    void placeIn(QMainWindow& window);

    /// The replay decides, whatever a saved state says.
    void setVisible(bool visible) override;

Q_SIGNALS:
    void closeWanted();

private:
    QToolButton* addButton(const char* objectName);
    void setUpSpeeds();
    void setUpSlider();
    void playOrPause();
    void onSlider(int value);
    void showState();
    void showPosition();
    void showSlider();
    void showSpeed();
    void nameButtons();

    ReplayControl& m_control;
    QLabel* m_words;
    QToolButton* m_play;
    QToolButton* m_step;
    QComboBox* m_speed;
    QSlider* m_slider;
    QToolButton* m_close;
};

} // namespace workbench
