#include "platform/base/PlatformVersion.h"

namespace caddis {

PlatformVersion PlatformVersion::s_current;

} // namespace caddis
