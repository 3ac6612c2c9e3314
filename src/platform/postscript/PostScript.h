#pragma once

#include "platform/base/Data.h"

#include <optional>

/// PostScript, encapsulated or not. It is a programming language: a document can loop for ever, fill memory
/// and write files, so the interpreter (`gs`, when it is installed) always is a bounded child in a folder of
/// its own.
namespace caddis {

/// By the first bytes: "%!PS", or the binary header that some EPS files have before it (C5 D0 D3 C6).
bool isPostScript(const Data& data);

/// The document as PDF, an encapsulated one cut to its bounding box. Nil: no PostScript, no interpreter, an
/// error in the program, or its limits (9 s, 1 GiB, 128 MiB of output) exceeded.
std::optional<Data> PDFWithPostScript(const Data& data);

} // namespace caddis
