#include "platform/pdf/engine/FontCache.h"

#include <Array.h>
#include <Dict.h>

namespace caddis::pdf {

namespace {

// Merged documents bring fonts for every page; beyond this many the cache starts anew, so that memory stays
// flat.
constexpr std::size_t MostFonts = 512;

double italicAngleOf(const Dict& font)
{
    const Object descendants = font.lookup("DescendantFonts");
    const Object descendant = descendants.isArray() ? descendants.getArray()->get(0) : Object(objNull);
    const Object descriptor = (descendant.isDict() ? *descendant.getDict() : font).lookup("FontDescriptor");
    const Object angle = descriptor.isDict() ? descriptor.getDict()->lookup("ItalicAngle") : Object(objNull);
    return angle.isNum() ? angle.getNum() : 0;
}

} // namespace

std::shared_ptr<Font> FontCache::make(const Object& dictionary, Ref reference) const
{
    if (!dictionary.isDict())
        return nullptr;
    auto font = GfxFont::makeFont(m_xref, "F", reference, dictionary.getDict());
    return font && font->isOk()
        ? std::make_shared<Font>(std::move(font), italicAngleOf(*dictionary.getDict()))
        : nullptr;
}

std::shared_ptr<Font> FontCache::font(const Object& entry)
{
    if (!entry.isRef())
        return make(entry, Ref::INVALID());
    const auto found = m_fonts.find(entry.getRef());
    if (found != m_fonts.end())
        return found->second;
    if (m_fonts.size() >= MostFonts)
        m_fonts.clear();
    return m_fonts[entry.getRef()] = make(entry.fetch(m_xref), entry.getRef());
}

} // namespace caddis::pdf
