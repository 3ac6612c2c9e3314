#include "platform/plugin/PlugIn.h"

#include "platform/base/Log.h"
#include "platform/files/FileSystem.h"
#include "platform/plugin/ImporterValues.h"

#include <dlfcn.h>
#include <map>

namespace caddis {

namespace {

// Created plug-ins are never taken back, so pointers to them stay good.
struct Registry {
    std::map<String, PlugIn*> byPath;
    std::map<String, PlugIn*> byFactory;
    std::vector<std::unique_ptr<PlugIn>> plugIns;
};

Registry& registry()
{
    static auto& instance = *new Registry;
    return instance;
}

// Identifiers are compared as their upper-case texts.
String canonical(const String& identifier)
{
    std::u16string text;
    for (const char16_t unit : identifier)
        text += unit >= u'a' && unit <= u'z' ? char16_t(unit - 32) : unit;
    return String(text);
}

const Value* entry(const Dictionary& info, std::u16string_view table, const String& identifier)
{
    const Value* value = info.find(table);
    const auto* dictionary = value ? value->as<Dictionary>() : nullptr;
    if (!dictionary)
        return nullptr;
    for (const auto& [key, found] : *dictionary) {
        if (canonical(key) == canonical(identifier))
            return &found;
    }
    return nullptr;
}

} // namespace

PlugIn* PlugIn::create(const String& path)
{
    Registry& known = registry();
    if (const auto found = known.byPath.find(path); found != known.byPath.end())
        return found->second;
    auto bundle = Bundle::bundleWithPath(path);
    const auto factories = bundle ? bundle->keysOf(u"CFPlugInFactories") : std::vector<String>();
    if (factories.empty())
        return nullptr;
    for (const String& factory : factories) {
        if (const auto other = known.byFactory.find(canonical(factory)); other != known.byFactory.end())
            return known.byPath[path] = other->second;
    }
    known.plugIns.push_back(std::unique_ptr<PlugIn>(new PlugIn(std::move(*bundle))));
    PlugIn* const plugIn = known.plugIns.back().get();
    for (const String& factory : factories)
        known.byFactory[canonical(factory)] = plugIn;
    return known.byPath[path] = plugIn;
}

std::vector<String> PlugIn::factoriesForType(const String& type) const
{
    std::vector<String> factories;
    const Value* listed = entry(m_bundle.infoDictionary(), u"CFPlugInTypes", type);
    const auto add = [&](const Value& value) {
        const auto* factory = value.as<String>();
        if (factory && entry(m_bundle.infoDictionary(), u"CFPlugInFactories", *factory))
            factories.push_back(*factory);
    };
    // A single text stands for a list of one.
    if (const auto* list = listed ? listed->as<Array>() : nullptr) {
        for (const Value& value : *list)
            add(value);
    } else if (listed) {
        add(*listed);
    }
    return factories;
}

std::vector<String> PlugIn::allFactoriesForType(const String& type)
{
    std::vector<String> factories;
    for (const auto& plugIn : registry().plugIns) {
        for (const String& factory : plugIn->factoriesForType(type))
            factories.push_back(factory);
    }
    return factories;
}

// RTLD_NOW: a missing library fails here and not in the middle of an import. RTLD_NODELETE: what a plug-in
// leaves behind (threads, exit handlers) never runs into code that is gone.
CaddisFactory PlugIn::functionOf(const String& factory)
{
    const Value* name = entry(m_bundle.infoDictionary(), u"CFPlugInFactories", factory);
    const auto* function = name ? name->as<String>() : nullptr;
    if (!m_handle) {
        const auto path = m_bundle.executablePath();
        const auto file = path ? fileSystemRepresentation(*path) : std::nullopt;
        m_handle = file ? dlopen(file->c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE) : nullptr;
    }
    if (!m_handle || !function)
        return nullptr;
    return reinterpret_cast<CaddisFactory>(dlsym(m_handle, function->utf8().c_str()));
}

CaddisUnknown** PlugIn::instantiate(const String& factory, CaddisUUID type)
{
    const CaddisFactory function = functionOf(factory);
    if (!function)
        return nullptr;
    CaddisUnknown** object = nullptr;
    const bool ended = withoutExceptions(
        m_bundle.path(), [&] { object = static_cast<CaddisUnknown**>(function(&importerHost(), &type)); });
    return ended && object && *object ? object : nullptr;
}

} // namespace caddis
