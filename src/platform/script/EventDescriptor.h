#pragma once

#include "platform/base/Data.h"
#include "platform/base/Date.h"
#include "platform/base/String.h"
#include "platform/script/FourCharCode.h"

#include <memory>
#include <optional>
#include <vector>

/// The typed values that travel with events: to a script as its parameters, back as its result.
namespace caddis {

/// A type code and its data, or a list or record of descriptors. Immutable; copies share their contents.
///
/// Scalars hold their bytes in this machine's order, and text as UTF-16 units ('utxt'). A list or record
/// holds its items; its `data` is the flattened form (FlattenedDescriptor.h), where all numbers are
/// big-endian.
class EventDescriptor {
public:
    struct Field;

    /// The null descriptor.
    EventDescriptor() = default;
    /// A scalar as it stands; the size of the data is not checked against the type.
    EventDescriptor(FourCharCode type, Data data)
        : m_type(type)
        , m_data(std::move(data))
    {
    }

    static EventDescriptor withBoolean(bool value);
    static EventDescriptor withInt32(std::int32_t value);
    static EventDescriptor withDouble(double value);
    static EventDescriptor withString(const String& text);
    /// 'type', 'enum', 'prop', 'keyw' or 'abso' whose data is another code.
    static EventDescriptor withCode(FourCharCode type, FourCharCode code);
    /// 'ldt ': the whole seconds of the instant's local time since 1904.
    static EventDescriptor withDate(const Date& date);
    static EventDescriptor list(std::vector<EventDescriptor> items);
    /// `type` is 'reco', or the class of a record that has one.
    static EventDescriptor record(std::vector<Field> fields, FourCharCode type = "reco"_code);

    FourCharCode descriptorType() const { return m_type; }
    /// The bytes of a scalar, the flattened form of a list or record.
    Data data() const;
    /// What `type` and `data` came from, as far as it can be told: a list or record when the data is a
    /// flattened one of that type, else a scalar of the same bytes.
    static EventDescriptor fromTypeAndData(FourCharCode type, const Data& data);

    bool isNull() const { return m_type == "null"_code; }
    bool isList() const { return m_shape == Shape::List; }
    bool isRecord() const { return m_shape == Shape::Record; }
    /// The items of a list (keyword 0) or the fields of a record in order; none for a scalar.
    const std::vector<Field>& fields() const;
    std::size_t numberOfItems() const;
    /// Positions count from 1. Null descriptor when there is no such item.
    EventDescriptor descriptorAtIndex(std::size_t position) const;
    /// Null descriptor when the record has no such field.
    EventDescriptor descriptorForKeyword(FourCharCode keyword) const;

    /// Text of any kind, numbers in decimal, booleans as "true" or "false", codes as their four characters;
    /// nil for everything else.
    std::optional<String> stringValue() const;
    /// Numbers of any width, booleans as 0 and 1, and text that reads as a number; nil otherwise.
    std::optional<double> doubleValue() const;
    /// The number without its fraction; nil when it is none or beyond 32 bits.
    std::optional<std::int32_t> int32Value() const;
    std::optional<bool> booleanValue() const;
    std::optional<FourCharCode> codeValue() const;
    /// Nil unless 'ldt ' with 8 bytes that name an instant.
    std::optional<Date> dateValue() const;

    friend bool operator==(const EventDescriptor& left, const EventDescriptor& right);

private:
    enum class Shape : std::uint8_t { Scalar, List, Record };

    FourCharCode m_type = "null"_code;
    Shape m_shape = Shape::Scalar;
    Data m_data;
    std::shared_ptr<const std::vector<Field>> m_fields;
};

struct EventDescriptor::Field {
    FourCharCode keyword = 0;
    EventDescriptor value;

    friend bool operator==(const Field&, const Field&) = default;
};

inline std::size_t EventDescriptor::numberOfItems() const { return fields().size(); }

} // namespace caddis
