#pragma once

#include "platform/office/Parts.h"

/// Inside this folder: how the parts of an Office Open XML package refer to each other (ECMA-376 part 2, 9).
namespace caddis::office {

struct Relation {
    std::string type; ///< the last component of its type's address: "styles", "image" …
    std::string target; ///< the name of a part, or an address outside
    bool isExternal = false;
};

/// By id. At most 65,536.
using Relations = std::map<String, Relation>;

/// Those of a part; of the package for an empty name.
Relations relationsOf(const Parts& parts, std::string_view part);

/// The part with the first relation of that type; null pointer without one. Its name is in `name`.
struct FoundPart {
    std::string name;
    const Data* contents = nullptr;
};
FoundPart partOfType(const Parts& parts, const Relations& relations, std::string_view type);

} // namespace caddis::office
