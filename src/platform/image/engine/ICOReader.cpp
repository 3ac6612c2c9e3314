// Icons and cursors of Windows: a directory of pictures of several sizes, each a DIB or a whole PNG file. The
// best one stands first here, whatever the file's order.

#include "platform/image/engine/DIB.h"
#include "platform/image/engine/Readers.h"

#include <algorithm>
#include <vector>

namespace caddis::image {

namespace {

class ICOReader final : public Reader {
public:
    explicit ICOReader(const Data& data)
        : m_data(data)
    {
        const Bytes bytes(data);
        const std::uint32_t count = bytes.le16(4);
        for (std::uint32_t index = 0; index < count && m_entries.size() < MostEntries; ++index) {
            const std::size_t entry = 6 + std::size_t { index } * 16;
            const Range range { bytes.le32(entry + 12), bytes.le32(entry + 8) };
            if (range.length == 0 || !bytes.has(range.location, range.length))
                continue;
            const auto side = [&](std::size_t at) { return bytes.u8(at) ? bytes.u8(at) : 256; };
            m_entries.push_back({ side(entry) * side(entry + 1), bytes.le16(entry + 6), range });
        }
        if (m_entries.empty())
            throw Broken();
        std::stable_sort(m_entries.begin(), m_entries.end(), [](const Entry& left, const Entry& right) {
            return std::pair(left.pixels, left.bits) > std::pair(right.pixels, right.bits);
        });
    }

    std::size_t count() override { return m_entries.size(); }

    std::optional<ImageInfo> info(std::size_t index) override
    {
        const Data entry = m_data.slice(m_entries[index].range);
        return isPNG(entry) ? openPNG(entry)->info(0) : DIB(Bytes(entry), 0, 0, DIB::Use::Icon).info();
    }

    void decode(std::size_t index, Target target, RowSink& sink) override
    {
        const Data entry = m_data.slice(m_entries[index].range);
        if (isPNG(entry))
            openPNG(entry)->decode(0, target, sink);
        else
            DIB(Bytes(entry), 0, 0, DIB::Use::Icon).decode(sink);
    }

private:
    static constexpr std::size_t MostEntries = 1024;

    struct Entry {
        std::uint32_t pixels; // As the directory says.
        std::uint32_t bits; // Of cursors: a coordinate; it only breaks ties.
        Range range;
    };

    static bool isPNG(const Data& entry) { return entry.chars().starts_with("\x89PNG"); }

    Data m_data;
    std::vector<Entry> m_entries;
};

} // namespace

std::unique_ptr<Reader> openICO(const Data& data) { return std::make_unique<ICOReader>(data); }

} // namespace caddis::image
