#include "platform/web/engine/Transfers.h"

// What the program looks up in caddis-web.so; everything else in it is hidden.
extern "C" [[gnu::visibility("default")]] void caddisLoadRemote(
    std::span<caddis::RemoteTransfer>& transfers, const caddis::RemoteRules& rules)
{
    caddis::web::Transfers(transfers, rules).run();
}
