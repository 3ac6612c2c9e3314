#pragma once

#include "FileInput.h"
#include "Fuzz.h"
#include "bundles/support/Importer.h"

#include <string>

// A file given to the reader of one bundle, with a host that counts. Aborts when more text is given than the
// host wants, and when two runs differ.

struct CaddisValue {
    std::string record;
    std::size_t text = 0;
};

namespace caddis {

inline constexpr std::size_t FuzzTextBudget = 1 << 20;

inline CaddisHost countingHost()
{
    CaddisHost host {};
    host.size = sizeof host;
    host.abi = CADDIS_IMPORTER_ABI;
    const auto note = [](CaddisValue* to, const char* key, const char* text, std::size_t length) {
        to->record.append(key).append(text, length);
        return 1;
    };
    host.set_string = note;
    host.add_string = note;
    host.set_integer = [](CaddisValue* to, const char* key, std::int64_t value) {
        to->record.append(key).append(std::to_string(value));
        return 1;
    };
    host.set_real = [](CaddisValue*, const char*, double) { return 1; };
    host.set_boolean = [](CaddisValue*, const char*, int) { return 1; };
    host.set_date = [](CaddisValue*, const char*, double) { return 1; };
    host.append_text = [](CaddisValue* to, const char*, std::size_t length) {
        INVARIANT(to->text <= FuzzTextBudget);
        to->text += length;
        return to->text <= FuzzTextBudget ? 1 : 0;
    };
    host.should_stop = [] { return 0; };
    host.log = [](const char*) {};
    host.note_left_out = [](const char*) {};
    return host;
}

inline void importTwice(const char* contentType, const std::uint8_t* data, std::size_t size)
{
    static const CaddisHost host = countingHost();
    const std::string path = fileWith(data, size).utf8();
    const auto run = [&] {
        CaddisValue dictionary;
        bundles::Attributes attributes(host, &dictionary);
        bundles::importFile(attributes, contentType, path);
        return dictionary.record + std::to_string(dictionary.text);
    };
    INVARIANT(run() == run());
}

} // namespace caddis
