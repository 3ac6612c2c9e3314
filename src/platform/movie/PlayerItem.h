#pragma once

#include "platform/movie/Asset.h"

namespace caddis {

/// A four-character code of a pixel layout: 'BGRA', '420v' …
using PixelFormatType = std::uint32_t;

/// Hands out an item's frames for further use. Frames come in the one layout of Bitmap whatever was asked
/// for; an output of a layout that no frame can be shown from has none.
class PlayerItemVideoOutput {
public:
    PlayerItemVideoOutput(std::shared_ptr<const Asset> asset, PixelFormatType pixelFormatType)
        : m_asset(std::move(asset))
        , m_pixelFormatType(pixelFormatType)
    {
    }

    PixelFormatType pixelFormatType() const { return m_pixelFormatType; }
    std::optional<Bitmap> copyPixelBufferForItemTime(Time time) const;

private:
    std::shared_ptr<const Asset> m_asset;
    PixelFormatType m_pixelFormatType;
};

/// An asset at one of its moments. It has no clock: the moment changes when it is told to.
class PlayerItem {
public:
    explicit PlayerItem(const URL& url)
        : m_asset(std::make_shared<const Asset>(url))
    {
    }

    const Asset& asset() const { return *m_asset; }
    Time currentTime() const { return m_currentTime; }
    /// An invalid time is ignored.
    void seekToTime(Time time);

    const std::vector<PlayerItemVideoOutput>& outputs() const { return m_outputs; }
    void addOutput(PixelFormatType pixelFormatType) { m_outputs.emplace_back(m_asset, pixelFormatType); }

private:
    std::shared_ptr<const Asset> m_asset;
    Time m_currentTime = Time::zero();
    std::vector<PlayerItemVideoOutput> m_outputs;
};

} // namespace caddis
