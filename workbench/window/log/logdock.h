#pragma once

#include <QDockWidget>
#include <QSortFilterProxyModel>

#include <memory>

namespace Ui {
class LogDock;
}

namespace workbench {

class LogModel;

/// Shows the log: filter, copy, save, clear. Follows new lines while the last one is in view.
class LogDock : public QDockWidget {
    Q_OBJECT

public:
    explicit LogDock(LogModel& log, QWidget* parent = nullptr);
    ~LogDock() override;

    /// The selected lines, or all that the filter lets through, as text.
    QString shownText() const;

    /// Writes the whole log; false with a reason in `*error`.
    bool saveTo(const QString& fileName, QString* error) const;

private:
    void copy();
    void save();

    LogModel& m_log;
    std::unique_ptr<Ui::LogDock> m_ui;
    QSortFilterProxyModel m_filter;
    bool m_atEnd = true;
};

} // namespace workbench
