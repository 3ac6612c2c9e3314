#pragma once

#include "bundles/support/CompoundFile.h"
#include "bundles/support/TextSink.h"

/// The text of documents in Microsoft's binary formats. Of damaged ones as much as can be reached.
namespace caddis::bundles {

enum class DocumentText {
    Read,
    Encrypted,
    None, ///< no document of this kind
};

/// Word 6 to 2003 (MS-DOC): the main text, then footnotes, headers, comments and text boxes as the file has
/// them. Field codes are left out, their results stay.
DocumentText readWordDocument(const CompoundFile& file, TextSink& text);

/// Excel 5 to 2003 (MS-XLS): of each sheet its name and its rows, cells apart by tabs. Dates in ISO 8601.
DocumentText readBinaryWorkbook(const CompoundFile& file, TextSink& text);

/// PowerPoint 97 to 2003 (MS-PPT): the slides in the order of their showing, then the notes.
DocumentText readSlideShow(const CompoundFile& file, TextSink& text);

} // namespace caddis::bundles
