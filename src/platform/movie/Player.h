#pragma once

#include "platform/movie/PlayerItem.h"

namespace caddis {

/// Plays nothing by itself: it holds the item and the rate that its owner has set.
class Player {
public:
    explicit Player(std::shared_ptr<PlayerItem> item)
        : m_currentItem(std::move(item))
    {
    }

    /// May be null.
    PlayerItem* currentItem() const { return m_currentItem.get(); }
    float rate() const { return m_rate; }
    void setRate(float rate) { m_rate = rate; }
    /// Invalid without an item.
    Time currentTime() const { return m_currentItem ? m_currentItem->currentTime() : Time(); }
    void seekToTime(Time time)
    {
        if (m_currentItem)
            m_currentItem->seekToTime(time);
    }

private:
    std::shared_ptr<PlayerItem> m_currentItem;
    float m_rate = 0;
};

} // namespace caddis
