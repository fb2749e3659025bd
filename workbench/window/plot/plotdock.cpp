#include "workbench/window/plot/plotdock.h"

#include "ui_plotdock.h"
#include "workbench/controller/tools/toolfacts.h"
#include "workbench/modules/backend.h"
#include "workbench/outlets/savedfile.h"
#include "workbench/text/elidedlabel.h"
#include "workbench/window/look/flowrow.h"
#include "workbench/window/look/savefile.h"
#include "workbench/window/look/screenroom.h"
#include "workbench/window/plot/trackitem.h"
#include "workbench/window/readout/readouttexts.h"
#include "workbench/window/readout/toolbox.h"

#include <QApplication>
#include <QBuffer>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPixmap>
#include <QSignalBlocker>
#include <qwt_picker_machine.h>
#include <qwt_plot.h>
#include <qwt_plot_canvas.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_picker.h>
#include <qwt_scale_draw.h>

#include <algorithm>
#include <cmath>

namespace workbench {

namespace {

constexpr int spans[] = {10, 30, 60, 120, 300, 600}; // seconds
constexpr int usualSpan = 2;
constexpr int fastestMs = 300;
constexpr int slowestMs = 1000;
constexpr int usualColumns = 600;
constexpr double smallestRange = 0.01; // mm
constexpr double closestZoom = 1e-6;
constexpr double zoomFactor = 2.0;
constexpr int leastLines = 6;     // of text are as high as the plot, with its axis
constexpr int otherLines = 26;    // what a window with this dock alone needs besides, at the most
constexpr int mostMarks = 8;      // of the axis, as many as there are without being told
constexpr double lineShare = 0.2; // of the height of a line of text

// Told apart by those who see few colours, too: on a light ground and on a dark one.
constexpr QRgb lightColours[] = {0xffc04a00, 0xff00805c, 0xff0060a8};
constexpr QRgb darkColours[] = {0xffff9a50, 0xff40d0a0, 0xff70c0ff};

// 1, 2 or 5 times a power of ten: a scale that does not jump with each value.
double roundedUp(double value) {
    const double power = std::pow(10.0, std::floor(std::log10(value)));
    for (const double step : {1.0, 2.0, 5.0}) {
        if (value <= step * power) {
            return step * power;
        }
    }
    return 10.0 * power;
}

// A decimal point in every language, as in all other figures of the window.
class PointScale : public QwtScaleDraw {
public:
    QwtText label(double value) const override {
        return QString::number(std::abs(value) < 1e-12 ? 0.0 : value, 'g', 6);
    }
};

QString deviationText(double deviation) {
    return std::isnan(deviation) ? QStringLiteral("–") : QString::number(deviation, 'f', 3);
}

// Beside words, which say the same.
void showColour(QLabel& label, const QColor& colour, double share) {
    const int side = label.fontMetrics().height();
    const double ratio = label.devicePixelRatioF();
    QPixmap pixmap(QSize(side, side) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    const double height = side * share;
    QPainter(&pixmap).fillRect(QRectF(0.0, (side - height) / 2.0, side, height), colour);
    label.setPixmap(pixmap);
}

// A label of a fixed size: another figure in it does not have the window laid out anew.
void showFigure(QLabel& label, const QString& text) {
    const QFontMetrics metrics = label.fontMetrics();
    const QSize usual = metrics.size(Qt::TextSingleLine, QStringLiteral("sx 00.000 mm"));
    label.setFixedSize(usual.expandedTo(metrics.size(Qt::TextSingleLine, text)));
    label.setText(text);
}

} // namespace

PlotDock::PlotDock(Backend& backend, ToolFacts& facts, QWidget* parent)
    : QDockWidget(parent)
    , m_backend(backend)
    , m_facts(facts)
    , m_ui(std::make_unique<Ui::PlotDock>())
    , m_feed(backend.registry)
    , m_ring(1)
    , m_paused(1) {
    m_ui->setupUi(this);
    FlowRow::replace(*m_ui->verticalLayout, m_ui->horizontalLayout);
    FlowRow::replace(*m_ui->verticalLayout, m_ui->horizontalLayout_2);
    setUpPlot();
    setUpControls();
    connect(&m_timer, &QTimer::timeout, this, qOverload<>(&PlotDock::follow));
    connect(this, &QDockWidget::visibilityChanged, this, qOverload<bool>(&PlotDock::follow));
    connect(&backend.session, &ControllerSession::ready, this, [this](bool first) {
        if (first) {
            m_readout.forget();
            m_ring.clear();
            setPaused(false);
        }
    });
    connect(&backend.session, &ControllerSession::stateChanged, this, &PlotDock::showState);
    connect(&backend.monitor, &MeasurementMonitor::changed, this, &PlotDock::showState);
    connect(&backend.watch, &DataWatch::changed, this, &PlotDock::showState);
    offerTools(*m_ui->comboBox_plotTool, m_facts.toolCount(), m_readout.tool());
    draw();
}

PlotDock::~PlotDock() {
    m_facts.setWanted(this, false);
}

void PlotDock::setUpPlot() {
    m_plot = new QwtPlot(m_ui->figure);
    m_plot->setObjectName(QStringLiteral("plot"));
    m_plot->setAccessibleName(tr("Plot of the position over the time"));
    m_plot->setFocusPolicy(Qt::NoFocus);
    m_plot->setMinimumSize(1, 1);
    m_plot->setAxisScaleDraw(QwtPlot::xBottom, new PointScale);
    m_plot->setAxisScaleDraw(QwtPlot::yLeft, new PointScale);
    m_plot->setAutoReplot(false);
    auto* const canvas = qobject_cast<QwtPlotCanvas*>(m_plot->canvas());
    canvas->setFrameStyle(QFrame::NoFrame);
    auto* const grid = new QwtPlotGrid;
    grid->attach(m_plot);
    for (int axis = 0; axis < 3; ++axis) {
        const auto index = static_cast<std::size_t>(axis);
        m_items[index] = new TrackItem(readouttexts::axisName(axis, false));
        m_items[index]->attach(m_plot);
        auto* const pair = new QHBoxLayout;
        pair->setSpacing(4);
        m_keys[index] = new QLabel(m_ui->figure);
        m_deviations[index] = new QLabel(m_ui->figure);
        m_deviations[index]->setObjectName(QStringLiteral("label_deviation%1").arg(axis));
        m_deviations[index]->setTextFormat(Qt::PlainText);
        pair->addWidget(m_keys[index]);
        pair->addWidget(m_deviations[index]);
        m_ui->horizontalLayout_deviations->addLayout(pair);
    }
    FlowRow::replace(*m_ui->verticalLayout_figure, m_ui->horizontalLayout_deviations);
    m_ui->verticalLayout_figure->addWidget(m_plot, 1);
    auto* const picker = new QwtPlotPicker(QwtPlot::xBottom, QwtPlot::yLeft,
                                           QwtPicker::RectRubberBand, QwtPicker::AlwaysOff, canvas);
    picker->setStateMachine(new QwtPickerDragRectMachine);
    canvas->setFocusPolicy(Qt::NoFocus); // the picker has set another; keys have the buttons
    connect(picker, qOverload<const QRectF&>(&QwtPlotPicker::selected), this,
            [this](const QRectF& range) {
                if (range.isValid()) {
                    zoomTo(range);
                }
            });
    colourAxes();
}

void PlotDock::setUpControls() {
    const Ui::PlotDock& ui = *m_ui;
    for (const int seconds : spans) {
        constexpr int minute = 60;
        ui.comboBox_span->addItem(seconds < minute ? tr("%1 s", "a time").arg(seconds)
                                                   : tr("%1 min", "a time").arg(seconds / minute),
                                  seconds);
    }
    ui.comboBox_span->setCurrentIndex(usualSpan);
    connect(ui.comboBox_plotTool, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            [this](int index) { choose(index + 1); });
    connect(ui.comboBox_span, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this] {
        showWhole();
        follow();
    });
    connect(ui.toolButton_pause, &QToolButton::toggled, this, &PlotDock::setPaused);
    connect(ui.toolButton_zoomIn, &QToolButton::clicked, this,
            [this] { zoomBy(1.0 / zoomFactor); });
    connect(ui.toolButton_zoomOut, &QToolButton::clicked, this, [this] { zoomBy(zoomFactor); });
    connect(ui.toolButton_whole, &QToolButton::clicked, this, &PlotDock::showWhole);
    connect(ui.toolButton_picture, &QToolButton::clicked, this, [this] { save(false); });
    connect(ui.toolButton_table, &QToolButton::clicked, this, [this] { save(true); });
}

double PlotDock::span() const {
    return m_ui->comboBox_span->currentData().toInt();
}

void PlotDock::follow(bool isVisible) {
    m_isInView = isVisible;
    const bool isOpen = !isHidden(); // also behind another tab, or in a window that is minimised
    m_feed.setSubscribed(isOpen);
    m_facts.setWanted(this, isOpen);
    if (isOpen) {
        if (m_ring.capacity() < TipRing::usualCapacity) {
            m_ring = TipRing(); // not before somebody wants it, and once
        }
        follow();
    } else {
        m_timer.stop();
    }
}

// A column of the plot has as much time as the refresh: nobody sees more of it.
void PlotDock::follow() {
    const double column = 1000.0 * span() / usualColumns;
    m_timer.start(std::clamp(static_cast<int>(column), fastestMs, slowestMs));
    takeSamples();
    if (m_isInView) {
        offerTools(*m_ui->comboBox_plotTool, m_facts.toolCount(), m_readout.tool());
        draw();
    }
}

void PlotDock::choose(int tool) {
    if (tool != m_readout.tool()) {
        m_readout.choose(tool);
        m_feed.choose(tool);
        m_ring.clear();
        setPaused(false);
        showWhole();
    }
}

void PlotDock::takeSamples() {
    m_feed.take(m_batch);
    if (m_batch.latest) {
        m_facts.setToolsInLines(m_batch.latest->toolCount());
    }
    // What a tool that is not calibrated says of its tip is nothing.
    if (m_facts.isKnown() && m_facts.tool(m_readout.tool()).isCalibrated) {
        for (const TipSample& sample : m_batch.samples) {
            m_ring.add(sample);
        }
    }
}

QRectF PlotDock::shownRange() const {
    return m_zoom.value_or(m_whole);
}

// Docks become tabs for it. A screen that is too small for that has it as low as must be.
void PlotDock::askForRoom() {
    const int line = m_plot->fontMetrics().height();
    const int left = screenRoom(*window()).height() - otherLines * line;
    m_plot->setMinimumHeight(std::clamp(left, 1, leastLines * line));
}

void PlotDock::draw() {
    askForRoom();
    const TipRing& ring = shown();
    const double newest = ring.isEmpty() ? 0.0 : ring.newest().seconds;
    m_statistics = tipStatistics(ring, newest - span());
    double height = smallestRange;
    const int columns = std::max(m_plot->canvas()->width(), 1);
    const double begin = m_zoom ? newest + m_zoom->left() : newest - span();
    const double end = m_zoom ? newest + m_zoom->right() : newest;
    m_tracks = tipTracks(ring, begin, end, m_statistics.mean, columns);
    for (std::size_t axis = 0; axis < m_items.size(); ++axis) {
        for (QPolygonF& piece : m_tracks.axes[axis]) {
            piece.translate(-newest, 0.0);
            for (const QPointF& point : qAsConst(piece)) {
                height = std::max(height, std::abs(point.y()));
            }
        }
        m_items[axis]->setPieces(m_tracks.axes[axis]);
        showFigure(*m_deviations[axis],
                   QStringLiteral("s%1 %2 mm")
                       .arg(readouttexts::axisName(static_cast<int>(axis), false),
                            deviationText(m_statistics.deviation[axis])));
    }
    if (!m_zoom) {
        height = roundedUp(height);
        m_whole = QRectF(-span(), -height, span(), 2.0 * height);
    }
    const QRectF range = shownRange();
    m_plot->setAxisScale(QwtPlot::xBottom, range.left(), range.right());
    m_plot->setAxisScale(QwtPlot::yLeft, range.top(), range.bottom());
    const int lines = m_plot->canvas()->height() / (2 * m_plot->fontMetrics().height());
    m_plot->setAxisMaxMajor(QwtPlot::yLeft, std::clamp(lines, 1, mostMarks));
    m_plot->replot();
    const bool hasSamples = !ring.isEmpty();
    m_ui->toolButton_pause->setEnabled(hasSamples);
    m_ui->toolButton_zoomIn->setEnabled(hasSamples);
    m_ui->toolButton_zoomOut->setEnabled(m_zoom.has_value());
    m_ui->toolButton_whole->setEnabled(m_zoom.has_value());
    m_ui->toolButton_picture->setEnabled(hasSamples);
    m_ui->toolButton_table->setEnabled(hasSamples);
    showState();
}

void PlotDock::showState() {
    const double now = BootClock::seconds(BootClock::now().time_since_epoch());
    ReadoutNews news;
    news.now = now;
    news.isConnected = m_backend.session.isReady();
    news.isMeasuring = m_backend.monitor.isMeasuring();
    news.isOld = m_backend.watch.age() > 0.0;
    news.isReplay = m_backend.replay.isActive();
    if (m_batch.latest) {
        news.frame = &*m_batch.latest;
        news.frameCame = m_batch.latestCame;
    }
    if (m_facts.isKnown()) {
        news.isCalibrated = m_facts.tool(m_readout.tool()).isCalibrated;
    }
    m_readout.update(news);
    if (isOfNow() != m_looksLive) {
        colourAxes();
        m_plot->replot();
    }
    const ReadoutView& view = m_readout.view();
    const QString word = isPaused() ? tr("paused") : readouttexts::word(view);
    ReadoutView look = view;
    look.isFrozen = isPaused();
    const QColor colour = readouttexts::colour(look);
    if (colour != m_stateColour) {
        m_stateColour = colour;
        showColour(*m_ui->label_plotColour, colour, 1.0);
    }
    m_ui->label_plotState->setText(readouttexts::toolName(view.tool) + QLatin1Char(' ') + word);
    QString remark = tr("last %1: mm from the mean; s: standard deviation")
                         .arg(m_ui->comboBox_span->currentText());
    if (news.isMeasuring && news.isOld) {
        remark = tr("no data for %1 s").arg(m_backend.watch.ageText());
    }
    m_ui->label_plotAge->setText(remark);
}

void PlotDock::setPaused(bool isPaused) {
    if (isPaused == this->isPaused()) {
        return;
    }
    m_isPaused = isPaused;
    if (isPaused) {
        m_paused = m_ring; // its memory stays for the next time
    } else {
        m_zoom.reset();
    }
    const QSignalBlocker blocked(m_ui->toolButton_pause);
    m_ui->toolButton_pause->setChecked(isPaused);
    draw();
}

void PlotDock::zoomTo(const QRectF& range) {
    setPaused(true);
    const QRectF zoom = range.normalized().intersected(m_whole);
    if (zoom.width() > closestZoom && zoom.height() > closestZoom) {
        m_zoom = zoom;
        draw();
    }
}

// Towards the newest sample and the mean: what one looks at when it stands still.
void PlotDock::zoomBy(double factor) {
    const QRectF range = shownRange();
    QRectF zoom(0.0, 0.0, range.width() * factor, range.height() * factor);
    if (zoom.width() >= m_whole.width()) {
        showWhole();
        return;
    }
    zoom.moveCenter(range.center());
    zoom.moveRight(m_zoom && factor < 1.0 ? zoom.right() : std::min(zoom.right(), 0.0));
    zoomTo(zoom);
}

void PlotDock::showWhole() {
    m_zoom.reset();
    draw();
}

// Of a tool that is hidden, too: that it is hidden is known from the data of this moment.
bool PlotDock::isOfNow() const {
    const ReadoutState state = m_readout.view().state;
    return !isPaused() && (state == ReadoutState::Live || state == ReadoutState::Hidden);
}

// What is not of this moment has another ground.
void PlotDock::colourAxes() {
    m_looksLive = isOfNow();
    const bool isDark = palette().color(QPalette::Window).lightness() <
                        palette().color(QPalette::WindowText).lightness();
    for (std::size_t axis = 0; axis < m_items.size(); ++axis) {
        const QColor colour(isDark ? darkColours[axis] : lightColours[axis]);
        m_items[axis]->setColour(colour);
        showColour(*m_keys[axis], colour, lineShare);
    }
    m_plot->setCanvasBackground(palette().color(m_looksLive ? QPalette::Base : QPalette::Window));
    const QwtPlotItemList grids = m_plot->itemList(QwtPlotItem::Rtti_PlotGrid);
    for (QwtPlotItem* item : grids) {
        static_cast<QwtPlotGrid*>(item)->setPen(palette().color(QPalette::Midlight), 0.0,
                                                Qt::DotLine);
    }
}

void PlotDock::changeEvent(QEvent* event) {
    QDockWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_items[0] != nullptr) {
        colourAxes();
        m_plot->replot();
    }
}

bool PlotDock::savePicture(const QString& fileName, QString* error) const {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    return m_ui->figure->grab().save(&buffer, "PNG") && saveWhole(fileName, bytes, error);
}

bool PlotDock::saveTable(const QString& fileName, QString* error) const {
    const TipRing& ring = shown();
    const double begin = ring.isEmpty() ? 0.0 : ring.newest().seconds - span();
    return saveWhole(fileName, QByteArray::fromStdString(tipTable(ring, begin, m_readout.tool())),
                     error);
}

void PlotDock::save(bool isTable) {
    const SaveFileTexts texts =
        isTable ? SaveFileTexts{tr("Save the positions"), tr("Tables (*.csv);;All files (*)"),
                                QStringLiteral("csv")}
                : SaveFileTexts{tr("Save the plot"), tr("Pictures (*.png);;All files (*)"),
                                QStringLiteral("png")};
    const QString suggested =
        suggestedFile(QStringLiteral("M%1").arg(m_readout.tool()), texts.suffix);
    const bool wasPaused = isPaused();
    setPaused(true); // what was to be seen is what is saved
    const QString fileName = askForFileToSave(texts, suggested, this);
    QString error;
    if (!fileName.isEmpty()) {
        const bool isGood = isTable ? saveTable(fileName, &error) : savePicture(fileName, &error);
        if (isGood) {
            m_backend.log.info(tr("Wrote %1").arg(fileName));
        } else {
            m_backend.log.problem(tr("%1 cannot be written: %2").arg(fileName, error));
        }
    }
    setPaused(wasPaused);
}

} // namespace workbench
