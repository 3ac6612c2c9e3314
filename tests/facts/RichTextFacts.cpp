#include "facts/Facts.h"

#include "platform/documents/DocumentReader.h"
#include "platform/richtext/FileWrapper.h"

#include <vector>

namespace caddis::facts {

namespace {

std::vector<String> attachmentNames(const String& path)
{
    std::vector<String> names;
    if (const auto folder = readFileWrapper(path)) {
        for (const FileWrapper& member : folder->members) {
            if (!(member.name == u"TXT.rtf"))
                names.push_back(member.name);
        }
    }
    return names;
}

} // namespace

// text, attachments.present, attachments.referenced, attachments.firstName.
Answer richTextFact(const Question& question)
{
    const auto text = attributedStringWithPath(question.path);
    if (!text)
        return std::nullopt;
    if (question.key == u"text")
        return text->string();
    if (question.key == u"attachments.present")
        return decimal(attachmentNames(question.path).size());
    if (question.key == u"attachments.referenced")
        return decimal(text->attachments().size());
    if (question.key == u"attachments.firstName")
        return text->attachments().empty() ? std::nullopt : Answer(text->attachments().front().file.name);
    return Answer::skip("no such key");
}

} // namespace caddis::facts
