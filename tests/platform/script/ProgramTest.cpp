#include "platform/script/DescriptorJSON.h"
#include "platform/script/ProgramComponent.h"

#include "support/LogCapture.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"

namespace caddis {
namespace {

std::unique_ptr<Script> compiled(const ScriptText& text)
{
    auto result = ProgramComponent().compile(text);
    auto* script = std::get_if<std::unique_ptr<Script>>(&result);
    return script ? std::move(*script) : nullptr;
}

AppleEvent callOf(const String& handler, std::vector<EventDescriptor> parameters)
{
    AppleEvent event;
    event.parameters = { { "snam"_code, EventDescriptor::withString(handler) },
        { "----"_code, EventDescriptor::list(std::move(parameters)) } };
    return event;
}

TEST(DescriptorJSON, ReadsWhatItWrites)
{
    for (const std::string json :
        { "null", "true", "-1.5", "[1, \"a\\\"\\\\b\", []]", R"({"a": {"b": [null]}, "c": 2})" }) {
        const auto value = descriptorFromJson(json);
        ASSERT_TRUE(value) << json;
        EXPECT_EQ(jsonFromDescriptor(*value), json);
    }
    EXPECT_EQ(descriptorFromJson("\"\\u00e4\\n\"")->stringValue(), u"ä\n"_s);
    for (const std::string json : { "", "[1", "[1 2]", "{\"a\"}", "\"a", "\"\\u12\"", "1 2", "nul" })
        EXPECT_FALSE(descriptorFromJson(json)) << json;
    EXPECT_FALSE(descriptorFromJson(std::string(100'000, '[')));
}

TEST(ProgramComponent, CallsAProgramWithNameAndParameters)
{
    const TemporaryFolder folder;
    const String path
        = folder.write("a.scpt", "#!/bin/sh\nread json\necho \"[\\\"$1\\\", $json]\"\necho note >&2\n");
    const auto script = compiled(*ScriptText::fromFile(path));
    ASSERT_TRUE(script);
    const LogCapture log;
    const auto reply = script->send(callOf(u"doit"_s, { EventDescriptor::withInt32(1) }), {});
    EXPECT_EQ(jsonFromDescriptor(reply.result), R"(["doit", [1]])");
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_EQ(log.lines()[0], u"note"_s);
}

TEST(ProgramComponent, SourcesRunWithoutAFileAndFailuresAreErrors)
{
    const auto text = compiled(ScriptText::fromSource(u"#!/bin/sh\necho plain text\n"_s));
    EXPECT_EQ(text->run({}).result.stringValue(), u"plain text"_s);
    const LogCapture log;
    EXPECT_EQ(compiled(ScriptText::fromSource(u"#!/bin/sh\nexit 4\n"_s))->run({}).error->number, 4);
    ScriptLimits brief;
    brief.deadline = std::chrono::milliseconds(100);
    EXPECT_EQ(compiled(ScriptText::fromSource(u"#!/bin/sh\nsleep 9\n"_s))->run(brief).error->number, -1712);
    EXPECT_FALSE(compiled(ScriptText::fromSource(u"#!/no/such/program\n"_s)));
    EXPECT_FALSE(ProgramComponent().accepts(ScriptText::fromSource(u"#!/usr/bin/osascript\n1"_s)));
    EXPECT_TRUE(ProgramComponent().accepts(ScriptText::fromSource(u"#!/bin/sh\n"_s)));
}

} // namespace
} // namespace caddis
