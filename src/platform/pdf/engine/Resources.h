#pragma once

#include "platform/pdf/engine/FontCache.h"

#include <Object.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace caddis::pdf {

/// The resource dictionary of a page or a form, asked by name. Its parts are fetched once.
class Resources {
public:
    /// `dictionary` may be of any kind; what is no dictionary has no resources.
    Resources(Object dictionary, XRef* xref, FontCache& fonts);

    std::shared_ptr<Font> font(std::string_view name);
    /// The font entry [font size] of a graphics state dictionary; null and 0 when it has none.
    std::pair<std::shared_ptr<Font>, double> fontOfGraphicsState(std::string_view name);
    /// The entry itself, mostly a reference; null object when there is none.
    const Object& xObject(std::string_view name);
    const Object& properties(std::string_view name);

    const Object& dictionary() const { return m_dictionary; }

private:
    struct Part {
        const char* key;
        bool isFetched = false;
        Object dictionary {};
    };

    const Object& find(Part& part, std::string_view name);

    Object m_dictionary;
    XRef* m_xref;
    FontCache& m_fonts;
    Part m_fontPart { "Font" };
    Part m_statePart { "ExtGState" };
    Part m_xObjectPart { "XObject" };
    Part m_propertiesPart { "Properties" };
    std::map<std::string, std::shared_ptr<Font>, std::less<>> m_directFonts;
    std::vector<std::string> m_statesWithoutFont;
};

} // namespace caddis::pdf
