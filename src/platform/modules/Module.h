#pragma once

#include "platform/base/String.h"

#include <optional>
#include <string>

/// Heavy libraries (PDF, images, movies) are not linked into a program: start-up counts. Each stands in a
/// shared module `NAME.so` that is opened when it is first needed and stays open for the life of the process.
///
///     using OpenDocument = Document* (const Data&);
///     static const Module module("caddis-pdf");
///     if (auto* open = module.entry<OpenDocument>("caddisOpenPDFDocument")) …
///
/// A module is looked for beside the running program and in `../lib/caddis` from there, which holds for the
/// build tree as for an installed system, and nowhere else: neither the environment nor the loader's path
/// decides what code runs.
namespace caddis {

/// The path of a file of ours that stands where modules stand; nil when there is none.
std::optional<std::string> installedFile(const std::string& name);

class Module {
public:
    /// Opens the module. Logs one line when it is missing or broken; every entry is then null.
    explicit Module(const char* name);

    bool isOpen() const { return m_handle != nullptr; }
    /// The module's C function of that name, of type `Function`; null when there is none.
    template <typename Function> Function* entry(const char* symbol) const
    {
        return reinterpret_cast<Function*>(address(symbol));
    }

private:
    void* address(const char* symbol) const;

    void* m_handle = nullptr;
};

} // namespace caddis
