#include "platform/base/Data.h"

#include <cstdlib>
#include <utility>

namespace caddis {

namespace {

template <typename Buffer> Data adoptBuffer(Buffer buffer)
{
    auto keeper = std::make_shared<const Buffer>(std::move(buffer));
    const void* bytes = keeper->data();
    const std::size_t size = keeper->size();
    return Data::keptBy(std::move(keeper), bytes, size);
}

} // namespace

Data Data::copyOf(std::string_view bytes)
{
    return adoptBuffer(std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
}

Data Data::adopt(std::vector<std::uint8_t> bytes) { return adoptBuffer(std::move(bytes)); }

Data Data::adopt(std::string bytes) { return adoptBuffer(std::move(bytes)); }

Data Data::adoptMalloc(void* block, std::size_t size)
{
    return keptBy(std::shared_ptr<const void>(block, std::free), block, size);
}

Data Data::keptBy(std::shared_ptr<const void> keeper, const void* bytes, std::size_t size)
{
    Data data;
    data.m_keeper = std::move(keeper);
    data.m_bytes = static_cast<const std::uint8_t*>(bytes);
    data.m_size = size;
    return data;
}

Data Data::slice(Range range) const { return keptBy(m_keeper, m_bytes + range.location, range.length); }

} // namespace caddis
