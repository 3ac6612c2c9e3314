#pragma once

#include "platform/script/applescript/Heap.h"
#include "platform/script/applescript/Symbols.h"

#include <utility>

namespace caddis::applescript {

enum class Kind : std::uint8_t {
    Unset, ///< a variable that was never set, a command without result
    Missing, ///< missing value
    Boolean,
    Integer,
    Real,
    Class,
    Constant,
    FirstObject, ///< the kinds from here on are objects
    Text = FirstObject,
    List,
    Record,
    Date,
    Script,
    Handler,
    Reference,
    File,
    Data,
    Application,
    Unit,
    Specifier, ///< an object of an application outside
};

class Text;
class List;
class Record;
class DateObject;
class ScriptObject;
class HandlerObject;
class ReferenceObject;
class FileObject;
class DataObject;
class ApplicationObject;
class UnitObject;
class SpecifierObject;

/// One value of the language: small ones stand in it, the others are counted objects that copies share.
class Datum {
public:
    Datum() noexcept = default;
    Datum(const Datum& other) noexcept
        : m_kind(other.m_kind)
        , m_bits(other.m_bits)
    {
        if (isObject())
            Object::retain(m_bits.object);
    }
    Datum(Datum&& other) noexcept
        : m_kind(std::exchange(other.m_kind, Kind::Unset))
        , m_bits(other.m_bits)
    {
    }
    Datum& operator=(const Datum& other) noexcept
    {
        Datum copy(other);
        swap(copy);
        return *this;
    }
    Datum& operator=(Datum&& other) noexcept
    {
        Datum moved(std::move(other));
        swap(moved);
        return *this;
    }
    ~Datum()
    {
        if (isObject())
            Object::release(m_bits.object);
    }

    static Datum missing() { return Datum(Kind::Missing); }
    static Datum boolean(bool value)
    {
        Datum result(Kind::Boolean);
        result.m_bits.boolean = value;
        return result;
    }
    /// For numbers within the language's integers; see Datum::number.
    static Datum integer(std::int64_t value)
    {
        Datum result(Kind::Integer);
        result.m_bits.integer = value;
        return result;
    }
    static Datum real(double value)
    {
        Datum result(Kind::Real);
        result.m_bits.real = value;
        return result;
    }
    /// An integer where the language has one that large, else a real.
    static Datum number(std::int64_t value)
    {
        return value >= MinimumInteger && value <= MaximumInteger ? integer(value)
                                                                  : real(static_cast<double>(value));
    }
    static Datum classNamed(Symbol name) { return withSymbol(Kind::Class, name); }
    static Datum constant(Symbol name) { return withSymbol(Kind::Constant, name); }
    static Datum text(const String& value);
    static Datum text(std::u16string_view value) { return text(String(value)); }
    template <typename T> static Datum object(T* object)
    {
        Datum result(T::ItsKind);
        result.m_bits.object = object;
        Object::retain(object);
        return result;
    }

    Kind kind() const { return m_kind; }
    bool is(Kind kind) const { return m_kind == kind; }
    bool isSet() const { return m_kind != Kind::Unset; }
    bool isObject() const { return m_kind >= Kind::FirstObject; }
    bool isNumber() const { return m_kind == Kind::Integer || m_kind == Kind::Real; }

    bool asBoolean() const { return m_bits.boolean; }
    std::int64_t asInteger() const { return m_bits.integer; }
    /// The value of an integer or a real.
    double asReal() const
    {
        return m_kind == Kind::Integer ? static_cast<double>(m_bits.integer) : m_bits.real;
    }
    Symbol asSymbol() const { return m_bits.symbol; }
    /// The object of the kind that was tested before.
    template <typename T> T& as() const { return *static_cast<T*>(m_bits.object); }
    /// Null pointer when the value is of another kind.
    template <typename T> T* get() const { return m_kind == T::ItsKind ? &as<T>() : nullptr; }
    bool isSameObject(const Datum& other) const
    {
        return isObject() && m_kind == other.m_kind && m_bits.object == other.m_bits.object;
    }

    void swap(Datum& other) noexcept
    {
        std::swap(m_kind, other.m_kind);
        std::swap(m_bits, other.m_bits);
    }

    /// The language's integers have 30 bits; larger whole numbers are reals.
    static constexpr std::int64_t MaximumInteger = 536'870'911;
    static constexpr std::int64_t MinimumInteger = -536'870'912;

private:
    explicit Datum(Kind kind)
        : m_kind(kind)
    {
    }
    static Datum withSymbol(Kind kind, Symbol name)
    {
        Datum result(kind);
        result.m_bits.symbol = name;
        return result;
    }

    union Bits {
        std::int64_t integer;
        bool boolean;
        double real;
        Symbol symbol;
        Object* object;
    };

    Kind m_kind = Kind::Unset;
    Bits m_bits { 0 };
};

} // namespace caddis::applescript
