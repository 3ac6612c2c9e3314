#include "Operations.h"

#include <algorithm>

namespace caddis::tool {

namespace {

using Answer = std::optional<Value>;

template <typename Result> Answer answer(const std::optional<Result>& result)
{
    return result ? Answer(*result) : std::nullopt;
}

Answer info(const HelperProxy& helper, const String& file, std::uint32_t)
{
    return answer(helper.metaDataForFile(file));
}

Answer text(const HelperProxy& helper, const String& file, std::uint32_t)
{
    const auto metadata = helper.metaDataForFile(file);
    if (metadata && metadata->find(u"kMDItemTextContent"))
        return *metadata->find(u"kMDItemTextContent");
    return answer(helper.searchableTextOfWebArchive(file).stringForKey(u"String"));
}

Answer thumbnail(const HelperProxy& helper, const String& file, std::uint32_t size)
{
    return answer(helper.imageWithContentsOfFile(file, { .maxThumbnailSize = size }));
}

Answer preview(const HelperProxy& helper, const String& file, std::uint32_t size)
{
    return answer(helper.previewForFile(file, size, false));
}

Answer icon(const HelperProxy& helper, const String& file, std::uint32_t size)
{
    return answer(helper.previewForFile(file, size, true));
}

Answer richText(const HelperProxy& helper, const String& file, std::uint32_t)
{
    return answer(helper.attributedStringWithContentsOfFile(file));
}

// The reply is never empty: of a file that is no movie it says a duration of 0.
Answer movie(const HelperProxy& helper, const String& file, std::uint32_t)
{
    const Dictionary reply = helper.posterImageForMovieWithFile(file);
    const Value* const duration = reply.find(u"Duration");
    const bool isMovie = reply.count() > 2 || (duration && *duration != Value(0.0F));
    return isMovie ? Answer(reply) : std::nullopt;
}

Answer webArchive(const HelperProxy& helper, const String& file, std::uint32_t)
{
    return helper.searchableTextOfWebArchive(file);
}

Answer pdf(const HelperProxy& helper, const String& file, std::uint32_t)
{
    return answer(helper.PDFImageRepOfFile(file));
}

Answer supports(const HelperProxy& helper, const String& file, std::uint32_t)
{
    return helper.supportsFile(file);
}

struct Operation {
    std::string_view name;
    Answer (*ask)(const HelperProxy&, const String&, std::uint32_t size);
};

constexpr Operation Operations[] = {
    { "info", info },
    { "text", text },
    { "thumbnail", thumbnail },
    { "preview", preview },
    { "icon", icon },
    { "richtext", richText },
    { "movie", movie },
    { "webarchive", webArchive },
    { "pdf", pdf },
    { "supports", supports },
};

const Operation* operationNamed(std::string_view name)
{
    const auto* const found = std::ranges::find(Operations, name, &Operation::name);
    return found == std::end(Operations) ? nullptr : found;
}

std::vector<std::string_view> parts(std::string_view name)
{
    std::vector<std::string_view> result;
    for (std::size_t end = 0; (end = name.find('+')) != name.npos; name.remove_prefix(end + 1))
        result.push_back(name.substr(0, end));
    result.push_back(name);
    return result;
}

} // namespace

bool isOperation(std::string_view name)
{
    return std::ranges::all_of(parts(name), [](std::string_view part) { return operationNamed(part); });
}

std::vector<HelperQuestion> questionsFor(std::string_view operation, const String& file, std::uint32_t size)
{
    std::vector<HelperQuestion> questions;
    for (const std::string_view part : parts(operation)) {
        if (const Operation* const found = operationNamed(part))
            questions.push_back({ String::fromUtf8(part),
                [=](const HelperProxy& helper) { return found->ask(helper, file, size); } });
    }
    return questions;
}

void warmUp(const HelperProxy& helper) { helper.supportsFile(String(u"/dev/null")); }

} // namespace caddis::tool
