// An application's side of the helper, whole: start it when it is needed, ask it about a file, stop it.
//
//     B=build/dev/src; g++ -std=c++20 -Isrc docs/examples/client/main.cpp $B/client/libcaddis_client.a
//         $B/platform/ipc/libcaddis_ipc.a $B/platform/base/libcaddis_base.a -ldbus-1 -o ask
//     ./ask build/dev/bin/CaddisHelper book.epub

#include "client/HelperProxy.h"
#include "client/HelperTask.h"
#include "client/OstraImExport.h"

#include <cstdio>

using namespace caddis;

namespace {

// One request. A helper that died or is stuck is an exception here; the next proxy() starts a new one.
int describe(HelperTask& task, const String& path)
{
    const auto proxy = task.proxy();
    if (!proxy) {
        std::puts("no helper");
        return 1;
    }
    const HelperProxy helper(*proxy);
    if (!helper.supportsFile(path)) {
        std::puts("the helper does not know this kind of file");
        return 1;
    }
    const auto metadata = helper.metaDataForFile(path);
    if (!metadata)
        return 1;
    for (const auto& [key, value] : *metadata) {
        if (const auto* text = value.as<String>())
            std::printf("%s: %s\n", key.utf8().c_str(), text->utf8().c_str());
    }
    return 0;
}

} // namespace

int main(int count, char** arguments)
{
    if (count != 3)
        return 2;
    const auto task = HelperTask::initWithPath(String::fromUtf8(arguments[1]), String(HelperServiceName),
        &OstraImExport, 15.0, QualityOfService::Utility);
    if (!task)
        return 2;
    try {
        return describe(*task, String::fromUtf8(arguments[2]));
    } catch (const Exception& exception) {
        std::printf("%s: %s\n", exception.name().utf8().c_str(), exception.reason().utf8().c_str());
        return 3;
    }
}
