#pragma once

/// What libraries that draw never give back, for the leak checker; in one source of a program. Of the
/// entities that a document declares, librsvg's reader leaves the values behind; fonts that cairo asks for
/// stay, and so does its copy of a clip that leaves nothing of a picture.
extern "C" [[gnu::visibility("default"), gnu::used]] inline const char*
__lsan_default_suppressions() // NOLINT(bugprone-reserved-identifier): the tool's name
{
    return "leak:xmlParseEntityValue\nleak:libfontconfig\nleak:libcairo";
}
