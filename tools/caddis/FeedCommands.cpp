#include "FeedCommands.h"

#include "Input.h"
#include "Output.h"
#include "ValuePrinter.h"
#include "markup/Feed.h"
#include "markup/MarkupData.h"
#include "text/DateReader.h"

#include <cstdio>

namespace caddis::tool {

namespace {

std::string itemLines(const Array& items)
{
    std::string lines;
    for (const Value& item : items)
        lines += json(item) + '\n';
    return lines;
}

ExitCode write(std::string text, const Invocation& invocation)
{
    if (invocation.output)
        return writeData(Data::adopt(std::move(text)), invocation.output) ? Success : Usage;
    print(text);
    return Success;
}

} // namespace

ExitCode feed(const Invocation& invocation)
{
    const std::string& file = invocation.arguments.front();
    const auto data = contentsOf(file);
    const String text = data ? stringWithMarkupData(*data, NSStringEncoding::UTF8) : String();
    if (!isFeed(text)) {
        std::fprintf(stderr, "%s: %s\n", file.c_str(), data ? "this is no feed" : "cannot be read");
        return NothingFound;
    }
    const auto url = invocation.url ? URL::fromString(String::fromUtf8(*invocation.url)) : std::nullopt;
    if (invocation.items)
        return write(itemLines(getItemsOfFeed(text, url)), invocation);
    return write(stringByConvertingFeed(text, url, FeedStyleSheet::Inline).utf8() + '\n', invocation);
}

ExitCode date(const Invocation& invocation)
{
    ExitCode code = Success;
    for (const std::string& text : invocation.arguments) {
        const auto instant = caddis::date(String::fromUtf8(text));
        if (!instant)
            code = NothingFound;
        if (invocation.json)
            print(json(Dictionary { { u"text"_s, String::fromUtf8(text) },
                      { u"date"_s, instant ? Value(*instant) : Value() } })
                + '\n');
        else
            print((instant ? instant->description().utf8() : "-") + "  " + text + '\n');
    }
    return code;
}

} // namespace caddis::tool
