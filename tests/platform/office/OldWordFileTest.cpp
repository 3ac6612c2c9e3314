#include "platform/office/OfficeDocument.h"

#include "platform/task/BoundedChild.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

TEST(OldWordFile, WhatNoProgramCanReadGivesNothing)
{
    const TemporaryFolder folder;
    EXPECT_FALSE(attributedStringWithOldWordFile(folder.path("missing.doc")));
}

// The office suite makes the file too, so that the test needs no other.
TEST(OldWordFile, AnInstalledSuiteReadsIt)
{
    const auto suite = installedProgram("soffice");
    if (!suite)
        GTEST_SKIP() << "no office suite is installed";
    const ScratchFolder scratch;
    const TemporaryFolder folder;
    const std::string source = folder.write("a.rtf", "{\\rtf1 plain {\\b bold}\\par}").utf8();
    const ChildLimits limits { .memory = 4ULL << 30, .confined = false };
    const auto made
        = runBounded({ *suite, "--headless", "--convert-to", "doc", "--outdir", scratch.path().utf8(),
                         "-env:UserInstallation=file://" + scratch.path().utf8() + "/profile", source },
            scratch, limits);
    if (!made.succeeded())
        GTEST_SKIP() << "the suite wrote nothing: " << made.errorOutput;
    const auto text = attributedStringWithOldWordFile(scratch.pathOf(u"a.doc"_s));
    ASSERT_TRUE(text);
    EXPECT_NE(text->string().view().find(u"plain bold"), std::u16string_view::npos) << text->string().utf8();
    EXPECT_EQ(text->documentAttributes.stringForKey(u"DocumentType"), u"NSDocFormat"_s);
}

} // namespace
} // namespace caddis
