#include "platform/unicode/Collation.h"

#include "platform/base/Log.h"

#include <dlfcn.h>
#include <unicode/ucol.h>

// The name that a symbol of this ICU has in its library: ucol_open_72.
#define CADDIS_TEXT(argument) #argument
#define CADDIS_SYMBOL(name) CADDIS_TEXT(name)

namespace caddis {

namespace {

// Linked, ICU's second library would cost every start of the helper 6,000 relocations; scripts that order
// texts outside ASCII are few. Never unloaded.
struct Library {
    decltype(&ucol_open) open = nullptr;
    decltype(&ucol_setAttribute) setAttribute = nullptr;
    decltype(&ucol_strcoll) compare = nullptr;

    Library()
    {
        void* handle = dlopen("libicui18n.so." U_ICU_VERSION_SHORT, RTLD_NOW | RTLD_LOCAL);
        if (!handle || !find(handle, CADDIS_SYMBOL(ucol_open), open)
            || !find(handle, CADDIS_SYMBOL(ucol_setAttribute), setAttribute)
            || !find(handle, CADDIS_SYMBOL(ucol_strcoll), compare)) {
            compare = nullptr;
            log(u"Can't order texts: %s", std::string(dlerror()));
        }
    }

private:
    template <typename Function> static bool find(void* handle, const char* name, Function& function)
    {
        function = reinterpret_cast<Function>(dlsym(handle, name));
        return function != nullptr;
    }
};

const Library& library()
{
    static const Library library;
    return library;
}

// A collator is used by one thread at a time; each thread keeps its own for good.
UCollator* makeCollator(DigitOrder digits)
{
    if (!library().compare)
        return nullptr;
    UErrorCode status = U_ZERO_ERROR;
    UCollator* made = library().open("", &status);
    if (made && digits == DigitOrder::ByValue)
        library().setAttribute(made, UCOL_NUMERIC_COLLATION, UCOL_ON, &status);
    return made;
}

UCollator* collatorFor(DigitOrder digits)
{
    if (digits == DigitOrder::ByValue) {
        thread_local UCollator* const numeric = makeCollator(digits);
        return numeric;
    }
    thread_local UCollator* const plain = makeCollator(digits);
    return plain;
}

} // namespace

int collate(std::u16string_view left, std::u16string_view right, DigitOrder digits)
{
    UCollator* const collator = collatorFor(digits);
    if (!collator)
        return left.compare(right);
    return library().compare(collator, left.data(), static_cast<int32_t>(left.size()), right.data(),
        static_cast<int32_t>(right.size()));
}

} // namespace caddis
