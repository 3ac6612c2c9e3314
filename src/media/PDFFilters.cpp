#include "media/PDFFilters.h"

#include "platform/base/Format.h"
#include "platform/base/Paths.h"
#include "platform/files/FileSystem.h"
#include "platform/files/InstallRoots.h"
#include "platform/files/PropertyList.h"

#include <algorithm>
#include <cmath>

namespace caddis {

namespace {

constexpr double UsualQuality = 0.5;
constexpr double LargestNumber = 1e6;

const Dictionary* dictionaryIn(const Dictionary* outer, std::u16string_view key)
{
    const Value* const value = outer ? outer->find(key) : nullptr;
    return value ? value->as<Dictionary>() : nullptr;
}

// Property lists hold numbers of several kinds, and switches as numbers.
double numberIn(const Dictionary* list, std::u16string_view key, double missing)
{
    const Value* const value = list ? list->find(key) : nullptr;
    if (!value)
        return missing;
    double number = missing;
    if (const auto* const real = value->as<double>())
        number = *real;
    else if (const auto* const integer = value->as<std::int64_t>())
        number = static_cast<double>(*integer);
    else if (const auto* const flag = value->as<bool>())
        number = *flag ? 1 : 0;
    return std::isfinite(number) ? std::clamp(number, 0.0, LargestNumber) : missing;
}

const Dictionary* imageSettingsIn(const Dictionary& properties)
{
    const Dictionary* const colors = dictionaryIn(dictionaryIn(&properties, u"FilterData"), u"ColorSettings");
    const Dictionary* const own = dictionaryIn(colors, u"ImageSettings");
    return own ? own : dictionaryIn(dictionaryIn(colors, u"DocumentColorSettings"), u"ImageSettings");
}

std::optional<QuartzFilter> filterIn(const String& folder, const String& name)
{
    const auto at = [&](const String& file) {
        return QuartzFilter::quartzFilterWithContentsOfFile(stringByAppendingPathComponent(folder, file));
    };
    const bool isFileName = name.view().find(u'/') == std::u16string_view::npos;
    if (auto found = isFileName ? at(format(u"%@.qfilter", name)) : std::nullopt)
        return found;
    for (const String& entry : FileSystem::contentsOfDirectory(folder).value_or(std::vector<String>())) {
        auto found = entry.view().ends_with(u".qfilter") ? at(entry) : std::nullopt;
        if (found && found->name == name)
            return found;
    }
    return std::nullopt;
}

} // namespace

std::optional<QuartzFilter> QuartzFilter::quartzFilterWithProperties(const Dictionary& properties)
{
    const Dictionary* const settings = imageSettingsIn(properties);
    if (!settings)
        return std::nullopt;
    const Dictionary* const scale = dictionaryIn(settings, u"ImageScaleSettings");
    QuartzFilter filter { properties.stringForKey(u"Name").value_or(String()), {} };
    if (settings->stringForKey(u"ImageCompression") == u"ImageJPEGCompress"_s)
        filter.images.quality = numberIn(settings, u"Compression Quality", UsualQuality);
    filter.images.scale = numberIn(scale, u"ImageScaleFactor", 1);
    filter.images.resolution = numberIn(scale, u"ImageResolution", 0);
    filter.images.largestSide = static_cast<std::uint32_t>(numberIn(scale, u"ImageSizeMax", 0));
    filter.images.smallestSide = static_cast<std::uint32_t>(numberIn(scale, u"ImageSizeMin", 0));
    filter.images.interpolates = numberIn(scale, u"ImageScaleInterpolate", 1) != 0;
    return filter;
}

std::optional<QuartzFilter> QuartzFilter::quartzFilterWithContentsOfFile(const String& path)
{
    const auto properties = PropertyList::dictionaryWithContentsOfFile(path);
    return properties ? quartzFilterWithProperties(*properties) : std::nullopt;
}

std::optional<QuartzFilter> QuartzFilter::quartzFilterNamed(const String& name)
{
    for (const char16_t* folder : { u"~/Library/Filters", u"/Library/Filters", u"/System/Library/Filters" }) {
        if (auto found = filterIn(InstallRoots::real(String(folder)), name))
            return found;
    }
    return std::nullopt;
}

inline namespace OstraPDFDocumentExtensions {

std::optional<Data> dataRepresentationUsingQuartzFilter(
    const PDFDocument& document, const QuartzFilter& filter)
{
    return document.dataRepresentationWithImages(filter.images);
}

std::optional<Data> dataRepresentationUsingQuartzFilterNamed(const PDFDocument& document, const String& name)
{
    const auto filter = QuartzFilter::quartzFilterNamed(name);
    return filter ? dataRepresentationUsingQuartzFilter(document, *filter) : std::nullopt;
}

std::optional<Data> dataRepresentationUsingQuartzFilterCompression(const PDFDocument& document,
    double compression, double resolution, double scaleFactor, Interpolation interpolation)
{
    return document.dataRepresentationWithImages({ .quality = compression,
        .scale = scaleFactor,
        .resolution = resolution,
        .interpolates = interpolation == Interpolation::Average });
}

} // namespace OstraPDFDocumentExtensions

} // namespace caddis
