#pragma once

#include <QHash>
#include <QIcon>
#include <QPointer>
#include <QSortFilterProxyModel>
#include <QStyle>

#include <optional>

class QWidget;

namespace workbench {

/// The lines of the log that are wanted, with symbols and colours beside the words of their levels.
class LogFilter : public QSortFilterProxyModel {
    Q_OBJECT

public:
    /// `view` shows the lines: its style and palette are theirs.
    explicit LogFilter(QWidget* view);

    void setLevel(std::optional<int> level); ///< nothing for all of them
    void setSource(const QString& source);   ///< empty for all of them

    QVariant data(const QModelIndex& index, int role) const override;

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

private:
    QIcon iconOf(QStyle::StandardPixmap symbol) const;

    QWidget* m_view;
    mutable QPointer<QStyle> m_iconsStyle; ///< whose icons are there
    mutable QHash<int, QIcon> m_icons;
    std::optional<int> m_level;
    QString m_source;
};

} // namespace workbench
