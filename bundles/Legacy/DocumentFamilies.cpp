#include "bundles/Legacy/DocumentFamilies.h"

#include <libabw/libabw.h>
#include <libcdr/libcdr.h>
#include <libe-book/libe-book.h>
#include <libetonyek/libetonyek.h>
#include <libfreehand/libfreehand.h>
#include <libmspub/libmspub.h>
#include <libmwaw/libmwaw.hxx>
#include <libpagemaker/libpagemaker.h>
#include <libqxp/libqxp.h>
#include <libstaroffice/libstaroffice.hxx>
#include <libvisio/libvisio.h>
#include <libwpd/libwpd.h>
#include <libwps/libwps.h>
#include <libzmf/libzmf.h>

namespace caddis::bundles {

namespace {

using Input = librevenge::RVNGInputStream;

bool readIWork(Input& input, const Receivers& to)
{
    using Document = libetonyek::EtonyekDocument;
    Document::Type type = Document::TYPE_UNKNOWN;
    if (Document::isSupported(&input, &type) == Document::CONFIDENCE_NONE)
        return false;
    switch (type) {
    case Document::TYPE_KEYNOTE:
        return Document::parse(&input, &to.slides);
    case Document::TYPE_NUMBERS:
        return Document::parse(&input, &to.sheets);
    case Document::TYPE_PAGES:
        return Document::parse(&input, &to.text);
    default:
        return false;
    }
}

bool readWordPerfect(Input& input, const Receivers& to)
{
    return libwpd::WPDocument::isFileFormatSupported(&input) == libwpd::WPD_CONFIDENCE_EXCELLENT
        && libwpd::WPDocument::parse(&input, &to.text, nullptr) == libwpd::WPD_OK;
}

bool readWorks(Input& input, const Receivers& to)
{
    using Document = libwps::WPSDocument;
    libwps::WPSKind kind {};
    libwps::WPSCreator creator {};
    bool needsEncoding = false;
    if (Document::isFileFormatSupported(&input, kind, creator, needsEncoding)
        != libwps::WPS_CONFIDENCE_EXCELLENT)
        return false;
    return (kind == libwps::WPS_TEXT ? Document::parse(&input, &to.text)
                                     : Document::parse(&input, &to.sheets))
        == libwps::WPS_OK;
}

bool readOldMac(Input& input, const Receivers& to)
{
    using Document = MWAWDocument;
    Document::Type type {};
    Document::Kind kind {};
    if (Document::isFileFormatSupported(&input, type, kind) != Document::MWAW_C_EXCELLENT)
        return false;
    switch (kind) {
    case Document::MWAW_K_TEXT:
        return Document::parse(&input, &to.text) == Document::MWAW_R_OK;
    case Document::MWAW_K_SPREADSHEET:
    case Document::MWAW_K_DATABASE:
        return Document::parse(&input, &to.sheets) == Document::MWAW_R_OK;
    case Document::MWAW_K_PRESENTATION:
        return Document::parse(&input, &to.slides) == Document::MWAW_R_OK;
    case Document::MWAW_K_DRAW:
    case Document::MWAW_K_PAINT:
        return Document::parse(&input, &to.drawing) == Document::MWAW_R_OK;
    default:
        return false;
    }
}

bool readStarOffice(Input& input, const Receivers& to)
{
    using Document = STOFFDocument;
    Document::Kind kind {};
    if (Document::isFileFormatSupported(&input, kind) != Document::STOFF_C_EXCELLENT)
        return false;
    switch (kind) {
    case Document::STOFF_K_TEXT:
        return Document::parse(&input, &to.text) == Document::STOFF_R_OK;
    case Document::STOFF_K_SPREADSHEET:
        return Document::parse(&input, &to.sheets) == Document::STOFF_R_OK;
    case Document::STOFF_K_PRESENTATION:
        return Document::parse(&input, &to.slides) == Document::STOFF_R_OK;
    case Document::STOFF_K_DRAW:
    case Document::STOFF_K_GRAPHIC:
        return Document::parse(&input, &to.drawing) == Document::STOFF_R_OK;
    default:
        return false;
    }
}

bool readQuark(Input& input, const Receivers& to)
{
    using Document = libqxp::QXPDocument;
    return Document::isSupported(&input) && Document::parse(&input, &to.drawing) == Document::RESULT_OK;
}

// Only what it is sure of: the library has a weak opinion of any file, and page formats have bundles of their
// own.
bool readOldBook(Input& input, const Receivers& to)
{
    using Document = libebook::EBOOKDocument;
    Document::Type type = Document::TYPE_UNKNOWN;
    return Document::isSupported(&input, &type) == Document::CONFIDENCE_EXCELLENT
        && Document::parse(&input, &to.text, type) == Document::RESULT_OK;
}

template <typename Document> bool readDrawing(Input& input, const Receivers& to)
{
    return Document::isSupported(&input) && Document::parse(&input, &to.drawing);
}

bool readAbiWord(Input& input, const Receivers& to)
{
    return libabw::AbiDocument::isFileFormatSupported(&input) && libabw::AbiDocument::parse(&input, &to.text);
}

// Those that look for a mark in the file come before those that guess.
constexpr bool (*Families[])(Input&, const Receivers&) = {
    readIWork,
    readWordPerfect,
    readDrawing<libvisio::VisioDocument>,
    readDrawing<libmspub::MSPUBDocument>,
    readDrawing<libcdr::CDRDocument>,
    readDrawing<libcdr::CMXDocument>,
    readDrawing<libpagemaker::PMDocument>,
    readQuark,
    readDrawing<libzmf::ZMFDocument>,
    readStarOffice,
    readAbiWord,
    readWorks,
    readOldBook,
    readOldMac,
    readDrawing<libfreehand::FreeHandDocument>,
};

} // namespace

bool readDocument(Input& input, const Receivers& receivers)
{
    for (const auto read : Families) {
        input.seek(0, librevenge::RVNG_SEEK_SET);
        if (read(input, receivers))
            return true;
    }
    return false;
}

} // namespace caddis::bundles
