#pragma once

#include <QByteArray>
#include <QList>

#include <random>

/// What happens to the controller: commands for the simulator that make its life or that of its
/// clients harder, chosen at random.
class Mischief {
public:
    explicit Mischief(quint64 seed)
        : m_random(seed) {}

    /// One to three misbehaviours or adverse conditions, to be added to those that last.
    QList<QByteArray> begin();

    /// Ends them all.
    static QList<QByteArray> end();

    /// A controller as it was at the start, as far as its clients can have changed it.
    static QList<QByteArray> restore();

    int upTo(int highest); ///< 0 ... highest
    bool chance(int percent) { return upTo(99) < percent; }

private:
    QByteArray misbehaviour();
    QByteArray condition();

    std::mt19937_64 m_random;
};
