#pragma once

#include <QLayout>

#include <memory>
#include <vector>

class QBoxLayout;

namespace workbench {

/// A row whose later items go to further lines where it is too narrow for them: it asks for no more
/// width than some words need, or its widest item. In each line the items that expand share what is
/// left.
class FlowRow : public QLayout {
    Q_OBJECT

public:
    /// In the place of a row in a layout; takes its items and deletes it. Its spaces are left out.
    static void replace(QBoxLayout& around, QBoxLayout* row);

    ~FlowRow() override;

    void addItem(QLayoutItem* item) override;
    int count() const override;
    QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    QSize minimumSize() const override;
    QSize sizeHint() const override;
    Qt::Orientations expandingDirections() const override;
    void setGeometry(const QRect& rect) override;

private:
    struct Line {
        std::vector<QLayoutItem*> items;
        int height = 0;
    };

    FlowRow() = default;
    std::vector<Line> lines(int width) const;
    std::vector<int> widths(const Line& line, int width) const;
    int heightOf(const std::vector<Line>& lines) const;

    std::vector<std::unique_ptr<QLayoutItem>> m_items;
    int m_width = QLAYOUTSIZE_MAX; // that it has got
};

} // namespace workbench
