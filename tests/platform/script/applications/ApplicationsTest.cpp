// Scripts that tell a program of their own, over its socket.

#include "../applescript/Scripts.h"

#include "platform/ipc/Task.h"
#include "support/PrivateRuntimeDirectory.h"
#include "support/Text.h"

#include <fstream>
#include <thread>

namespace caddis::applescript {
namespace {

class Applications : public testing::Test {
protected:
    Applications()
    {
        setenv("CADDIS_ROOT", m_runtime.path().c_str(), 1);
        std::filesystem::create_directories(m_runtime.path() / "applications");
        std::filesystem::copy_file(
            CADDIS_TEST_DATA "/applescript/Notes.sdef", m_runtime.path() / "applications/Notes.sdef");
    }
    ~Applications() override
    {
        unsetenv("CADDIS_ROOT");
        if (!m_task)
            return;
        m_task->terminate();
        m_task->waitUntilExit();
    }

    void launch()
    {
        const std::string socket = m_runtime.path() / "applications/Notes";
        m_task = std::make_unique<Task>(
            String::fromUtf8(CADDIS_TEST_APPLICATION), std::vector<String> { String::fromUtf8(socket) });
        m_task->launch();
        for (int tries = 0; tries < 500 && told("running of it") != "true"; ++tries)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    static std::string told(const std::string& statements)
    {
        return outcomeOf("tell application \"Notes\"\n" + statements + "\nend tell");
    }

    PrivateRuntimeDirectory m_runtime;
    std::unique_ptr<Task> m_task;
};

TEST_F(Applications, AnswerForTheirObjectsAndProperties)
{
    launch();
    EXPECT_EQ(told("name of note 1"), "\"first\"");
    EXPECT_EQ(told("body text of note \"second\""), "\"two words\"");
    EXPECT_EQ(told("word 2 of (get body text of last note)"), "\"words\"");
    EXPECT_EQ(told("name of every note"), R"({"first", "second"})");
    EXPECT_EQ(told("note 2"), "note id 2 of application \"Notes\"");
    EXPECT_EQ(told("set n to note 2\nname of n"), "\"second\"");
    EXPECT_EQ(told("tell note 2 to get its name & its body text"), "\"secondtwo words\"");
    EXPECT_EQ(told("{count notes, count of every note, exists note 2, exists note \"none\"}"),
        "{2, 2, true, false}");
    EXPECT_EQ(told("owner name"), "\"Ada\"");
    EXPECT_EQ(told("note 9"), "error -1728");
    EXPECT_EQ(outcomeOf("name of note 1 of application \"Notes\""), "\"first\"");
    EXPECT_EQ(outcomeOf("set n to body text of first note of application \"Notes\"\nn"), "\"one\"");
    EXPECT_EQ(outcomeOf("tell note 1 of application \"Notes\" to name"), "\"first\"");
    EXPECT_EQ(outcomeOf("using terms from application \"Notes\"\non f(n)\nbody text of n\nend f\n"
                        "end using terms from\nf(note 2 of application \"Notes\")"),
        "\"two words\"");
}

TEST_F(Applications, ChangeMakeAndDeleteWhatTheyHold)
{
    launch();
    EXPECT_EQ(told("set body text of note 1 to \"new\"\nbody text of note 1"), "\"new\"");
    EXPECT_EQ(told("set tint of note 1 to pale blue\n{tint of note 1 is pale blue, tint of note 1}"),
        "{true, |pale blue|}");
    EXPECT_EQ(
        told("make new note at end of notes with properties {name:\"made\", body text:\"x\", tint:red}\n"
             "{name of result, tint of result}"),
        R"({"made", red})");
    EXPECT_EQ(told("name of every note whose body text is \"x\""), R"({"made"})");
    EXPECT_EQ(
        told("set found to {}\nrepeat with n in notes\nif body text of n contains \"e\" then set end of "
             "found to name of n\nend repeat\nfound"),
        R"({"first"})");
    EXPECT_EQ(told("delete note \"made\"\ncount notes"), "2");
    EXPECT_EQ(told("copy \"copied\" to name of note 2\nname of note 2"), "\"copied\"");
}

TEST_F(Applications, GetCommandsInTheWordsOfTheirDictionaries)
{
    launch();
    EXPECT_EQ(told("echo {1, 2.5, \"a\", true, missing value, date \"2024-03-01\"}"),
        "{{1, 2.5, \"a\", true, missing value, date \"Friday, March 1, 2024 at 12:00:00 AM\"}, "
        "missing value, missing value, missing value}");
    EXPECT_EQ(told("echo note 1 in note 2 tinted red with loudly"),
        "{note 1 of application \"Notes\", red, true, note 2 of application \"Notes\"}");
    EXPECT_EQ(told("item 1 of (echo {name:\"n\", body text:\"b\", mine:3})"),
        R"({name:"n", |body text|:"b", mine:3})");
    EXPECT_EQ(told("class of first item of (echo end of notes)"), "|«class insl»|") << "no object";
    EXPECT_EQ(told("first item of (echo (a reference to end time of some note))"),
        "|end time| of some note of application \"Notes\"");
    EXPECT_EQ(told("with timeout of 7 seconds\nget mail\nend timeout"), "7");
    // Outside of the dictionary's reach its words are names like others.
    EXPECT_EQ(told("my echo_(1)\nend tell\non echo_(x)\nset note to x\nnote\nend echo_\ntell me"), "1");
}

TEST_F(Applications, ErrorsAreTheirOwnOrTellWhatWentWrong)
{
    EXPECT_EQ(told("name of note 1"), "error -600");
    EXPECT_EQ(told("running of it"), "false");
    EXPECT_EQ(told("activate"), "error -600");
    EXPECT_EQ(told("note 1 wildly frobnicates"), "error -2741") << "its words are all known";
    launch();
    EXPECT_EQ(told("try\nrefuse\non error m number n\n{m, n}\nend try"),
        "{\"Notes got an error: I would rather not.\", 42}");
    EXPECT_EQ(
        told("with timeout of 0.05 seconds\ntry\nhang\non error number n\nn\nend try\nend timeout"), "-1712");
    ScriptLimits brief;
    brief.deadline = std::chrono::milliseconds(50);
    EXPECT_EQ(outcomeOf("tell application \"Notes\"\ntry\nhang\nend try\nend tell\n1", brief), "error -1712")
        << "the script's own deadline ends it";
    EXPECT_EQ(told("babble"), "error -609");
    EXPECT_EQ(told("quit"), "error -609");
    EXPECT_EQ(told("refuse"), "error -600");
}

// The program that the documentation shows.
TEST_F(Applications, MayBeWrittenInAnyLanguage)
{
    m_task = std::make_unique<Task>(u"/usr/bin/python3"_s,
        std::vector<String> { String::fromLatin1(CADDIS_EXAMPLES "/application/jar.py"),
            String::fromUtf8(m_runtime.path().string()) });
    m_task->launch();
    const auto toldJar = [](const std::string& statement) {
        return outcomeOf("tell application \"Jar\"\n" + statement + "\nend tell");
    };
    for (int tries = 0; tries < 500 && toldJar("running of it") != "true"; ++tries)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_EQ(toldJar("put sweets 3 of colour \"red\"\nput sweets 4"), "7");
    EXPECT_EQ(toldJar("set label text to \"Mine é\"\nlabel text"), "\"Mine é\"");
    EXPECT_EQ(toldJar("put sweets \"many\""), "error -609");
    EXPECT_EQ(toldJar("try\nexists label text\non error m\nm\nend try"),
        "\"Jar got an error: The jar doesn’t understand.\"");
}

// No dictionary, one that is hostile, a name that is no name.
TEST_F(Applications, WithoutADictionaryAreUnknownUntilTheyAreTold)
{
    const auto outcomeWith = [&](const std::string& name, const std::string& dictionary) {
        std::ofstream(m_runtime.path() / "applications" / (name + ".sdef")) << dictionary;
        return outcomeOf("if false then\ntell application \"" + name
            + "\" to dance the tango wildly\nend if\ntell application \"" + name + "\" to get name");
    };
    EXPECT_EQ(outcomeWith("A", "<dictionary>"), "error -1728");
    EXPECT_EQ(outcomeWith("B", ""), "error -1728");
    EXPECT_EQ(
        outcomeWith("C", "<!DOCTYPE x [<!ENTITY a SYSTEM 'file:///etc/passwd'>]><plist/>"), "error -1728");
    std::string many = "<dictionary>";
    for (int index = 0; index < 20'000; ++index)
        many += "<property name='p' code='abcd'/>";
    EXPECT_EQ(outcomeWith("D", many + "</dictionary>"), "error -1728");
    EXPECT_EQ(outcomeWith("E", "<dictionary/>" + std::string(5 << 20, ' ')), "error -1728");
    EXPECT_EQ(outcomeOf("tell application \"../Notes\" to get name"), "error -1728");
    // An installed one need not run to be known.
    std::filesystem::create_directories(m_runtime.path() / "Applications");
    std::filesystem::copy_file(
        CADDIS_TEST_DATA "/applescript/Notes.sdef", m_runtime.path() / "Applications/Installed.sdef");
    EXPECT_EQ(outcomeOf("tell application \"Installed\" to get name of note 1"), "error -600");
}

} // namespace
} // namespace caddis::applescript
