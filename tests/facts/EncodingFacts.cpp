#include "facts/Facts.h"
#include "markup/CharsetFinder.h"
#include "markup/MarkupData.h"
#include "platform/files/FileSystem.h"

#include "support/Sha1.h"

#include <algorithm>

namespace caddis::facts {

Answer encodingFact(const Question& question);

namespace {

// "tests1.dat#1a2b3c4d" is the block of a file of test cases (html5lib's form) whose text has that SHA-1.
std::optional<Data> blockWithSha1(std::string_view file, std::string_view prefix)
{
    constexpr std::string_view Begin = "#data\n";
    constexpr std::string_view End = "\n#encoding\n";
    for (std::size_t at = file.find(Begin); at != file.npos; at = file.find(Begin, at + 1)) {
        const std::string_view rest = file.substr(at + Begin.size());
        const std::string_view block = rest.substr(0, rest.find(End));
        if (sha1(block).starts_with(prefix))
            return Data::copyOf(block);
    }
    return std::nullopt;
}

std::optional<Data> dataAt(const String& path)
{
    const std::size_t mark = path.view().rfind(u'#');
    if (mark == std::u16string_view::npos)
        return FileSystem::contentsOfFile(path);
    const auto file = FileSystem::contentsOfFile(path.substringTo(mark));
    return file ? blockWithSha1(file->chars(), path.substringFrom(mark + 1).utf8()) : std::nullopt;
}

} // namespace

Answer encodingFact(const Question& question)
{
    const auto data = dataAt(question.path);
    if (!data)
        return Answer::skip("no such file");
    const String text = stringWithMarkupData(*data, NSStringEncoding::UTF8);
    if (question.key == u"markupCharset")
        return markupCharset(text);
    if (question.key == u"decoded")
        return text;
    if (question.key == u"decoded.length")
        return decimal(text.length());
    if (question.key == u"decoded.replacementCount")
        return decimal(static_cast<std::size_t>(std::ranges::count(text, u'\uFFFD')));
    return Answer::skip("no such key");
}

} // namespace caddis::facts
