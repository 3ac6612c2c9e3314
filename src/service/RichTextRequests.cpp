#include "service/RichTextRequests.h"

#include "html/MarkupFile.h"
#include "platform/documents/DocumentReader.h"
#include "platform/richtext/RTFD.h"

namespace caddis {

std::optional<Dictionary> attributedStringWithContentsOfFile(
    const String& path, WebResourceLoadDelegate* delegate)
{
    auto text = attributedStringWithMarkupFile(path, delegate);
    if (!text)
        text = attributedStringWithPath(path);
    auto rtfd = text ? RTFDFromString(*text, text->documentAttributes) : std::nullopt;
    if (!rtfd)
        return std::nullopt;
    Dictionary reply { { u"Rtfd"_s, Value(std::move(*rtfd)) } };
    if (!text->documentAttributes.isEmpty())
        reply.set(u"DocumentAttributes"_s, Value(text->documentAttributes));
    return reply;
}

bool writeRTFDDataToFile(const Data& rtfd, const String& path)
{
    const auto text = initWithRTFD(rtfd);
    return text && writeFileWrapper(RTFDFileWrapperFromString(*text, text->documentAttributes), path);
}

} // namespace caddis
