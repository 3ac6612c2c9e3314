#pragma once

#include "platform/image/ImageEngine.h"
#include "platform/image/Reader.h"

namespace caddis::image {

/// What the codec says, within the limits and with its exceptions caught.
class FileSource final : public Source {
public:
    /// Null: no codec knows the bytes.
    static FileSource* open(const Data& data);

    String type() const override { return String(m_type); }
    std::size_t count() const override;
    std::optional<ImageInfo> info(std::size_t index) const override;
    Dictionary properties(std::size_t index) const override;
    std::optional<Bitmap> image(std::size_t index, const ImageRequest& request) const override;

private:
    FileSource(const char16_t* type, Data data, std::unique_ptr<Reader> reader)
        : m_type(type)
        , m_data(std::move(data))
        , m_reader(std::move(reader))
    {
    }

    const char16_t* m_type;
    Data m_data;
    std::unique_ptr<Reader> m_reader;
};

} // namespace caddis::image
