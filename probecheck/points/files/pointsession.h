#pragma once

#include "general/leavablethread.h"
#include "probecheck/points/files/sessionwriter.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <memory>
#include <vector>

namespace points {

/// Keeps what happens to the list in a file, so that nothing is lost when the program or the
/// machine stops. A thread of its own writes, so that no disk makes the window wait; what it
/// reports comes as signals of the event loop. GUI thread only.
///
/// Instances do not meet: each has a file of its own, locked as long as it lives. What one that has
/// crashed leaves is unlocked, and is offered to whoever looks for it first.
class PointSession : public QObject {
    Q_OBJECT

public:
    /// The end waits for the disk, but together with waitForDisk() no longer than this. A disk that
    /// answers later still gets all that was handed over, as long as the program runs.
    static constexpr int longestWaitMs = 2000;

    /// `sync` is fsync(), but for tests.
    explicit PointSession(QString folder, SessionFile::Sync sync = SessionFile::systemSync());

    /// Tries once more to write what is not written yet.
    ~PointSession() override;

    /// Where sessions are kept: a folder of the host's own data.
    static QString defaultFolder();

    /// Looks for what was left: leftFound() tells when others have left sessions with points,
    /// soundsFoundOff() when sounds were last not wanted.
    void lookForLeft();

    /// Keeps for later sessions whether sounds are wanted, as far as the disk lets it.
    void rememberSounds(bool wanted);

    /// Keeps these points. Each call is a step: settled() tells when it is on the disk.
    void addPoints(const std::vector<PointRecord>& points);
    void addRenaming(int number, const QString& name);
    void addDeletion(const std::vector<int>& numbers);
    void addRestoring(const std::vector<int>& numbers);

    /// Steps so far, and those of them that are on the disk as far as reported.
    quint64 steps() const { return m_steps; }
    quint64 stepsOnDisk() const { return m_stepsOnDisk; }

    /// The last look before the end: how many steps are not on the disk then, and why.
    SessionWriter::Unwritten waitForDisk();

    /// What was found goes: its points have been added to this session, or nobody wants them. Those
    /// that were added are on the disk here before the others are taken away.
    void dropLeft();

    /// At the end, nobody wants this session's points any more: its file goes with this object.
    void removeAtEnd() { m_removeAtEnd = true; }

Q_SIGNALS:
    /// All steps up to stepsOnDisk() are on the disk.
    void settled();

    /// The newest steps are not on the disk for this reason, in the system's words. They are tried
    /// again each second until settled() tells of them.
    void failed(const QString& reason);

    /// Points that others have left, in the order of their sessions, numbers ascending.
    void leftFound(const std::vector<points::PointRecord>& points);

    /// The last one that was asked wanted no sounds.
    void soundsFoundOff();

protected:
    void customEvent(QEvent* event) override;

private:
    friend class SessionWriter;

    void append(const QByteArray& line);
    void settle(quint64 steps);

    quint64 m_steps = 0;
    quint64 m_stepsOnDisk = 0;
    bool m_removeAtEnd = false;
    std::chrono::milliseconds m_patience{longestWaitMs}; ///< what is left of it
    std::shared_ptr<SessionWriter> m_writer;
    LeavableThread m_thread;
};

} // namespace points
