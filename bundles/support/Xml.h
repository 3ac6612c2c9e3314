#pragma once

#include "bundles/support/Attributes.h"

#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace caddis::bundles {

/// The attributes of one start tag, valid during the call that hands them over.
class XmlTag {
public:
    struct Attribute {
        std::string_view prefix; ///< empty without one
        std::string_view name;
        std::string_view value; ///< UTF-8
    };

    /// By the name without its prefix; empty when there is none.
    std::string_view operator[](std::string_view localName) const;
    const std::vector<Attribute>& attributes() const { return m_attributes; }

private:
    friend class XmlReader;
    std::vector<Attribute> m_attributes;
    std::deque<std::string> m_repaired; ///< values that had to be changed
};

/// Names come without their prefixes: office documents choose these as they like.
class XmlHandler {
public:
    virtual ~XmlHandler() = default;

    virtual void startElement(std::string_view name, const XmlTag& tag) = 0;
    virtual void endElement(std::string_view name) = 0;
    /// A part of the text between two tags, in UTF-8.
    virtual void characters(std::string_view text) = 0;
    /// Whether the rest of the document is of no use any more.
    virtual bool isDone() const { return false; }
};

/// Reads XML in pieces as they come out of a file or an archive, with libxml2's push parser.
///
/// Nothing outside the document is loaded, entities that it declares stand for nothing in its text, and
/// libxml2's limits (256 levels, 10 MB for a name or a value) hold, so memory is bounded for any input.
class XmlReader {
public:
    explicit XmlReader(XmlHandler& handler);
    ~XmlReader();
    XmlReader(const XmlReader&) = delete;
    XmlReader& operator=(const XmlReader&) = delete;

    /// False from the first fatal error on, and when the handler is done.
    bool feed(std::string_view bytes);
    /// True when the document was well formed to its end.
    bool finish();

private:
    struct Context;
    std::unique_ptr<Context> m_context;
};

/// All of a document in memory.
bool parseXml(std::string_view bytes, XmlHandler& handler);
/// A document in a file, read in pieces until the handler is done or the host wants no more.
bool parseXmlFile(const std::string& path, XmlHandler& handler, const Attributes& attributes);

} // namespace caddis::bundles
