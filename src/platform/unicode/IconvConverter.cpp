#include "platform/base/MutableString.h"
#include "platform/unicode/EncodingList.h"

#include <cerrno>
#include <iconv.h>

namespace caddis::encodings {

namespace {

constexpr std::size_t Chunk = 4096;

class Descriptor {
public:
    Descriptor(const char* to, const char* from)
        : m_descriptor(iconv_open(to, from))
    {
    }
    ~Descriptor()
    {
        if (isOpen())
            iconv_close(m_descriptor);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    // NOLINTNEXTLINE(performance-no-int-to-ptr): the documented failure value
    bool isOpen() const { return m_descriptor != reinterpret_cast<iconv_t>(-1); }

    // Converts from `source` until it is used up (0) or something stands in the way (errno); no source writes
    // what ends the text. Whatever fits is handed to `write`.
    template <typename Write> int convert(std::string_view* source, Write write)
    {
        while (true) {
            char out[Chunk];
            char* target = out;
            std::size_t room = sizeof out;
            char* in = source ? const_cast<char*>(source->data()) : nullptr;
            std::size_t left = source ? source->size() : 0;
            const std::size_t done
                = iconv(m_descriptor, source ? &in : nullptr, source ? &left : nullptr, &target, &room);
            const int problem = done == static_cast<std::size_t>(-1) ? errno : 0;
            const bool moved = target != out || (source && left != source->size());
            if (source)
                source->remove_prefix(source->size() - left);
            write(std::string_view(out, static_cast<std::size_t>(target - out)));
            if (problem != E2BIG || !moved)
                return problem;
        }
    }

private:
    iconv_t m_descriptor;
};

} // namespace

Decoded decodeWithIconv(const char* name, std::string_view bytes)
{
    Decoded result;
    Descriptor descriptor("UTF-16LE", name);
    MutableString text(bytes.size());
    const auto append = [&](std::string_view units) {
        units.copy(reinterpret_cast<char*>(text.appendUninitialized(units.size() / 2)), units.size());
    };
    while (descriptor.isOpen() && !bytes.empty() && descriptor.convert(&bytes, append) != 0) {
        // A byte that starts nothing, or a sequence that the end cuts: each of its bytes counts.
        text.append(u'\uFFFD');
        bytes.remove_prefix(bytes.empty() ? 0 : 1);
        result.wellFormed = false;
    }
    if (descriptor.isOpen())
        descriptor.convert(nullptr, append);
    result.text = std::move(text).take();
    return result;
}

std::optional<std::string> encodeWithIconv(const char* name, std::u16string_view text)
{
    Descriptor descriptor(name, "UTF-16LE");
    if (!descriptor.isOpen())
        return std::nullopt;
    std::string bytes;
    const auto append = [&](std::string_view chunk) { bytes += chunk; };
    std::string_view source(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t));
    if (descriptor.convert(&source, append) != 0 || descriptor.convert(nullptr, append) != 0)
        return std::nullopt;
    return bytes;
}

} // namespace caddis::encodings
