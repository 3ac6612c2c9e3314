#include "BatchOptions.h"

#include "Operations.h"

#include <charconv>
#include <functional>
#include <map>
#include <thread>

namespace caddis::tool {

namespace {

template <typename Number>
bool readNumber(const std::string& text, Number& number, Number least, Number most, std::string& unit)
{
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number);
    unit.assign(read.ptr, end);
    return read.ec == std::errc() && number >= least && number <= most;
}

template <typename Number> bool readNumber(const std::string& text, Number& number, Number least, Number most)
{
    std::string unit;
    return readNumber(text, number, least, most, unit) && unit.empty();
}

// 512M, 2G
bool readBytes(const std::string& text, std::uint64_t& bytes)
{
    constexpr std::uint64_t MostUnits = std::uint64_t(1) << 33;
    std::string unit;
    if (!readNumber(text, bytes, std::uint64_t(0), MostUnits, unit) || unit.size() > 1)
        return false;
    const std::string_view units = "KMG";
    const std::size_t power = unit.empty() ? 0 : units.find(unit.front()) + 1;
    bytes <<= 10 * power;
    return unit.empty() || units.find(unit.front()) != units.npos;
}

using Setter = std::function<bool(BatchOptions&, const std::string&)>;

const std::map<std::string, Setter, std::less<>>& valueOptions()
{
    static const auto text = [](std::string BatchOptions::*member) -> Setter {
        return [member](BatchOptions& options, const std::string& value) {
            options.*member = value;
            return !value.empty();
        };
    };
    static const Setter out = [](BatchOptions& options, const std::string& value) {
        options.out = value;
        return !value.empty();
    };
    static const std::map<std::string, Setter, std::less<>> options {
        { "--op",
            [](BatchOptions& o, const std::string& value) {
                o.operation = value;
                return isOperation(value);
            } },
        { "--jobs", [](BatchOptions& o, const std::string& v) { return readNumber(v, o.jobs, 1U, 1024U); } },
        { "--timeout",
            [](BatchOptions& o, const std::string& v) { return readNumber(v, o.timeout, 0.01, 86'400.0); } },
        { "--memory", [](BatchOptions& o, const std::string& v) { return readBytes(v, o.memory); } },
        { "--largest", [](BatchOptions& o, const std::string& v) { return readBytes(v, o.largest); } },
        { "--size",
            [](BatchOptions& o, const std::string& v) { return readNumber(v, o.size, 1U, 10'000U); } },
        { "--deliveries",
            [](BatchOptions& o, const std::string& v) { return readNumber(v, o.deliveries, 1U, 1000U); } },
        { "--patience",
            [](BatchOptions& o, const std::string& v) { return readNumber(v, o.patience, 1U, 86'400U); } },
        { "--out", out },
        { "-o", out },
        { "--failures", text(&BatchOptions::failures) },
        { "--log", text(&BatchOptions::log) },
        { "--nats", text(&BatchOptions::server) },
        { "--queue", text(&BatchOptions::queue) },
    };
    return options;
}

bool readSwitch(BatchOptions& options, std::string_view word)
{
    if (word == "--sandbox" || word == "--no-sandbox")
        options.sandbox = word == "--sandbox";
    else if (word == "--resume")
        options.resume = true;
    else if (word == "--quiet")
        options.quiet = true;
    else if (word == "--drain")
        options.drain = true;
    else
        return false;
    return true;
}

} // namespace

std::optional<BatchOptions> readBatchOptions(const std::vector<std::string>& words, std::string& mistake)
{
    BatchOptions options;
    options.jobs = std::max(1U, std::thread::hardware_concurrency());
    bool ended = false;
    for (std::size_t index = 0; index < words.size(); ++index) {
        const std::string& word = words[index];
        const auto option = valueOptions().find(word);
        if (ended || word == "-" || !word.starts_with('-'))
            options.arguments.push_back(word);
        else if (word == "--")
            ended = true;
        else if (option != valueOptions().end()) {
            const std::string value = ++index < words.size() ? words[index] : "";
            if (!option->second(options, value)) {
                mistake.assign(word).append(" cannot be \"").append(value).append("\"");
                return std::nullopt;
            }
        } else if (!readSwitch(options, word)) {
            mistake = "there is no option " + word;
            return std::nullopt;
        }
    }
    return options;
}

} // namespace caddis::tool
