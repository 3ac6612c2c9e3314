#include "platform/script/applescript/AppleScriptComponent.h"
#include "platform/script/applescript/CompiledOutline.h"
#include "support/Text.h"

#include <cstring>

namespace caddis {
namespace {

std::unique_ptr<Script> compiled(std::u16string_view source)
{
    auto result = AppleScriptComponent().compile(ScriptText::fromSource(String(source)));
    auto* script = std::get_if<std::unique_ptr<Script>>(&result);
    return script ? std::move(*script) : nullptr;
}

ScriptReply call(Script& script, std::u16string_view handler, std::vector<EventDescriptor> parameters = {})
{
    AppleEvent event;
    event.eventClass = "ascr"_code;
    event.eventID = "psbr"_code;
    event.parameters = { { "snam"_code, EventDescriptor::withString(String(handler)) },
        { "----"_code, EventDescriptor::list(std::move(parameters)) } };
    return script.send(event, {});
}

int errorOf(const ScriptReply& reply) { return reply.error ? reply.error->number : 0; }

TEST(AppleScriptComponent, CallsHandlersByTheirLowerCaseNames)
{
    const auto script = compiled(
        u"on DoIt(x)\nx & \"!\"\nend DoIt\non |Mixed|()\nend |Mixed|\non |plain|()\n1\nend |plain|");
    ASSERT_TRUE(script);
    EXPECT_EQ(
        call(*script, u"doit", { EventDescriptor::withString(String(u"a")) }).result.stringValue(), u"a!"_s);
    EXPECT_EQ(errorOf(call(*script, u"mixed")), -1708);
    EXPECT_EQ(call(*script, u"plain").result.int32Value(), 1);
    EXPECT_EQ(errorOf(call(*script, u"doit")), -1721);
    EXPECT_EQ(errorOf(call(*script, u"absent")), -1708);
    EXPECT_EQ(script->handlerNames(), (std::vector { u"DoIt"_s, u"Mixed"_s, u"plain"_s }));
}

TEST(AppleScriptComponent, PropertiesLastFromCallToCallAndStatementsDoNotRun)
{
    const auto script
        = compiled(u"property n : 0\nset g to 5\non bump()\nset n to n + 1\nreturn n\nend bump\n"
                   u"on ask()\nglobal g\nreturn g\nend ask");
    ASSERT_TRUE(script);
    call(*script, u"bump");
    EXPECT_EQ(call(*script, u"bump").result.int32Value(), 2);
    EXPECT_EQ(errorOf(call(*script, u"ask")), -2753);
    script->run({});
    EXPECT_EQ(call(*script, u"ask").result.int32Value(), 5);
}

TEST(AppleScriptComponent, ValuesTravelAsDescriptorsAndBack)
{
    const auto script
        = compiled(u"on same(x)\nx\nend same\non label(r)\nr's |name| & r's other\nend label\n"
                   u"on many()\n{1, 1.5, true, missing value, text, {name:\"n\", mine:2}}\nend many");
    ASSERT_TRUE(script);
    const auto opaque = EventDescriptor("abcd"_code, Data::copyOf("xyz"));
    EXPECT_EQ(call(*script, u"same", { opaque }).result, opaque);
    const auto date = EventDescriptor::withDate(Date { 1e8 });
    EXPECT_EQ(call(*script, u"same", { date }).result, date);
    const auto text = [](std::u16string_view units) { return EventDescriptor::withString(String(units)); };
    const auto record = EventDescriptor::record({ { "usrf"_code,
        EventDescriptor::list({ text(u"name"), text(u"a"), text(u"other"), text(u"b") }) } });
    EXPECT_EQ(call(*script, u"label", { record }).result.stringValue(), u"ab"_s);

    const auto many = call(*script, u"many").result;
    ASSERT_EQ(many.numberOfItems(), 6U);
    EXPECT_EQ(many.descriptorAtIndex(1).descriptorType(), "long"_code);
    EXPECT_EQ(many.descriptorAtIndex(2).descriptorType(), "doub"_code);
    EXPECT_EQ(many.descriptorAtIndex(3).descriptorType(), "true"_code);
    EXPECT_EQ(many.descriptorAtIndex(4).codeValue(), "msng"_code);
    EXPECT_EQ(many.descriptorAtIndex(5).codeValue(), "ctxt"_code);
    EXPECT_EQ(many.descriptorAtIndex(6).descriptorForKeyword("pnam"_code), text(u"n"));
    EXPECT_EQ(many.descriptorAtIndex(6).descriptorForKeyword("usrf"_code).numberOfItems(), 2U);
}

TEST(AppleScriptComponent, ErrorsTellTheirPlaceInTheSource)
{
    const auto result = AppleScriptComponent().compile(ScriptText::fromSource(u"set x to 1\nset to 5"_s));
    const auto* error = std::get_if<ScriptErrorInfo>(&result);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->number, -2741);
    EXPECT_EQ(error->range.location, 15U);
    const auto script = compiled(u"on f()\nset x to 1\nitem 5 of {}\nend f");
    const auto reply = call(*script, u"f");
    EXPECT_EQ(reply.error->range, (Range { 18, 12 }));
    EXPECT_EQ(reply.error->description(),
        u"{\n"
        u"    NSAppleScriptErrorBriefMessage = \"Can’t get item 5 of {}.\";\n"
        u"    NSAppleScriptErrorMessage = \"Can’t get item 5 of {}.\";\n"
        u"    NSAppleScriptErrorNumber = \"-1728\";\n"
        u"    NSAppleScriptErrorRange = \"NSRange: {18, 12}\";\n}"_s);
}

// The error is about values of a script that never came to be.
TEST(AppleScriptComponent, ErrorsOutliveTheScriptThatDidNotCompile)
{
    const auto result = AppleScriptComponent().compile(
        ScriptText::fromSource(u"property p : {1, {2, \"a\"}} as integer"_s));
    const auto* error = std::get_if<ScriptErrorInfo>(&result);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->number, -1700);
    EXPECT_EQ(error->message, u"Can’t make {1, {2, \"a\"}} into type integer."_s);
}

// Objects of a compiled script, all of them inline.
std::string object(char kind, std::size_t size, const std::string& body)
{
    return std::string { kind, '\xFF', '\xFF', static_cast<char>(size >> 8), static_cast<char>(size) } + body;
}
std::string counted(const std::string& text)
{
    return std::string { '\0', static_cast<char>(text.size()) } + text;
}
std::string userName(const std::string& name, const std::string& shown = {})
{
    return object(11, 0, "\x30" + counted(name) + counted(shown));
}
std::string block(const std::string& tag, const std::vector<std::string>& children)
{
    std::string body = tag + std::string(children.size() * 2, '\xFF');
    for (const std::string& child : children)
        body += child;
    return object(static_cast<char>(tag.empty() ? 16 : 14), children.size(), body);
}

TEST(CompiledOutline, NamesHandlersAndProperties)
{
    const std::string none = object(1, 0, "");
    const auto handler = [&](const std::string& name) {
        return block("\r", { name, none, none, none, none, none, object(17, 3, "abc") });
    };
    const std::string property = object(
        6, 3, "\xFF\xFF\xFF\xFF\xFF\xFF" + userName("count", "Count") + object(3, 5, "") + object(6, 1, ""));
    const std::string members = block("",
        { none, property, handler(userName("doit", "doIt")),
            handler(object(10, 8,
                "\x0B"
                "aevtoapp")) });
    const std::string file = "FasdUAS 1.101.10" + block("\x0F", { none, none, none, members });
    const auto outlineOf = [](const std::string& bytes) {
        return compiledOutline({ reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size() });
    };
    const auto outline = outlineOf(file);
    ASSERT_TRUE(outline);
    EXPECT_EQ(outline->handlers, (std::vector { u"doIt"_s, u"run"_s }));
    EXPECT_EQ(outline->properties, (std::vector { u"Count"_s }));
    EXPECT_TRUE(outlineOf("#!/usr/bin/osascript\n" + file));
    for (std::size_t length = 0; length < file.size(); ++length)
        EXPECT_FALSE(outlineOf(file.substr(0, length))) << length;
}

TEST(AppleScriptComponent, RefusesCompiledScripts)
{
    ScriptText text;
    text.bytes = Data::copyOf("FasdUAS 1.101.10");
    const auto result = AppleScriptComponent().compile(text);
    ASSERT_TRUE(std::holds_alternative<ScriptErrorInfo>(result));
    EXPECT_EQ(std::get<ScriptErrorInfo>(result).number, -1758);
}

} // namespace
} // namespace caddis
