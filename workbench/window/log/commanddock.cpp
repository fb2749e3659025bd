#include "workbench/window/log/commanddock.h"

#include "ui_commanddock.h"
#include "workbench/controller/command/resultwords.h"
#include "workbench/controller/controllersession.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QPointer>

namespace workbench {

namespace {

constexpr int maxShownLength = 20000;
constexpr int fewestLines = 3;

} // namespace

CommandDock::CommandDock(ControllerSession& session, QWidget* parent)
    : QDockWidget(parent)
    , m_session(session)
    , m_ui(std::make_unique<Ui::CommandDock>()) {
    m_ui->setupUi(this);
    QPlainTextEdit* const replies = m_ui->plainTextEdit_replies;
    replies->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    replies->setMinimumHeight(fewestLines * replies->fontMetrics().lineSpacing()); // it scrolls
    m_ui->lineEdit_command->installEventFilter(this);
    connect(m_ui->lineEdit_command, &QLineEdit::returnPressed, this, &CommandDock::sendTyped);
    connect(m_ui->pushButton_send, &QPushButton::clicked, this, &CommandDock::sendTyped);
}

CommandDock::~CommandDock() = default;

bool CommandDock::eventFilter(QObject* watched, QEvent* event) {
    QLineEdit* const line = m_ui->lineEdit_command;
    if (watched == line && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Up || key == Qt::Key_Down) {
            line->setText(key == Qt::Key_Up ? m_history.previous(line->text())
                                            : m_history.next(line->text()));
            return true;
        }
    }
    return QDockWidget::eventFilter(watched, event);
}

void CommandDock::sendTyped() {
    const QString command = m_ui->lineEdit_command->text().trimmed();
    if (!command.isEmpty()) {
        m_ui->lineEdit_command->clear();
        run(command);
    }
}

void CommandDock::run(const QString& command) {
    m_history.add(command);
    append(QStringLiteral("> ") + command);
    if (!m_session.isReady()) {
        append(QStringLiteral("! ") + resultWords(NotConnected));
        return;
    }
    m_session.channel().askLater(command.toStdString(), [self = QPointer<CommandDock>(this)](
                                                            const CommandChannel::Answer& answer) {
        if (!self) {
            return;
        }
        if (!answer.line.empty()) {
            self->append(QStringLiteral("< ") + QString::fromUtf8(answer.line.c_str()));
        }
        if (answer.result < 0) {
            self->append(QStringLiteral("! ") + resultWords(answer.result));
        }
    });
}

void CommandDock::append(const QString& line) {
    m_ui->plainTextEdit_replies->appendPlainText(line.left(maxShownLength));
}

} // namespace workbench
