#pragma once

#include "platform/script/EventDescriptor.h"

namespace caddis {

/// One event: what is to be done, by whom, and with what.
struct AppleEvent {
    static constexpr std::int16_t AutoGenerateReturnID = -1;
    static constexpr std::int32_t AnyTransactionID = 0;

    FourCharCode eventClass = 0;
    FourCharCode eventID = 0;
    EventDescriptor target;
    std::int16_t returnID = AutoGenerateReturnID;
    std::int32_t transactionID = AnyTransactionID;
    std::vector<EventDescriptor::Field> parameters;

    /// Null descriptor when it is missing.
    EventDescriptor parameter(FourCharCode keyword) const
    {
        for (const auto& [key, value] : parameters) {
            if (key == keyword)
                return value;
        }
        return {};
    }
};

} // namespace caddis
