// The event parser.
//
// Invariants: every end has its start; a well-formed document ends with none open and no error, any other
// with one error; text is never empty; the events are bounded by what entities may make of the input.

#include "Fuzz.h"
#include "platform/xml/XMLParser.h"

using namespace caddis;

namespace {

struct Checker : XMLParserDelegate {
    void didStartElement(std::string_view name, const XMLAttributes& attributes) override
    {
        open.emplace_back(name);
        units += name.size() + attributes.value("a").value_or(String()).length();
        INVARIANT(!name.empty() && errors == 0);
    }
    void didEndElement(std::string_view name) override
    {
        INVARIANT(!open.empty() && open.back() == name && errors == 0);
        open.pop_back();
    }
    void foundCharacters(const String& characters) override
    {
        INVARIANT(!characters.isEmpty() && errors == 0);
        units += characters.length();
    }
    void parseErrorOccurred(const XMLParseError&) override { ++errors; }

    std::vector<std::string> open;
    std::size_t units = 0;
    int errors = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Checker checker;
    const bool isWellFormed
        = XMLParser::parse(Data::copyOf({ reinterpret_cast<const char*>(data), size }), checker);
    INVARIANT(checker.errors == (isWellFormed ? 0 : 1));
    INVARIANT(!isWellFormed || checker.open.empty());
    INVARIANT(checker.units <= 20'000'000 + 100 * size);
    return 0;
}
