#include "platform/xml/XMLParser.h"

#include <algorithm>
#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <new>

// libxml2's push parser with its SAX2 events. The context's `_private` field carries our object, because
// libxml2 parses the text of an entity with a context of its own that inherits that field. The document that
// collects the declared entities is the only tree that is built.
//
// XML_PARSE_RECOVER is left out on purpose: without it libxml2 itself stops at the first fatal error, at a
// point where it is safe to stop.

namespace caddis {

namespace {

// Every start tag compares its attributes in pairs, so an endless tag would cost quadratic time. The parser
// gets its input in small pieces, and gives up when a tag has not ended after several of them.
constexpr std::size_t PieceSize = 16 * 1024;
constexpr std::size_t LongestTag = 64 * 1024;
constexpr int MostNested = 256; // Elements inside one another, as libxml2's other parser allows.
constexpr int MostNamespaces = 1000; // In scope at one place; each prefix is searched for among them in turn.
constexpr std::size_t DetectionSize = 4; // What libxml2 looks at to tell the encoding.

const char* chars(const xmlChar* text) { return reinterpret_cast<const char*>(text); }

std::string_view viewOf(const xmlChar* text) { return text ? chars(text) : std::string_view(); }

void printNothing(void*, const char*, ...) { }

// libxml2 prints some errors of its encodings without asking the parser. While one of these lives, this
// thread's printing goes nowhere.
class QuietErrors {
public:
    QuietErrors()
        : m_function(xmlGenericError)
        , m_context(xmlGenericErrorContext)
    {
        xmlSetGenericErrorFunc(nullptr, printNothing);
    }
    ~QuietErrors() { xmlSetGenericErrorFunc(m_context, m_function); }
    QuietErrors(const QuietErrors&) = delete;
    QuietErrors& operator=(const QuietErrors&) = delete;

private:
    xmlGenericErrorFunc m_function;
    void* m_context;
};

} // namespace

// One parse: what libxml2's callbacks work on.
class XMLParserContext {
public:
    XMLParserContext(const Data& data, XMLParserDelegate& delegate);
    ~XMLParserContext();
    XMLParserContext(const XMLParserContext&) = delete;
    XMLParserContext& operator=(const XMLParserContext&) = delete;

    bool parse();

private:
    static XMLParserContext& of(void* context)
    {
        return *static_cast<XMLParserContext*>(static_cast<xmlParserCtxtPtr>(context)->_private);
    }
    static xmlSAXHandler handlers();
    static void startElement(void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri,
        int namespaceCount, const xmlChar** namespaces, int attributeCount, int defaultedCount,
        const xmlChar** attributes);
    static void endElement(void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri);
    static void characters(void* context, const xmlChar* text, int length);
    static void entityDeclaration(void* context, const xmlChar* name, int type, const xmlChar* publicID,
        const xmlChar* systemID, xmlChar* content);
    static void error(void* context, xmlErrorPtr error);

    bool push(std::string_view piece);
    bool isInsideOverlongTag() const;
    bool isInBounds();
    void fail(const XMLParseError& error);
    void deliverCharacters();
    std::string_view qualifiedName(const xmlChar* prefix, const xmlChar* name);

    QuietErrors m_quietErrors;
    std::string_view m_input;
    XMLParserDelegate& m_delegate;
    xmlParserCtxtPtr m_context;
    XMLAttributes m_attributes; // Of the start tag in work; keeps its room from tag to tag.
    std::string m_name;
    std::string m_characters; // Text since the last tag, not yet delivered.
    int m_depth = 0;
    bool m_hasFailed = false;
};

XMLParserContext::XMLParserContext(const Data& data, XMLParserDelegate& delegate)
    : m_input(data.chars())
    , m_delegate(delegate)
{
    xmlSAXHandler sax = handlers();
    const std::string_view head = m_input.substr(0, DetectionSize);
    m_context = xmlCreatePushParserCtxt(&sax, nullptr, head.data(), static_cast<int>(head.size()), nullptr);
    if (!m_context)
        throw std::bad_alloc();
    m_context->_private = this;
    m_context->sax->serror = error; // Not before: it may be called while the context is made.
    xmlCtxtUseOptions(m_context, XML_PARSE_NOENT | XML_PARSE_NONET);
}

XMLParserContext::~XMLParserContext()
{
    if (m_context->myDoc)
        xmlFreeDoc(m_context->myDoc);
    xmlFreeParserCtxt(m_context);
}

xmlSAXHandler XMLParserContext::handlers()
{
    xmlSAXHandler sax {};
    sax.initialized = XML_SAX2_MAGIC;
    sax.startDocument = xmlSAX2StartDocument;
    sax.internalSubset = xmlSAX2InternalSubset;
    sax.entityDecl = entityDeclaration;
    sax.getEntity = xmlSAX2GetEntity;
    sax.getParameterEntity = xmlSAX2GetParameterEntity;
    sax.startElementNs = startElement;
    sax.endElementNs = endElement;
    sax.characters = characters;
    sax.cdataBlock = characters;
    return sax;
}

bool XMLParserContext::parse()
{
    std::string_view rest = m_input.substr(std::min(DetectionSize, m_input.size()));
    while (!rest.empty() && push(rest.substr(0, PieceSize)))
        rest.remove_prefix(std::min(PieceSize, rest.size()));
    if (!m_hasFailed)
        xmlParseChunk(m_context, nullptr, 0, 1);
    deliverCharacters();
    // When the encoding breaks down, libxml2 may end in the middle and call the document well formed.
    if (m_context->wellFormed == 0 || m_depth != 0)
        fail({ m_context->errNo, 0, String(u"The document breaks off.") });
    return !m_hasFailed;
}

bool XMLParserContext::push(std::string_view piece)
{
    xmlParseChunk(m_context, piece.data(), static_cast<int>(piece.size()), 0);
    if (isInsideOverlongTag())
        fail({ XML_ERR_GT_REQUIRED, m_context->input->line, String(u"A tag doesn't end.") });
    return !m_hasFailed;
}

bool XMLParserContext::isInsideOverlongTag() const
{
    const xmlParserInput* input = m_context->input;
    return input && static_cast<std::size_t>(input->end - input->cur) > LongestTag && input->cur[0] == '<'
        && input->cur[1] != '!' && input->cur[1] != '?';
}

bool XMLParserContext::isInBounds()
{
    if (m_depth > MostNested || m_context->nsNr / 2 > MostNamespaces)
        fail({ XML_ERR_INTERNAL_ERROR, m_context->input->line, String(u"The elements are too deep.") });
    return !m_hasFailed;
}

void XMLParserContext::fail(const XMLParseError& error)
{
    if (m_hasFailed)
        return;
    m_hasFailed = true;
    deliverCharacters();
    m_delegate.parseErrorOccurred(error);
}

void XMLParserContext::deliverCharacters()
{
    if (m_characters.empty())
        return;
    m_delegate.foundCharacters(String::fromUtf8(m_characters));
    m_characters.clear();
}

std::string_view XMLParserContext::qualifiedName(const xmlChar* prefix, const xmlChar* name)
{
    if (!prefix)
        return viewOf(name);
    m_name.assign(viewOf(prefix)).append(1, ':').append(viewOf(name));
    return m_name;
}

void XMLParserContext::startElement(void* context, const xmlChar* name, const xmlChar* prefix,
    const xmlChar* /*uri*/, int namespaceCount, const xmlChar** namespaces, int attributeCount,
    int /*defaultedCount*/, const xmlChar** attributes)
{
    XMLParserContext& self = of(context);
    ++self.m_depth;
    if (!self.isInBounds())
        return;
    self.deliverCharacters();
    auto& list = self.m_attributes.m_attributes;
    list.clear();
    for (int index = 0; index < namespaceCount; ++index) {
        const std::string_view declared = viewOf(namespaces[2 * index]);
        const std::string_view uri = viewOf(namespaces[2 * index + 1]);
        list.push_back({ declared.empty() ? "" : "xmlns", declared.empty() ? "xmlns" : declared, uri });
    }
    for (int index = 0; index < attributeCount; ++index) {
        // Five entries each: name, prefix, namespace, begin and end of the value.
        const xmlChar** attribute = attributes + std::ptrdiff_t { 5 } * index;
        list.push_back(
            { viewOf(attribute[1]), viewOf(attribute[0]), { chars(attribute[3]), chars(attribute[4]) } });
    }
    self.m_delegate.didStartElement(self.qualifiedName(prefix, name), self.m_attributes);
}

void XMLParserContext::endElement(
    void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar* /*uri*/)
{
    XMLParserContext& self = of(context);
    --self.m_depth;
    if (self.m_hasFailed)
        return;
    self.deliverCharacters();
    self.m_delegate.didEndElement(self.qualifiedName(prefix, name));
}

void XMLParserContext::characters(void* context, const xmlChar* text, int length)
{
    XMLParserContext& self = of(context);
    if (!self.m_hasFailed)
        self.m_characters.append(chars(text), static_cast<std::size_t>(length));
}

// With entities replaced, libxml2 would read the file that an external one names. Such an entity is declared
// with no text instead.
void XMLParserContext::entityDeclaration(void* context, const xmlChar* name, int type,
    const xmlChar* /*publicID*/, const xmlChar* /*systemID*/, xmlChar* content)
{
    const bool isParameter = type == XML_INTERNAL_PARAMETER_ENTITY || type == XML_EXTERNAL_PARAMETER_ENTITY;
    const bool isInternal = type == XML_INTERNAL_PARAMETER_ENTITY || type == XML_INTERNAL_GENERAL_ENTITY;
    xmlChar nothing[] = "";
    xmlSAX2EntityDecl(context, name,
        isParameter ? XML_INTERNAL_PARAMETER_ENTITY : XML_INTERNAL_GENERAL_ENTITY, nullptr, nullptr,
        isInternal ? content : nothing);
}

void XMLParserContext::error(void* context, xmlErrorPtr error)
{
    // Only what makes the document malformed counts: a prefix that is not declared, for one, does not.
    if (error->level == XML_ERR_FATAL)
        of(context).fail(
            { error->code, error->line, String::fromUtf8(error->message ? error->message : "") });
}

std::optional<String> XMLAttributes::value(std::string_view name) const
{
    const auto bytes = utf8(name);
    return bytes ? std::optional(String::fromUtf8(*bytes)) : std::nullopt;
}

std::optional<std::string_view> XMLAttributes::utf8(std::string_view name) const
{
    const std::size_t colon = name.find(':');
    const std::string_view prefix = colon == name.npos ? std::string_view() : name.substr(0, colon);
    const std::string_view local = colon == name.npos ? name : name.substr(colon + 1);
    for (const Attribute& attribute : m_attributes) {
        if (attribute.name == local && attribute.prefix == prefix)
            return attribute.value;
    }
    return std::nullopt;
}

bool XMLParser::parse(const Data& data, XMLParserDelegate& delegate)
{
    return XMLParserContext(data, delegate).parse();
}

} // namespace caddis
