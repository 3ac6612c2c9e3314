#pragma once

#include "platform/plugin/Bundle.h"
#include "platform/plugin/caddis_importer.h"

#include <memory>
#include <vector>

namespace caddis {

/// A bundle as a source of objects: its factories are known to the process once it is created, its code is
/// loaded when the first object is asked for, and stays for the life of the process.
class PlugIn {
public:
    /// The plug-in at a logical path. The same path always gives the same plug-in; a bundle that declares a
    /// factory which another has declared gives that other one. Null: no bundle, or one without factories.
    static PlugIn* create(const String& path);

    /// The identifiers of this plug-in's factories for a type, in the order of CFPlugInTypes.
    std::vector<String> factoriesForType(const String& type) const;

    /// A new object of the factory. Null: no code, no such function, or the factory refuses. What a factory
    /// throws is caught and logged.
    CaddisUnknown** instantiate(const String& factory, CaddisUUID type);

    /// The factories of all created plug-ins for a type, in the order of their creation.
    static std::vector<String> allFactoriesForType(const String& type);

private:
    explicit PlugIn(Bundle bundle)
        : m_bundle(std::move(bundle))
    {
    }
    CaddisFactory functionOf(const String& factory);

    Bundle m_bundle;
    void* m_handle = nullptr;
};

} // namespace caddis
