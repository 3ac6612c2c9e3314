#include "facts/Facts.h"

#include "epub/ZipArchive.h"
#include "platform/base/Format.h"
#include "platform/zip/ZipReader.h"
#include "support/Sha1.h"

namespace caddis::facts {

// "open", "member.count", "data:MEMBER".
Answer zipFact(const Question& question)
{
    constexpr std::u16string_view DataPrefix = u"data:";
    const auto archive = ZipArchive::initWithZipFile(question.path);
    if (question.key == u"open")
        return yesOrNo(archive != nullptr);
    if (!archive)
        return std::nullopt;
    if (question.key == u"member.count") {
        std::size_t count = 0;
        ZipReader::open(question.path)->forEachMember([&](const ZipReader::Member&) { return ++count != 0; });
        return decimal(count);
    }
    if (!question.key.view().starts_with(DataPrefix))
        return Answer::skip("no such key");
    const auto data = archive->dataForNamedFile(question.key.substringFrom(DataPrefix.size()));
    if (!data)
        return std::nullopt;
    return format(u"%d bytes sha1 %s", data->size(), sha1(data->chars()));
}

} // namespace caddis::facts
