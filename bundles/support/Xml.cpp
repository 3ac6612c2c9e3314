#include "bundles/support/Xml.h"

#include <cstdio>
#include <libxml/parser.h>
#include <string>

namespace caddis::bundles {

struct XmlReader::Context {
    XmlHandler& handler;
    XmlTag tag = {};
    xmlParserCtxtPtr parser = nullptr;
    bool isStopped = false;

    void check()
    {
        if (!isStopped && handler.isDone()) {
            isStopped = true;
            xmlStopParser(parser);
        }
    }
    static std::string_view view(const xmlChar* text)
    {
        return text ? reinterpret_cast<const char*>(text) : std::string_view();
    }

    // As entities are not replaced, the library leaves each "&" of a value written as "&#38;".
    std::string_view repaired(std::string_view value)
    {
        constexpr std::string_view Ampersand = "&#38;";
        if (value.find(Ampersand) == value.npos)
            return value;
        std::string& text = tag.m_repaired.emplace_back();
        for (auto end = value.find(Ampersand); end != value.npos; end = value.find(Ampersand)) {
            text.append(value.substr(0, end)).append("&");
            value.remove_prefix(end + Ampersand.size());
        }
        text.append(value);
        return text;
    }

    static void start(void* context, const xmlChar* name, const xmlChar*, const xmlChar*, int,
        const xmlChar**, int count, int, const xmlChar** fields);
    static void end(void* context, const xmlChar* name, const xmlChar*, const xmlChar*);
    static void text(void* context, const xmlChar* characters, int length);
};

std::string_view XmlTag::operator[](std::string_view localName) const
{
    for (const Attribute& attribute : m_attributes) {
        if (attribute.name == localName)
            return attribute.value;
    }
    return {};
}

void XmlReader::Context::start(void* context, const xmlChar* name, const xmlChar*, const xmlChar*, int,
    const xmlChar**, int count, int, const xmlChar** fields)
{
    auto& self = *static_cast<Context*>(context);
    self.tag.m_attributes.clear();
    self.tag.m_repaired.clear();
    // Five fields an attribute: name, prefix, namespace, begin and end of the value.
    for (int i = 0; i < count; ++i, fields += 5) {
        const auto* begin = reinterpret_cast<const char*>(fields[3]);
        const auto* end = reinterpret_cast<const char*>(fields[4]);
        self.tag.m_attributes.push_back({ view(fields[1]), view(fields[0]),
            self.repaired({ begin, static_cast<std::size_t>(end - begin) }) });
    }
    self.handler.startElement(view(name), self.tag);
    self.check();
}

void XmlReader::Context::end(void* context, const xmlChar* name, const xmlChar*, const xmlChar*)
{
    auto& self = *static_cast<Context*>(context);
    self.handler.endElement(view(name));
    self.check();
}

void XmlReader::Context::text(void* context, const xmlChar* characters, int length)
{
    static_cast<Context*>(context)->handler.characters(
        { reinterpret_cast<const char*>(characters), static_cast<std::size_t>(length) });
}

XmlReader::XmlReader(XmlHandler& handler)
    : m_context(new Context { .handler = handler })
{
    xmlSAXHandler functions {};
    functions.initialized = XML_SAX2_MAGIC;
    functions.startElementNs = Context::start;
    functions.endElementNs = Context::end;
    functions.characters = Context::text;
    functions.cdataBlock = Context::text;
    functions.ignorableWhitespace = Context::text;
    functions.serror = [](void*, xmlErrorPtr) {}; // else it prints to standard error
    m_context->parser = xmlCreatePushParserCtxt(&functions, m_context.get(), nullptr, 0, nullptr);
    if (!m_context->parser)
        throw std::bad_alloc();
    xmlCtxtUseOptions(m_context->parser, XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
}

// Entities that a document declares are kept in a tree, which the parser leaves to its owner.
XmlReader::~XmlReader()
{
    xmlFreeDoc(m_context->parser->myDoc);
    m_context->parser->myDoc = nullptr;
    xmlFreeParserCtxt(m_context->parser);
}

bool XmlReader::feed(std::string_view bytes)
{
    return !m_context->isStopped
        && xmlParseChunk(m_context->parser, bytes.data(), static_cast<int>(bytes.size()), 0) == 0
        && !m_context->isStopped;
}

bool XmlReader::finish()
{
    return m_context->isStopped || xmlParseChunk(m_context->parser, nullptr, 0, 1) == 0;
}

bool parseXml(std::string_view bytes, XmlHandler& handler)
{
    constexpr std::size_t Piece = 1 << 20;
    XmlReader reader(handler);
    while (bytes.size() > Piece && reader.feed(bytes.substr(0, Piece)))
        bytes.remove_prefix(Piece);
    reader.feed(bytes.substr(0, Piece));
    return reader.finish();
}

bool parseXmlFile(const std::string& path, XmlHandler& handler, const Attributes& attributes)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rbe"), std::fclose);
    if (!file)
        return false;
    XmlReader reader(handler);
    std::string piece(64 * 1024, '\0');
    while (const std::size_t count = std::fread(piece.data(), 1, piece.size(), file.get())) {
        if (attributes.shouldStop() || !reader.feed(std::string_view(piece).substr(0, count)))
            break;
    }
    return reader.finish();
}

} // namespace caddis::bundles
