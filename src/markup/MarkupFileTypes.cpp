#include "markup/MarkupFileTypes.h"

#include "platform/base/Paths.h"
#include "text/StringUtilities.h"

#include <algorithm>

namespace caddis {
inline namespace XmlExtensions {

namespace {

// One list, ordered so that each kind is a stretch of it: HTML, general XML, custom XML, property lists.
constexpr std::u16string_view Types[] = { u"html", u"htm", u"xhtml", u"xhtm", u"xht", u"shtml", u"shtm",
    u"phtml", u"jhtml", u"xml", u"xsl", u"xslt", u"xsd", u"rdf", u"rss", u"atom", u"rng", u"svg", u"mathml",
    u"dbk", u"dtbook", u"opf", u"ncx", u"opml", u"fb2", u"gpx", u"kml", u"mm", u"tei", u"xspf", u"musicxml",
    u"collada", u"plist", u"webloc" };

constexpr std::size_t indexOf(std::u16string_view type)
{
    return static_cast<std::size_t>(std::ranges::find(Types, type) - std::begin(Types));
}

constexpr std::size_t XMLStart = indexOf(u"xml");
constexpr std::size_t CustomStart = indexOf(u"opf");
constexpr std::size_t PropertyListStart = indexOf(u"plist");

bool contains(FileTypes types, std::u16string_view extension)
{
    return std::ranges::any_of(
        types, [&](std::u16string_view type) { return isEqualNoCase(type, extension); });
}

} // namespace

FileTypes HTMLFileTypes() { return FileTypes(Types).first(XMLStart); }
FileTypes XMLFileTypes() { return FileTypes(Types).subspan(XMLStart, PropertyListStart - XMLStart); }
FileTypes CustomXMLFileTypes()
{
    return FileTypes(Types).subspan(CustomStart, PropertyListStart - CustomStart);
}
FileTypes PropertyListFileTypes() { return FileTypes(Types).subspan(PropertyListStart); }
FileTypes MarkupFileTypes() { return Types; }

bool isHTMLExtension(std::u16string_view extension) { return contains(HTMLFileTypes(), extension); }
bool isXMLExtension(std::u16string_view extension) { return contains(XMLFileTypes(), extension); }
bool isPropertyListExtension(std::u16string_view extension)
{
    return contains(PropertyListFileTypes(), extension);
}
bool isMarkupExtension(std::u16string_view extension) { return contains(MarkupFileTypes(), extension); }

bool isHTMLFile(const String& path) { return isHTMLExtension(pathExtension(path)); }
bool isXMLFile(const String& path) { return isXMLExtension(pathExtension(path)); }
bool isPropertyListFile(const String& path) { return isPropertyListExtension(pathExtension(path)); }
bool isMarkupFile(const String& path) { return isMarkupExtension(pathExtension(path)); }

} // namespace XmlExtensions
} // namespace caddis
