#include "bundles/BundleHost.h"

#include "platform/plugin/caddis_importer.h"

#include <dlfcn.h>
#include <sstream>

struct CaddisValue {
    caddis::Imported imported;
};

namespace caddis {

namespace {

std::size_t s_textLimit = 0;
bool s_isFull = false;
std::string s_log;
std::string s_leftOut;

template <typename Value> int store(CaddisValue* dictionary, const char* key, const Value& value)
{
    std::ostringstream stream;
    stream.precision(12);
    stream << value;
    dictionary->imported.values[key] = stream.str();
    return 1;
}

int storeText(CaddisValue* dictionary, const char* key, const char* utf8, size_t length)
{
    return store(dictionary, key, std::string_view(utf8, length));
}

int addString(CaddisValue* dictionary, const char* key, const char* utf8, size_t length)
{
    std::string& list = dictionary->imported.values[key];
    if (++dictionary->imported.items < 100)
        list.append(list.empty() ? "" : " | ").append(utf8, length);
    return 1;
}

int appendText(CaddisValue* dictionary, const char* utf8, size_t length)
{
    std::string& text = dictionary->imported.values["kMDItemTextContent"];
    s_isFull = s_isFull || text.size() + length > s_textLimit;
    if (!s_isFull)
        text.append(utf8, length);
    return s_isFull ? 0 : 1;
}

CaddisHost makeHost()
{
    CaddisHost host {};
    host.size = sizeof host;
    host.abi = CADDIS_IMPORTER_ABI;
    host.set_string = storeText;
    host.set_integer = [](CaddisValue* to, const char* key, int64_t value) { return store(to, key, value); };
    host.set_real = [](CaddisValue* to, const char* key, double value) { return store(to, key, value); };
    host.set_boolean
        = [](CaddisValue* to, const char* key, int value) { return store(to, key, value ? "yes" : "no"); };
    host.set_date = [](CaddisValue* to, const char* key, double value) { return store(to, key, value); };
    host.add_string = addString;
    host.append_text = appendText;
    host.should_stop = [] { return s_isFull ? 1 : 0; };
    host.log = [](const char* text) { s_log += text; };
    host.note_left_out = [](const char* text) { s_leftOut += text; };
    return host;
}

std::string executable(const std::string& name)
{
    return std::string(CADDIS_SPOTLIGHT "/")
        .append(name)
        .append(".mdimporter/Contents/Linux/")
        .append(name)
        .append(".so");
}

} // namespace

bool hasBundle(const std::string& name)
{
    return std::string(CADDIS_IMPORTERS).find(std::string(",").append(name).append(",")) != std::string::npos;
}

Imported importWith(
    const std::string& bundle, const char* contentType, const std::string& path, std::size_t textLimit)
{
    static const CaddisHost host = makeHost();
    CaddisValue dictionary;
    s_textLimit = textLimit;
    s_isFull = false;
    s_log.clear();
    s_leftOut.clear();
    void* code = dlopen(executable(bundle).c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (!code)
        return { .result = false, .values = {}, .log = dlerror() };
    auto* factory = reinterpret_cast<CaddisFactory>(dlsym(code, "caddisImporterFactory"));
    const CaddisUUID type = CADDIS_IMPORTER_TYPE_ID;
    void* object = factory ? factory(&host, &type) : nullptr;
    if (!object)
        return { .result = false, .values = {}, .log = "no object" };
    void* importer = nullptr;
    (*static_cast<CaddisImporter**>(object))
        ->unknown.query_interface(object, CADDIS_IMPORTER_INTERFACE_ID, &importer);
    const CaddisImporter& table = **static_cast<CaddisImporter**>(importer);
    dictionary.imported.result = table.import_data(importer, &dictionary, contentType, path.c_str()) != 0;
    table.unknown.release(importer);
    dictionary.imported.log = s_log;
    dictionary.imported.leftOut = s_leftOut;
    return dictionary.imported;
}

} // namespace caddis
