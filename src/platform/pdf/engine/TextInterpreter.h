#pragma once

#include "platform/pdf/engine/Budget.h"
#include "platform/pdf/engine/ContentLexer.h"
#include "platform/pdf/engine/Resources.h"
#include "platform/pdf/engine/StreamBytes.h"
#include "platform/pdf/engine/TextShow.h"

#include <memory>
#include <vector>

class Dict;
class OCGs;
class Page;

namespace caddis::pdf {

/// What the pages of one document share while their text is read.
struct TextSources {
    XRef* xref;
    OCGs* layers; ///< may be null
    FontCache& fonts;
    StreamBytes& streams;
};

/// Reads the text of a page from its content stream (ISO 32000-1, 7.8 and 9): only the operators that place
/// text are carried out. Of the rest, forms are entered, hidden layers passed over, and marked content looked
/// at for the text that the document gives itself.
class TextInterpreter {
public:
    /// `visible` and `styles` as TextSink has them.
    TextInterpreter(const TextSources& sources, Budget& budget, Rect visible, TextStyles* styles = nullptr);

    /// The page's text as it stands in the content.
    TextPage read(Page& page);

private:
    struct State {
        Matrix matrix;
        TextState text;
    };
    struct Mark {
        bool hides = false;
        bool replaces = false;
    };

    void run(std::string content, Resources& resources);
    void runForm(const Object& entry);
    void enterForm(const Object& form);
    bool isHidden(const Object& layer) const;

    void carryOut(ContentLexer& lexer);
    void carryOutState(std::uint32_t op);
    void carryOutText(std::uint32_t op);
    void beginMark();
    void endMark();
    std::optional<std::string_view> replacementInOperands() const;

    double number(std::size_t index) const;
    std::string_view bytes(std::size_t index) const;
    Matrix matrixOperand() const;
    void setFont(std::shared_ptr<Font> font, double size);
    void moveLine(double x, double y);
    void show(std::string_view string);
    void showArray();
    void finish(const TextShow& show);

    TextSources m_sources;
    Budget& m_budget;
    TextSink m_sink;
    State m_state;
    std::vector<State> m_saved;
    std::size_t m_savedFloor = 0;
    std::vector<Mark> m_marks;
    std::size_t m_markFloor = 0;
    std::vector<Ref> m_openForms;
    Matrix m_textMatrix;
    Matrix m_lineMatrix;
    Resources* m_resources = nullptr;
    std::span<const Operand> m_operands;
};

} // namespace caddis::pdf
