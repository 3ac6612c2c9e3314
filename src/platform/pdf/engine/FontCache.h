#pragma once

#include "platform/pdf/engine/Font.h"

#include <Object.h>

#include <unordered_map>

class XRef;

namespace caddis::pdf {

/// The fonts of a document, each made once for the document's life: making them anew on every page is what
/// most of the time of reading text would go into.
class FontCache {
public:
    explicit FontCache(XRef* xref)
        : m_xref(xref)
    {
    }

    /// The font that an entry of a Font resource dictionary stands for; null when it is none. A font written
    /// into the dictionary itself is made on every call.
    std::shared_ptr<Font> font(const Object& entry);

private:
    std::shared_ptr<Font> make(const Object& dictionary, Ref reference) const;

    XRef* m_xref;
    std::unordered_map<Ref, std::shared_ptr<Font>> m_fonts;
};

} // namespace caddis::pdf
