#include "platform/image/engine/DIB.h"
#include "platform/image/engine/Readers.h"

namespace caddis::image {

namespace {

constexpr std::size_t FileHeader = 14;

class BMPReader final : public Reader {
public:
    explicit BMPReader(const Data& data)
        : m_data(data)
        , m_dib(Bytes(data), FileHeader, Bytes(data).le32(10), DIB::Use::File)
    {
        const std::string_view file = m_dib.embeddedFile();
        if (file.empty())
            return;
        const Data inside
            = m_data.slice({ static_cast<std::size_t>(file.data() - m_data.chars().data()), file.size() });
        m_inside = file.starts_with("\xFF\xD8") ? openJPEG(inside) : openPNG(inside);
    }

    std::optional<ImageInfo> info(std::size_t index) override
    {
        return m_inside ? m_inside->info(index) : m_dib.info();
    }
    void decode(std::size_t index, Target target, RowSink& sink) override
    {
        if (m_inside)
            m_inside->decode(index, target, sink);
        else
            m_dib.decode(sink);
    }

private:
    Data m_data;
    DIB m_dib;
    std::unique_ptr<Reader> m_inside; // A printer's BMP file may hold one of these whole.
};

} // namespace

std::unique_ptr<Reader> openBMP(const Data& data) { return std::make_unique<BMPReader>(data); }

} // namespace caddis::image
