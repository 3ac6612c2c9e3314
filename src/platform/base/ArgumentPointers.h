#pragma once

#include <string>
#include <vector>

namespace caddis {

/// The texts as the kernel takes arguments and environments: pointers to them, and a null pointer at the end.
/// Valid while the texts stay as they are.
inline std::vector<char*> pointersTo(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace caddis
