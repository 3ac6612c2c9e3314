#pragma once

#include "platform/base/Geometry.h"
#include "platform/pdf/PDFImageRep.h"

#include <memory>
#include <mutex>

namespace caddis {

/// PostScript, encapsulated or not. What it shows is known only when it has been converted to PDF, which
/// happens in a bounded child process when the picture is first drawn or asked for as PDF.
class EPSImageRep {
public:
    /// Nil: no PostScript, or one without a bounding box that can't be converted either.
    static std::optional<EPSImageRep> imageRepWithData(const Data& data);

    Data EPSRepresentation() const { return m_data; }
    /// Points; of the bounding box.
    Size size() const { return m_size; }

    /// The converted picture; nil when it has not been made yet, or can't be made.
    std::optional<caddis::PDFImageRep> PDFImageRep() const;
    /// The same, made now when it has not been tried before.
    std::optional<caddis::PDFImageRep> initializePDFImageRep() const;

private:
    struct Conversion {
        std::mutex mutex;
        bool wasTried = false;
        std::optional<caddis::PDFImageRep> pdf;
    };
    explicit EPSImageRep(Data data)
        : m_data(std::move(data))
    {
    }

    Data m_data;
    Size m_size;
    std::shared_ptr<Conversion> m_conversion = std::make_shared<Conversion>(); // Shared by all copies.
};

} // namespace caddis
