#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <utility>

namespace workbench {

/// A queue for what may be lost but never waited for: what does not fit pushes the oldest out.
/// Whoever shares one between threads guards it.
template <typename Item>
class BoundedQueue {
public:
    /// `mostCost`: of all items together, in the unit of push().
    explicit BoundedQueue(std::size_t mostCost)
        : m_mostCost(mostCost) {}

    /// Returns how many items had to go; the new one itself when it is too much alone.
    std::size_t push(Item item, std::size_t cost) {
        if (cost > m_mostCost) {
            return 1;
        }
        std::size_t lost = 0;
        while (m_cost + cost > m_mostCost) {
            drop();
            ++lost;
        }
        m_cost += cost;
        m_items.emplace_back(std::move(item), cost);
        return lost;
    }

    /// The oldest; nothing when there is none.
    std::optional<Item> pop() {
        if (m_items.empty()) {
            return std::nullopt;
        }
        std::optional<Item> item(std::move(m_items.front().first));
        drop();
        return item;
    }

    bool isEmpty() const { return m_items.empty(); }
    std::size_t size() const { return m_items.size(); }

private:
    void drop() {
        m_cost -= m_items.front().second;
        m_items.pop_front();
    }

    const std::size_t m_mostCost;
    std::size_t m_cost = 0;
    std::deque<std::pair<Item, std::size_t>> m_items;
};

} // namespace workbench
