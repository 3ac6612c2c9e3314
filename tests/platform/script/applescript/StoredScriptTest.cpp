#include "Scripts.h"

#include "support/TemporaryFolder.h"

namespace caddis::applescript {
namespace {

class StoredScript : public testing::Test {
protected:
    // What a script says after `source` stored `it` and another one loaded it.
    std::string afterRoundTrip(const std::string& source, const std::string& question) const
    {
        const std::string stored
            = outcomeOf(source + "\nstore script it_ in POSIX file \"" + m_file + "\" replacing yes");
        return stored.empty() ? outcomeOf("set it_ to load script POSIX file \"" + m_file + "\"\n" + question)
                              : stored;
    }

    TemporaryFolder m_folder;
    const std::string m_file = m_folder.path("stored.scpt").utf8();
};

TEST_F(StoredScript, KeepsHandlersAndThePresentValuesOfProperties)
{
    const std::string counter = "script it_\nproperty n : 1 * 1 -- a note\nproperty bare\nproperty t : \"\"\n"
                                "on bump()\nset n to n + 1\nend bump\nend script\n";
    EXPECT_EQ(afterRoundTrip(counter
                      + "it_'s bump()\nset t of it_ to \"a\\\"b\\\\c\" & linefeed & \"é\"\n"
                        "set bare of it_ to {1, {a:2.5, |x y|:true}, date \"2024-03-01\", missing value}",
                  "it_'s bump()\n{it_'s n, it_'s t, it_'s bare}"),
        "{3, \"a\\\"b\\\\c\né\", {1, {a:2.5, |x y|:true}, date \"Friday, March 1, 2024 at 12:00:00 AM\", "
        "missing value}}");
    EXPECT_EQ(afterRoundTrip(
                  "script it_\nproperty x : 0\nend script\nset x of it_ to 0.1 + 0.2", "it_'s x = 0.1 + 0.2"),
        "true");
}

TEST_F(StoredScript, KeepsWhatStandsInsideAndAround)
{
    EXPECT_EQ(afterRoundTrip("script it_\nscript inner\nproperty p : 1\nend script\nend script\n"
                             "set p of inner of it_ to 7",
                  "p of inner of it_"),
        "7");
    EXPECT_EQ(afterRoundTrip("on maker(n)\nscript\non add_(x)\nx + n\nend add_\nend script\nend maker\n"
                             "set it_ to maker(5)",
                  "it_'s add_(3)"),
        "8");
    // A whole source, itself loaded from a file.
    m_folder.write("whole.applescript", "#!/usr/bin/osascript\nproperty p : 1\non f()\np\nend f");
    EXPECT_EQ(afterRoundTrip("set it_ to load script POSIX file \""
                      + m_folder.path("whole.applescript").utf8() + "\"\nset p of it_ to 2",
                  "it_'s f()"),
        "2");
    EXPECT_EQ(afterRoundTrip("script a\nend script\nscript it_\nproperty parent : a\nend script", "1"),
        "error -1750");
}

TEST_F(StoredScript, AsksNobodyWhetherToReplaceAFile)
{
    const std::string script = "script s\nproperty p : 1\nend script\nstore script s ";
    const std::string file = "in POSIX file \"" + m_file + "\"";
    EXPECT_EQ(outcomeOf(script), "error -1713");
    EXPECT_EQ(outcomeOf(script + file), "");
    EXPECT_EQ(outcomeOf(script + file), "error -1713");
    EXPECT_EQ(outcomeOf(script + file + " replacing no"), "error -48");
    EXPECT_EQ(outcomeOf(script + "in POSIX file \"/no/such/folder/x.scpt\""), "error -54");
    EXPECT_EQ(outcomeOf("store script 5 " + file + " replacing yes"), "error -1700");
    const std::string bundle = "POSIX file \"" + m_folder.path("b.scptd").utf8() + "\"";
    EXPECT_EQ(outcomeOf(script + "in " + bundle + "\np of (load script " + bundle + ")"), "1");
}

} // namespace
} // namespace caddis::applescript
