// Lines of JSON as batch and worker read them.
//
// Invariants: what is no object has no members; a member stands inside the line; only what stands in quotes
// is a text; a line that is cut off before its last brace is no object.

#include "Fuzz.h"
#include "batch/JSONLine.h"

#include <initializer_list>

using caddis::tool::JSONLine;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const JSONLine line(text);
    for (const char* name : { "file", "op", "id", "size", "modified", "version", "outcome", "" }) {
        const auto raw = line.raw(name);
        INVARIANT(line.isObject() || !raw);
        INVARIANT(!raw || (raw->data() >= text.data() && raw->data() + raw->size() <= text.data() + size));
        INVARIANT(!line.text(name) || (raw && raw->starts_with('"')));
    }
    if (line.isObject())
        INVARIANT(!JSONLine(text.substr(0, text.rfind('}'))).isObject());
    return 0;
}
