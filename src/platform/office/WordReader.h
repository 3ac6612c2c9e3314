#pragma once

#include "platform/base/Geometry.h"
#include "platform/office/DocumentText.h"
#include "platform/office/ElementReader.h"
#include "platform/office/Relations.h"

/// Inside this folder: the machine that reads the markup of Word: the parts of DOCX (ECMA-376 part 1, 17),
/// and the one document of Word 2003's XML, which has nearly the same elements.
///
/// Each element has at most two functions, one for its start and one for its end. The present paragraph and
/// run are the last ones of a stack, because text boxes and notes stand in the middle of runs.
namespace caddis::office {

enum class NoteKind { Footnote, Endnote };

class WordReader : private ElementReader<WordReader> {
public:
    explicit WordReader(const Parts* parts = nullptr);

    /// Reads a part, whatever it holds; `relations` are those that its ids name.
    void read(const Data& part, const Relations& relations = {});
    /// What was referred to of a part with notes goes behind the text.
    void readNotes(const Data& part, const Relations& relations, NoteKind kind);
    void setThemeFonts(const Data& theme);
    DocumentProperties& properties() { return m_properties; }

    /// Whether a document's body was among what was read.
    bool hasBody() const { return m_hasBody; }
    AttributedString finish() &&;

private:
    friend class ElementReader<WordReader>;
    enum class TextTarget { None, Run, Instruction, Picture };
    enum class Borders { None, Cell, Table };

    struct Paragraph {
        ParagraphProperties direct;
        String style;
        LetterProperties letters; // Those of the paragraph's style, once it has begun.
        bool hasBegun = false;
    };
    struct Field {
        std::u16string instruction;
        String link;
        bool isResult = false;
    };
    static const Elements& elements();
    static bool isSkipped(std::string_view name);

    bool takeElement(std::string_view name, const XMLAttributes& attributes) override;
    void foundCharacters(const String& characters) override;

    // Text (WordReader.cpp).
    void startBody(const XMLAttributes&);
    void endBody();
    void startParagraph(const XMLAttributes&);
    void endParagraph();
    void startRun(const XMLAttributes&);
    void endRun();
    void startText(const XMLAttributes& attributes);
    void startInstruction(const XMLAttributes&);
    void endText();
    void tab(const XMLAttributes& attributes);
    void lineBreak(const XMLAttributes& attributes);
    void noBreakHyphen(const XMLAttributes&);
    void softHyphen(const XMLAttributes&);
    void symbol(const XMLAttributes& attributes);
    void startBox(const XMLAttributes&);
    /// Notes that nothing refers to are no text.
    bool isWanted() const { return !m_noteKind || m_isNoteWanted; }
    void beginParagraph();
    void appendText(std::u16string_view units);
    LetterProperties runLetters() const;
    CharacterStyle runStyle() const;
    CharacterStyle linked(const LetterProperties& letters) const;
    const Relation* relation(const XMLAttributes& attributes, std::string_view name) const;
    ParagraphStyle paragraphStyle();
    const String& paragraphStyleName() const;

    // Links, fields, notes, pictures (WordReferences.cpp).
    void startHyperlink(const XMLAttributes& attributes);
    void startHlink(const XMLAttributes& attributes);
    void endHyperlink();
    void fieldCharacter(const XMLAttributes& attributes);
    void startSimpleField(const XMLAttributes& attributes);
    void startNote(const XMLAttributes& attributes);
    void endNote();
    void noteReference(const XMLAttributes& attributes);
    void endnoteReference(const XMLAttributes& attributes);
    void noteMark(const XMLAttributes&);
    void extent(const XMLAttributes& attributes);
    void shape(const XMLAttributes& attributes);
    void pictureData(const XMLAttributes& attributes);
    void blip(const XMLAttributes& attributes);
    void imageData(const XMLAttributes& attributes);
    void refer(const XMLAttributes& attributes, NoteKind kind);
    void appendSuperscript(const String& mark);
    void picture(const String& name, const Data& contents);
    void pictureOfRelation(const Relation* relation);
    void beginLink(String link);

    // Tables (WordTables.cpp).
    void startTable(const XMLAttributes&);
    void endTable();
    void endRow();
    void startCell(const XMLAttributes&);
    void endCell();
    void columnSpan(const XMLAttributes& attributes);
    void cellWidth(const XMLAttributes& attributes);
    void tableStyle(const XMLAttributes& attributes);
    void startCellBorders(const XMLAttributes&);
    void startTableBorders(const XMLAttributes&);
    void endBorders();
    void border(const XMLAttributes& attributes);

    // Styles and lists (WordStyles.cpp).
    void startStyle(const XMLAttributes& attributes);
    void endStyle();
    void basedOn(const XMLAttributes& attributes);
    void startDefaults(const XMLAttributes&);
    void endDefaults();
    void startList(const XMLAttributes& attributes);
    void openList(ListLevels* list);
    void startListLevel(const XMLAttributes& attributes);
    void endListLevel();
    void levelStart(const XMLAttributes& attributes);
    void levelFormat(const XMLAttributes& attributes);
    void levelNumber(const XMLAttributes& attributes);
    void levelText(const XMLAttributes& attributes);
    void startNumber(const XMLAttributes& attributes);
    void endNumber();
    void numberOf(const XMLAttributes& attributes);
    void startLevelOverride(const XMLAttributes& attributes);
    void pageSize(const XMLAttributes& attributes);
    void pageMargins(const XMLAttributes& attributes);

    // Properties of letters and paragraphs (WordProperties.cpp).
    void startLetters(const XMLAttributes&);
    void endLetters();
    void startParagraphProperties(const XMLAttributes&);
    void endParagraphProperties();
    bool letterProperty(std::string_view name, const XMLAttributes& attributes);
    bool letterLook(std::string_view name, std::string_view value);
    void fonts(const XMLAttributes& attributes);
    bool paragraphProperty(std::string_view name, const XMLAttributes& attributes);
    void indents(const XMLAttributes& attributes);
    void spacing(const XMLAttributes& attributes);
    void endTabs() { m_isInTabs = false; }
    void tabStop(const XMLAttributes& attributes);
    void shading(const XMLAttributes& attributes);

    const Parts* m_parts;
    DocumentText m_text;
    StyleSheet m_styles;
    Numbering m_numbering;
    const Relations* m_relations = nullptr; // Of the part that is read.
    std::map<std::string, String, std::less<>> m_themeFonts; // "major" and "minor".
    bool m_hasBody = false;

    std::vector<Paragraph> m_paragraphs;
    std::vector<LetterProperties> m_runs;
    std::vector<String> m_runStyles;
    std::vector<Field> m_fields;
    std::vector<String> m_links;
    TextTarget m_target = TextTarget::None;
    bool m_keepsBlanks = false;

    LetterProperties* m_letters = nullptr; // What a property element goes to.
    ParagraphProperties* m_paragraph = nullptr;
    bool m_isInTabs = false; // "w:tab" is a stop there.
    Style* m_style = nullptr; // The one that is defined.
    LetterProperties m_markLetters; // Those of a paragraph's mark, which nobody sees.
    ListLevels* m_list = nullptr;
    ListLevel* m_level = nullptr;
    String m_number; // The list that is defined, by the name that paragraphs know it by.
    bool m_isInNumber = false;

    Borders m_borders = Borders::None;
    std::vector<double> m_cellBorders; // Of the open tables.

    std::optional<NoteKind> m_noteKind; // Of the part that is read.
    bool m_isNoteWanted = false;
    String m_noteMark;
    std::size_t m_paragraphsOutside = 0; // Those around the note that is open; 0: there are none.
    std::map<std::pair<NoteKind, String>, String> m_noteMarks; // By kind and id, once referred to.
    std::int32_t m_footnotes = 0;
    std::int32_t m_endnotes = 0;
    Size m_pictureSize;
    String m_pictureName;
    std::map<String, Data> m_pictures; // Those that stand in the document itself.
};

} // namespace caddis::office
