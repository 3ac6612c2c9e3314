#include "platform/ipc/RemoteObject.h"

#include <algorithm>
#include <string_view>

namespace caddis {

const RemoteMember* RemoteProtocol::find(std::string_view member) const
{
    const auto found = std::ranges::find(members, member, &RemoteMember::member);
    return found == members.end() ? nullptr : &*found;
}

} // namespace caddis
