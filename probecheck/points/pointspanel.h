#pragma once

#include "probecheck/data/probedata.h"
#include "probecheck/points/capture.h"
#include "probecheck/points/files/pointexport.h"
#include "probecheck/points/files/pointsession.h"
#include "probecheck/points/pointlistmodel.h"
#include "probecheck/points/soundsink.h"
#include "ui_pointspanel.h"

#include <QHash>
#include <QPointer>
#include <QSortFilterProxyModel>
#include <QTimer>
#include <QWidget>

#include <cstdint>
#include <memory>

class QScrollArea;

/// The dock's page of the captured points: captures them, lists them, keeps them; it is scrolled
/// where it has less height than it needs. Every captured point is also one line of the host's log,
/// category "result". Nothing is written to the controller. GUI thread only.
class PointsPanel : public QWidget {
    Q_OBJECT

public:
    static constexpr int diskPatienceMs = 5000; ///< after which a point counts as not kept yet
    /// However its disk hangs, the end of a page takes no longer than this.
    static constexpr int longestEndMs =
        points::PointSession::longestWaitMs + points::PointExport::longestWaitMs;

    /// `source` may go before this object. Sessions are kept in `folder`; `sync` is fsync(), but
    /// for tests.
    PointsPanel(ProbeData* source, QWidget* parent,
                const QString& folder = points::PointSession::defaultFolder(),
                points::SessionFile::Sync sync = points::SessionFile::systemSync());
    /// What is not on the disk by then is told to the host's log.
    ~PointsPanel() override;

    QSize sizeHint() const override; ///< nothing is scrolled but the list

    points::PointListModel& list() { return m_list; }

    /// Where sounds go: the loudspeaker by default.
    void setSounds(std::unique_ptr<points::SoundSink> sounds) { m_sounds = std::move(sounds); }

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Hold {
        double duration;  ///< s
        double tolerance; ///< mm
    };

    void setUpPage();
    void fitWidth();

    // What comes from outside.
    void followData();
    void followTools();
    void claimButton();
    void showButtons();
    void followSight();
    void sayFarewell();
    void follow(const ProbeSamples& samples);
    void followButtons(const ProbeSample& sample, double now);
    Hold askHold(int tool);
    bool askHasNoReference(int tool);
    double ask(const char* format, int tool, double otherwise, const char* error);

    // The capture.
    void setUpCapture();
    void refuseReplay();
    void captureOrCancel();
    void chooseTool();
    void chooseHold();
    void applyHold();
    void hear(points::Notice notice);
    void takePoint();
    void answerDisk(bool isOnDisk);
    QString wordsOf(points::Notice notice) const;
    QString stateWords() const;
    void showNow();
    void say(const QString& words);

    // The list.
    void setUpList();
    void setUpSession();
    void addShortcut(const QKeySequence& keys, void (PointsPanel::*action)());
    std::vector<int> selectedRows() const; ///< of the list, ascending
    void showSelection();
    void deleteSelected();
    void copySelected();
    void undo();
    void redo();
    void exportAll();
    void exportTo(const QString& path);
    void offer(const std::vector<points::PointRecord>& left);
    void keepLeft();
    void discardLeft();

    Ui::PointsPanel ui;
    QScrollArea* m_scrolled = nullptr; ///< with the page
    QPointer<ProbeData> m_data;
    HostPointer m_host;
    std::unique_ptr<points::SoundSink> m_sounds;
    points::Capture m_capture;
    points::PointListModel m_list;
    QSortFilterProxyModel m_sorted;
    points::PointSession m_session;
    quint64 m_awaitedStep = 0; ///< of the session: the point on its way to the disk, 0 for none
    points::PointRecord m_awaited;
    QTimer m_diskPatience;
    bool m_hasLooked = false;       ///< for left sessions
    quint64 m_changes = 0;          ///< of the list, but deletions
    quint64 m_exportedChanges = 0;  ///< those in a file that the user has asked for
    quint64 m_exportingChanges = 0; ///< those in the last one that was begun
    const bool m_isReplay;          ///< nothing is captured
    bool m_hasSaidFarewell = false;
    std::vector<points::PointRecord> m_left;
    QHash<int, Hold> m_asked;             ///< of each tool: the controller's
    QHash<int, bool> m_referencesUnknown; ///< of each tool: without one, but nobody said "none"
    QHash<int, Hold> m_wanted;            ///< of each tool: the user's, before the controller's
    QHash<int, std::uint32_t> m_buttons;  ///< of each tool, in its last sample
    QString m_words;                      ///< what was told last; empty when that is over
    points::Capture::State m_wordsState = points::Capture::State::Off; ///< when it was told
};
