#pragma once

#include <QObject>
#include <QSize>
#include <QTimer>

#include <vector>

class QDockWidget;
class QMainWindow;

namespace workbench {

/// Lets a window that shows more than its screen has room for, or than its maximumSize() allows,
/// give way: first what stands in its middle goes until there is room for it again; then docks that
/// stand beside each other, or one above another, become tabs, the one shown last first. Where that
/// is not enough, so do docks at different edges. What became a tab stays one.
class DockRoom : public QObject {
    Q_OBJECT

public:
    explicit DockRoom(QMainWindow& window);

    /// May be deleted at any time.
    void watch(QDockWidget* dock);

    /// Whether the middle may go. The middle itself is left to the owner, see middleMoved().
    void setMiddleOptional(bool isOptional);
    bool isMiddleFolded() const { return m_isMiddleOptional && m_isMiddleFolded; }

Q_SIGNALS:
    void middleMoved(); ///< isMiddleFolded() has changed

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void check();
    void foldMiddle(bool isFolded);
    bool foldOne(Qt::Orientation direction);
    void makeTabsOf(QDockWidget& partner, QDockWidget& moved);
    int widthOfRow(const QDockWidget& dock) const;
    QDockWidget* partnerOf(const QDockWidget& dock, Qt::Orientation direction,
                           bool atTheSameEdge) const;
    QSize needed() const;
    int heightOfMiddle() const;
    bool isDocked(const QDockWidget& dock) const;

    QMainWindow& m_window;
    std::vector<QDockWidget*> m_docks; // the one that was shown last is the last
    QTimer m_check;
    bool m_isMiddleOptional = false;
    bool m_isMiddleFolded = false;
};

} // namespace workbench
