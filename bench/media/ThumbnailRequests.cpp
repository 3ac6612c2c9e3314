// thumbnail-requests HELPER PIXELS FILE…: thumbnails of the files through a helper that runs already. Prints
// the median and the sum of the requests' times in milliseconds, and how many were answered with a picture.

#include "client/HelperProxy.h"
#include "client/HelperTask.h"
#include "client/OstraImExport.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <numeric>

int main(int count, char** arguments)
{
    if (count < 4)
        return 1;
    const auto path = [&](int index) {
        return caddis::String::fromUtf8(std::filesystem::absolute(arguments[index]).string());
    };
    auto task = caddis::HelperTask::initWithPath(path(1), caddis::String(caddis::HelperServiceName),
        &caddis::OstraImExport, 60, caddis::QualityOfService::Default);
    const caddis::HelperProxy helper(*task->proxy());
    const std::int64_t side = std::atoi(arguments[2]);
    helper.imageWithContentsOfFile(path(3), { .maxThumbnailSize = side });
    std::vector<double> times;
    std::size_t answered = 0;
    for (int index = 3; index < count; ++index) {
        const auto start = std::chrono::steady_clock::now();
        const auto reply = helper.imageWithContentsOfFile(path(index), { .maxThumbnailSize = side });
        const std::chrono::duration<double, std::milli> elapsed = std::chrono::steady_clock::now() - start;
        answered += reply && reply->find(u"Thumbnail") ? 1 : 0;
        times.push_back(elapsed.count());
    }
    const double sum = std::accumulate(times.begin(), times.end(), 0.0);
    std::ranges::nth_element(times, times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2));
    std::printf("%.4f %.4f %zu\n", times[times.size() / 2], sum, answered);
    return 0;
}
