#include "platform/script/ScriptingComponent.h"

#include <cstdlib>

namespace caddis {

ScriptLimits ScriptLimits::fromEnvironment()
{
    ScriptLimits limits;
    if (const char* text = std::getenv("CADDIS_SCRIPT_DEADLINE")) {
        const double seconds = std::strtod(text, nullptr);
        if (seconds > 0 && seconds < 1e6)
            limits.deadline = std::chrono::milliseconds(static_cast<std::int64_t>(seconds * 1000));
    }
    return limits;
}

} // namespace caddis
