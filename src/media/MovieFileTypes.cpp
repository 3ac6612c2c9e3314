#include "media/MovieFileTypes.h"

#include "platform/base/Paths.h"
#include "platform/base/PlatformVersion.h"
#include "platform/files/HFSType.h"
#include "text/StringUtilities.h"

#include <algorithm>

namespace caddis {

namespace {

constexpr double FirstFoundationWithAVI = 1151.16;

constexpr std::u16string_view types[] = { u"webm", u"gsm", u"aac", u"mid", u"aif", u"m4v", u"amr", u"m4a",
    u"divx", u"qhtm", u"cdda", u"mkv", u"smf", u"m4b", u"snd", u"mka", u"asf", u"dvd", u"gvi", u"smil",
    u"swf", u"mpm", u"smi", u"aifc", u"f4v", u"kar", u"qtz", u"ulw", u"m75", u"pdf", u"qt", u"amc", u"3gp2",
    u"adts", u"sml", u"cel", u"flv", u"qtpf", u"mp2", u"nuv", u"mpeg", u"mp3", u"3gp", u"flc", u"aiff", u"wm",
    u"mov", u"mp4", u"wav", u"3g2", u"m1s", u"sdp", u"rtsp", u"dat", u"gif", u"avi", u"mpv", u"m15", u"wax",
    u"sd2", u"mpa", u"caf", u"qht", u"m1v", u"m1a", u"au", u"mqv", u"m4p", u"fli", u"dif", u"atr", u"midi",
    u"pls", u"m2a", u"bwf", u"m2v", u"scc", u"sdv", u"3gpp", u"wmv", u"tta", u"m3u", u"vfw", u"wma", u"dv",
    u"mpg", u"vp6", u"skin", u"wvx", u"swa", u"ac3", u"asx", u"ts", u"'GSM '", u"'AVI_'", u"'hmov'",
    u"'GIFf'", u"'SWFL'", u"'CLCP'", u"'3gp2'", u"'embd'", u"'AIFF'", u"'MooV'", u"'mxfd'", u"'sdp '",
    u"'qhtm'", u"'MPG2'", u"'3gpp'", u"'DAVI'", u"'MPGA'", u"'MPEG'", u"'M1V '", u"'FLI '", u"'attr'",
    u"'cdda'", u"'MPGa'", u"'VfW '", u"'.WAV'", u"'amc '", u"'Sd2f'", u"'MP3 '", u"'.SMI'", u"'rtsp'",
    u"'MPGV'", u"'AIFC'", u"'mpg4'", u"'PDF '", u"'MkvF'", u"'amr '", u"'M1A '", u"'PLAY'", u"'MPG '",
    u"'MPGv'", u"'SMIL'", u"'Mp3 '", u"'ASF_'", u"'ac-3'", u"'MPGx'", u"'dvc!'", u"'Midi'", u"'grip'",
    u"'MPG3'", u"'ULAW'", u"'WAVE'", u"'WMV '", u"'sdv '", u"'adts'", u"'caff'", u"'DIVX'", u"'SwaT'" };
static_assert(std::size(types) == 150);

} // namespace

inline namespace OstraAVPlayerItemExtensions {

const std::vector<String>& QuickTimeFileTypes()
{
    static const auto& list = *new std::vector<String>(std::begin(types), std::end(types));
    return list;
}

bool isQuickTimeExtension(const String& extension, const String& type)
{
    if (type == u"'TEXT'" && isEqualNoCase(extension, u"dat"))
        return false;
    return std::any_of(std::begin(types), std::end(types),
        [&](std::u16string_view entry) { return isEqualNoCase(entry, extension) || type == entry; });
}

bool isQuickTimeFile(const String& path)
{
    return isQuickTimeExtension(pathExtension(path), HFSTypeOfFile(path));
}

bool supportsFile(const String& path)
{
    constexpr std::u16string_view Refused[] = { u".flv", u".wmv", u".gif", u".webm" };
    const auto endsWith = [&](std::u16string_view suffix) { return hasSuffixNoCase(path, suffix); };
    if (std::any_of(std::begin(Refused), std::end(Refused), endsWith))
        return false;
    return PlatformVersion::current().foundation >= FirstFoundationWithAVI || !endsWith(u".avi");
}

} // namespace OstraAVPlayerItemExtensions

} // namespace caddis
