#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace caddis::tool {

/// What `batch`, `report`, `worker` and `enqueue` can be told.
struct BatchOptions {
    std::string operation = "info"; ///< --op
    unsigned jobs = 0; ///< --jobs; 0: as many as there are processors
    double timeout = 15; ///< --timeout, seconds for a request
    std::uint64_t memory = std::uint64_t(1) << 30; ///< --memory, bytes of a helper; K, M and G may follow
    std::uint64_t largest = 0; ///< --largest, bytes of a file that is still read; 0: any
    std::uint32_t size = 256; ///< --size of a thumbnail, in pixels
    std::optional<std::string> out; ///< --out or -o
    bool resume = false; ///< --resume
    bool sandbox = true; ///< --sandbox, --no-sandbox
    bool quiet = false; ///< --quiet: no progress and no summary
    std::string log = "/dev/null"; ///< --log, where the helpers' messages go
    std::string failures; ///< --failures, the file where they are remembered
    std::string server = "nats://127.0.0.1:4222"; ///< --nats
    std::string queue = "caddis"; ///< --queue
    unsigned deliveries = 3; ///< --deliveries before a job is put aside
    unsigned patience = 30; ///< --patience, seconds without a word of a job before another worker gets it
    bool drain = false; ///< --drain: end when the queue is empty
    std::vector<std::string> arguments;
};

/// Nil for words that are none of these, with what is wrong in `mistake`.
std::optional<BatchOptions> readBatchOptions(const std::vector<std::string>& words, std::string& mistake);

} // namespace caddis::tool
