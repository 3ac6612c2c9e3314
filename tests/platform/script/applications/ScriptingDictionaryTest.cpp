#include "platform/script/applications/ScriptingDictionary.h"

#include "support/Text.h"

#include <algorithm>
#include <fstream>

namespace caddis {
namespace {

std::optional<ScriptingDictionary> read(const std::string& contents)
{
    return scriptingDictionary(Data::copyOf("<dictionary>" + contents + "</dictionary>"));
}

template <typename T> std::vector<String> names(const std::vector<T>& terms)
{
    std::vector<String> result;
    result.reserve(terms.size());
    for (const T& term : terms)
        result.push_back(term.name);
    return result;
}

TEST(ScriptingDictionary, HasWordsWithTheirCodes)
{
    std::ifstream file(CADDIS_TEST_DATA "/applescript/Notes.sdef");
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    const auto dictionary = scriptingDictionary(Data::copyOf(bytes));
    ASSERT_TRUE(dictionary);
    const auto echo = std::ranges::find(dictionary->commands, u"echo"_s, &ScriptingDictionary::Command::name);
    ASSERT_NE(echo, dictionary->commands.end());
    EXPECT_EQ(echo->eventClass, "note"_code);
    EXPECT_EQ(echo->eventID, "echo"_code);
    EXPECT_EQ(names(echo->parameters), (std::vector { u"tinted"_s, u"loudly"_s, u"in"_s }));
    EXPECT_TRUE(echo->parameters[1].isBoolean);
    EXPECT_EQ(dictionary->enumerators.back().code, "red "_code) << "a code in hexadecimal digits";
    EXPECT_EQ(dictionary->classes.back().plural, u"notes"_s);
    const auto make = std::ranges::find(dictionary->commands, u"make"_s, &ScriptingDictionary::Command::name);
    EXPECT_NE(make, dictionary->commands.end())
        << "by the standard suite, which is included by its name alone";
}

TEST(ScriptingDictionary, LeavesOutWhatNoScriptCanSay)
{
    const auto dictionary = read("<property name='a b' code='abcd'/><property name='a  b' code='abcd'/>"
                                 "<property name=' a' code='abcd'/><property name='' code='abcd'/>"
                                 "<property name='1a' code='abcd'/><property name='a-b' code='abcd'/>"
                                 "<property name='a b c d e f' code='abcd'/><property name='c' code='abc'/>"
                                 "<property name='d' code='0xZZZZZZZZ'/><property code='abcd'/>"
                                 "<command name='x' code='abcd'><parameter name='y' code='abcd'/></command>"
                                 "<parameter name='stray' code='abcd'/><type type='boolean'/>");
    ASSERT_TRUE(dictionary);
    EXPECT_EQ(names(dictionary->properties), (std::vector { u"a b"_s }));
    EXPECT_EQ(names(dictionary->commands), (std::vector { u"quit"_s, u"reopen"_s }));
    EXPECT_FALSE(scriptingDictionary(Data::copyOf("<plist/>")));
    EXPECT_FALSE(scriptingDictionary(Data::copyOf("<dictionary>")));
}

TEST(ScriptingDictionary, IncludesNoFiles)
{
    const auto dictionary = read("<xi:include href='file:///etc/hostname'/><xi:include href='Other.sdef'/>");
    ASSERT_TRUE(dictionary);
    EXPECT_TRUE(dictionary->classes.empty());
    const auto twice = read("<include href='x/CocoaStandard.sdef'/><include href='x/CocoaStandard.sdef'/>");
    EXPECT_EQ(std::ranges::count(names(twice->commands), u"make"_s), 1);
}

} // namespace
} // namespace caddis
