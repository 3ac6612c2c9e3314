#pragma once

#include "platform/base/Geometry.h"
#include "platform/office/DocumentText.h"
#include "platform/office/ElementReader.h"
#include "platform/office/Parts.h"

/// Inside this folder: the machine that reads OpenDocument text (OpenDocument 1.2, part 1), its parts or the
/// one document of its flat form, which has the same elements.
namespace caddis::office {

class OpenDocumentReader : private ElementReader<OpenDocumentReader> {
public:
    explicit OpenDocumentReader(const Parts* parts = nullptr)
        : ElementReader(DocumentProperties::Kind::OpenDocument)
        , m_parts(parts)
    {
    }

    /// Reads a part, whatever it holds; styles before the text that uses them.
    void read(const Data& part);
    /// Whether the body of a text was among what was read.
    bool hasText() const { return m_hasText; }
    AttributedString finish() &&;

private:
    friend class ElementReader<OpenDocumentReader>;
    enum class TextTarget { None, Paragraph, Citation, Picture };

    struct Paragraph {
        ParagraphProperties direct;
        ParagraphProperties properties; // Of the named style.
        LetterProperties letters;
        std::vector<LetterProperties> spans; // What is laid over them, all together each.
        std::vector<String> links;
        bool isItemStart = false;
        bool hasBegun = false;
        bool endsWithBlank = true; // White space collapses, and is dropped at the front.
    };
    struct OpenList {
        String style;
        bool isItemStart = false;
    };

    static const Elements& elements();
    static bool isSkipped(std::string_view name);

    bool isAmongProperties() const override { return m_paragraphs.empty(); }
    void foundCharacters(const String& characters) override;

    // Text (OpenDocumentReader.cpp).
    void startText(const XMLAttributes&);
    void startParagraph(const XMLAttributes& attributes);
    void startHeading(const XMLAttributes& attributes);
    void endParagraph();
    void startSpan(const XMLAttributes& attributes);
    void endSpan();
    void startLink(const XMLAttributes& attributes);
    void endLink();
    void blanks(const XMLAttributes& attributes);
    void tab(const XMLAttributes&);
    void lineBreak(const XMLAttributes&);
    void startList(const XMLAttributes& attributes);
    void endList();
    void startItem(const XMLAttributes& attributes);
    void startListHeader(const XMLAttributes&);
    void startNote(const XMLAttributes&);
    void startCitation(const XMLAttributes&);
    void endCitation();
    void startNoteBody(const XMLAttributes&);
    void endNoteBody();
    void beginParagraph();
    void appendText(std::u16string_view units);
    void appendCollapsed(std::u16string_view units);
    CharacterStyle letterStyle() const;
    ParagraphStyle paragraphStyle();

    // Tables, pictures and boxes (OpenDocumentObjects.cpp).
    void startTable(const XMLAttributes&);
    void endTable();
    void endRow();
    void startCell(const XMLAttributes& attributes);
    void endCell();
    void coveredCell(const XMLAttributes& attributes);
    void startFrame(const XMLAttributes& attributes);
    void endFrame();
    void startImage(const XMLAttributes& attributes);
    void endImage();
    void startBinary(const XMLAttributes&);
    void startBox(const XMLAttributes&);
    void picture(const String& name, const Data& contents);

    // Styles (OpenDocumentStyles.cpp).
    void startFontFace(const XMLAttributes& attributes);
    void startStyle(const XMLAttributes& attributes);
    void startDefaultStyle(const XMLAttributes& attributes);
    void endStyle();
    void letterProperties(const XMLAttributes& attributes);
    void lineProperties(LetterProperties& letters, const XMLAttributes& attributes);
    void paragraphProperties(const XMLAttributes& attributes);
    void tabStop(const XMLAttributes& attributes);
    void cellProperties(const XMLAttributes& attributes);
    void startListStyle(const XMLAttributes& attributes);
    void endListStyle();
    void numberLevel(const XMLAttributes& attributes);
    void bulletLevel(const XMLAttributes& attributes);
    void startLevel(const XMLAttributes& attributes);
    void endLevel();
    void levelProperties(const XMLAttributes& attributes);
    void pageLayout(const XMLAttributes& attributes);

    const Parts* m_parts;
    DocumentText m_text;
    StyleSheet m_styles; // By "family name".
    Numbering m_numbering;
    std::map<String, TableCell> m_cellStyles;
    std::map<String, String> m_fontFaces; // The family of each.
    bool m_hasText = false;
    TextTarget m_target = TextTarget::None;

    std::vector<Paragraph> m_paragraphs; // Those of boxes and notes stand in others.
    std::vector<OpenList> m_lists;
    std::vector<OpenList> m_listsOutside; // Of the note that is open.
    std::size_t m_noteDepth = 0;
    std::size_t m_paragraphsOutside = 0; // Those around the note; 0: there are none.
    String m_noteMark;

    struct Frame {
        Size size;
        String name;
        bool hasPicture = false;
    };
    std::vector<Frame> m_frames;

    Style* m_style = nullptr; // The one that is defined.
    TableCell* m_cellStyle = nullptr;
    ListLevels* m_listLevels = nullptr;
    ListLevel* m_level = nullptr;
};

/// The name of a style in the style sheet: names are counted apart in each family.
String styleName(std::u16string_view family, std::u16string_view name);

} // namespace caddis::office
