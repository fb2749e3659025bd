#include "workbench/window/state/banner.h"

#include <QAccessible>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMainWindow>
#include <QPainter>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace workbench {

namespace {

constexpr int narrowest = 120; // the words wrap, the window need not grow for them

} // namespace

class Banner::Line : public QWidget {
public:
    Line(QWidget& parent, const QString& name)
        : QWidget(&parent)
        , m_symbol(new QLabel(this))
        , m_label(new QLabel(this))
        , m_dismiss(new QToolButton(this)) {
        setObjectName(QLatin1String("bannerLine") + name);
        m_label->setObjectName(QLatin1String("bannerText") + name);
        setAttribute(Qt::WA_OpaquePaintEvent); // what lies below need not be painted for it
        m_label->setTextFormat(Qt::PlainText);
        m_label->setWordWrap(true);
        m_label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Minimum);
        m_dismiss->setObjectName(QLatin1String("bannerDismiss") + name);
        m_dismiss->setText(Banner::tr("Dismiss"));
        m_dismiss->setToolTip(Banner::tr("Take this line away"));
        m_dismiss->setFocusPolicy(Qt::StrongFocus);
        auto* const layout = new QHBoxLayout(this);
        layout->setContentsMargins(6, 3, 6, 3);
        layout->addWidget(m_symbol, 0, Qt::AlignTop);
        layout->addWidget(m_label, 1);
        layout->addWidget(m_dismiss, 0, Qt::AlignTop);
    }

    void tell(Severity level, const QString& text, Ending ending) {
        m_level = level;
        m_text = text;
        m_dismiss->setVisible(ending == Ending::ByUser);
        m_label->setText(shownText());
        m_label->setAccessibleName(shownText());
        m_dismiss->setAccessibleName(Banner::tr("Dismiss: %1").arg(text));
        applyLook();
    }

    bool shows(Severity level, const QString& text, Ending ending) const {
        return level == m_level && text == m_text &&
               (ending == Ending::ByUser) == !m_dismiss->isHidden();
    }

    void applyLook() {
        const int size = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
        m_symbol->setPixmap(
            style()->standardIcon(LevelLook::of(m_level).symbol, nullptr, this).pixmap(size));
        update();
    }

    QString shownText() const { return Banner::tr("%1: %2").arg(word(m_level), m_text); }
    const QString& text() const { return m_text; }
    QWidget* label() const { return m_label; }
    const QToolButton* dismissButton() const { return m_dismiss; }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter(this).fillRect(rect(),
                                LevelLook::of(m_level).tinted(palette().color(QPalette::Window)));
    }

private:
    QLabel* m_symbol;
    QLabel* m_label;
    QToolButton* m_dismiss;
    Severity m_level = Severity::Information;
    QString m_text;
};

Banner::Banner(QWidget* parent)
    : QToolBar(parent)
    , m_content(new QWidget(this))
    , m_layout(new QVBoxLayout(m_content)) {
    setObjectName(QStringLiteral("banner"));
    setWindowTitle(tr("Notices"));
    setAccessibleName(tr("Notices"));
    setMovable(false);
    setFloatable(false);
    setAllowedAreas(Qt::TopToolBarArea);
    setContextMenuPolicy(Qt::PreventContextMenu);
    toggleViewAction()->setVisible(false); // the lines decide
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(1);
    m_content->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_content->setMinimumWidth(narrowest);
    addWidget(m_content);
    setVisible(false);
}

QString Banner::word(Severity level) {
    switch (level) {
    case Severity::Error:
        return tr("Error");
    case Severity::Warning:
        return tr("Warning");
    case Severity::Information:
        break;
    }
    return tr("Note");
}

void Banner::set(BannerTopic topic, Severity level, const QString& text, Ending ending) {
    const bool isNew = m_lines.count(topic) == 0;
    if (isNew) {
        auto* const line = new Line(*m_content, QString::number(int(topic)));
        const auto place = m_lines.emplace(topic, line).first;
        m_layout->insertWidget(int(std::distance(m_lines.begin(), place)), line);
        connect(line->dismissButton(), &QToolButton::clicked, this, [this, topic] {
            clear(topic);
            Q_EMIT dismissed(topic);
        });
    }
    Line* const line = m_lines[topic];
    if (!isNew && line->shows(level, text, ending)) {
        return;
    }
    line->tell(level, text, ending);
    showLines();
    QAccessibleEvent event(line->label(), isNew ? QAccessible::Alert : QAccessible::NameChanged);
    QAccessible::updateAccessibility(&event);
}

// The button of the line may be what takes it away.
void Banner::clear(BannerTopic topic) {
    const auto found = m_lines.find(topic);
    if (found == m_lines.end()) {
        return;
    }
    Line* const line = found->second;
    m_lines.erase(found);
    m_layout->removeWidget(line);
    line->hide();
    line->deleteLater();
    showLines();
}

QString Banner::text(BannerTopic topic) const {
    const auto found = m_lines.find(topic);
    return found == m_lines.end() ? QString() : found->second->text();
}

QStringList Banner::lines() const {
    QStringList texts;
    for (const auto& [topic, line] : m_lines) {
        texts += line->shownText();
    }
    if (m_overlay) {
        texts += static_cast<const Line*>(m_overlay.data())->shownText();
    }
    return texts;
}

void Banner::placeIn(QMainWindow& window) {
    window.removeToolBar(this);
    window.addToolBarBreak(Qt::TopToolBarArea);
    window.addToolBar(Qt::TopToolBarArea, this);
    setVisible(true);
}

void Banner::setVisible(bool) {
    const bool isWanted = !m_lines.empty();
    if (isWanted && isHidden()) {
        Q_EMIT appears();
    }
    const bool wasShown = !isHidden();
    QToolBar::setVisible(isWanted);
    if (!isWanted && wasShown) {
        Q_EMIT gone();
    }
}

void Banner::showLines() {
    for (const auto& [topic, line] : m_lines) {
        line->show();
    }
    fitHeight();
    if (isHidden() == !m_lines.empty()) {
        setVisible(!m_lines.empty());
    }
}

// Tool bars do not ask their widgets for a height to their width.
void Banner::fitHeight() {
    const QMargins margins = contentsMargins() + layout()->contentsMargins();
    // As long as it is hidden it has no width yet, but will have the window's.
    const int whole =
        isHidden() && parentWidget() != nullptr ? parentWidget()->width() : this->width();
    const int width = std::max(narrowest, whole - margins.left() - margins.right());
    const int height = m_lines.empty() ? 0 : m_layout->totalHeightForWidth(width);
    if (m_content->minimumHeight() != height || m_content->maximumHeight() != height) {
        m_content->setFixedHeight(height);
    }
}

void Banner::resizeEvent(QResizeEvent* event) {
    QToolBar::resizeEvent(event);
    fitHeight();
}

void Banner::changeEvent(QEvent* event) {
    QToolBar::changeEvent(event);
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange) {
        for (const auto& [topic, line] : m_lines) {
            line->applyLook();
        }
        fitHeight();
    }
}

int Banner::upperEdgeOfDocks() const {
    const auto* const window = qobject_cast<const QMainWindow*>(this->window());
    int edge = 0;
    if (window != nullptr && window->menuWidget() != nullptr) {
        edge = window->menuWidget()->geometry().bottom() + 1;
    }
    const auto bars =
        this->window()->findChildren<QToolBar*>(QString(), Qt::FindDirectChildrenOnly);
    for (QToolBar* const bar : bars) {
        const bool isAbove = window != nullptr && bar->isVisible() && !bar->isFloating() &&
                             window->toolBarArea(bar) == Qt::TopToolBarArea;
        edge = isAbove ? std::max(edge, bar->geometry().bottom() + 1) : edge;
    }
    return edge;
}

// Nothing else is laid out or painted: what a module shows may be half done while it asks.
void Banner::showAtOnce(Severity level, const QString& text) {
    QWidget* const top = window();
    hideAtOnce();
    auto* const line = new Line(*top, QStringLiteral("AtOnce"));
    m_overlay = line;
    line->tell(level, text, Ending::ByOwner);
    line->setGeometry(0, upperEdgeOfDocks(), top->width(),
                      line->layout()->totalHeightForWidth(top->width()));
    line->layout()->activate();
    line->show();
    line->raise();
    line->repaint();
}

void Banner::hideAtOnce() {
    delete m_overlay;
}

} // namespace workbench
