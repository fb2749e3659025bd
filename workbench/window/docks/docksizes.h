#pragma once

#include <QList>
#include <QObject>
#include <QSize>

#include <map>

class QDockWidget;
class QMainWindow;

namespace workbench {

/// A dock that was floated and is docked again at the same edge gets the size that it had there;
/// one among tabs comes to the front. So do the others, unless the window has got another room for
/// docks meanwhile, or other docks: then they keep what the user sees.
class DockSizes : public QObject {
    Q_OBJECT

public:
    explicit DockSizes(QMainWindow& window);

    /// May be deleted at any time.
    void watch(QDockWidget* dock);

    /// As soon as the dock is in view it is at the least so high, if there is room.
    void wish(QDockWidget* dock, int height);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    using Sizes = std::map<QDockWidget*, QSize>;

    struct Place {
        QSize docked;             // as it is, or was last
        int area = 0;             // Qt::DockWidgetArea of it
        bool hadTabs = false;     // beside it
        Sizes before;             // of all docks when it was floated: they share the room
        QSize room;               // of all docks, then
        bool isReturning = false; // docked again, not laid out yet
        int wished = 0;           // height, until it is given
    };

    void onFloating(QDockWidget& dock, bool isFloating);
    void putBack(QDockWidget& dock);
    void resize(const QList<QDockWidget*>& docks, const QList<int>& sizes,
                Qt::Orientation direction);
    bool hasTabs(QDockWidget& dock) const;
    bool isCompany(const Sizes& docks) const;
    QSize roomOfDocks() const;
    void giveWished(QDockWidget& dock);

    QMainWindow& m_window;
    std::map<QDockWidget*, Place> m_places;
};

} // namespace workbench
