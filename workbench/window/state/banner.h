#pragma once

#include "workbench/window/look/levellook.h"

#include <QPointer>
#include <QString>
#include <QToolBar>

#include <map>

class QMainWindow;
class QVBoxLayout;

namespace workbench {

/// What the banner can tell of, the most important first: the order in which lines stand.
enum class BannerTopic {
    Connection, ///< the link to the controller is lost
    NoData,     ///< data lines ought to come and do not
    Restart,    ///< the controller was started anew in the middle of something
    Recording,  ///< a recording ended by itself, or is about to
    Replay,     ///< a recording is shown, not a controller
    Notice      ///< anything else
};

/// A strip of words over the docks. Each topic has at most one line, which its owner sets and
/// clears; the strip is there as long as any has one. GUI thread only.
///
/// Texts are plain text, wrapped where they do not fit; assistive tools are told of each new one.
class Banner : public QToolBar {
    Q_OBJECT

public:
    enum class Ending {
        ByOwner, ///< a state: stays until clear()
        ByUser   ///< something that happened: has a button that takes the line away
    };

    explicit Banner(QWidget* parent = nullptr);

    /// Puts the strip on a line of its own under the window's other tool bars; again after
    /// restoreState(), which may not know of it.
    void placeIn(QMainWindow& window);

    /// Shows `text` as the topic's line, or puts it in the place of the one before. One that is
    /// shown already costs nothing.
    void set(BannerTopic topic, Severity level, const QString& text,
             Ending ending = Ending::ByOwner);

    /// Takes the topic's line away; nothing when there is none.
    void clear(BannerTopic topic);

    QString text(BannerTopic topic) const; ///< as it was set; empty without a line
    QStringList
    lines() const; ///< as they are read, level in words, from the top; the overlaid one last

    /// A line that is painted at once, without the event loop, for a GUI thread that is about to
    /// wait. It lies on what stands under the strip and moves nothing.
    void showAtOnce(Severity level, const QString& text);
    void hideAtOnce();

    /// A strip with lines is visible, one without is not, whatever a saved state says.
    void setVisible(bool visible) override;

    static QString word(Severity level); ///< translated

Q_SIGNALS:
    /// The user took the line away.
    void dismissed(workbench::BannerTopic topic);
    void appears(); ///< the strip, in a moment
    void gone();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    class Line;

    int upperEdgeOfDocks() const;
    void showLines();
    void fitHeight();

    QWidget* m_content;
    QVBoxLayout* m_layout;
    std::map<BannerTopic, Line*> m_lines;
    QPointer<QWidget> m_overlay;
};

} // namespace workbench
