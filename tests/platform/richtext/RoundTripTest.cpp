#include "platform/richtext/RTF.h"
#include "platform/richtext/RTFD.h"
#include "support/RichTextTrace.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <tuple>

namespace caddis {
namespace {

std::optional<AttributedString> documentAt(const String& path)
{
    const auto wrapper = readFileWrapper(path);
    if (!wrapper)
        return std::nullopt;
    return wrapper->isDirectory ? attributedStringWithRTFDFileWrapper(*wrapper)
                                : initWithRTFD(wrapper->contents);
}

// Without what says who wrote the document, when its files were, and what they are called among each other.
struct Comparable {
    explicit Comparable(AttributedString read)
        : trace(traceOf(read))
        , text(std::move(read))
    {
        for (const auto key :
            { DocumentAttribute::DocumentType, DocumentAttribute::UTI, DocumentAttribute::CocoaRTFVersion })
            text.documentAttributes.remove(key);
        for (const Attachment& attachment : text.attachments())
            attachments.emplace_back(attachment.file.contents.chars(), attachment.size);
    }
    friend bool operator==(const Comparable& left, const Comparable& right)
    {
        const auto& [a, b] = std::tie(left.text, right.text);
        return a.string() == b.string() && std::ranges::equal(a.runs(), b.runs())
            && std::ranges::equal(a.styles(), b.styles())
            && std::ranges::equal(a.paragraphRuns(), b.paragraphRuns())
            && std::ranges::equal(a.paragraphStyles(), b.paragraphStyles()) && a.lists() == b.lists()
            && a.tables() == b.tables() && a.documentAttributes == b.documentAttributes
            && left.attachments == right.attachments;
    }
    friend void PrintTo(const Comparable& comparable, std::ostream* out) { *out << comparable.trace; }

    std::string trace;
    AttributedString text;
    std::vector<std::pair<std::string, Size>> attachments;
};

TEST(RoundTrip, WhatWasReadAndWrittenReadsTheSame)
{
    const TemporaryFolder folder;
    for (const char* const name : { "letter.rtf", "table.rtf", "note.rtfd" }) {
        const auto read = documentAt(String::fromUtf8(CADDIS_TEST_DATA "/richtext/" + std::string(name)));
        ASSERT_TRUE(read) << name;
        const auto flat = RTFDFromString(*read, read->documentAttributes);
        const auto fromData = initWithRTFD(flat.value());
        ASSERT_TRUE(fromData) << name;
        EXPECT_EQ(Comparable(*fromData), Comparable(*read)) << name;
        const String package = folder.path("b.rtfd");
        ASSERT_TRUE(writeFileWrapper(RTFDFileWrapperFromString(*read, read->documentAttributes), package))
            << name;
        EXPECT_EQ(Comparable(*documentAt(package)), Comparable(*read)) << name;
    }
}

} // namespace
} // namespace caddis
