#pragma once

#include "platform/script/applescript/Interpreter.h"

/// Characters, words, paragraphs and text items: the elements of text.
namespace caddis::applescript {

bool isTextElement(Symbol elementClass);

std::size_t countTextElements(const Datum& text, Symbol elementClass);
/// The place of the element at an offset below the count.
Range textElement(const Datum& text, Symbol elementClass, std::size_t offset);
/// All elements as a list of texts.
Datum textElements(const Datum& text, Symbol elementClass, std::size_t first, std::size_t count);

} // namespace caddis::applescript
