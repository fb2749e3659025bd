#pragma once

#include <QObject>
#include <QString>

#include <cstdint>
#include <vector>

class QKeySequence;
class QWidget;

/// Whose a press of a button on a tool is when several pages want it: of those in sight, that of
/// the page which the user has used last. A page is used when it comes into sight, by a key or the
/// mouse in it, and when the focus moves into it from elsewhere. A letter (Alt+S) that stands in
/// several of them is that page's as well. GUI thread only.
class ButtonClaim : public QObject {
    Q_OBJECT

public:
    static constexpr int anyButton = -1;
    static constexpr int noButton = -2;

    /// Watches a page that has all of its widgets. In a dock it is in sight when it is not behind
    /// another one's tab.
    void join(QWidget* page);

    /// Nothing is the page's any more. A page that never joined is borne.
    void leave(const QObject* page);

    /// Which button a page that has joined wants, counted from 0, and what it does, with "%1" for
    /// the button: "%1 starts a check".
    void want(const QWidget* page, int button, const QString& effect);

    /// Whether the user can see a page that has joined.
    bool isInSight(const QWidget* page) const;

    /// Those of the pressed buttons (bit n: button n) that are this page's.
    std::uint32_t shareOf(const QWidget* page, std::uint32_t pressed) const;

    /// What a press does, for the user; the same in all pages.
    QString words() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void moved(); ///< isInSight(), shareOf() and words() may be others

private:
    struct Page {
        QWidget* widget;
        bool isInSight;
        int button = noButton;
        QString effect;
        std::uint32_t wanted() const;
    };
    using Pages = std::vector<Page>;

    Pages::iterator find(const QObject* page);
    Pages::iterator pageAround(const QObject* widget);
    void use(Pages::iterator page);
    void setInSight(Pages::iterator page, bool isInSight);
    void followDock(const QWidget* page, bool isVisible);
    void followFocus(const QWidget* before, const QWidget* now);
    bool giveLetter(const QKeySequence& letter) const;

    Pages m_pages; ///< the one used last is the last
};
