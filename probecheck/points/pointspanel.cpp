#include "probecheck/points/pointspanel.h"

#include "general/host/hostlink.h"
#include "general/widgets/pagescroll.h"
#include "host_api/iomanager.h"
#include "probecheck/data/resultline.h"
#include "probecheck/points/files/pointjson.h"

#include <QDateTime>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QStyle>

#include <algorithm>
#include <cmath>
#include <utility>

using points::Capture;
using points::Notice;

namespace {

constexpr double defaultDuration = 1.0;  // s
constexpr double defaultTolerance = 1.5; // mm
constexpr int mostButtons = 16;
constexpr int fewRows = 4; // of the list, to begin with

// As low as its texts can be in a width: a scroll area would give it all that it wishes for, and
// scroll where nothing needs it.
class LowPage : public QWidget {
public:
    int heightForWidth(int width) const override { return layout()->minimumHeightForWidth(width); }
};

QFont largeFont(QFont font) {
    constexpr double larger = 1.8;
    if (font.pointSizeF() > 0.0) {
        font.setPointSizeF(font.pointSizeF() * larger);
    } else {
        font.setPixelSize(static_cast<int>(font.pixelSize() * larger));
    }
    return font;
}

void setTextIfNew(QLabel* label, const QString& text) {
    if (label->text() != text) {
        label->setText(text);
    }
}

// Rounded up: the width in whole pixels may be one too few.
int widthOf(const QString& text, const QLabel& label) {
    const QFontMetricsF metrics(label.font(), &label);
    return static_cast<int>(std::ceil(metrics.horizontalAdvance(text)));
}

int usualWidth(const QLabel& label) {
    return widthOf(QStringLiteral("-00000.00"), label);
}

// A label of a fixed size: another text in it is painted, and the window is not laid out anew for
// it twenty times a second.
void showFigure(QLabel* label, const QString& text) {
    label->setFixedWidth(std::max(usualWidth(*label), widthOf(text, *label)));
    setTextIfNew(label, text);
}

} // namespace

PointsPanel::PointsPanel(ProbeData* source, QWidget* parent, const QString& folder,
                         points::SessionFile::Sync sync)
    : QWidget(parent)
    , m_data(source)
    , m_host(source->host())
    , m_sounds(std::make_unique<points::Loudspeaker>())
    , m_capture([this](Notice notice) { hear(notice); })
    , m_session(folder, std::move(sync))
    , m_isReplay(source->isReplay()) {
    setUpPage();
    ui.frame_left->hide();
    ui.label_disk->hide();
    setUpCapture();
    setUpList();
    setUpSession();
    source->serve(this);
    source->buttons().join(this);
    connect(&source->buttons(), &ButtonClaim::moved, this, &PointsPanel::followSight);
    connect(ui.comboBox_button, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &PointsPanel::claimButton);
    claimButton();
    refuseReplay();
    connect(source, &ProbeData::farewell, this, [this](const QObject* user) {
        if (user == nullptr || user == this) {
            sayFarewell();
        }
    });
    connect(source, &ProbeData::toolsRead, this, &PointsPanel::followTools);
    connect(source, &ProbeData::receivingBegan, this, &PointsPanel::followData);
    connect(source, &ProbeData::receivingEnded, this, &PointsPanel::followData);
    connect(source, &ProbeData::samplesArrived, this, &PointsPanel::follow);
    followTools();
    followData();
}

PointsPanel::~PointsPanel() {
    m_list.undoStack().disconnect(this); // it tells of its own end
    if (!m_data.isNull()) {
        m_data->buttons().disconnect(this);
        m_data->forget(this);
    }
    if (m_exportedChanges == m_changes || m_list.rowCount() == 0) {
        m_session.removeAtEnd();
    }
}

// As wide as what stands in it needs.
void PointsPanel::setUpPage() {
    setObjectName(QLatin1String("PointsPanel"));
    auto* const page = new LowPage;
    page->setObjectName(QLatin1String("page"));
    ui.setupUi(page);
    m_scrolled = scrollUpAndDown(page, this);
    page->installEventFilter(this);
    const auto children = page->findChildren<QWidget*>();
    for (QWidget* const child : children) {
        if (child->focusPolicy() == Qt::WheelFocus) {
            child->setFocusPolicy(Qt::StrongFocus);
            child->installEventFilter(this);
        }
    }
    fitWidth();
}

void PointsPanel::fitWidth() {
    const int scrollBar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, m_scrolled);
    m_scrolled->setMinimumWidth(m_scrolled->widget()->minimumSizeHint().width() + scrollBar);
}

QSize PointsPanel::sizeHint() const {
    const QWidget* const page = m_scrolled->widget();
    const int width = std::max(page->sizeHint().width(), minimumSizeHint().width());
    const int rows = fewRows * ui.tableView_points->verticalHeader()->defaultSectionSize();
    return {width, page->heightForWidth(width) + rows};
}

void PointsPanel::setUpCapture() {
    for (QLabel* const label : {ui.label_x, ui.label_y, ui.label_z}) {
        label->setFont(largeFont(font()));
        label->setFixedSize(usualWidth(*label), label->fontMetrics().height());
    }
    ui.comboBox_button->addItem(tr("any"), ButtonClaim::anyButton);
    for (int button = 0; button < mostButtons; ++button) {
        ui.comboBox_button->addItem(QString::number(button + 1), button);
    }
    ui.comboBox_button->addItem(tr("none"), ButtonClaim::noButton);
    m_diskPatience.setSingleShot(true);
    m_diskPatience.setInterval(diskPatienceMs);
    connect(&m_diskPatience, &QTimer::timeout, this, [this] {
        say(tr("The disk does not answer: the last point is in the list only."));
        answerDisk(false);
    });
    connect(ui.pushButton_capture, &QPushButton::clicked, this, &PointsPanel::captureOrCancel);
    connect(ui.comboBox_tool, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &PointsPanel::chooseTool);
    connect(
        ui.comboBox_mode, qOverload<int>(&QComboBox::currentIndexChanged), this, [this](int index) {
            m_capture.setMode(index == 0 ? Capture::Mode::Trigger : Capture::Mode::HoldingStill);
            showNow();
        });
    connect(ui.doubleSpinBox_duration, qOverload<double>(&QDoubleSpinBox::valueChanged), this,
            &PointsPanel::chooseHold);
    connect(ui.doubleSpinBox_tolerance, qOverload<double>(&QDoubleSpinBox::valueChanged), this,
            &PointsPanel::chooseHold);
}

void PointsPanel::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (!m_data.isNull()) {
        m_data->setWanted(this, true);
    }
    if (!m_hasLooked) {
        m_hasLooked = true;
        m_session.lookForLeft();
    }
}

void PointsPanel::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    if (!m_data.isNull()) {
        m_data->setWanted(this, false);
    }
}

void PointsPanel::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier) {
        if (!event->isAutoRepeat()) {
            captureOrCancel();
        }
    } else if (event->key() == Qt::Key_Escape && m_capture.state() == Capture::State::Holding) {
        m_capture.cancel();
    } else {
        QWidget::keyPressEvent(event);
    }
}

// The table would take the space bar for selecting, and a box that the wheel comes by on its way
// down the page would take another value.
bool PointsPanel::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress && watched == ui.tableView_points) {
        auto* const press = static_cast<QKeyEvent*>(event);
        if (press->key() == Qt::Key_Space && press->modifiers() == Qt::NoModifier) {
            keyPressEvent(press);
            return true;
        }
    } else if (event->type() == QEvent::Wheel) {
        const auto* const child = qobject_cast<const QWidget*>(watched);
        if (child != nullptr && child->focusPolicy() == Qt::StrongFocus && !child->hasFocus()) {
            event->ignore();
            return true;
        }
    } else if (event->type() == QEvent::LayoutRequest && watched == m_scrolled->widget()) {
        fitWidth();
    }
    return QWidget::eventFilter(watched, event);
}

void PointsPanel::followData() {
    m_buttons.clear();
    const bool isReceiving = !m_data.isNull() && m_data->isReceiving();
    if (isReceiving && m_data->buttons().isInSight(this)) {
        m_capture.start();
    } else {
        m_capture.stop(isReceiving ? Notice::OutOfSight : Notice::MeasurementEnded);
    }
    showNow();
}

// The data go on while another page wants them.
void PointsPanel::followSight() {
    showButtons();
    const bool isOff = m_capture.state() == Capture::State::Off;
    if (!m_data.isNull() && m_data->isReceiving() && m_data->buttons().isInSight(this) == isOff) {
        followData();
    }
}

void PointsPanel::followTools() {
    const QVector<ProbeTool> tools = m_data.isNull() ? QVector<ProbeTool>() : m_data->tools();
    QVector<bool> calibrated;
    m_asked.clear();
    m_referencesUnknown.clear();
    {
        const QSignalBlocker blocker(ui.comboBox_tool);
        ui.comboBox_tool->clear();
        for (const ProbeTool& tool : tools) {
            const int number = ui.comboBox_tool->count();
            ui.comboBox_tool->addItem(
                tool.calibrated ? points::toolLabel(number)
                                : tr("%1 (not calibrated)").arg(points::toolLabel(number)));
            calibrated.append(tool.calibrated);
        }
        const int chosen = m_capture.tool() < tools.size() ? m_capture.tool() : 0;
        ui.comboBox_tool->setCurrentIndex(
            calibrated.value(chosen) ? chosen : std::max(0, calibrated.indexOf(true)));
    }
    m_capture.setCalibrated(calibrated);
    chooseTool();
}

void PointsPanel::chooseTool() {
    const int tool = std::max(0, ui.comboBox_tool->currentIndex());
    m_capture.setTool(tool);
    if (!m_asked.contains(tool) && tool < ui.comboBox_tool->count()) {
        m_asked.insert(tool, askHold(tool));
        m_referencesUnknown.insert(tool, !askHasNoReference(tool));
    }
    const Hold asked = m_asked.value(tool, {defaultDuration, defaultTolerance});
    const Hold hold = m_wanted.value(tool, asked);
    {
        const QSignalBlocker duration(ui.doubleSpinBox_duration);
        const QSignalBlocker tolerance(ui.doubleSpinBox_tolerance);
        ui.doubleSpinBox_duration->setValue(hold.duration);
        ui.doubleSpinBox_tolerance->setValue(hold.tolerance);
    }
    applyHold();
}

void PointsPanel::chooseHold() {
    m_wanted.insert(m_capture.tool(),
                    {ui.doubleSpinBox_duration->value(), ui.doubleSpinBox_tolerance->value()});
    applyHold();
}

// What the boxes show is in force, also where the controller's value is out of their range.
void PointsPanel::applyHold() {
    m_capture.setHold(ui.doubleSpinBox_duration->value(), ui.doubleSpinBox_tolerance->value());
    showNow();
}

PointsPanel::Hold PointsPanel::askHold(int tool) {
    Hold hold{};
    hold.duration = ask("measurementtool measurement_duration b%2.2d", tool, defaultDuration,
                        "Error: Unable to get mea duration");
    hold.tolerance = ask("measurementtool measurement_tip_tolerance b%2.2d", tool, defaultTolerance,
                         "Error: Unable to get mea tip tolerance");
    return hold;
}

// "none" and a failed query look the same in the samples, and are not.
bool PointsPanel::askHasNoReference(int tool) {
    hostlink::Reply reply;
    return m_host->get_parameter_string(reply.buffer(), "measurementtool reference_of_tool b%2.2d",
                                        tool + 1) == 0 &&
           reply.is("none");
}

double PointsPanel::ask(const char* format, int tool, double otherwise, const char* error) {
    double value = otherwise;
    if (m_host->get_parameter_double(&value, format, tool + 1) == 0 && std::isfinite(value)) {
        return value;
    }
    hostlink::log(m_host, QString::fromLatin1(error));
    return otherwise;
}

void PointsPanel::follow(const ProbeSamples& samples) {
    const double now = LineTap::now();
    for (const ProbeSample& sample : samples) {
        followButtons(sample, now);
        m_capture.feed(sample, now);
    }
    m_capture.wait(now);
    showNow();
}

void PointsPanel::claimButton() {
    if (!m_data.isNull()) {
        const int button =
            m_isReplay ? ButtonClaim::noButton : ui.comboBox_button->currentData().toInt();
        m_data->buttons().want(this, button, tr("%1 captures a point"));
    }
    showButtons();
}

void PointsPanel::showButtons() {
    if (!m_data.isNull()) {
        setTextIfNew(ui.label_buttons, m_data->buttons().words());
    }
}

void PointsPanel::followButtons(const ProbeSample& sample, double now) {
    const auto before = m_buttons.constFind(sample.tool);
    // A button that is held down when the data begin has not been pressed.
    const std::uint32_t pressed =
        before == m_buttons.constEnd() ? 0U : sample.buttons & ~before.value();
    m_buttons.insert(sample.tool, sample.buttons);
    const bool isMine = m_data->buttons().shareOf(this, pressed) != 0U;
    if (isMine && now - sample.arrival <= Capture::oldestSample) {
        const bool isCalibrated = m_data->tools().value(sample.tool).calibrated;
        if (m_capture.state() == Capture::State::Ready && isCalibrated) {
            ui.comboBox_tool->setCurrentIndex(sample.tool); // with this tool's own values
        }
        m_capture.trigger(sample.tool, now);
    }
}

// What was captured before can be looked at all the same.
void PointsPanel::refuseReplay() {
    if (!m_isReplay) {
        return;
    }
    for (QWidget* const widget : std::initializer_list<QWidget*>{
             ui.pushButton_capture, ui.comboBox_tool, ui.comboBox_mode, ui.comboBox_button,
             ui.doubleSpinBox_duration, ui.doubleSpinBox_tolerance}) {
        widget->setEnabled(false);
        widget->setToolTip(stateWords());
    }
}

void PointsPanel::captureOrCancel() {
    if (m_isReplay) {
        return;
    }
    if (m_capture.state() == Capture::State::Holding &&
        m_capture.mode() == Capture::Mode::Trigger) {
        m_capture.cancel();
    } else {
        m_capture.trigger(LineTap::now());
    }
    showNow();
}

void PointsPanel::hear(Notice notice) {
    m_words = wordsOf(notice);
    m_wordsState = m_capture.state();
    if (notice == Notice::Captured) {
        takePoint();
    }
    const auto sound = points::soundOf(notice);
    if (sound && ui.checkBox_sounds->isChecked()) {
        m_sounds->play(*sound);
    }
    showNow();
}

void PointsPanel::takePoint() {
    points::PointRecord point = m_capture.record();
    point.number = m_list.nextNumber();
    point.name = QStringLiteral("P%1").arg(point.number);
    if (point.reference < 0 && m_referencesUnknown.value(point.tool, true)) {
        point.reference = points::unknownReference;
    }
    point.utcMs = QDateTime::currentMSecsSinceEpoch();
    ++m_changes;
    m_list.append({point});
    m_session.addPoints({point});
    m_awaitedStep = m_session.steps();
    m_awaited = point;
    m_diskPatience.start();
    ui.tableView_points->scrollTo(m_sorted.mapFromSource(m_list.index(m_list.rowCount() - 1, 0)));
}

void PointsPanel::answerDisk(bool isOnDisk) {
    m_diskPatience.stop();
    if (std::exchange(m_awaitedStep, 0U) == 0U) {
        return;
    }
    const QByteArray line = resultLine(points::toJson(m_awaited));
    m_capture.kept(isOnDisk);
    m_host->write_log("result", "ProbeCheckModule", 1, line.constData());
}

void PointsPanel::showNow() {
    const auto position = m_capture.position();
    QLabel* const labels[] = {ui.label_x, ui.label_y, ui.label_z};
    for (std::size_t i = 0; i < 3; ++i) {
        showFigure(labels[i],
                   position ? points::fixedText((*position)[i], 2) : QStringLiteral("-"));
    }
    ui.captureRing->setShare(m_capture.progress());
    if (m_capture.state() != m_wordsState) {
        m_words.clear();
    }
    setTextIfNew(ui.label_state, m_words.isEmpty() ? stateWords() : m_words);
    const int tool = m_capture.tool();
    if (ui.comboBox_tool->currentIndex() != tool && tool < ui.comboBox_tool->count()) {
        ui.comboBox_tool->setCurrentIndex(tool);
    }
}
