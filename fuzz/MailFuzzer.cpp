// Messages and folders of them: an input that begins with "From " is a folder.
//
// Invariants: those of ImporterRun.h.

#include "ImporterRun.h"

#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const bool isFolder = std::string_view(reinterpret_cast<const char*>(data), size).starts_with("From ");
    caddis::importTwice(isFolder ? "com.apple.mail.mbox" : "com.apple.mail.email", data, size);
    return 0;
}
