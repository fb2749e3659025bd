#include "workbench/window/log/logdock.h"

#include "ui_logdock.h"
#include "workbench/outlets/savedfile.h"
#include "workbench/text/logmodel.h"
#include "workbench/window/docks/docktitle.h"
#include "workbench/window/log/logfilter.h"
#include "workbench/window/look/flowrow.h"
#include "workbench/window/look/savefile.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMessageBox>
#include <QScrollBar>
#include <QShortcut>
#include <QTimer>

#include <algorithm>
#include <iterator>

namespace workbench {

namespace {

constexpr int maxSources = 50; // in the box
constexpr int longestSource = 40;
constexpr int leastRows = 2;
constexpr int leastText = 12; // letters of a line, before the dock asks for more room
constexpr int usualText = 30; // and before the columns that tell less give way
constexpr LogModel::Column lesserColumns[] = {LogModel::CategoryColumn, LogModel::SourceColumn};

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
        if (isVisible) { // and when it has its place
            QTimer::singleShot(0, this, &LogDock::showFirstUnseen);
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
    const QString widest[] = {QStringLiteral("00:00:00.000  "), QStringLiteral("Category   "),
                              QStringLiteral("WORKBENCH   "),
                              LogModel::levelWord(LogModel::Information)};
    for (int column = 0; column < LogModel::TextColumn; ++column) {
        view->setColumnWidth(column, metrics.horizontalAdvance(widest[column]) + 16);
    }
    view->setColumnWidth(LogModel::LevelColumn,
                         view->columnWidth(LogModel::LevelColumn) + symbol + 8);
    const int bar = view->style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, view);
    view->setMinimumSize(
        view->columnWidth(LogModel::TimeColumn) + view->columnWidth(LogModel::LevelColumn) +
            leastText * metrics.averageCharWidth() + bar,
        view->horizontalHeader()->sizeHint().height() + bar +
            leastRows * view->verticalHeader()->defaultSectionSize() + 2 * view->frameWidth());
    view->viewport()->installEventFilter(this);
    auto* const shortcut = new QShortcut(QKeySequence::Copy, view);
    shortcut->setContext(Qt::WidgetShortcut);
    connect(shortcut, &QShortcut::activated, this, &LogDock::copy);
    const QScrollBar* const rows = view->verticalScrollBar();
    connect(rows, &QScrollBar::valueChanged, this, [this, rows] {
        m_atEnd = rows->value() >= rows->maximum();
        countUnseen();
    });
    connect(rows, &QScrollBar::rangeChanged, this, [this, view] {
        if (m_atEnd) {
            view->scrollToBottom();
        }
        countUnseen();
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
    m_looked.clear();
    countUnseen();
}

void LogDock::countUnseen() {
    const bool inView = isInView();
    const QVector<int> rows = unseen();
    if (inView && m_atEnd && !rows.isEmpty()) {
        m_ui->tableView_log->scrollToBottom(); // now, not with the next layout
    }
    int count = 0;
    for (const int row : rows) {
        if (inView && isInView(row)) {
            m_looked.insert(m_log.serialOf(row));
        } else {
            ++count;
        }
    }
    if (count == 0) {
        m_seen = m_log.serial();
        m_looked.clear();
    }
    const QString title = count == 0 ? tr("Log") : tr("Log – new errors: %1").arg(count);
    if (windowTitle() != title) {
        setTitleAlone(*this, title);
    }
}

QVector<int> LogDock::unseen() const {
    QVector<int> rows = m_log.problemRowsSince(m_seen);
    rows.erase(std::remove_if(rows.begin(), rows.end(),
                              [this](int row) { return m_looked.contains(m_log.serialOf(row)); }),
               rows.end());
    return rows;
}

// Lines that come later are not followed then, until somebody scrolls to the end.
void LogDock::showFirstUnseen() {
    countUnseen();
    const QVector<int> rows = unseen();
    for (const int row : rows) {
        const QModelIndex index = m_filter->mapFromSource(m_log.index(row, LogModel::TimeColumn));
        if (isInView() && index.isValid()) {
            m_ui->tableView_log->scrollTo(index);
            countUnseen();
            return;
        }
    }
}

bool LogDock::isInView() const {
    return isVisible() && !visibleRegion().isEmpty() && !window()->isMinimized();
}

bool LogDock::isInView(int row) const {
    const QTableView& view = *m_ui->tableView_log;
    const QModelIndex index = m_filter->mapFromSource(m_log.index(row, LogModel::TimeColumn));
    const QRect place = view.visualRect(index);
    return index.isValid() && place.top() >= 0 && place.bottom() < view.viewport()->height();
}

// The text is what one wants to read.
void LogDock::fitColumns() {
    QTableView& view = *m_ui->tableView_log;
    int room = view.viewport()->width() - view.columnWidth(LogModel::TimeColumn) -
               view.columnWidth(LogModel::LevelColumn) -
               usualText * view.fontMetrics().averageCharWidth();
    for (std::size_t i = std::size(lesserColumns); i-- > 0;) { // the source tells more
        const LogModel::Column column = lesserColumns[i];
        if (!view.isColumnHidden(column)) {
            m_columnWidths[i] = view.columnWidth(column);
        }
        room -= m_columnWidths[i];
        if (view.isColumnHidden(column) != (room < 0)) {
            view.setColumnHidden(column, room < 0);
        }
    }
}

bool LogDock::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_ui->tableView_log->viewport() && event->type() == QEvent::Resize) {
        fitColumns();
    }
    return QDockWidget::eventFilter(watched, event);
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
    const SaveFileTexts texts{tr("Save the log"), tr("Logs (*.log);;All files (*)"),
                              QStringLiteral("log")};
    const QString fileName = askForFileToSave(
        texts, suggestedFile(QStringLiteral("kestrel-workbench"), texts.suffix), this);
    QString error;
    if (!fileName.isEmpty() && !saveTo(fileName, &error)) {
        QMessageBox box(QMessageBox::Warning, texts.title,
                        tr("%1 could not be written: %2").arg(fileName, error), QMessageBox::Ok,
                        this);
        box.setObjectName(QStringLiteral("messageBox_saveLog"));
        box.setTextFormat(Qt::PlainText);
        box.exec();
    }
}

} // namespace workbench
