#include "workbench/window/log/logdock.h"

#include "ui_logdock.h"
#include "workbench/text/logmodel.h"

#include <QClipboard>
#include <QFileDialog>
#include <QGuiApplication>
#include <QMessageBox>
#include <QSaveFile>
#include <QScrollBar>
#include <QShortcut>

#include <algorithm>

namespace workbench {

LogDock::LogDock(LogModel& log, QWidget* parent)
    : QDockWidget(parent)
    , m_log(log)
    , m_ui(std::make_unique<Ui::LogDock>()) {
    m_ui->setupUi(this);
    m_filter.setSourceModel(&log);
    m_filter.setFilterKeyColumn(-1);
    m_filter.setFilterCaseSensitivity(Qt::CaseInsensitive);
    QTableView* const view = m_ui->tableView_log;
    view->setModel(&m_filter);
    const QFontMetrics metrics(view->font());
    view->verticalHeader()->setDefaultSectionSize(metrics.height() + 4);
    view->horizontalHeader()->setHighlightSections(false);
    const QString widest[] = {QStringLiteral("00:00:00.000  "), QStringLiteral("Category   "),
                              QStringLiteral("WORKBENCH   "), QStringLiteral("Level   ")};
    for (int column = 0; column < LogModel::TextColumn; ++column) {
        view->setColumnWidth(column, metrics.horizontalAdvance(widest[column]) + 16);
    }
    connect(m_ui->lineEdit_filter, &QLineEdit::textChanged, &m_filter,
            &QSortFilterProxyModel::setFilterFixedString);
    connect(m_ui->pushButton_copy, &QPushButton::clicked, this, &LogDock::copy);
    connect(m_ui->pushButton_save, &QPushButton::clicked, this, &LogDock::save);
    connect(m_ui->pushButton_clear, &QPushButton::clicked, &log, &LogModel::clear);
    auto* const shortcut = new QShortcut(QKeySequence::Copy, view);
    shortcut->setContext(Qt::WidgetShortcut);
    connect(shortcut, &QShortcut::activated, this, &LogDock::copy);
    const QScrollBar* const bar = view->verticalScrollBar();
    connect(bar, &QScrollBar::valueChanged, this,
            [this, bar] { m_atEnd = bar->value() >= bar->maximum(); });
    connect(bar, &QScrollBar::rangeChanged, this, [this, view] {
        if (m_atEnd) {
            view->scrollToBottom();
        }
    });
}

LogDock::~LogDock() = default;

QString LogDock::shownText() const {
    QModelIndexList indexes = m_ui->tableView_log->selectionModel()->selectedRows();
    if (indexes.isEmpty()) {
        for (int row = 0; row < m_filter.rowCount(); ++row) {
            indexes += m_filter.index(row, 0);
        }
    }
    std::sort(indexes.begin(), indexes.end());
    QString text;
    for (const QModelIndex& index : qAsConst(indexes)) {
        text += m_log.rowText(m_filter.mapToSource(index).row()) + QLatin1Char('\n');
    }
    return text;
}

void LogDock::copy() {
    QGuiApplication::clipboard()->setText(shownText());
}

bool LogDock::saveTo(const QString& fileName, QString* error) const {
    QSaveFile file(fileName);
    const bool good = file.open(QIODevice::WriteOnly) && file.write(m_log.toText().toUtf8()) >= 0 &&
                      file.commit();
    *error = file.errorString();
    return good;
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
