#include "LibraryCommands.h"

#include "Input.h"
#include "Output.h"
#include "RichTextCommands.h"
#include "ValuePrinter.h"
#include "WebCommands.h"
#include "client/HelperProxy.h"
#include "epub/EPUBParser.h"
#include "markup/Html2Text.h"
#include "markup/HtmlBaseURL.h"
#include "markup/HtmlMetadata.h"
#include "markup/MarkupData.h"
#include "markup/MarkupFileTypes.h"
#include "markup/WebArchiveText.h"
#include "platform/office/OfficeDocument.h"

#include <cstdio>

namespace caddis::tool {

namespace {

// What is read as markup: everything else is opened as the platform opens documents.
bool isPage(const std::string& file, const Data& data)
{
    return file == "-" || (isMarkupFile(String::fromUtf8(file)) && !isOfficeXML(data.chars()));
}

// The header may have some bytes of something else before it.
bool isPDF(const Data& data) { return data.chars().substr(0, 1024).find("%PDF-") != std::string_view::npos; }

std::optional<String> textOfPage(const Data& data)
{
    const String markup = stringWithMarkupData(data, NSStringEncoding::UTF8);
    return stringByConvertingHtml2PlainTextNonUmlauted(markup, false, { .reformat = true, .onlyBody = true })
        .text;
}

std::optional<String> textOfPageOrDocument(const Invocation& invocation, const std::string& file)
{
    const auto data = contentsOf(file);
    if (data && isPDF(*data)) {
        const auto reply = HelperProxy(invocation.helper()).attributedStringWithPDF(false, *data);
        return reply ? reply->stringForKey(u"String") : std::nullopt;
    }
    return data && isPage(file, *data) ? textOfPage(*data) : textOfDocument(invocation, file);
}

std::optional<String> textOf(const Invocation& invocation, const std::string& file)
{
    if (isWebArchiveFile(String::fromUtf8(file)))
        return textOfWebArchive(invocation, file);
    if (!EPUBParser::isEPUBFile(String::fromUtf8(file)))
        return textOfPageOrDocument(invocation, file);
    const auto metadata = HelperProxy(invocation.helper()).metaDataForFile(absolutePath(file));
    return metadata ? metadata->stringForKey(u"kMDItemTextContent") : std::nullopt;
}

std::string lines(const Array& entries, const std::string& indentation)
{
    std::string result;
    for (const Value& value : entries) {
        const auto& entry = *value.as<Dictionary>();
        const auto part
            = [&](std::u16string_view key) { return entry.stringForKey(key).value_or(String()).utf8(); };
        result += indentation + part(u"label") + "  " + part(u"content") + '\n';
        if (const Value* children = entry.find(u"children"))
            result += lines(*children->as<Array>(), indentation + "  ");
    }
    return result;
}

ExitCode nothing(const std::string& file)
{
    std::fprintf(stderr, "%s: nothing could be read\n", file.c_str());
    return NothingFound;
}

} // namespace

ExitCode text(const Invocation& invocation)
{
    ExitCode code = Success;
    for (const std::string& file : invocation.arguments) {
        const auto found = textOf(invocation, file);
        if (!found)
            code = nothing(file);
        if (invocation.json) {
            const Value value = found ? Value(*found) : Value();
            print(json(Dictionary { { u"file"_s, String::fromUtf8(file) }, { u"text"_s, value } }) + '\n');
        } else if (found)
            print(found->utf8() + '\n');
    }
    return code;
}

ExitCode toc(const Invocation& invocation)
{
    EPUBParser book(absolutePath(invocation.arguments.front()));
    const auto& entries = book.rootChildren();
    if (!entries)
        return nothing(invocation.arguments.front());
    print(invocation.json ? json(*entries) + '\n' : lines(*entries, ""));
    return Success;
}

ExitCode html(const Invocation& invocation)
{
    EPUBParser book(absolutePath(invocation.arguments.front()));
    const auto page = book.spines().empty() ? std::nullopt : book.htmlContents();
    if (!page)
        return nothing(invocation.arguments.front());
    if (!invocation.output)
        print(page->utf8());
    return !invocation.output || writeData(Data::adopt(page->utf8()), invocation.output) ? Success : Usage;
}

ExitCode head(const Invocation& invocation)
{
    const std::string& file = invocation.arguments.front();
    const auto data = contentsOf(file);
    if (!data)
        return nothing(file);
    const String page = stringWithMarkupData(*data, NSStringEncoding::UTF8);
    const auto base = htmlBaseURL(page);
    const auto valueOf
        = [](const auto& found) { return found ? std::optional<Value>(*found) : std::nullopt; };
    Dictionary found;
    found.set(u"title"_s, valueOf(normalizedHtmlTitle(page)));
    found.set(u"date"_s, valueOf(htmlDate(page)));
    found.set(u"canonical"_s, valueOf(htmlCanonicalURL(page)));
    found.set(u"base"_s, valueOf(base));
    for (const auto& [name, value] : htmlMetaAttributesByConvertingEntitiesToCharacters(page))
        found.set(format(u"meta %@", name), value);
    print(invocation.json ? json(found) + '\n' : lines(found));
    return found.isEmpty() ? NothingFound : Success;
}

} // namespace caddis::tool
