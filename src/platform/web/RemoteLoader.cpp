#include "platform/web/RemoteLoader.h"

#include "platform/modules/Module.h"

namespace caddis {

void loadRemote(std::span<RemoteTransfer> transfers, const RemoteRules& rules)
{
    if (transfers.empty())
        return;
    static const Module module("caddis-web");
    if (auto* const load = module.entry<web::LoadRemote>("caddisLoadRemote"))
        load(transfers, rules);
}

} // namespace caddis
