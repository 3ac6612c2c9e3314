#pragma once

#include "platform/movie/MovieEngine.h"
#include "platform/movie/engine/FileInput.h"
#include "platform/movie/engine/FrameSearch.h"

namespace caddis::movie {

class MovieReader : public Reader {
public:
    static std::unique_ptr<Reader> open(const String& path);

    Time duration() const override;
    std::optional<Size> naturalSize() const override;
    std::optional<Bitmap> frame(Time time) override;
    std::optional<String> lyrics() const override;
    std::vector<MetadataItem> commonMetadata() const override;

private:
    explicit MovieReader(const String& path)
        : m_input(path, m_patience)
    {
    }
    bool openFormat(const String& path);
    bool wantsStreamInfo() const;
    void chooseStream();

    Patience m_patience;
    FileInput m_input;
    FormatPointer m_format;
    AVStream* m_video = nullptr;
    std::optional<FrameSearch> m_search;
};

} // namespace caddis::movie
