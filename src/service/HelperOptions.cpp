#include "service/HelperOptions.h"

#include "platform/base/Log.h"
#include "service/OstraImExport.h"

#include <charconv>
#include <string_view>

namespace caddis {

namespace {

// The text behind "--name=" when the word begins so.
std::optional<std::string_view> valueOf(std::string_view word, std::string_view option)
{
    if (!word.starts_with(option))
        return std::nullopt;
    return word.substr(option.size());
}

template <typename Number> bool readNumber(std::string_view text, Number& number)
{
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    return read.ec == std::errc() && read.ptr == text.data() + text.size();
}

bool readWord(HelperOptions& options, std::string_view word)
{
    if (const auto name = valueOf(word, "--name=")) {
        options.name = String::fromUtf8(*name);
        options.hasOwnName = true;
        return !name->empty();
    }
    if (const auto memory = valueOf(word, "--memory="))
        return readNumber(*memory, options.memory);
    if (const auto launcher = valueOf(word, "--attached="))
        return readNumber(*launcher, options.launcher);
    if (word == "--profile=reader" || word == "--profile=base") {
        options.profile
            = word.ends_with("reader") ? HelperOptions::Profile::Reader : HelperOptions::Profile::Base;
        return true;
    }
    return false;
}

} // namespace

std::optional<HelperOptions> HelperOptions::read(std::span<char* const> words)
{
    HelperOptions options;
    options.name = String(ServiceName);
    for (const char* const word : words) {
        if (!readWord(options, word)) {
            log(u"There is no option %s", word);
            return std::nullopt;
        }
    }
    return options;
}

} // namespace caddis
