#pragma once

#include "platform/base/Data.h"
#include "platform/base/String.h"

#include <optional>
#include <string_view>
#include <vector>

/// An event parser for XML that nobody vouches for.
///
///     struct TitleReader : XMLParserDelegate { … };
///     TitleReader reader;
///     const bool isWellFormed = XMLParser::parse(data, reader);
///
/// Names are delivered as they are written, prefix and colon included, and namespace declarations are
/// attributes like others. Character references and entities that the document itself declares are replaced,
/// in attributes too. Nothing is ever loaded: neither a DTD nor an external entity, which stands for nothing.
///
/// Bounded for any input: time by its size, memory by a small multiple of it, entities by what libxml2 allows
/// (ten times the document's size, once they make more than a megabyte).
namespace caddis {

/// The attributes of one start tag. Valid during the call that hands them over.
class XMLAttributes {
public:
    struct Attribute {
        std::string_view prefix; ///< empty without one
        std::string_view name; ///< without the prefix
        std::string_view value; ///< UTF-8
    };

    /// `name` as it is written: "opf:role". Nil when the tag has no such attribute.
    std::optional<String> value(std::string_view name) const;
    /// The same as UTF-8, valid like the attributes.
    std::optional<std::string_view> utf8(std::string_view name) const;

private:
    friend class XMLParserContext;
    std::vector<Attribute> m_attributes;
};

/// Why a parse stopped.
struct XMLParseError {
    int code; ///< libxml2's xmlParserErrors
    int lineNumber;
    String message;
};

class XMLParserDelegate {
public:
    virtual ~XMLParserDelegate() = default;

    /// `name` is UTF-8 and valid during the call.
    virtual void didStartElement(std::string_view name, const XMLAttributes& attributes) = 0;
    virtual void didEndElement(std::string_view name) = 0;
    /// All the text between two tags at once, CDATA sections and white space included; never empty.
    virtual void foundCharacters(const String& characters) = 0;
    /// Once, at the first fatal error; the parse ends with it.
    virtual void parseErrorOccurred(const XMLParseError&) { }
};

namespace XMLParser {

/// Parses at once; true when the document is well formed to its end. Elements before an error have been
/// delivered. Empty data is an error.
bool parse(const Data& data, XMLParserDelegate& delegate);

} // namespace XMLParser

} // namespace caddis
