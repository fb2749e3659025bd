#pragma once

#include "probecheck/points/files/pointexport.h"

#include <QFrame>
#include <QTimer>

#include <memory>

class QLabel;
class QProgressBar;
class QPushButton;

/// An export of points from the user's side: shows how far it is and lets it be cancelled. Seen
/// only while one runs. GUI thread only.
class ExportBar : public QFrame {
    Q_OBJECT

public:
    explicit ExportBar(QWidget* parent = nullptr);

    /// Begins, unless another export runs.
    void start(const std::vector<points::PointRecord>& points, const QString& path);

    /// It is over as soon as the disk answers.
    void cancel();

    bool isRunning() const { return m_export != nullptr; }
    const QString& path() const { return m_path; } ///< of the last one

Q_SIGNALS:
    /// The export is not running any more. `words` say what has become of it.
    void over(bool isWritten, const QString& words);

private:
    void follow();
    void end();

    std::unique_ptr<points::PointExport> m_export; ///< while one runs
    QString m_path;
    QTimer m_followTimer;
    QLabel* m_label;
    QProgressBar* m_progress;
    QPushButton* m_cancel;
};
