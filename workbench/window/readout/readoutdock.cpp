#include "workbench/window/readout/readoutdock.h"

#include "ui_readoutdock.h"
#include "workbench/controller/tools/toolfacts.h"
#include "workbench/modules/backend.h"
#include "workbench/window/readout/readouttexts.h"
#include "workbench/window/readout/toolbox.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QShortcut>
#include <QSignalBlocker>

namespace workbench {

namespace {

constexpr int keys = 9; // of tools

double secondsOf(BootClock::time_point time) {
    return BootClock::seconds(time.time_since_epoch());
}

} // namespace

ReadoutDock::ReadoutDock(Backend& backend, ToolFacts& facts, QWidget* parent)
    : QDockWidget(parent)
    , m_backend(backend)
    , m_facts(facts)
    , m_ui(std::make_unique<Ui::ReadoutDock>())
    , m_latest(backend.registry) {
    m_ui->setupUi(this);
    m_timer.setInterval(refreshMs);
    offerTools();
    setUpKeys();
    connect(&m_timer, &QTimer::timeout, this, &ReadoutDock::refresh);
    connect(this, &QDockWidget::visibilityChanged, this, &ReadoutDock::follow);
    connect(m_ui->comboBox_tool, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            [this](int index) { choose(index + 1); });
    connect(m_ui->toolButton_freeze, &QToolButton::toggled, this, &ReadoutDock::setFrozen);
    connect(m_ui->checkBox_angles, &QCheckBox::toggled, this, &ReadoutDock::refresh);
    connect(m_ui->toolButton_copy, &QToolButton::clicked, this, &ReadoutDock::copy);
    connect(&backend.session, &ControllerSession::ready, this, [this](bool first) {
        if (first) {
            m_readout.forget();
            refresh();
        }
    });
    connect(&backend.session, &ControllerSession::stateChanged, this, &ReadoutDock::refresh);
    connect(&backend.monitor, &MeasurementMonitor::changed, this, &ReadoutDock::refresh);
    connect(&backend.watch, &DataWatch::changed, this, &ReadoutDock::refresh);
    connect(&facts, &ToolFacts::changed, this, &ReadoutDock::refresh);
    refresh();
}

ReadoutDock::~ReadoutDock() {
    m_facts.setWanted(this, false);
}

void ReadoutDock::setUpKeys() {
    const auto addKey = [this](const QKeySequence& key, auto act) {
        auto* const shortcut = new QShortcut(key, this);
        shortcut->setContext(Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, this, act);
    };
    for (int tool = 1; tool <= keys; ++tool) {
        addKey(Qt::Key_0 + tool, [this, tool] {
            if (tool <= m_ui->comboBox_tool->count()) {
                m_ui->comboBox_tool->setCurrentIndex(tool - 1);
            }
        });
    }
    addKey(Qt::Key_F, [this] { m_ui->toolButton_freeze->click(); });
    addKey(Qt::Key_A, [this] { m_ui->checkBox_angles->click(); });
    addKey(QKeySequence::Copy, [this] { copy(); });
}

void ReadoutDock::follow(bool isVisible) {
    m_latest.setSubscribed(isVisible);
    m_facts.setWanted(this, isVisible);
    if (isVisible) {
        m_timer.start();
        refresh();
    } else {
        m_timer.stop();
    }
}

void ReadoutDock::choose(int tool) {
    m_readout.choose(tool);
    refresh();
}

void ReadoutDock::takeLines() {
    if (!m_latest.take(m_lines)) {
        return;
    }
    m_decoder.begin(0);
    m_decoder.add(m_lines.tools.c_str());
    m_decoder.add(m_lines.references.c_str());
    m_frame = m_decoder.end();
    m_toolCount = m_frame.toolCount();
    if (!m_lines.tools.empty()) {
        m_facts.setToolsInLines(m_toolCount);
    }
}

// The tools of the data, those that the controller knows while there are none, and the chosen one
// in any case.
void ReadoutDock::offerTools() {
    const int known = m_lines.tools.empty() ? m_facts.toolCount() : m_toolCount;
    workbench::offerTools(*m_ui->comboBox_tool, known, m_readout.tool());
}

void ReadoutDock::refresh() {
    takeLines();
    offerTools();
    const int tool = m_readout.tool();
    ReadoutNews news;
    news.now = secondsOf(BootClock::now());
    news.isConnected = m_backend.session.isReady();
    news.isMeasuring = m_backend.monitor.isMeasuring();
    news.isOld = m_backend.watch.age() > 0.0;
    news.isReplay = m_backend.replay.isActive();
    if (!m_lines.tools.empty()) {
        news.frame = &m_frame;
        news.frameCame = secondsOf(m_lines.toolsCame);
    }
    if (m_facts.isKnown()) {
        news.isCalibrated = m_facts.tool(tool).isCalibrated;
        news.reference = m_facts.tool(tool).reference;
    }
    m_readout.update(news);
    const ReadoutView& view = m_readout.view();
    const QSignalBlocker blocked(m_ui->toolButton_freeze);
    m_ui->toolButton_freeze->setChecked(view.isFrozen);
    m_ui->toolButton_freeze->setEnabled(view.figures.has_value());
    m_ui->toolButton_copy->setEnabled(view.figures.has_value());
    m_ui->figurePanel->tell(view, m_ui->checkBox_angles->isChecked());
}

void ReadoutDock::setFrozen(bool isFrozen) {
    m_readout.setFrozen(isFrozen);
    refresh();
}

void ReadoutDock::copy() {
    const QString text =
        readouttexts::forClipboard(m_readout.view(), m_ui->checkBox_angles->isChecked());
    if (!text.isEmpty()) {
        QGuiApplication::clipboard()->setText(text);
    }
}

} // namespace workbench
