#pragma once

#include "platform/base/Geometry.h"
#include "platform/pdf/writer/Qpdf.h"

#include <map>
#include <optional>

namespace caddis::pdf {

/// How large the pictures of a document are drawn.
class ImagePlacements {
public:
    /// Looks through the contents of all pages and the forms that they draw; what comes after ten million
    /// operands and operators is not looked at.
    void read(QPDF& document);

    /// Points, each side where it is drawn longest; nil for pictures that are not drawn.
    std::optional<Size> largestSize(const QPDFObjGen& image) const;

private:
    class Reader;

    std::map<QPDFObjGen, Size> m_sizes;
};

} // namespace caddis::pdf
