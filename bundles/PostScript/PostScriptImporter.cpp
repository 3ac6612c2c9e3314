#include "bundles/PostScript/DocumentComments.h"
#include "bundles/support/Importer.h"
#include "bundles/support/InputFile.h"
#include "bundles/support/Properties.h"
#include "platform/dates/NaturalLanguageDate.h"
#include "platform/unicode/PlainText.h"

#include <array>
#include <cstdio>

namespace caddis::bundles {

namespace {

constexpr Property CommentProperties[] = {
    { "Title", "kMDItemTitle" },
    { "Creator", "kMDItemCreator" },
    { "For", "kMDItemAuthors", Form::Strings },
    { "Copyright", "kMDItemCopyright" },
    { "Pages", "kMDItemNumberOfPages", Form::Integer },
    { "LanguageLevel", "kMDItemVersion" },
};

// Lower left and upper right corner, in points.
void setSize(const std::string& box, Attributes& attributes)
{
    std::array<double, 4> edges {};
    if (std::sscanf(box.c_str(), "%lf %lf %lf %lf", &edges[0], &edges[1], &edges[2], &edges[3]) != 4
        || edges[2] <= edges[0] || edges[3] <= edges[1])
        return;
    attributes.setReal("kMDItemPageWidth", edges[2] - edges[0]);
    attributes.setReal("kMDItemPageHeight", edges[3] - edges[1]);
}

} // namespace

bool importFile(Attributes& attributes, std::string_view, const std::string& path)
{
    const auto bytes = readFile(path);
    if (!bytes)
        return false;
    const auto comments = readDocumentComments(*bytes);
    const auto textOf = [&](std::string_view name) {
        const auto found = comments.find(name);
        return found == comments.end() ? String() : plainTextOfData(found->second).text;
    };
    for (const Property& property : CommentProperties)
        setProperty(attributes, property.key, property.form, textOf(property.element).utf8());
    const String date = textOf("CreationDate");
    if (const auto iso = readDate(date.utf8()))
        attributes.setDate("kMDItemContentCreationDate", iso);
    else if (const auto written = dateWithNaturalLanguageString(date.view()))
        attributes.setDate("kMDItemContentCreationDate", written->unixSeconds());
    const String exactBox = textOf("HiResBoundingBox");
    setSize((exactBox.isEmpty() ? textOf("BoundingBox") : exactBox).utf8(), attributes);
    return !comments.empty();
}

} // namespace caddis::bundles
