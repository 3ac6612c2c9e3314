#pragma once

#include "platform/base/String.h"

#include <string_view>
#include <vector>

/// What a result lacks because one of our limits ended the work on it: hostile documents have no end. Results
/// have no place for it, so whoever stops early says so here, and whoever hands the result on asks.
///
///     if (text.length() > MostTextUnits) {
///         noteLeftOut(u"a book's text beyond 64 million characters");
///         break;
///     }
///
/// Notes are kept by thread, and apart by each shared module and plug-in; their boundaries pass them on.
namespace caddis {

/// A phrase for people that names what is missing and where the limit stands. The same one counts once, and
/// of many only the first few are kept.
void noteLeftOut(std::u16string_view what);

/// What has been noted since this was last called.
std::vector<String> takeLeftOut();

} // namespace caddis
