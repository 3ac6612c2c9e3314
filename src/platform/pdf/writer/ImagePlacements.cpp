#include "platform/pdf/writer/ImagePlacements.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace caddis::pdf {

namespace {

constexpr std::size_t MostObjects = 10'000'000;
constexpr std::size_t MostOperands = 64;
constexpr std::size_t MostSaved = 16 * 1024;
constexpr std::size_t DeepestForm = 12;

} // namespace

// Carries out the operators that place pictures: q, Q, cm and Do.
class ImagePlacements::Reader : public QPDFObjectHandle::ParserCallbacks {
public:
    Reader(std::map<QPDFObjGen, Size>& sizes, std::size_t& objectsLeft)
        : m_sizes(sizes)
        , m_objectsLeft(objectsLeft)
    {
    }

    void read(QPDFPageObjectHelper content)
    {
        m_resources.push_back(content.getAttribute("/Resources", false));
        content.parseContents(this);
        m_resources.pop_back();
    }

    void handleObject(QPDFObjectHandle object) override
    {
        if (m_objectsLeft == 0 || --m_objectsLeft == 0)
            return terminateParsing();
        if (object.isOperator()) {
            carryOut(object.getOperatorValue());
            m_operands.clear();
        } else if (m_operands.size() < MostOperands) {
            m_operands.push_back(object);
        }
    }
    void handleEOF() override { }

private:
    void carryOut(const std::string& name)
    {
        if (name == "q" && m_saved.size() < MostSaved) {
            m_saved.push_back(m_matrix);
        } else if (name == "Q" && m_saved.size() > m_floor) {
            m_matrix = m_saved.back();
            m_saved.pop_back();
        } else if (name == "cm" && m_operands.size() == 6) {
            concatenate(QPDFObjectHandle::newArray(m_operands));
        } else if (name == "Do" && m_operands.size() == 1 && m_operands[0].isName()) {
            draw(m_resources.back().getKeyIfDict("/XObject").getKeyIfDict(m_operands[0].getName()));
        }
    }

    void concatenate(QPDFObjectHandle array)
    {
        if (!array.isMatrix())
            return;
        QPDFMatrix matrix = m_matrix;
        matrix.concat(QPDFMatrix(array.getArrayAsMatrix()));
        m_matrix = matrix;
    }

    void draw(QPDFObjectHandle object)
    {
        if (!object.isStream())
            return;
        if (object.isFormXObject())
            return enter(object);
        Size& size = m_sizes[object.getObjGen()];
        size.width = std::max(size.width, std::hypot(m_matrix.a, m_matrix.b));
        size.height = std::max(size.height, std::hypot(m_matrix.c, m_matrix.d));
    }

    void enter(QPDFObjectHandle form)
    {
        if (m_resources.size() > DeepestForm)
            return;
        const QPDFMatrix outer = m_matrix;
        const std::size_t floor = std::exchange(m_floor, m_saved.size());
        const auto operands = std::exchange(m_operands, {});
        concatenate(form.getDict().getKey("/Matrix"));
        read(QPDFPageObjectHelper(form));
        m_matrix = outer;
        m_saved.resize(m_floor);
        m_floor = floor;
        m_operands = operands;
    }

    std::map<QPDFObjGen, Size>& m_sizes;
    std::size_t& m_objectsLeft;
    std::vector<QPDFObjectHandle> m_resources;
    std::vector<QPDFObjectHandle> m_operands;
    QPDFMatrix m_matrix;
    std::vector<QPDFMatrix> m_saved;
    std::size_t m_floor = 0;
};

void ImagePlacements::read(QPDF& document)
{
    std::size_t objectsLeft = MostObjects;
    for (const QPDFObjectHandle& page : document.getAllPages())
        Reader(m_sizes, objectsLeft).read(QPDFPageObjectHelper(page));
}

std::optional<Size> ImagePlacements::largestSize(const QPDFObjGen& image) const
{
    const auto found = m_sizes.find(image);
    return found == m_sizes.end() ? std::nullopt : std::optional(found->second);
}

} // namespace caddis::pdf
