#include "bundles/support/Importer.h"
#include "platform/base/Utf.h"

#include <algorithm>
#include <ft2build.h>
#include <memory>
#include FT_FREETYPE_H
#include FT_SFNT_NAMES_H
#include FT_TRUETYPE_IDS_H

namespace caddis::bundles {

namespace {

constexpr FT_Long MaximumFaces = 64;
constexpr FT_UInt MaximumNames = 1000;

struct NameRow {
    FT_UShort identifier;
    const char* key;
};
constexpr NameRow NameRows[] = {
    { TT_NAME_ID_COPYRIGHT, "kMDItemCopyright" },
    { TT_NAME_ID_VERSION_STRING, "kMDItemVersion" },
    { TT_NAME_ID_DESCRIPTION, "kMDItemDescription" },
    { TT_NAME_ID_LICENSE, "kMDItemRights" },
};

// Names for this platform and in this language are in UTF-16, big-endian.
std::string utf8Of(const FT_SfntName& name)
{
    std::u16string units;
    for (FT_UInt i = 0; i + 1 < name.string_len; i += 2)
        units += static_cast<char16_t>(name.string[i] << 8 | name.string[i + 1]);
    return utf16ToUtf8(units);
}

void setNames(FT_Face face, Attributes& attributes)
{
    const FT_UInt count = std::min(FT_Get_Sfnt_Name_Count(face), MaximumNames);
    for (FT_UInt i = 0; i < count; ++i) {
        FT_SfntName name {};
        if (FT_Get_Sfnt_Name(face, i, &name) != 0 || name.platform_id != TT_PLATFORM_MICROSOFT
            || name.language_id != TT_MS_LANGID_ENGLISH_UNITED_STATES)
            continue;
        for (const NameRow& row : NameRows) {
            if (row.identifier == name.name_id)
                attributes.setString(row.key, utf8Of(name));
        }
        if (name.name_id == TT_NAME_ID_DESIGNER)
            attributes.addString("kMDItemAuthors", utf8Of(name));
        if (name.name_id == TT_NAME_ID_MANUFACTURER)
            attributes.addString("kMDItemPublishers", utf8Of(name));
    }
}

std::string fullName(FT_Face face)
{
    std::string name = face->family_name ? face->family_name : "";
    if (face->style_name)
        name.append(" ").append(face->style_name);
    return name;
}

} // namespace

bool importFile(Attributes& attributes, std::string_view, const std::string& path)
{
    FT_Library opened = nullptr;
    if (FT_Init_FreeType(&opened) != 0)
        return false;
    const std::unique_ptr<FT_LibraryRec_, decltype(&FT_Done_FreeType)> library(opened, FT_Done_FreeType);
    FT_Long faces = 1;
    for (FT_Long i = 0; i < std::min(faces, MaximumFaces) && !attributes.shouldStop(); ++i) {
        FT_Face loaded = nullptr;
        if (FT_New_Face(library.get(), path.c_str(), i, &loaded) != 0)
            return i > 0;
        const std::unique_ptr<FT_FaceRec_, decltype(&FT_Done_Face)> face(loaded, FT_Done_Face);
        faces = face->num_faces;
        if (i == 0) {
            attributes.setString("kMDItemTitle", fullName(loaded));
            setNames(loaded, attributes);
        }
        attributes.addString("kMDItemFonts", fullName(loaded));
    }
    return true;
}

} // namespace caddis::bundles
