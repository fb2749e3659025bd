#include "workbench/window/banner.h"

#include <QAccessible>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMainWindow>
#include <QPainter>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

namespace workbench {

namespace {

constexpr int narrowest = 120;    // the words wrap, the window need not grow for them
constexpr qreal tintShare = 0.14; // of the level's hue in the window's own colour

struct Look {
    QStyle::StandardPixmap symbol;
    QColor hue;
};

Look lookOf(BannerLevel level) {
    switch (level) {
    case BannerLevel::Error:
        return {QStyle::SP_MessageBoxCritical, QColor(200, 30, 30)};
    case BannerLevel::Warning:
        return {QStyle::SP_MessageBoxWarning, QColor(220, 150, 0)};
    case BannerLevel::Information:
        break;
    }
    return {QStyle::SP_MessageBoxInformation, QColor(40, 110, 200)};
}

QColor tinted(const QColor& window, const QColor& hue) {
    const auto mix = [](qreal one, qreal other) {
        return one * (1.0 - tintShare) + other * tintShare;
    };
    return QColor::fromRgbF(mix(window.redF(), hue.redF()), mix(window.greenF(), hue.greenF()),
                            mix(window.blueF(), hue.blueF()));
}

} // namespace

class Banner::Line : public QWidget {
public:
    explicit Line(Banner& banner, BannerTopic topic)
        : QWidget(banner.m_content)
        , m_symbol(new QLabel(this))
        , m_label(new QLabel(this))
        , m_dismiss(new QToolButton(this)) {
        setObjectName(QStringLiteral("bannerLine%1").arg(int(topic)));
        m_label->setObjectName(QStringLiteral("bannerText%1").arg(int(topic)));
        m_label->setTextFormat(Qt::PlainText);
        m_label->setWordWrap(true);
        m_label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Minimum);
        m_dismiss->setObjectName(QStringLiteral("bannerDismiss%1").arg(int(topic)));
        m_dismiss->setText(Banner::tr("Dismiss"));
        m_dismiss->setToolTip(Banner::tr("Take this line away"));
        m_dismiss->setFocusPolicy(Qt::StrongFocus);
        auto* const layout = new QHBoxLayout(this);
        layout->setContentsMargins(6, 3, 6, 3);
        layout->addWidget(m_symbol, 0, Qt::AlignTop);
        layout->addWidget(m_label, 1);
        layout->addWidget(m_dismiss, 0, Qt::AlignTop);
    }

    void tell(BannerLevel level, const QString& text, Ending ending) {
        m_level = level;
        m_text = text;
        m_dismiss->setVisible(ending == Ending::ByUser);
        m_label->setText(shownText());
        m_label->setAccessibleName(shownText());
        m_dismiss->setAccessibleName(Banner::tr("Dismiss: %1").arg(text));
        applyLook();
    }

    bool shows(BannerLevel level, const QString& text, Ending ending) const {
        return level == m_level && text == m_text &&
               (ending == Ending::ByUser) == !m_dismiss->isHidden();
    }

    void applyLook() {
        const int size = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
        m_symbol->setPixmap(
            style()->standardIcon(lookOf(m_level).symbol, nullptr, this).pixmap(size));
        update();
    }

    QString shownText() const { return Banner::tr("%1: %2").arg(word(m_level), m_text); }
    const QString& text() const { return m_text; }
    QWidget* label() const { return m_label; }
    const QToolButton* dismissButton() const { return m_dismiss; }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter(this).fillRect(rect(),
                                tinted(palette().color(QPalette::Window), lookOf(m_level).hue));
    }

private:
    QLabel* m_symbol;
    QLabel* m_label;
    QToolButton* m_dismiss;
    BannerLevel m_level = BannerLevel::Information;
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

QString Banner::word(BannerLevel level) {
    switch (level) {
    case BannerLevel::Error:
        return tr("Error");
    case BannerLevel::Warning:
        return tr("Warning");
    case BannerLevel::Information:
        break;
    }
    return tr("Note");
}

void Banner::set(BannerTopic topic, BannerLevel level, const QString& text, Ending ending) {
    const bool isNew = m_lines.count(topic) == 0;
    if (isNew) {
        auto* const line = new Line(*this, topic);
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
    return texts;
}

void Banner::placeIn(QMainWindow& window) {
    window.removeToolBar(this);
    window.addToolBarBreak(Qt::TopToolBarArea);
    window.addToolBar(Qt::TopToolBarArea, this);
    setVisible(true);
}

void Banner::setVisible(bool) {
    QToolBar::setVisible(!m_lines.empty());
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
    const int width = std::max(narrowest, this->width() - margins.left() - margins.right());
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

void Banner::paintNow() {
    QWidget* const top = window();
    if (!top->isVisible()) {
        return;
    }
    // Twice: only a strip that stands in the window knows its width, and with it its height.
    for (int i = 0; i < 2; ++i) {
        m_layout->activate();
        layout()->activate();
        if (top->layout() != nullptr) {
            top->layout()->activate();
        }
        fitHeight();
    }
    top->repaint();
}

} // namespace workbench
