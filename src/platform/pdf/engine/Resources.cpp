#include "platform/pdf/engine/Resources.h"

#include <Array.h>
#include <Dict.h>

#include <algorithm>

namespace caddis::pdf {

Resources::Resources(Object dictionary, XRef* xref, FontCache& fonts)
    : m_dictionary(std::move(dictionary))
    , m_xref(xref)
    , m_fonts(fonts)
{
}

const Object& Resources::find(Part& part, std::string_view name)
{
    static const Object nothing(objNull);
    if (!part.isFetched) {
        part.isFetched = true;
        part.dictionary = m_dictionary.isDict() ? m_dictionary.getDict()->lookup(part.key) : Object(objNull);
    }
    return part.dictionary.isDict() ? part.dictionary.getDict()->lookupNF(std::string(name).c_str())
                                    : nothing;
}

std::shared_ptr<Font> Resources::font(std::string_view name)
{
    const Object& entry = find(m_fontPart, name);
    if (entry.isRef())
        return m_fonts.font(entry);
    const auto found = m_directFonts.find(name);
    if (found != m_directFonts.end())
        return found->second;
    return entry.isDict() ? m_directFonts[std::string(name)] = m_fonts.font(entry) : nullptr;
}

std::pair<std::shared_ptr<Font>, double> Resources::fontOfGraphicsState(std::string_view name)
{
    auto& without = m_statesWithoutFont;
    if (std::find(without.begin(), without.end(), name) != without.end())
        return {};
    const Object state = find(m_statePart, name).fetch(m_xref);
    const Object font = state.isDict() ? state.getDict()->lookup("Font") : Object(objNull);
    if (!font.isArray() || font.getArray()->getLength() < 2) {
        if (without.size() < 64)
            without.emplace_back(name);
        return {};
    }
    const Object size = font.getArray()->get(1);
    return { m_fonts.font(font.getArray()->getNF(0)), size.isNum() ? size.getNum() : 0 };
}

const Object& Resources::xObject(std::string_view name) { return find(m_xObjectPart, name); }

const Object& Resources::properties(std::string_view name) { return find(m_propertiesPart, name); }

} // namespace caddis::pdf
