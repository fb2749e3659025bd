#pragma once

#include <QDockWidget>
#include <QSet>
#include <QVector>

#include <memory>

namespace Ui {
class LogDock;
}

namespace workbench {

class LogFilter;
class LogModel;

/// Shows the log: filter by text, level and source, copy, save, clear; switches on what is sent and
/// answered. Follows new lines while the last one is in view. Errors whose rows nobody has had in
/// view yet are counted in its title, and shown when it comes into view.
class LogDock : public QDockWidget {
    Q_OBJECT

public:
    explicit LogDock(LogModel& log, QWidget* parent = nullptr);
    ~LogDock() override;

    /// The selected lines, or all that the filter lets through, as text.
    QString shownText() const;

    /// Writes the whole log; false with a reason in `*error`.
    bool saveTo(const QString& fileName, QString* error) const;

Q_SIGNALS:
    /// Whether all that is sent to the controller, and its answers, are to be lines too.
    void trafficWanted(bool wanted);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void setUpFilters();
    void setUpTable();
    void copy();
    void save();
    void takeSources(int first, int last);
    void countUnseen();
    void markSeen();
    void showFirstUnseen();
    void fitColumns();
    QVector<int> unseen() const; ///< rows of the log
    bool isInView() const;
    bool isInView(int row) const;

    LogModel& m_log;
    std::unique_ptr<Ui::LogDock> m_ui;
    LogFilter* m_filter;
    bool m_atEnd = true;
    quint64 m_seen = 0;     // the log's serial when no error was left to be seen
    QSet<quint64> m_looked; // serials of errors since that were in view
    int m_columnWidths[2] = {};
};

} // namespace workbench
