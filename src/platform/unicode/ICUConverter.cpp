#include "platform/base/MutableString.h"
#include "platform/unicode/EncodingList.h"

#include <limits>
#include <memory>
#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>

namespace caddis::encodings {

namespace {

constexpr std::size_t Chunk = 4096;

using Converter = std::unique_ptr<UConverter, decltype([](UConverter* converter) { ucnv_close(converter); })>;

Converter open(const char* name)
{
    UErrorCode status = U_ZERO_ERROR;
    return Converter(ucnv_open(name, &status));
}

// ICU's own replacement is U+001A for some single bytes. `context` is the flag of well-formed text.
void U_CALLCONV replaceIllFormed(const void* context, UConverterToUnicodeArgs* arguments, const char*,
    std::int32_t, UConverterCallbackReason reason, UErrorCode* status)
{
    if (reason > UCNV_IRREGULAR)
        return;
    constexpr UChar Replacement = 0xFFFD;
    *static_cast<bool*>(const_cast<void*>(context)) = false;
    *status = U_ZERO_ERROR;
    ucnv_cbToUWriteUChars(arguments, &Replacement, 1, 0, status);
}

} // namespace

Decoded decodeWithICU(const char* name, std::string_view bytes)
{
    Decoded result;
    const Converter converter = open(name);
    UErrorCode status = U_ZERO_ERROR;
    ucnv_setToUCallBack(converter.get(), replaceIllFormed, &result.wellFormed, nullptr, nullptr, &status);
    const char* source = bytes.data();
    MutableString text(bytes.size());
    do {
        status = U_ZERO_ERROR;
        char16_t* const begin = text.appendUninitialized(Chunk);
        char16_t* target = begin;
        ucnv_toUnicode(converter.get(), &target, begin + Chunk, &source, bytes.data() + bytes.size(), nullptr,
            static_cast<UBool>(true), &status);
        text.truncate(text.length() - static_cast<std::size_t>(begin + Chunk - target));
    } while (status == U_BUFFER_OVERFLOW_ERROR);
    result.text = std::move(text).take();
    return result;
}

std::optional<std::string> encodeWithICU(const char* name, std::u16string_view text)
{
    const Converter converter = open(name);
    UErrorCode status = U_ZERO_ERROR;
    ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    const char16_t* source = text.data();
    std::string bytes;
    do {
        status = U_ZERO_ERROR;
        const std::size_t length = bytes.size();
        bytes.resize(length + Chunk);
        char* target = bytes.data() + length;
        ucnv_fromUnicode(converter.get(), &target, bytes.data() + bytes.size(), &source,
            text.data() + text.size(), nullptr, static_cast<UBool>(true), &status);
        bytes.resize(static_cast<std::size_t>(target - bytes.data()));
    } while (status == U_BUFFER_OVERFLOW_ERROR);
    return U_SUCCESS(status) ? std::optional(std::move(bytes)) : std::nullopt;
}

} // namespace caddis::encodings
