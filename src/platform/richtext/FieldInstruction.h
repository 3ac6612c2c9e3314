#pragma once

#include "platform/base/String.h"

namespace caddis {

/// Where the field with that instruction leads, in RTF and in Word's formats alike: the address of
/// `HYPERLINK "address"`, "#place" of `HYPERLINK \l "place"`; empty for other fields.
String linkOfFieldInstruction(std::u16string_view instruction);

} // namespace caddis
