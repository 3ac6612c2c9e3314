// Movies and sound.
//
// Invariants: a frame has at least one pixel and exactly the bytes of its pixels; only a file with a video
// track has frames; a duration is not negative.

#include "FileInput.h"
#include "Fuzz.h"
#include "platform/movie/Asset.h"

namespace {

void check(const caddis::Bitmap& frame)
{
    INVARIANT(frame.pixelsWide > 0 && frame.pixelsHigh > 0);
    INVARIANT(frame.pixels.size() == frame.bytesPerRow() * frame.pixelsHigh);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const caddis::Asset asset(caddis::URL::fileURLWithPath(caddis::fileWith(data, size)));
    const caddis::Time duration = asset.duration();
    INVARIANT(!duration.isValid || duration.seconds() >= 0);
    asset.lyrics();
    asset.commonMetadata();
    for (const caddis::Time time :
        { caddis::Time { 1, 2, true }, caddis::Time::zero(), caddis::Time { 1, 2, true } }) {
        if (const auto frame = asset.copyImageAtTime(time)) {
            check(*frame);
            INVARIANT(!asset.videoTracks().empty());
        }
    }
    return 0;
}
