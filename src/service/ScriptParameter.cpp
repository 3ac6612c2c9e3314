#include "service/ScriptParameter.h"

namespace caddis {

EventDescriptor scriptParameter(const std::optional<Value>& pair)
{
    const auto* parts = pair ? pair->as<Array>() : nullptr;
    if (!parts || parts->size() != 2)
        return {};
    const auto* type = (*parts)[0].as<std::int64_t>();
    const auto* data = (*parts)[1].as<Data>();
    if (!type || !data)
        return {};
    return EventDescriptor::fromTypeAndData(static_cast<FourCharCode>(*type), *data);
}

String textOf(const std::optional<Value>& value)
{
    const auto* text = value ? value->as<String>() : nullptr;
    return text ? *text : String();
}

} // namespace caddis
