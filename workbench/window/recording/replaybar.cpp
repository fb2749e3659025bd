#include "workbench/window/recording/replaybar.h"

#include "workbench/controller/simulator/replaycontrol.h"
#include "workbench/text/elidedlabel.h"
#include "workbench/window/look/symbols.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QMainWindow>
#include <QMouseEvent>
#include <QSignalBlocker>
#include <QSlider>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

namespace workbench {

namespace {

using State = ReplayControl::State;

constexpr double speeds[] = {0.1, 0.2, 0.5, 1.0, 2.0, 5.0, 10.0};
constexpr double stepsPerSecond = 1000.0; // of the slider, unless that were too many
constexpr double keySeconds = 1.0;
constexpr double pageSeconds = 10.0;
constexpr int narrowestSlider = 120;

// A click beside the handle leads there, not a page on.
class JumpSlider : public QSlider {
public:
    using QSlider::QSlider;

protected:
    void mousePressEvent(QMouseEvent* event) override {
        QStyleOptionSlider option;
        initStyleOption(&option);
        const QRect handle =
            style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
        if (event->button() == Qt::LeftButton && !handle.contains(event->pos())) {
            setValue(QStyle::sliderValueFromPosition(minimum(), maximum(),
                                                     event->x() - handle.width() / 2,
                                                     width() - handle.width(), option.upsideDown));
        }
        QSlider::mousePressEvent(event);
    }
};

int sliderEnd(double duration) {
    return static_cast<int>(std::clamp(std::round(duration * stepsPerSecond), 1.0,
                                       double{std::numeric_limits<int>::max()}));
}

QString speedText(double speed) {
    return QString::number(speed, 'g', 6) + QStringLiteral(" ×");
}

} // namespace

ReplayBar::ReplayBar(ReplayControl& control, QWidget* parent)
    : QToolBar(parent)
    , m_control(control)
    , m_words(new ElidedLabel(this))
    , m_play(addButton("toolButton_replayPlay"))
    , m_step(addButton("toolButton_replayStep"))
    , m_speed(new QComboBox(this))
    , m_slider(new JumpSlider(Qt::Horizontal, this))
    , m_close(addButton("toolButton_replayClose")) {
    setObjectName(QStringLiteral("replayBar"));
    setWindowTitle(tr("Replay"));
    setAccessibleName(tr("Replay"));
    setMovable(false);
    setFloatable(false);
    setAllowedAreas(Qt::TopToolBarArea);
    setContextMenuPolicy(Qt::PreventContextMenu);
    toggleViewAction()->setVisible(false); // the replay decides
    m_words->setObjectName(QStringLiteral("label_replay"));
    m_words->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    QFont bold = m_words->font();
    bold.setBold(true);
    m_words->setFont(bold);
    setUpSpeeds();
    setUpSlider();
    nameButtons();

    auto* const speedLabel = new QLabel(tr("Spee&d:"), this);
    speedLabel->setBuddy(m_speed);
    auto* const content = new QWidget(this);
    auto* const rows = new QVBoxLayout(content);
    rows->setContentsMargins(6, 2, 6, 2);
    rows->setSpacing(2);
    auto* const row = new QHBoxLayout;
    for (QWidget* const widget :
         {static_cast<QWidget*>(m_play), static_cast<QWidget*>(m_step),
          static_cast<QWidget*>(speedLabel), static_cast<QWidget*>(m_speed)}) {
        row->addWidget(widget);
    }
    row->addWidget(m_slider, 1);
    row->addWidget(m_close);
    rows->addWidget(m_words);
    rows->addLayout(row);
    content->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    addWidget(content);

    connect(m_play, &QToolButton::clicked, this, &ReplayBar::playOrPause);
    connect(m_step, &QToolButton::clicked, &m_control, &ReplayControl::step);
    connect(m_close, &QToolButton::clicked, this, &ReplayBar::closeWanted);
    connect(&m_control, &ReplayControl::changed, this, &ReplayBar::showState);
    connect(&m_control, &ReplayControl::moved, this, &ReplayBar::showPosition);
    showState();
    showPosition();
}

QToolButton* ReplayBar::addButton(const char* objectName) {
    auto* const button = new QToolButton(this);
    button->setObjectName(QLatin1String(objectName));
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setFocusPolicy(Qt::StrongFocus);
    return button;
}

void ReplayBar::setUpSpeeds() {
    m_speed->setObjectName(QStringLiteral("comboBox_replaySpeed"));
    m_speed->setAccessibleName(tr("Speed of the replay"));
    m_speed->setToolTip(tr("How many times as fast as it was recorded"));
    m_speed->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    m_speed->setMinimumContentsLength(
        6); // its own width forgets that frame and arrow grow with the dpi
    for (const double speed : speeds) {
        m_speed->addItem(speedText(speed), speed);
    }
    connect(m_speed, QOverload<int>::of(&QComboBox::activated), this,
            [this](int index) { m_control.setSpeed(m_speed->itemData(index).toDouble()); });
}

void ReplayBar::setUpSlider() {
    m_slider->setObjectName(QStringLiteral("slider_replay"));
    m_slider->setAccessibleName(tr("Position in the recording"));
    m_slider->setToolTip(tr("Where in the recording: left and right arrow go 1 s, page up and page "
                            "down 10 s"));
    m_slider->setMinimumWidth(narrowestSlider);
    connect(m_slider, &QSlider::valueChanged, this, &ReplayBar::onSlider);
}

void ReplayBar::placeIn(QMainWindow& window) {
    window.removeToolBar(this);
    window.addToolBarBreak(Qt::TopToolBarArea);
    window.addToolBar(Qt::TopToolBarArea, this);
    setVisible(true);
}

void ReplayBar::setVisible(bool) {
    QToolBar::setVisible(m_control.isActive());
}

void ReplayBar::playOrPause() {
    if (m_control.state() == State::Playing) {
        m_control.pause();
    } else {
        m_control.play();
    }
}

void ReplayBar::onSlider(int value) {
    m_control.seek(m_control.duration() * value / m_slider->maximum());
}

void ReplayBar::nameButtons() {
    const bool isPlaying = m_control.state() == State::Playing;
    const QString play = isPlaying ? tr("Pause") : tr("Play");
    m_play->setText(play);
    m_play->setShortcut(Qt::Key_F7); // goes with each new text
    m_play->setAccessibleName(play);
    m_play->setToolTip(isPlaying ? tr("Stop at the present frame (F7)")
                                 : tr("Go on; at the end from the beginning (F7)"));
    m_play->setIcon(symbolIcon(isPlaying ? Symbol::Pause : Symbol::Play));
    m_step->setText(tr("One frame"));
    m_step->setShortcut(Qt::Key_F8);
    m_step->setAccessibleName(m_step->text());
    m_step->setToolTip(tr("Show the next frame and stop there (F8)"));
    m_step->setIcon(symbolIcon(Symbol::Step));
    m_close->setText(tr("Close"));
    m_close->setAccessibleName(tr("Close the replay"));
    m_close->setToolTip(tr("End the replay"));
    m_close->setIcon(symbolIcon(Symbol::Close));
}

void ReplayBar::showState() {
    const State state = m_control.state();
    const bool canMove = state == State::Playing || state == State::Paused || state == State::Ended;
    const bool hasTime = m_control.duration() > 0.0;
    m_play->setEnabled(canMove && (hasTime || state != State::Ended));
    m_step->setEnabled(state == State::Playing || state == State::Paused);
    m_speed->setEnabled(canMove);
    m_slider->setEnabled(canMove && hasTime);
    nameButtons();
    if (isHidden() == m_control.isActive()) {
        setVisible(true);
    }
}

void ReplayBar::showPosition() {
    const QString text = m_control.text();
    QString words = text;
    if (m_control.duration() > 0.0) {
        words = tr("%1 – %2 of %3 s")
                    .arg(text, QString::number(m_control.position(), 'f', 1),
                         QString::number(m_control.duration(), 'f', 1));
        if (!m_control.recordedAt().isEmpty()) {
            words = tr("%1, recorded %2").arg(words, m_control.recordedAt());
        }
    }
    m_words->setText(words);
    m_words->setAccessibleName(words);
    m_slider->setAccessibleDescription(words);
    showSlider();
    showSpeed();
}

void ReplayBar::showSlider() {
    const double duration = m_control.duration();
    const QSignalBlocker blocker(m_slider);
    m_slider->setMaximum(sliderEnd(duration));
    const double perSecond = duration > 0.0 ? m_slider->maximum() / duration : 1.0;
    m_slider->setSingleStep(static_cast<int>(std::ceil(keySeconds * perSecond)));
    m_slider->setPageStep(static_cast<int>(std::ceil(pageSeconds * perSecond)));
    if (!m_slider->isSliderDown()) {
        m_slider->setValue(static_cast<int>(std::lround(m_control.position() * perSecond)));
    }
}

// One that was chosen elsewhere, by a command, is in the list as long as it holds.
void ReplayBar::showSpeed() {
    if (m_speed->currentData().toDouble() == m_control.speed()) {
        return;
    }
    const int usual = static_cast<int>(std::size(speeds));
    while (m_speed->count() > usual) {
        m_speed->removeItem(usual);
    }
    int index = m_speed->findData(m_control.speed());
    if (index < 0) {
        m_speed->addItem(speedText(m_control.speed()), m_control.speed());
        index = usual;
    }
    m_speed->setCurrentIndex(index);
}

} // namespace workbench
