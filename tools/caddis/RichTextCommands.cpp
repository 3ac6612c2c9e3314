#include "RichTextCommands.h"

#include "Input.h"
#include "Output.h"
#include "ValuePrinter.h"
#include "client/HelperProxy.h"
#include "epub/EPUBParser.h"
#include "platform/richtext/RTF.h"
#include "platform/richtext/RTFD.h"

#include <algorithm>
#include <cstdio>

namespace caddis::tool {

namespace {

// What the helper says of a file. RTFD data is under "Rtfd", or, of a PDF, under "String".
struct Document {
    Dictionary reply;
    Data rtfd;
    AttributedString text;
};

std::optional<Document> bookIn(const std::string& file)
{
    EPUBParser book(absolutePath(file));
    auto text = book.spines().empty() ? std::nullopt : book.richTextContents();
    auto rtfd = text ? RTFDFromString(*text, {}) : std::nullopt;
    return rtfd ? std::optional(Document { {}, std::move(*rtfd), std::move(*text) }) : std::nullopt;
}

std::optional<Document> documentIn(const Invocation& invocation, const std::string& file)
{
    if (EPUBParser::isEPUBFile(String::fromUtf8(file)))
        return bookIn(file);
    const HelperProxy helper(invocation.helper());
    const auto data = contentsOf(file);
    const bool isPDF = data && data->chars().starts_with("%PDF-");
    auto reply = isPDF ? helper.attributedStringWithPDF(true, *data)
                       : helper.attributedStringWithContentsOfFile(absolutePath(file));
    const Value* const value = reply ? reply->find(isPDF ? u"String" : u"Rtfd") : nullptr;
    const Data* const rtfd = value ? value->as<Data>() : nullptr;
    auto text = rtfd ? initWithRTFD(*rtfd) : std::nullopt;
    return text ? std::optional(Document { std::move(*reply), *rtfd, std::move(*text) }) : std::nullopt;
}

// Readers of text want to see that there is something, not which character the platform has for it.
std::string printable(const AttributedString& text)
{
    std::u16string units(text.string().view());
    std::erase(units, AttachmentCharacter);
    std::ranges::replace(units, LineSeparator, u'\n');
    return String(units).utf8();
}

Dictionary describe(const Document& document)
{
    Array attachments;
    for (const Attachment& attachment : document.text.attachments())
        attachments.emplace_back(attachment.file.name);
    const Value* const attributes = document.reply.find(u"DocumentAttributes");
    return { { u"DocumentAttributes"_s, attributes ? *attributes : Value(Dictionary()) },
        { u"text"_s, document.text.string() }, { u"attachments"_s, attachments } };
}

ExitCode write(const Invocation& invocation, const Document& document)
{
    const std::string& file = *invocation.output;
    if (file.ends_with(".rtfd")) {
        if (HelperProxy(invocation.helper()).writeRTFDData(document.rtfd, absolutePath(file)))
            return Success;
        std::fprintf(stderr, "%s: the package can't be written\n", file.c_str());
        return Usage;
    }
    const Data data = file.ends_with(".rtf") ? RTFFromString(document.text, document.text.documentAttributes)
                                             : Data::adopt(printable(document.text) + '\n');
    return writeData(data, file) ? Success : Usage;
}

} // namespace

std::optional<String> textOfDocument(const Invocation& invocation, const std::string& file)
{
    const auto document = documentIn(invocation, file);
    return document ? std::optional(String::fromUtf8(printable(document->text))) : std::nullopt;
}

ExitCode richtext(const Invocation& invocation)
{
    const std::string& file = invocation.arguments.front();
    const auto document = documentIn(invocation, file);
    if (!document) {
        std::fprintf(stderr, "%s: nothing could be read\n", file.c_str());
        return NothingFound;
    }
    if (invocation.output && !invocation.json)
        return write(invocation, *document);
    print((invocation.json ? json(describe(*document)) : printable(document->text)) + '\n');
    return Success;
}

} // namespace caddis::tool
