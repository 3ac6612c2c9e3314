#pragma once

#include "platform/base/Geometry.h"
#include "platform/base/MutableString.h"
#include "platform/base/Value.h"
#include "platform/richtext/FileWrapper.h"
#include "platform/richtext/TextStyle.h"

#include <memory>
#include <span>
#include <string_view>
#include <vector>

/// Text with the looks of its characters and paragraphs: what every reader of rich text makes and every
/// writer takes.
namespace caddis {

/// The character that stands in the text where an attachment is.
inline constexpr char16_t AttachmentCharacter = 0xFFFC;
/// A new line in the same paragraph. "\n" ends a paragraph.
inline constexpr char16_t LineSeparator = 0x2028;

struct Attachment {
    FileWrapper file;
    Size size; ///< points; zero where the picture's own size counts

    friend bool operator==(const Attachment&, const Attachment&) = default;
};

/// Keys of AttributedString::documentAttributes. Lengths are points (double), sizes are strings as
/// stringFromSize makes them, so that a reply can carry them.
namespace DocumentAttribute {
inline constexpr std::u16string_view DocumentType = u"DocumentType"; ///< "NSRTF", "NSHTML", "NSPlainText" …
inline constexpr std::u16string_view UTI = u"UTI";
inline constexpr std::u16string_view CharacterEncoding = u"CharacterEncoding"; ///< an NSStringEncoding
inline constexpr std::u16string_view CocoaRTFVersion = u"CocoaRTFVersion"; ///< double
inline constexpr std::u16string_view Converted = u"Converted"; ///< integer; negative: converted when read
inline constexpr std::u16string_view PaperSize = u"PaperSize";
inline constexpr std::u16string_view LeftMargin = u"LeftMargin";
inline constexpr std::u16string_view RightMargin = u"RightMargin";
inline constexpr std::u16string_view TopMargin = u"TopMargin";
inline constexpr std::u16string_view BottomMargin = u"BottomMargin";
inline constexpr std::u16string_view ViewSize = u"ViewSize";
inline constexpr std::u16string_view ViewZoom = u"ViewZoom"; ///< integer, percent
inline constexpr std::u16string_view ViewMode = u"ViewMode"; ///< integer: 0 normal, 1 page layout
inline constexpr std::u16string_view ReadOnly = u"ReadOnly"; ///< integer
inline constexpr std::u16string_view HyphenationFactor = u"HyphenationFactor"; ///< double, 0 to 1
inline constexpr std::u16string_view DefaultTabInterval = u"DefaultTabInterval";
inline constexpr std::u16string_view Title = u"NSTitleDocumentAttribute";
inline constexpr std::u16string_view Subject = u"NSSubjectDocumentAttribute";
inline constexpr std::u16string_view Author = u"NSAuthorDocumentAttribute";
inline constexpr std::u16string_view Keywords = u"NSKeywordsDocumentAttribute"; ///< array of strings
inline constexpr std::u16string_view Comment = u"NSCommentDocumentAttribute";
inline constexpr std::u16string_view Editor = u"NSEditorDocumentAttribute";
inline constexpr std::u16string_view Company = u"NSCompanyDocumentAttribute";
inline constexpr std::u16string_view Copyright = u"NSCopyrightDocumentAttribute";
inline constexpr std::u16string_view Manager = u"NSManagerDocumentAttribute";
inline constexpr std::u16string_view Category = u"NSCategoryDocumentAttribute";
inline constexpr std::u16string_view CreationTime = u"NSCreationTimeDocumentAttribute"; ///< Date
inline constexpr std::u16string_view ModificationTime = u"NSModificationTimeDocumentAttribute"; ///< Date
} // namespace DocumentAttribute

/// Keywords written in one line: parted at ", ", else at ",", else at blanks. Never empty strings.
Array keywordsOf(const String& line);

/// A finished text. Made by AttributedStringBuilder, and always in one form: equal texts are equal member by
/// member, whatever way they were made.
class AttributedString {
public:
    /// Reaches to the next one, or to the text's end.
    struct Run {
        std::size_t location;
        std::uint32_t style; ///< index into styles

        friend bool operator==(const Run&, const Run&) = default;
    };

    const String& string() const { return m_string; }
    /// The first begins at 0 and neighbours differ; none for an empty text.
    std::span<const Run> runs() const { return m_runs; }
    std::span<const CharacterStyle> styles() const { return m_styles; }
    /// The same for whole paragraphs.
    std::span<const Run> paragraphRuns() const { return m_paragraphRuns; }
    std::span<const ParagraphStyle> paragraphStyles() const { return m_paragraphStyles; }

    const std::vector<Attachment>& attachments() const { return m_attachments; }
    const std::vector<TextList>& lists() const { return m_lists; }
    const std::vector<TextTable>& tables() const { return m_tables; }

    Dictionary documentAttributes;

    friend bool operator==(const AttributedString&, const AttributedString&) = default;

private:
    friend class AttributedStringBuilder;

    String m_string;
    std::vector<Run> m_runs;
    std::vector<Run> m_paragraphRuns;
    std::vector<CharacterStyle> m_styles;
    std::vector<ParagraphStyle> m_paragraphStyles;
    std::vector<Attachment> m_attachments;
    std::vector<TextList> m_lists;
    std::vector<TextTable> m_tables;
};

} // namespace caddis
