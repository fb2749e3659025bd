#include "workbench/window/log/logdock.h"

#include "ui_logdock.h"
#include "workbench/outlets/savedfile.h"
#include "workbench/text/logmodel.h"
#include "workbench/window/docks/docktitle.h"
#include "workbench/window/log/logfilter.h"
#include "workbench/window/look/flowrow.h"

#include <QClipboard>
#include <QFileDialog>
#include <QGuiApplication>
#include <QMessageBox>
#include <QScrollBar>
#include <QShortcut>

#include <algorithm>

namespace workbench {

namespace {

constexpr int maxSources = 50; // in the box
constexpr int longestSource = 40;

} // namespace

LogDock::LogDock(LogModel& log, QWidget* parent)
    : QDockWidget(parent)
    , m_log(log)
    , m_ui(std::make_unique<Ui::LogDock>()) {
    m_ui->setupUi(this);
    FlowRow::replace(*m_ui->verticalLayout, m_ui->horizontalLayout);
    m_filter = new LogFilter(m_ui->tableView_log);
    m_filter->setSourceModel(&log);
    setUpTable();
    setUpFilters();
    connect(m_ui->pushButton_copy, &QPushButton::clicked, this, &LogDock::copy);
    connect(m_ui->pushButton_save, &QPushButton::clicked, this, &LogDock::save);
    connect(m_ui->pushButton_clear, &QPushButton::clicked, &log, &LogModel::clear);
    connect(m_ui->checkBox_traffic, &QCheckBox::toggled, this, &LogDock::trafficWanted);
    // Also when the filter is changed.
    connect(m_filter, &QAbstractItemModel::rowsInserted, this, &LogDock::countUnseen);
    connect(m_filter, &QAbstractItemModel::rowsRemoved, this, &LogDock::countUnseen);
    connect(&log, &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex&, int first, int last) {
                takeSources(first, last);
                countUnseen();
            });
    connect(&log, &QAbstractItemModel::dataChanged, this, &LogDock::countUnseen);
    connect(&log, &QAbstractItemModel::modelReset, this, &LogDock::markSeen);
    connect(this, &QDockWidget::visibilityChanged, this, [this](bool isVisible) {
        if (isVisible) {
            lookAtEnd();
            countUnseen();
        }
    });
}

void LogDock::setUpTable() {
    QTableView* const view = m_ui->tableView_log;
    view->setModel(m_filter);
    const QFontMetrics metrics(view->font());
    const int symbol = view->style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, view);
    view->setIconSize(QSize(symbol, symbol));
    view->verticalHeader()->setDefaultSectionSize(std::max(metrics.height(), symbol) + 4);
    view->horizontalHeader()->setHighlightSections(false);
    view->setMinimumHeight(2 * view->verticalHeader()->defaultSectionSize()); // it scrolls
    const QString widest[] = {QStringLiteral("00:00:00.000  "), QStringLiteral("Category   "),
                              QStringLiteral("WORKBENCH   "),
                              LogModel::levelWord(LogModel::Information)};
    for (int column = 0; column < LogModel::TextColumn; ++column) {
        view->setColumnWidth(column, metrics.horizontalAdvance(widest[column]) + 16);
    }
    view->setColumnWidth(LogModel::LevelColumn,
                         view->columnWidth(LogModel::LevelColumn) + symbol + 8);
    auto* const shortcut = new QShortcut(QKeySequence::Copy, view);
    shortcut->setContext(Qt::WidgetShortcut);
    connect(shortcut, &QShortcut::activated, this, &LogDock::copy);
    const QScrollBar* const bar = view->verticalScrollBar();
    connect(bar, &QScrollBar::valueChanged, this, [this, bar] {
        m_atEnd = bar->value() >= bar->maximum();
        countUnseen();
    });
    connect(bar, &QScrollBar::rangeChanged, this, [this, view] {
        if (m_atEnd) {
            view->scrollToBottom();
        }
    });
}

void LogDock::setUpFilters() {
    connect(m_ui->lineEdit_filter, &QLineEdit::textChanged, m_filter,
            &QSortFilterProxyModel::setFilterFixedString);
    QComboBox* const levels = m_ui->comboBox_level;
    levels->addItem(tr("All levels"));
    for (const int level : {LogModel::Information, LogModel::Problem}) {
        levels->addItem(LogModel::levelWord(level), level);
    }
    connect(levels, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this, levels] {
        const QVariant level = levels->currentData();
        m_filter->setLevel(level.isValid() ? std::make_optional(level.toInt()) : std::nullopt);
    });
    QComboBox* const sources = m_ui->comboBox_source;
    sources->addItem(tr("All sources"));
    connect(sources, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            [this, sources] { m_filter->setSource(sources->currentData().toString()); });
    takeSources(0, m_log.rowCount() - 1);
    markSeen();
}

void LogDock::takeSources(int first, int last) {
    QComboBox* const sources = m_ui->comboBox_source;
    for (int row = first; row <= last; ++row) {
        const QString source = m_log.index(row, LogModel::SourceColumn).data().toString();
        if (!source.isEmpty() && source.size() <= longestSource && sources->count() < maxSources &&
            sources->findData(source) < 0) {
            sources->addItem(source, source);
        }
    }
}

void LogDock::markSeen() {
    m_seen = m_log.serial();
    countUnseen();
}

void LogDock::countUnseen() {
    if (isInView()) {
        lookAtEnd();
    }
    const int unseen = m_log.problemRowsSince(m_seen).size();
    const QString title = unseen == 0 ? tr("Log") : tr("Log – new errors: %1").arg(unseen);
    if (windowTitle() != title) {
        setTitleAlone(*this, title);
    }
}

void LogDock::lookAtEnd() {
    if (m_atEnd && !isProblemLeftOut()) {
        m_seen = m_log.serial();
    }
}

bool LogDock::isInView() const {
    return isVisible() && !visibleRegion().isEmpty() && !window()->isMinimized();
}

bool LogDock::isProblemLeftOut() const {
    const QVector<int> unseen = m_log.problemRowsSince(m_seen);
    return std::any_of(unseen.begin(), unseen.end(), [this](int row) {
        return !m_filter->mapFromSource(m_log.index(row, 0)).isValid();
    });
}

LogDock::~LogDock() = default;

QString LogDock::shownText() const {
    QModelIndexList indexes = m_ui->tableView_log->selectionModel()->selectedRows();
    if (indexes.isEmpty()) {
        for (int row = 0; row < m_filter->rowCount(); ++row) {
            indexes += m_filter->index(row, 0);
        }
    }
    std::sort(indexes.begin(), indexes.end());
    QString text;
    for (const QModelIndex& index : qAsConst(indexes)) {
        text += m_log.rowText(m_filter->mapToSource(index).row()) + QLatin1Char('\n');
    }
    return text;
}

void LogDock::copy() {
    QGuiApplication::clipboard()->setText(shownText());
}

bool LogDock::saveTo(const QString& fileName, QString* error) const {
    return saveWhole(fileName, m_log.toText().toUtf8(), error);
}

void LogDock::save() {
    const QString fileName = QFileDialog::getSaveFileName(this, tr("Save the log"),
                                                          QStringLiteral("kestrel-workbench.log"));
    QString error;
    if (!fileName.isEmpty() && !saveTo(fileName, &error)) {
        QMessageBox box(QMessageBox::Warning, tr("Save the log"),
                        tr("%1 could not be written: %2").arg(fileName, error), QMessageBox::Ok,
                        this);
        box.setTextFormat(Qt::PlainText);
        box.exec();
    }
}

} // namespace workbench
