#include "platform/richtext/FlatRTFD.h"

#include "platform/richtext/AttributedStringBuilder.h"
#include "platform/richtext/RTFD.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

FileWrapper file(std::u16string_view name, std::size_t size)
{
    return FileWrapper::file(String(name), Data::adopt(std::string(size, 'x')));
}

TEST(FlatRTFD, PutsLongMembersOnPages)
{
    for (const std::size_t size : { 0U, 1U, 4095U, 4096U, 4097U, 100000U }) {
        FileWrapper folder = FileWrapper::folder({}, { file(u"a.png", size), file(u"TXT.rtf", 10) });
        folder.members[0].attributes = { 77, 0644, { 1, 2 } };
        folder.recordIndex = 1;
        const auto written = flatRTFDOfFileWrapper(folder);
        ASSERT_TRUE(written);
        const auto read = fileWrapperWithFlatRTFD(*written);
        ASSERT_TRUE(read);
        EXPECT_EQ(*read, folder);
        EXPECT_EQ(flatRTFDOfFileWrapper(*read), written);
        const Data& contents = read->members[0].contents;
        EXPECT_EQ((contents.bytes() - written->bytes()) % 4096 == 0, size >= 4096)
            << "shares the block's bytes";
    }
}

TEST(FlatRTFD, KeepsFoldersInFolders)
{
    FileWrapper inner = FileWrapper::folder(u"in.rtfd"_s, { file(u"b", 5000), file(u"c", 1) });
    inner.recordIndex = 2;
    const FileWrapper folder = FileWrapper::folder({}, { file(u"a", 3), inner, file(u"z", 4096) });
    const auto written = flatRTFDOfFileWrapper(folder);
    ASSERT_TRUE(written);
    EXPECT_EQ(fileWrapperWithFlatRTFD(*written), folder);
}

TEST(FlatRTFD, RefusesWhatDoesNotLieInItsBlock)
{
    const FileWrapper folder = FileWrapper::folder({}, { file(u"TXT.rtf", 10) });
    const auto written = flatRTFDOfFileWrapper(folder).value();
    const std::string whole(written.chars());
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_FALSE(fileWrapperWithFlatRTFD(Data::copyOf(whole.substr(0, size)))) << size;
    for (const std::size_t word : { 12U, 16U, 27U, 35U }) {
        std::string huge = whole;
        huge.replace(word, 4, "\xFF\xFF\xFF\x7F");
        EXPECT_FALSE(fileWrapperWithFlatRTFD(Data::copyOf(huge))) << word;
    }
}

TEST(RTFD, ReadsBackTextWithAttachmentsOfOneName)
{
    AttributedStringBuilder builder;
    builder.append(u"a", {});
    for (const char* contents : { "1", "2", "3" })
        builder.appendAttachment({ FileWrapper::file(u"p.png"_s, Data::copyOf(contents)), { 10, 20 } }, {});
    const auto rtfd = RTFDFromString(std::move(builder).finish(), {});
    ASSERT_TRUE(rtfd);
    const auto read = initWithRTFD(*rtfd);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->string(), u"a\uFFFC\uFFFC\uFFFC");
    EXPECT_EQ(read->attachments()[2].file.name, u"2__#$!@%!#__p.png");
    EXPECT_EQ(read->attachments()[2].file.contents.chars(), "3");
    EXPECT_EQ(read->attachments()[2].size, (Size { 10, 20 }));
    EXPECT_EQ(read->documentAttributes.stringForKey(u"DocumentType"), u"NSRTFD"_s);
}

} // namespace
} // namespace caddis
