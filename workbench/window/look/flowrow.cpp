#include "workbench/window/look/flowrow.h"

#include <QBoxLayout>
#include <QStyle>
#include <QWidget>

#include <algorithm>

namespace workbench {

namespace {

constexpr int leastInCharacters = 40;

}

void FlowRow::replace(QBoxLayout& around, QBoxLayout* row) {
    auto* const flow = new FlowRow;
    flow->setSpacing(row->spacing());
    int place = 0;
    while (around.itemAt(place)->layout() != row) {
        ++place;
    }
    around.insertLayout(place, flow);
    while (QLayoutItem* const item = row->takeAt(0)) {
        if (item->spacerItem() != nullptr) {
            delete item;
            continue;
        }
        if (item->layout() != nullptr) {
            flow->addChildLayout(item->layout());
        }
        flow->addItem(item);
    }
    delete row;
}

FlowRow::~FlowRow() = default;

void FlowRow::addItem(QLayoutItem* item) {
    m_items.emplace_back(item);
    invalidate();
}

int FlowRow::count() const {
    return static_cast<int>(m_items.size());
}

QLayoutItem* FlowRow::itemAt(int index) const {
    return index >= 0 && index < count() ? m_items[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* FlowRow::takeAt(int index) {
    if (itemAt(index) == nullptr) {
        return nullptr;
    }
    QLayoutItem* const item = m_items[static_cast<std::size_t>(index)].release();
    m_items.erase(m_items.begin() + index);
    invalidate();
    return item;
}

// As high as it is with the width that it has; a dock asks nobody what height a width needs.
QSize FlowRow::minimumSize() const {
    int widest = leastInCharacters * parentWidget()->fontMetrics().averageCharWidth();
    int all = -spacing();
    for (const auto& item : m_items) {
        if (!item->isEmpty()) {
            widest = std::max(widest, item->minimumSize().width());
            all += spacing() + item->minimumSize().width();
        }
    }
    return {std::clamp(all, 0, widest), heightOf(lines(m_width))};
}

QSize FlowRow::sizeHint() const {
    int width = -spacing();
    for (const auto& item : m_items) {
        if (!item->isEmpty()) {
            width += spacing() + item->sizeHint().width();
        }
    }
    return {std::max(0, width), heightOf(lines(m_width))};
}

Qt::Orientations FlowRow::expandingDirections() const {
    return {};
}

void FlowRow::setGeometry(const QRect& rect) {
    const bool isOtherHeight = heightOf(lines(rect.width())) != heightOf(lines(m_width));
    m_width = rect.width();
    QLayout::setGeometry(rect);
    int y = rect.y();
    for (const Line& line : lines(m_width)) {
        const std::vector<int> widths = this->widths(line, m_width);
        int x = rect.x();
        for (std::size_t i = 0; i < widths.size(); ++i) {
            const QRect place(x, y, widths[i], line.height);
            line.items[i]->setGeometry(
                QStyle::visualRect(parentWidget()->layoutDirection(), rect, place));
            x += widths[i] + spacing();
        }
        y += line.height + spacing();
    }
    if (isOtherHeight) {
        update();
    }
}

std::vector<FlowRow::Line> FlowRow::lines(int width) const {
    std::vector<Line> lines;
    int used = 0;
    for (const auto& item : m_items) {
        if (item->isEmpty()) {
            continue;
        }
        const int least = item->minimumSize().width();
        if (lines.empty() || used + spacing() + least > width) {
            lines.emplace_back();
            used = least;
        } else {
            used += spacing() + least;
        }
        lines.back().items.push_back(item.get());
        lines.back().height = std::max(lines.back().height, item->sizeHint().height());
    }
    return lines;
}

// First each gets as much of what it would like as there is, then those that expand get the rest.
std::vector<int> FlowRow::widths(const Line& line, int width) const {
    const auto expands = [](const QLayoutItem& item) {
        return (item.expandingDirections() & Qt::Horizontal) != 0;
    };
    std::vector<int> widths;
    int rest = width - (static_cast<int>(line.items.size()) - 1) * spacing();
    int expanding = 0;
    for (const QLayoutItem* item : line.items) {
        widths.push_back(item->minimumSize().width());
        rest -= widths.back();
        expanding += expands(*item) ? 1 : 0;
    }
    for (std::size_t i = 0; i < widths.size(); ++i) {
        const int wanted = line.items[i]->sizeHint().width() - widths[i];
        const int more = std::clamp(wanted, 0, std::max(0, rest));
        widths[i] += more;
        rest -= more;
    }
    for (std::size_t i = 0; i < widths.size() && expanding > 0 && rest > 0; ++i) {
        if (expands(*line.items[i])) {
            const int share = rest / expanding--;
            widths[i] += share;
            rest -= share;
        }
    }
    return widths;
}

int FlowRow::heightOf(const std::vector<Line>& lines) const {
    int height = std::max(0, static_cast<int>(lines.size()) - 1) * spacing();
    for (const Line& line : lines) {
        height += line.height;
    }
    return height;
}

} // namespace workbench
