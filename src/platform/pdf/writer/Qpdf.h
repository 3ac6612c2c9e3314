#pragma once

// QPDF 11's JSON.hh destroys a vector of a type that it has not completed, which clang refuses in C++20.
// Nothing here needs that class, so a declaration stands in its place.
#define JSON_HH
class JSON;

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>
