// How EPUBParser reads META-INF/container.xml and the package file. One delegate serves both; names are
// compared as they are written in the file, prefixes included.

#include "epub/EPUBParser.h"

#include "platform/base/LeftOut.h"
#include "platform/base/Paths.h"
#include "text/NumericValues.h"
#include "text/StringUtilities.h"

namespace caddis {

namespace {

constexpr std::size_t MostListed = 10'000; // Subjects and the like: a million don't go into one message.

std::optional<String> unescapedPath(const XMLAttributes& attributes)
{
    const auto href = attributes.value("href");
    return href ? stringByRemovingPercentEscapes(*href) : std::nullopt;
}

bool boolForKey(const XMLAttributes& attributes, std::string_view key, bool defaultValue)
{
    const auto value = attributes.value(key);
    return value ? boolValue(*value) : defaultValue;
}

bool isPresentAndEqualNoCase(const std::optional<String>& value, std::u16string_view other)
{
    return value && isEqualNoCase(*value, other);
}

} // namespace

void EPUBParser::parsePackage()
{
    const auto container = dataForNamedFile(u"META-INF/container.xml"_s);
    const bool isContainer = container && XMLParser::parse(*container, *this);
    const auto package = isContainer && m_opfFile ? dataForNamedFile(*m_opfFile) : std::nullopt;
    if (package)
        XMLParser::parse(*package, *this);
    finishMetaString(); // A document may break off inside an element.
}

void EPUBParser::didStartElement(std::string_view name, const XMLAttributes& attributes)
{
    if (name.starts_with("dc:"))
        startDublinCore(name.substr(3), attributes);
    else if (name == "rootfile")
        m_opfFile = attributes.value("full-path");
    else if (name == "item")
        startItem(attributes);
    else if (name == "meta")
        startMeta(attributes);
    else if (name == "itemref")
        startItemReference(attributes);
}

void EPUBParser::startDublinCore(std::string_view name, const XMLAttributes& attributes)
{
    const auto hasRole = [&](std::u16string_view role) { return attributes.value("opf:role") == role; };
    if (name == "title")
        startMetaData(u"kMDItemTitle", MetaDataKind::Single, attributes);
    else if (name == "description")
        startMetaData(u"kMDItemDescription", MetaDataKind::Single, attributes);
    else if (name == "rights")
        startMetaData(u"kMDItemCopyright", MetaDataKind::Single, attributes);
    else if (name == "subject")
        startMetaData(u"kMDItemKeywords", MetaDataKind::List, attributes);
    else if (name == "publisher")
        startMetaData(u"kMDItemPublishers", MetaDataKind::List, attributes);
    else if (name == "creator")
        startMetaData(
            hasRole(u"aut") ? u"kMDItemAuthors" : u"kMDItemContributors", MetaDataKind::List, attributes);
    else if (name == "contributor")
        startMetaData(
            hasRole(u"edt") ? u"kMDItemEditors" : u"kMDItemContributors", MetaDataKind::List, attributes);
}

void EPUBParser::startMeta(const XMLAttributes& attributes)
{
    const auto property = attributes.value("property");
    if (property == u"dcterms:title") {
        startMetaData(u"kMDItemTitle", MetaDataKind::Single, attributes);
    } else if (property == u"dcterms:creator") {
        const bool isAuthor = attributes.value("id") == u"auth";
        startMetaData(isAuthor ? u"kMDItemAuthors" : u"kMDItemContributors", MetaDataKind::List, attributes);
    } else if (property == u"dcterms:publisher") {
        startMetaData(u"kMDItemPublishers", MetaDataKind::List, attributes);
    } else if (property == u"dcterms:contributor") {
        startMetaData(u"kMDItemContributors", MetaDataKind::List, attributes);
    } else if (!m_coverPath && attributes.value("name") == u"cover") {
        m_coverID = attributes.value("content");
    }
}

void EPUBParser::startItem(const XMLAttributes& attributes)
{
    const auto mediaType = attributes.value("media-type");
    const auto id = attributes.value("id");
    const auto properties = attributes.value("properties");
    const auto href = unescapedPath(attributes);
    if (mediaType == u"application/xhtml+xml") {
        if (href && (isPresentAndEqualNoCase(id, u"toc") || isPresentAndEqualNoCase(properties, u"nav")))
            m_tocFile = pathInOPFFolder(*href);
        if (id && href)
            m_items.insert_or_assign(*id, *href);
        else if (id)
            m_items.erase(*id);
    } else if (mediaType == u"application/x-dtbncx+xml") {
        if (href)
            m_ncxFile = pathInOPFFolder(*href);
    } else {
        const bool isCover
            = properties == u"cover-image" || (m_coverID && isPresentAndEqualNoCase(id, *m_coverID));
        if (!m_coverPath && isCover)
            m_coverPath = href;
        if (href)
            m_auxiliaryFiles.push_back(*href);
    }
}

void EPUBParser::startItemReference(const XMLAttributes& attributes)
{
    const auto id = attributes.value("idref");
    if (id && boolForKey(attributes, "linear", true))
        m_spines.push_back(*id);
}

String EPUBParser::pathInOPFFolder(const String& href) const
{
    return stringByAppendingPathComponent(opfFolder(), href);
}

// The value stands in the metadata from here on; the element's text fills it later. What was collected for
// an outer element goes to its place first.
void EPUBParser::startMetaData(std::u16string_view key, MetaDataKind kind, const XMLAttributes& attributes)
{
    const auto fileAs = attributes.value("opf:file-as").value_or(String());
    const bool isCollecting = fileAs.isEmpty();
    if (isCollecting)
        finishMetaString();
    std::optional<std::size_t> index;
    if (kind == MetaDataKind::List) {
        Value* list = m_metaData.find(key);
        if (!list) {
            m_metaData.set(String(key), Value(Array()));
            list = m_metaData.find(key);
        }
        index = list->as<Array>()->size();
        if (*index == MostListed)
            return noteLeftOut(u"entries of lists after the first 10,000");
        list->as<Array>()->emplace_back(fileAs);
    } else {
        m_metaData.set(String(key), Value(fileAs));
        if (m_metaString && m_metaString->key == key)
            m_metaString.reset(); // Its value was replaced.
    }
    if (isCollecting)
        m_metaString = MetaString { String(key), index, MutableString() };
}

void EPUBParser::foundCharacters(const String& characters)
{
    if (!m_metaString)
        return;
    const String words = stringByRemovingMultipleWhiteSpaces(stringByTrimmingWhiteSpaces(characters));
    if (words.isEmpty())
        return;
    MutableString& text = m_metaString->text;
    text.append(text.isEmpty() ? u"" : u" ").append(words);
}

void EPUBParser::didEndElement(std::string_view) { finishMetaString(); }

void EPUBParser::finishMetaString()
{
    if (!m_metaString)
        return;
    Value& value = *m_metaData.find(m_metaString->key);
    Value& place = m_metaString->index ? (*value.as<Array>())[*m_metaString->index] : value;
    place = std::move(m_metaString->text).take();
    m_metaString.reset();
}

} // namespace caddis
