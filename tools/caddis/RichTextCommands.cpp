#include "RichTextCommands.h"

#include "Output.h"
#include "ValuePrinter.h"
#include "client/HelperProxy.h"
#include "platform/richtext/RTF.h"
#include "platform/richtext/RTFD.h"

#include <algorithm>
#include <cstdio>

namespace caddis::tool {

namespace {

// The text of the reply's data; nil when the reply has none.
std::optional<AttributedString> textIn(const std::optional<Dictionary>& reply)
{
    const Value* const rtfd = reply ? reply->find(u"Rtfd") : nullptr;
    return rtfd && rtfd->is<Data>() ? initWithRTFD(*rtfd->as<Data>()) : std::nullopt;
}

// Readers of text want to see that there is something, not which character the platform has for it.
std::string printable(const AttributedString& text)
{
    std::u16string units(text.string().view());
    std::erase(units, AttachmentCharacter);
    std::ranges::replace(units, LineSeparator, u'\n');
    return String(units).utf8();
}

Dictionary describe(const AttributedString& text, const Dictionary& reply)
{
    Array attachments;
    for (const Attachment& attachment : text.attachments())
        attachments.emplace_back(attachment.file.name);
    const Value* const attributes = reply.find(u"DocumentAttributes");
    return { { u"DocumentAttributes"_s, attributes ? *attributes : Value(Dictionary()) },
        { u"text"_s, text.string() }, { u"attachments"_s, attachments } };
}

ExitCode write(const Invocation& invocation, const AttributedString& text, const Dictionary& reply)
{
    const std::string& file = *invocation.output;
    if (file.ends_with(".rtfd")) {
        const Data rtfd = *reply.find(u"Rtfd")->as<Data>();
        if (HelperProxy(invocation.helper()).writeRTFDData(rtfd, absolutePath(file)))
            return Success;
        std::fprintf(stderr, "%s: the package can't be written\n", file.c_str());
        return Usage;
    }
    const bool isRTF = file.ends_with(".rtf");
    const Data data
        = isRTF ? RTFFromString(text, text.documentAttributes) : Data::adopt(printable(text) + '\n');
    return writeData(data, file) ? Success : Usage;
}

} // namespace

std::optional<String> textOfDocument(const Invocation& invocation, const std::string& file)
{
    const auto text
        = textIn(HelperProxy(invocation.helper()).attributedStringWithContentsOfFile(absolutePath(file)));
    return text ? std::optional(String::fromUtf8(printable(*text))) : std::nullopt;
}

ExitCode richtext(const Invocation& invocation)
{
    const std::string& file = invocation.arguments.front();
    const auto reply
        = HelperProxy(invocation.helper()).attributedStringWithContentsOfFile(absolutePath(file));
    const auto text = textIn(reply);
    if (!text) {
        std::fprintf(stderr, "%s: nothing could be read\n", file.c_str());
        return NothingFound;
    }
    if (invocation.output && !invocation.json)
        return write(invocation, *text, *reply);
    print((invocation.json ? json(describe(*text, *reply)) : printable(*text)) + '\n');
    return Success;
}

} // namespace caddis::tool
