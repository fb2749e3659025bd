#pragma once

#include <QList>
#include <QMap>
#include <QObject>
#include <QSize>
#include <QString>

#include <map>
#include <memory>

class QDockWidget;
class QMainWindow;

namespace workbench {

/// A dock that was floated and is docked again at the same edge gets the size that it had there;
/// one among tabs comes to the front. So do the others: of several that were floated, in whatever
/// order they come back, each that is docked has what it had when all of them were. Unless the
/// window has got another room for docks meanwhile, or other docks, or the user has moved a border
/// between them: then they keep what the user sees.
class DockSizes : public QObject {
    Q_OBJECT

public:
    /// Object name to size.
    using ByName = QMap<QString, QSize>;

    explicit DockSizes(QMainWindow& window);

    /// May be deleted at any time.
    void watch(QDockWidget* dock);

    /// As soon as the dock is in view it is at the least so high, if there is room.
    void wish(QDockWidget* dock, int height);

    /// Of the docks in view; of tabs, of the one in front.
    ByName sizes() const;

    /// Gives those of them that are in view these sizes, as far as there is room.
    void give(const ByName& sizes);

Q_SIGNALS:
    void movedByUser(); ///< a border between docks

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Docked {
        QSize size;
        int area = 0;         // Qt::DockWidgetArea of it
        bool hasTabs = false; // beside it
    };

    struct Layout {
        std::map<QDockWidget*, Docked> docks;
        QSize room; // of all of them
    };

    struct Place {
        Docked docked;                        // as it is, or was last
        std::shared_ptr<const Layout> before; // it was floated, as m_layout
        bool isReturning = false;             // docked again, not laid out yet
        int wished = 0;                       // height, until it is given
    };

    void onResized(QDockWidget& dock);
    void onFloating(QDockWidget& dock, bool isFloating);
    void onMouseButton(bool isPressed);
    void putBack(QDockWidget& dock);
    void resize(const QList<QDockWidget*>& docks, const QList<int>& sizes,
                Qt::Orientation direction);
    bool hasTabs(QDockWidget& dock) const;
    bool isDocked(const QDockWidget& dock) const;
    bool isInFront(const QDockWidget& dock) const;
    std::map<QDockWidget*, Docked> allDocked() const;
    bool isOnlyFloated(const Layout& layout) const;
    QSize roomOfDocks() const;
    void giveWished(QDockWidget& dock);

    QMainWindow& m_window;
    std::map<QDockWidget*, Place> m_places;
    std::shared_ptr<const Layout> m_layout; // before the first of those that float was floated
    std::map<QDockWidget*, QSize> m_sizesAtPress;
};

} // namespace workbench
