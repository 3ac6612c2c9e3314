#pragma once

#include "html/HTMLImport.h"
#include "html/LoadedPage.h"

#include <chrono>
#include <span>
#include <unordered_map>

/// Inside this folder: fetches what pages are made of, before one deadline.
namespace caddis::html {

class PageLoader {
public:
    /// The time begins to run.
    explicit PageLoader(const HTMLImportOptions& options);

    /// The page, its style sheets, pictures, and the frames in it with theirs.
    std::unique_ptr<LoadedPage> load(
        const Data& html, const String& encodingName, const std::optional<URL>& url);

private:
    using Shared = std::shared_ptr<const Resource>;
    /// A style sheet, and those that it imports, which count before it.
    struct Sheet {
        std::optional<URL> url; ///< none: its text stands in the page
        css::StyleSheet contents {};
        std::vector<std::unique_ptr<Sheet>> imports {};
    };
    using Sheets = std::vector<std::unique_ptr<Sheet>>;

    std::unique_ptr<LoadedPage> load(
        const Data& html, const String& encodingName, const std::optional<URL>& url, int depth);
    void loadSheets(LoadedPage& loaded);
    Sheets sheetsOf(const LoadedPage& loaded);
    css::StyleSheet parsed(const String& text);
    void read(Sheet& sheet);
    void loadObjects(LoadedPage& loaded, int depth);
    void loadFrame(LoadedPage& loaded, NodeIndex node, const URL& url, int depth);

    /// Brings all of them that can be had; what is known already is not asked for again.
    void fetch(std::span<const URL> urls);
    /// Null for what did not come.
    Shared resource(const URL& url) const;
    std::optional<Resource> localResource(const URL& url) const;
    bool keep(Resource resource, const URL& asked);
    double secondsLeft() const;

    const HTMLImportOptions& m_options;
    std::chrono::steady_clock::time_point m_deadline;
    std::unordered_map<String, Shared> m_resources; ///< by the URL asked for, without its anchor
    std::size_t m_bytes = 0;
    std::size_t m_sheetUnits = 0;
    std::size_t m_pages = 0;
    std::size_t m_asked = 0;
};

} // namespace caddis::html
