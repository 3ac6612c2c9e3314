#include "platform/script/ScriptText.h"

#include "platform/base/MutableString.h"
#include "platform/script/MacRoman.h"

#include <filesystem>
#include <fstream>

namespace caddis {

namespace {

constexpr std::string_view CompiledMark = "FasdUAS ";
constexpr std::uintmax_t LargestFile = 64 << 20;

enum class ByteOrder { Big, Little };

String decodeUtf16(std::string_view bytes, ByteOrder order)
{
    MutableString text(bytes.size() / 2);
    const std::size_t high = order == ByteOrder::Big ? 0 : 1;
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        const auto upper = static_cast<unsigned char>(bytes[at + high]);
        const auto lower = static_cast<unsigned char>(bytes[at + 1 - high]);
        text.append(static_cast<char16_t>(upper << 8 | lower));
    }
    return std::move(text).take();
}

// Scripts begin with ASCII, so that a zero among the first two bytes tells unmarked UTF-16 and its order.
std::optional<ByteOrder> unmarkedUtf16(std::string_view bytes)
{
    if (bytes.size() < 2 || bytes.size() % 2)
        return std::nullopt;
    if (bytes[0] == 0 && bytes[1] != 0)
        return ByteOrder::Big;
    if (bytes[0] != 0 && bytes[1] == 0)
        return ByteOrder::Little;
    return std::nullopt;
}

std::optional<Data> readFile(const std::filesystem::path& path)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)
        || std::filesystem::file_size(path, error) > LargestFile)
        return std::nullopt;
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return std::nullopt;
    return Data::adopt(std::string(std::istreambuf_iterator<char>(file), {}));
}

} // namespace

bool ScriptText::isCompiled() const
{
    std::string_view rest = bytes.chars();
    if (rest.starts_with("#!"))
        rest.remove_prefix(std::min(rest.find('\n'), rest.size() - 1) + 1);
    return rest.starts_with(CompiledMark);
}

ScriptText ScriptText::fromSource(const String& source) { return { String(), Data(), source }; }

std::optional<ScriptText> ScriptText::fromFile(const String& path)
{
    std::filesystem::path file(path.utf8());
    std::error_code ignored;
    if (std::filesystem::is_directory(file, ignored))
        file /= "Contents/Resources/Scripts/main.scpt";
    auto bytes = readFile(file);
    if (!bytes)
        return std::nullopt;
    ScriptText script { path, *std::move(bytes), String() };
    if (!script.isCompiled())
        script.text = decodeScript(script.bytes.chars());
    return script;
}

String decodeScript(std::string_view bytes)
{
    if (bytes.starts_with("\xEF\xBB\xBF"))
        return String::fromUtf8(bytes.substr(3));
    if (bytes.starts_with("\xFE\xFF"))
        return decodeUtf16(bytes.substr(2), ByteOrder::Big);
    if (bytes.starts_with("\xFF\xFE"))
        return decodeUtf16(bytes.substr(2), ByteOrder::Little);
    if (const auto order = unmarkedUtf16(bytes))
        return decodeUtf16(bytes, *order);
    if (auto text = String::fromStrictUtf8(bytes))
        return *std::move(text);
    return stringFromMacRoman(bytes);
}

} // namespace caddis
