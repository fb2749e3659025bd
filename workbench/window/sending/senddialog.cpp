#include "workbench/window/sending/senddialog.h"

#include "ui_senddialog.h"
#include "workbench/text/plaintip.h"
#include "workbench/window/look/dialogroom.h"
#include "workbench/window/sending/outletcontrol.h"

#include <QHeaderView>
#include <QLocale>
#include <QPushButton>
#include <QStringList>

#include <algorithm>
#include <utility>

namespace workbench {

namespace {

enum OutletColumn {
    OutletUrlColumn,
    OutletStateColumn,
    OutletSentColumn,
    OutletDroppedColumn,
    OutletResultsColumn,
    OutletColumnCount
};

constexpr int showIntervalMs = 500;
constexpr int trialIntervalMs = 100;
constexpr int leastWidthInCharacters = 110;
constexpr int mostWidthInCharacters = 150;
constexpr int sentenceWidthInCharacters = 45;
constexpr int leastColumnInCharacters = 16;
constexpr int outletsHeightInLines = 16;

QString resultsText(const OutletWord& word) {
    QStringList parts;
    const QLocale locale;
    if (word.sentResults > 0) {
        parts += SendDialog::tr("%1 sent").arg(locale.toString(word.sentResults));
    }
    if (word.waitingResults > 0) {
        parts += SendDialog::tr("%1 waiting").arg(locale.toString(word.waitingResults));
    }
    if (word.droppedResults > 0) {
        parts += SendDialog::tr("%1 dropped").arg(locale.toString(word.droppedResults));
    }
    return parts.join(QStringLiteral(", "));
}

QStringList cellsOf(const OutletHub::Entry& entry, const OutletControl& control) {
    const OutletWord& word = entry.status.word;
    const QLocale locale;
    return {
        entry.url.text,
        QStringLiteral("%1: %2").arg(OutletControl::stateText(word.state), control.textOf(word)),
        locale.toString(entry.status.sentFrames), locale.toString(entry.status.droppedFrames),
        resultsText(word)};
}

void fillRow(QTableWidget& table, int row, const QStringList& cells) {
    for (int column = 0; column < OutletColumnCount; ++column) {
        QTableWidgetItem* item = table.item(row, column);
        if (item == nullptr) {
            item = new QTableWidgetItem;
            table.setItem(row, column, item);
        }
        if (item->text() != cells.at(column)) {
            item->setText(cells.at(column));
            item->setToolTip(plainTip(cells.at(column))); // may be longer than the column is wide
        }
    }
}

} // namespace

SendDialog::SendDialog(OutletControl& control, OutletHub::Maker trialMaker, QWidget* parent,
                       std::chrono::milliseconds longestTrial)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::SendDialog>())
    , m_control(control)
    , m_trialMaker(std::move(trialMaker))
    , m_longestTrial(longestTrial) {
    m_ui->setupUi(this);
    m_ui->buttonBox->button(QDialogButtonBox::Close)->setText(tr("Close"));
    m_ui->buttonBox->button(QDialogButtonBox::Close)->setAutoDefault(false);
    m_ui->tableWidget_outlets->verticalHeader()->setSectionResizeMode(
        QHeaderView::ResizeToContents);
    connect(m_ui->pushButton_add, &QPushButton::clicked, this, &SendDialog::addOutlet);
    connect(m_ui->pushButton_test, &QPushButton::clicked, this, &SendDialog::tryOutlet);
    connect(m_ui->pushButton_remove, &QPushButton::clicked, this, &SendDialog::removeSelected);
    connect(m_ui->lineEdit_url, &QLineEdit::textChanged, this, &SendDialog::showButtons);
    connect(m_ui->tableWidget_outlets, &QTableWidget::itemSelectionChanged, this,
            &SendDialog::showButtons);
    connect(&m_showTimer, &QTimer::timeout, this, &SendDialog::showEntries);
    connect(&m_trialTimer, &QTimer::timeout, this, &SendDialog::followTrial);
    m_showTimer.start(showIntervalMs);
    showEntries();
    showButtons();
    const int character = fontMetrics().averageCharWidth();
    QHeaderView* const header = m_ui->tableWidget_outlets->horizontalHeader();
    header->setMinimumSectionSize(
        std::max(header->sectionSizeHint(OutletStateColumn), leastColumnInCharacters * character));
    m_ui->tableWidget_outlets->resizeColumnsToContents();
    const int columns = header->length() + std::max(0, sentenceWidthInCharacters * character -
                                                           header->sectionSize(OutletStateColumn));
    for (const int column : {OutletSentColumn, OutletDroppedColumn, OutletResultsColumn}) {
        header->setSectionResizeMode(column, QHeaderView::ResizeToContents);
    }
    // Sentences: they take what the others leave.
    header->setSectionResizeMode(OutletStateColumn, QHeaderView::Stretch);
    const QMargins margins = layout()->contentsMargins();
    const int besides =
        margins.left() + margins.right() + 2 * m_ui->tableWidget_outlets->frameWidth();
    resize(size().expandedTo(QSize(std::clamp(columns + besides, leastWidthInCharacters * character,
                                              mostWidthInCharacters * character),
                                   outletsHeightInLines * fontMetrics().height())));
    new DialogRoom(*this);
}

SendDialog::~SendDialog() = default;

bool SendDialog::readUrl(OutletUrl* url) {
    QString error;
    if (url->parse(m_ui->lineEdit_url->text(), &error)) {
        return true;
    }
    say(error);
    return false;
}

void SendDialog::say(const QString& text) {
    m_ui->label_word->setText(text);
}

void SendDialog::addOutlet() {
    OutletUrl url;
    if (!readUrl(&url)) {
        return;
    }
    QString error;
    if (!m_control.add(url, OutletControl::Memory::Kept, &error)) {
        say(error);
        return;
    }
    say(QString());
    m_ui->lineEdit_url->clear();
    showEntries();
    m_ui->tableWidget_outlets->resizeColumnToContents(OutletUrlColumn);
}

void SendDialog::removeSelected() {
    const int row = m_ui->tableWidget_outlets->currentRow();
    if (row < 0) {
        return;
    }
    m_control.remove(m_ui->tableWidget_outlets->item(row, OutletUrlColumn)->text());
    say(QString());
    showEntries();
    showButtons();
}

void SendDialog::tryOutlet() {
    OutletUrl url;
    if (!readUrl(&url)) {
        return;
    }
    QString error;
    std::unique_ptr<OutletChannel> channel = m_trialMaker(url, &error);
    if (channel == nullptr) {
        say(error);
        return;
    }
    m_trial = std::make_unique<Outlet>(std::move(channel));
    m_trialBegin = Clock::now();
    m_trialTimer.start(trialIntervalMs);
    say(tr("Trying %1 …").arg(url.text));
    showButtons();
}

void SendDialog::followTrial() {
    // Where nobody answers, only what is sent shows whether it comes to anything.
    auto empty = std::make_shared<TrackedFrame>();
    empty->seconds = 0.0;
    m_trial->add(empty);
    const OutletWord word = m_trial->status().word;
    const auto time = Clock::now() - m_trialBegin;
    if (word.state == OutletWord::State::Refused) {
        endTrial(tr("It does not work: %1").arg(word.text));
    } else if (word.state == OutletWord::State::Connected && time >= m_longestTrial / 4) {
        endTrial(tr("It works: %1").arg(word.text)); // it has had time to turn out otherwise
    } else if (time >= m_longestTrial) {
        endTrial(tr("Nobody has answered: %1").arg(word.text));
    }
}

void SendDialog::endTrial(const QString& text) {
    m_trialTimer.stop();
    m_trial.reset();
    say(text);
    showButtons();
}

void SendDialog::showEntries() {
    QTableWidget& table = *m_ui->tableWidget_outlets;
    const std::vector<OutletHub::Entry> entries = m_control.entries();
    table.setRowCount(static_cast<int>(entries.size()));
    for (int row = 0; row < table.rowCount(); ++row) {
        fillRow(table, row, cellsOf(entries[static_cast<std::size_t>(row)], m_control));
    }
    m_ui->label_none->setVisible(entries.empty());
    m_ui->label_replay->setVisible(m_control.isReplay());
}

void SendDialog::showButtons() {
    const bool hasText = !m_ui->lineEdit_url->text().trimmed().isEmpty();
    m_ui->pushButton_add->setEnabled(hasText);
    m_ui->pushButton_test->setEnabled(hasText && m_trial == nullptr);
    m_ui->pushButton_remove->setEnabled(!m_ui->tableWidget_outlets->selectedItems().isEmpty());
}

} // namespace workbench
