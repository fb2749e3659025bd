#include "probecheck/tipcheck/tipcheckpanel.h"

#include "general/host/bodytexts.h"
#include "general/host/hostlink.h"
#include "general/widgets/pagescroll.h"
#include "general/widgets/spinboxes.h"
#include "host_api/iomanager.h"
#include "probecheck/tipcheck/roseview.h"
#include "probecheck/tipcheck/tipchecktexts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateTime>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QStyle>
#include <QVBoxLayout>

#include <cmath>

namespace {

constexpr double usualTolerance = 1.5; // mm; the controller's own default
constexpr double leastTolerance = 0.01;
constexpr double greatestTolerance = 100.0;
constexpr int figuresMs = 200; // between two texts: nobody reads faster

QLabel* textLabel(const char* name, QWidget* parent) {
    auto* const label = new QLabel(parent);
    label->setObjectName(QLatin1String(name));
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return label;
}

} // namespace

TipCheckPanel::TipCheckPanel(ProbeData* probeData, QWidget* parent)
    : QWidget(parent)
    , m_data(probeData)
    , m_tool(new QComboBox(this))
    , m_tolerance(new DecimalSpinBox(this))
    , m_start(new QPushButton(tr("&Start"), this))
    , m_stop(new QPushButton(tr("Sto&p"), this))
    , m_startByButton(new QCheckBox(tr("Start with the tool's first &button"), this))
    , m_buttons(textLabel("label_buttons", this))
    , m_rose(new RoseView(this))
    , m_words(textLabel("label_words", this))
    , m_figures(textLabel("label_figures", this))
    , m_table(textLabel("label_result", this)) {
    build();
    m_data->serve(this);
    m_data->buttons().join(this);
    connect(&m_data->buttons(), &ButtonClaim::moved, this, &TipCheckPanel::showState);
    connect(m_startByButton, &QCheckBox::toggled, this, &TipCheckPanel::claimButton);
    connect(m_data, &ProbeData::toolsRead, this, [this] {
        readTolerances();
        listTools();
        showState();
    });
    connect(m_data, &ProbeData::receivingBegan, this, &TipCheckPanel::showState);
    connect(m_data, &ProbeData::receivingEnded, this, &TipCheckPanel::loseMeasurement);
    connect(m_data, &ProbeData::samplesArrived, this, &TipCheckPanel::takeSamples);
    showState();
    refuseReplay();
}

// A host may delete the dock itself.
TipCheckPanel::~TipCheckPanel() {
    if (!m_data.isNull()) {
        m_data->forget(this);
    }
}

void TipCheckPanel::build() {
    m_tool->setObjectName(QLatin1String("comboBox_tool"));
    m_tolerance->setObjectName(QLatin1String("doubleSpinBox_tolerance"));
    m_start->setObjectName(QLatin1String("pushButton_start"));
    m_stop->setObjectName(QLatin1String("pushButton_stop"));
    m_startByButton->setObjectName(QLatin1String("checkBox_startByButton"));
    m_rose->setObjectName(QLatin1String("roseView"));
    m_tolerance->setRange(leastTolerance, greatestTolerance);
    m_tolerance->setSingleStep(0.1);
    m_tolerance->setValue(usualTolerance);
    m_tolerance->setToolTip(tr("The tool's tip tolerance on the controller, or yours for this "
                               "session; nothing is written to the controller"));
    m_startByButton->setChecked(true);
    m_buttons->setTextInteractionFlags(Qt::NoTextInteraction);
    m_buttons->setAccessibleName(tr("What the buttons on the tool do"));
    m_words->setAccessibleName(tr("What to do"));
    m_figures->setAccessibleName(tr("How far the check is"));
    m_table->setAccessibleName(tr("Figures of the result"));
    QFont bold = m_words->font();
    bold.setBold(true);
    m_words->setFont(bold);
    m_table->setTextFormat(Qt::RichText);

    buildPage();
    setTabOrder(m_tool, m_tolerance);
    setTabOrder(m_tolerance, m_startByButton);
    setTabOrder(m_startByButton, m_start);
    setTabOrder(m_start, m_stop);

    connect(m_start, &QPushButton::clicked, this, &TipCheckPanel::start);
    connect(m_stop, &QPushButton::clicked, this, &TipCheckPanel::stop);
    connect(m_tool, qOverload<int>(&QComboBox::currentIndexChanged), this, [this] {
        chooseTolerance();
        showState();
    });
    connect(m_tolerance, qOverload<double>(&QDoubleSpinBox::valueChanged), this,
            [this](double value) {
                m_tolerances.insert(chosenTool(), value);
                m_editedTolerances.insert(chosenTool(), true);
            });
}

void TipCheckPanel::buildPage() {
    auto* const content = new QWidget(this);
    auto* const form = new QFormLayout;
    auto* const toolLabel = new QLabel(tr("To&ol:"), content);
    toolLabel->setBuddy(m_tool);
    form->addRow(toolLabel, m_tool);
    auto* const toleranceLabel = new QLabel(tr("To&lerance [mm]:"), content);
    toleranceLabel->setBuddy(m_tolerance);
    form->addRow(toleranceLabel, m_tolerance);
    auto* const buttons = new QHBoxLayout;
    buttons->addWidget(m_start);
    buttons->addWidget(m_stop);
    buttons->addStretch();
    m_page = new QHBoxLayout(content);
    m_left = new QVBoxLayout;
    m_right = new QVBoxLayout;
    m_page->addLayout(m_left);
    m_page->addLayout(m_right);
    m_left->addLayout(form);
    m_left->addWidget(m_startByButton);
    m_left->addWidget(m_buttons);
    m_left->addLayout(buttons);
    m_left->addWidget(m_words);
    m_left->addWidget(m_figures);
    m_left->addStretch();
    putRose(false);
    m_scrolled = scrollUpAndDown(content, this); // as wide as what stands in it needs
    const int scrollBar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, m_scrolled);
    m_scrolled->setMinimumWidth(content->minimumSizeHint().width() + 2 * scrollBar);
}

void TipCheckPanel::refuseReplay() {
    if (!m_data->isReplay()) {
        return;
    }
    for (QWidget* const widget :
         std::initializer_list<QWidget*>{m_tool, m_tolerance, m_startByButton, m_start}) {
        widget->setEnabled(false);
        widget->setToolTip(m_words->text());
    }
}

// What has been tilted, and what came of it.
void TipCheckPanel::putRose(bool isBeside) {
    QVBoxLayout* const column = isBeside ? m_right : m_left;
    column->insertWidget(isBeside ? 0 : m_left->indexOf(m_figures), m_rose, 1);
    column->insertWidget(isBeside ? 1 : m_left->indexOf(m_figures) + 1, m_table);
    m_page->setStretchFactor(m_left, isBeside ? 1 : 0);
    m_page->setStretchFactor(m_right, isBeside ? 1 : 0);
}

// Beside the words where there is more room than below them.
void TipCheckPanel::placeRose() {
    const bool isBeside = width() > m_scrolled->minimumWidth() + m_rose->comfortableSide();
    QVBoxLayout* const before = m_right->indexOf(m_rose) >= 0 ? m_right : m_left;
    if (isBeside != (before == m_right)) {
        before->removeWidget(m_rose);
        before->removeWidget(m_table);
        putRose(isBeside);
    }
}

void TipCheckPanel::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    placeRose();
}

void TipCheckPanel::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    updateWanted();
}

void TipCheckPanel::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    updateWanted();
}

// A check goes on in a dock that is covered by another one.
void TipCheckPanel::updateWanted() {
    if (!m_data.isNull()) {
        m_data->setWanted(this, isVisible() || m_check.isRunning());
    }
}

int TipCheckPanel::chosenTool() const {
    const QVariant tool = m_tool->currentData();
    return tool.isValid() ? tool.toInt() : -1;
}

bool TipCheckPanel::canStart(int tool) const {
    return !m_data.isNull() && m_data->isReceiving() && !m_check.isRunning() && tool >= 0 &&
           tool < m_data->tools().size() && m_data->tools().at(tool).calibrated;
}

void TipCheckPanel::readTolerances() {
    const HostPointer host = m_data->host();
    const int count = m_data->tools().size();
    for (int tool = 0; tool < count; ++tool) {
        if (m_editedTolerances.value(tool, false) || !m_data->tools().at(tool).calibrated) {
            continue;
        }
        double tolerance = usualTolerance;
        if (host->get_parameter_double(
                &tolerance, "measurementtool measurement_tip_tolerance b%2.2d", tool + 1) != 0 ||
            !std::isfinite(tolerance) || tolerance < leastTolerance ||
            tolerance > greatestTolerance) {
            hostlink::log(host, QStringLiteral("Error: Unable to get mea tip tolerance"));
            tolerance = usualTolerance;
        }
        if (host.isHungUp()) {
            return;
        }
        m_tolerances.insert(tool, tolerance);
    }
}

// A tool that cannot be checked is not offered.
void TipCheckPanel::listTools() {
    const int chosen = chosenTool();
    {
        const QSignalBlocker blocker(m_tool);
        m_tool->clear();
        const QVector<ProbeTool>& tools = m_data->tools();
        for (int tool = 0; tool < tools.size(); ++tool) {
            if (tools.at(tool).calibrated) {
                m_tool->addItem(bodytexts::toolName(tool), tool);
            }
        }
        m_tool->setCurrentIndex(std::max(m_tool->findData(chosen), m_tool->count() > 0 ? 0 : -1));
    }
    chooseTolerance();
}

void TipCheckPanel::chooseTolerance() {
    const QSignalBlocker blocker(m_tolerance);
    m_tolerance->setValue(m_tolerances.value(chosenTool(), usualTolerance));
}

void TipCheckPanel::start() {
    if (!canStart(chosenTool())) {
        return;
    }
    m_tolerance->interpretText();
    m_check.start(chosenTool(), m_tolerance->value(), LineTap::now());
    updateWanted();
    showState();
}

void TipCheckPanel::stop() {
    const TipCheck::State before = m_check.state();
    m_check.stop(LineTap::now());
    follow(before);
}

void TipCheckPanel::loseMeasurement() {
    m_pressed.clear();
    const TipCheck::State before = m_check.state();
    m_check.loseMeasurement(LineTap::now());
    follow(before);
    if (before == m_check.state()) {
        showState();
    }
}

void TipCheckPanel::takeSamples(const ProbeSamples& samples) {
    for (const ProbeSample& sample : samples) {
        watchButton(sample);
        m_check.take(sample);
    }
    if (!m_check.isRunning()) {
        return;
    }
    const TipCheck::State before = m_check.state();
    m_check.tick(LineTap::now());
    if (m_check.isRunning()) {
        showRunning();
    } else {
        follow(before);
    }
}

// A button that is held when it is first seen has not been pressed for this.
void TipCheckPanel::watchButton(const ProbeSample& sample) {
    const bool isPressed = (sample.buttons & 1U) != 0;
    const bool wasPressed = m_pressed.value(sample.tool, true);
    m_pressed.insert(sample.tool, isPressed);
    if (isPressed && !wasPressed && startsByButton() && canStart(sample.tool)) {
        m_tool->setCurrentIndex(m_tool->findData(sample.tool));
        start();
    }
}

void TipCheckPanel::claimButton() {
    if (!m_data.isNull()) {
        const bool wantsButton = m_startByButton->isChecked() && !m_data->isReplay();
        m_data->buttons().want(this, wantsButton ? 0 : ButtonClaim::noButton,
                               m_check.isRunning() ? tr("%1 does nothing while the tip check runs")
                                                   : tr("%1 starts a tip check"));
        m_buttons->setText(m_data->buttons().words());
    }
}

bool TipCheckPanel::startsByButton() const {
    return !m_data.isNull() && m_data->buttons().shareOf(this, 1U) != 0U;
}

void TipCheckPanel::follow(TipCheck::State before) {
    if (before != m_check.state() && m_check.state() == TipCheck::State::Finished) {
        showState();
        updateWanted();
        tellResult();
    }
}

// The last thing that is done: the host may end the module inside.
void TipCheckPanel::tellResult() {
    if (m_data.isNull()) {
        return;
    }
    const HostPointer host = m_data->host();
    const QByteArray line =
        tipchecktexts::toJson(m_check.result(), QDateTime::currentDateTimeUtc());
    host->write_log("result", "ProbeCheckModule", 1, line.constData());
}

void TipCheckPanel::showRunning() {
    const TipCheck::Result& result = m_check.result();
    m_words->setText(tipchecktexts::runningWords(m_check));
    m_rose->display(result.rose, true);
    m_rose->setAccessibleDescription(m_words->text());
    m_table->setText(QString()); // clear() would have the page laid out anew each time
    if (m_figures->text().isEmpty() || m_sinceFigures.hasExpired(figuresMs)) {
        m_sinceFigures.start();
        m_figures->setText(tr("%1 s, %2 poses, %3 % of the time hidden")
                               .arg(bodytexts::fixed(result.duration, 0))
                               .arg(result.poses)
                               .arg(bodytexts::fixed(100.0 * result.hiddenShare, 0)));
    }
}

void TipCheckPanel::showState() {
    claimButton();
    const bool isRunning = m_check.isRunning();
    const bool canBegin = canStart(chosenTool());
    m_tool->setEnabled(!isRunning && m_tool->count() > 0);
    m_tolerance->setEnabled(!isRunning && m_tool->count() > 0);
    // The one that can be pressed next first: the focus of one that goes would go on into another
    // dock.
    m_start->setEnabled(m_start->isEnabled() || canBegin);
    m_stop->setEnabled(m_stop->isEnabled() || isRunning);
    if (m_start->hasFocus() || m_stop->hasFocus()) {
        QWidget* const idle = canBegin ? static_cast<QWidget*>(m_start) : m_tool;
        (isRunning ? m_stop : idle)->setFocus();
    }
    m_start->setEnabled(canBegin);
    m_stop->setEnabled(isRunning);
    m_figures->setVisible(isRunning); // afterwards they stand in the table
    m_rose->setGivingWay(m_check.state() == TipCheck::State::Finished);
    if (isRunning) {
        showRunning();
        return;
    }
    m_figures->clear();
    if (m_check.state() == TipCheck::State::Finished) {
        m_words->setText(tipchecktexts::resultWords(m_check.result()));
        m_table->setText(tipchecktexts::resultTable(m_check.result()));
        m_rose->display(m_check.result().rose, false);
    } else if (!m_data.isNull() && m_data->isReplay()) {
        m_words->setText(tr("A recording is played: nothing is checked."));
    } else if (m_data.isNull() || !m_data->isReceiving()) {
        m_words->setText(tr("No tracking runs. Start it to check a tip."));
    } else if (m_tool->count() == 0) {
        m_words->setText(tr("The controller has no calibrated Measurement Tool."));
    } else {
        m_words->setText(startsByButton()
                             ? tr("Put the tip into a hollow, press Start or the tool's first "
                                  "button, and tilt the tool slowly to all sides for some ten "
                                  "seconds.")
                             : tr("Put the tip into a hollow, press Start, and tilt the tool "
                                  "slowly to all sides for some ten seconds."));
    }
}
