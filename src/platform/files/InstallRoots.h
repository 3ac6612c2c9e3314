#pragma once

#include "platform/base/String.h"

/// Where the places of the platform lie on this system.
///
///     logical                           real
///     /System/Library/Spotlight         ../lib/caddis/Spotlight from the program's folder, else ../../lib
///     /Library/Spotlight                /usr/local/lib/caddis/Spotlight
///     /System/Library/Filters           Filters beside that one
///     /Library/Filters                  /usr/local/lib/caddis/Filters
///     HOME/Library                      $XDG_DATA_HOME/caddis/Library
///     HOME/Applications                 $XDG_DATA_HOME/caddis/Applications
///     /Applications                     ../lib/caddis/Applications from the program's folder
///     /Developer/Applications           /usr/local/lib/caddis/Applications
///     /usr/bin/mdimport                 mdimport beside the program; CADDIS_MDIMPORT overrides it
///
/// When CADDIS_ROOT is set, every absolute logical path is that folder and the path instead: for relocated
/// trees and tests. Tables, logs and results show logical paths only.
namespace caddis::InstallRoots {

/// The place of a logical path, of what lies below the places above too; "~" at its start is the home folder.
/// Same: other paths are returned as they are, unless CADDIS_ROOT is set.
String real(const String& logicalPath);

/// HOME/Library, logical.
String userLibraryDirectory();

/// "~" at the start replaced by the home folder.
String stringByExpandingTilde(const String& path);

} // namespace caddis::InstallRoots
