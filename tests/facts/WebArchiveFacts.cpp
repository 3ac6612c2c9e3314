#include "facts/Facts.h"
#include "markup/HtmlMetadata.h"
#include "markup/WebArchiveText.h"
#include "platform/files/FileSystem.h"
#include "text/NumericValues.h"

namespace caddis::facts {

Answer webArchiveFact(const Question& question);

namespace {

Answer sourceFact(const WebArchive& archive, std::u16string_view key)
{
    const auto source = documentSource(archive);
    if (!source)
        return std::nullopt;
    if (key == u"byteLength")
        return decimal(source->utf8().size());
    return key == u"title" ? Answer(normalizedHtmlTitle(*source)) : Answer::skip("no such key");
}

} // namespace

// "String", "URL", "Source.byteLength|title", "main.MIMEType|textEncodingName", "subresources.count",
// "subresource[0].URL", "subframes.count".
Answer webArchiveFact(const Question& question)
{
    constexpr std::u16string_view Source = u"Source.";
    constexpr std::u16string_view Subresource = u"subresource[";
    const auto data = FileSystem::contentsOfFile(question.path);
    const auto archive = data ? WebArchive::initWithData(*data) : std::nullopt;
    if (!archive)
        return std::nullopt;
    const std::u16string_view key = question.key;
    if (key == u"String")
        return searchableText(*archive);
    if (key == u"URL")
        return baseURL(*archive).absoluteString();
    if (key.starts_with(Source))
        return sourceFact(*archive, key.substr(Source.size()));
    if (key == u"main.MIMEType")
        return archive->mainResource().MIMEType();
    if (key == u"main.textEncodingName")
        return archive->mainResource().textEncodingName();
    if (key == u"subresources.count")
        return decimal(archive->subresources().size());
    if (key == u"subframes.count")
        return decimal(archive->subframeArchives().size());
    if (!key.starts_with(Subresource))
        return Answer::skip("no such key");
    const auto index = static_cast<std::size_t>(integerValue(key.substr(Subresource.size())));
    if (index >= archive->subresources().size())
        return std::nullopt;
    return archive->subresources()[index].url().absoluteString();
}

} // namespace caddis::facts
