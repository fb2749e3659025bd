#include "workbench/window/startpage.h"

#include <QAction>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace workbench {

namespace {

constexpr double headingSize = 1.4; // times the usual letters
constexpr int widestInCharacters = 90;
constexpr int leastHeightInLines = 6;

void takeAll(QLayout& layout) {
    while (QLayoutItem* const item = layout.takeAt(0)) {
        // It may be the button that has just been pressed.
        if (QWidget* const widget = item->widget()) {
            widget->hide();
            widget->deleteLater();
        }
        delete item;
    }
}

} // namespace

StartPage::StartPage(QWidget* parent)
    : QScrollArea(parent) {
    setObjectName(QStringLiteral("StartPage"));
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus); // its buttons scroll into view by themselves
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setMinimumHeight(leastHeightInLines * fontMetrics().height());
    setAccessibleName(tr("Start page"));

    auto* const contents = new QWidget;
    contents->setMaximumWidth(widestInCharacters * fontMetrics().averageCharWidth());
    auto* const layout = new QVBoxLayout(contents);
    const int space = fontMetrics().height();
    layout->setSpacing(space);
    m_state = new QLabel;
    m_state->setObjectName(QStringLiteral("label_startState"));
    m_state->setTextFormat(Qt::PlainText);
    m_state->setWordWrap(true);
    m_state->setAccessibleName(tr("State of the connection"));
    QFont font = m_state->font();
    font.setPointSizeF(font.pointSizeF() * headingSize);
    m_state->setFont(font);
    m_choices = new QGridLayout;
    m_choices->setHorizontalSpacing(space);
    m_choices->setColumnStretch(1, 1);
    m_controllersLabel = new QLabel(tr("Last controllers:"));
    m_controllersLabel->hide();
    m_controllers = new QHBoxLayout;
    layout->addStretch();
    layout->addWidget(m_state);
    layout->addLayout(m_choices);
    layout->addWidget(m_controllersLabel);
    layout->addLayout(m_controllers);
    layout->addStretch();

    auto* const middle = new QWidget;
    auto* const sides = new QHBoxLayout(middle);
    sides->addStretch(1);
    sides->addWidget(contents, 1000);
    sides->addStretch(1);
    setWidget(middle);
}

void StartPage::addChoice(QAction* action, const QString& objectName, const QString& text,
                          const QString& description) {
    auto* const button = new QPushButton(action->icon(), text);
    button->setObjectName(objectName);
    button->setAccessibleDescription(description);
    button->setAutoDefault(true); // Enter presses the one with the focus
    const auto follow = [button, action] {
        button->setEnabled(action->isEnabled());
        button->setToolTip(action->isEnabled() ? QString() : action->toolTip());
    };
    follow();
    connect(action, &QAction::changed, button, follow);
    connect(button, &QPushButton::clicked, action, &QAction::trigger);
    auto* const label = new QLabel(description);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    const int row = m_choices->rowCount();
    m_choices->addWidget(button, row, 0);
    m_choices->addWidget(label, row, 1);
}

void StartPage::setControllers(const QVector<ControllerAddress>& controllers) {
    takeAll(*m_controllers);
    m_controllersLabel->setVisible(!controllers.isEmpty());
    for (const ControllerAddress& address : controllers) {
        const QString name = address.toString();
        auto* const button =
            new QPushButton(QString(name).replace(QLatin1Char('&'), QStringLiteral("&&")));
        button->setObjectName(QStringLiteral("pushButton_controller"));
        button->setAccessibleName(tr("Connect to %1").arg(name));
        button->setAutoDefault(true);
        connect(button, &QPushButton::clicked, this,
                [this, address] { Q_EMIT controllerWanted(address); });
        m_controllers->addWidget(button);
    }
    m_controllers->addStretch();
}

void StartPage::setState(const QString& text) {
    m_state->setText(text);
    m_state->setAccessibleDescription(text);
}

} // namespace workbench
