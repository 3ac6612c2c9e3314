#pragma once

#include "platform/base/URL.h"
#include "platform/preview/IconTheme.h"
#include "platform/preview/MIMEIcons.h"
#include "platform/preview/Thumbnailers.h"

namespace caddis {

/// Pictures of documents of any kind. Tried in this order, until one gives a picture:
///
///     1 our own readers: pictures, PDF, PostScript, movies (a frame from the middle, 15 s at most)
///     2 what the file carries to be shown by: in archives and packages, the cover of a sound file
///     3 the desktop's cache of thumbnails, only read
///     4 the desktop's thumbnailer for the MIME type, in a sandbox
///     5 in icon mode: the icon of the MIME type
///
/// Files are told apart by their contents in 1 and 2, by their names after that. A step that begins late is
/// left out, so that all of it stays within about 10 s.
class QuickLook {
public:
    struct Places {
        std::vector<String> dataFolders; ///< with "thumbnailers", "icons" and "mime"
        String cacheFolder; ///< with "thumbnails"
        std::string iconTheme;
    };

    explicit QuickLook(Places places);
    /// With the places and the icon theme of this user's desktop; made at the first call.
    static const QuickLook& system();

    /// The longer side fits, and nothing is enlarged. Nil: no file, a size of 0 or less, or, outside icon
    /// mode, a document that nothing can show.
    std::optional<Bitmap> thumbnail(const String& path, Size maximum, bool iconMode) const;

private:
    std::optional<Bitmap> icon(const String& type, Size maximum) const;

    Places m_places;
    Thumbnailers m_thumbnailers;
    MIMEIcons m_icons;
    IconTheme m_theme;
};

struct QLThumbnailOptions {
    bool iconMode = false; ///< `kQLThumbnailOptionIconModeKey`: an icon is better than nothing
};

/// A picture of the document at a file URL, by QuickLook::system().
std::optional<Bitmap> QLThumbnailImageCreate(const URL& url, Size maximum, QLThumbnailOptions options = {});

} // namespace caddis
