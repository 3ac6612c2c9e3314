#pragma once

#include "platform/base/Data.h"
#include "platform/base/Range.h"
#include "platform/script/applescript/Datum.h"

#include <memory>
#include <vector>

/// The objects that values refer to. Lists, records, dates and scripts change in place and are shared by all
/// who hold them; texts never change.
namespace caddis::applescript {

class Text final : public Object {
public:
    static constexpr Kind ItsKind = Kind::Text;

    explicit Text(const String& value)
        : m_value(value)
    {
        charge(bytes());
    }
    ~Text() override { refund(bytes()); }

    const String& value() const { return m_value; }

    /// The places of the elements of one class, remembered from the last question. `key` tells whatever else
    /// the places depend on.
    struct Elements {
        Symbol elementClass = Symbol::None;
        std::uint64_t key = 0;
        std::vector<Range> ranges;
    };
    std::unique_ptr<Elements>& elements() { return m_elements; }
    /// Whether each unit is one character; found out once.
    bool isSimple();

private:
    std::size_t bytes() const { return m_value.length() * sizeof(char16_t); }

    enum class Simple : std::uint8_t { Unknown, Yes, No };
    String m_value;
    std::unique_ptr<Elements> m_elements;
    Simple m_simple = Simple::Unknown;
};

class List final : public Object {
public:
    static constexpr Kind ItsKind = Kind::List;

    List() = default;
    explicit List(std::vector<Datum> items)
        : m_items(std::move(items))
    {
        charge(m_items.capacity() * sizeof(Datum));
    }
    ~List() override { refund(m_items.capacity() * sizeof(Datum)); }

    const std::vector<Datum>& items() const { return m_items; }
    std::size_t count() const { return m_items.size(); }
    void setItem(std::size_t index, Datum value) { m_items[index] = std::move(value); }
    void append(Datum value);
    void prepend(Datum value);

    /// Elements of an application: a property of the list is the list of the elements' properties.
    bool areElements = false;

private:
    void dropReferences() override;

    std::vector<Datum> m_items;
};

class Record final : public Object {
public:
    static constexpr Kind ItsKind = Kind::Record;
    using Field = std::pair<Symbol, Datum>;

    Record() = default;
    explicit Record(std::vector<Field> fields)
        : m_fields(std::move(fields))
    {
        charge(bytes());
    }
    ~Record() override { refund(bytes()); }

    const std::vector<Field>& fields() const { return m_fields; }
    /// Null pointer when there is no such label.
    const Datum* find(Symbol label) const;
    void set(Symbol label, Datum value);

private:
    std::size_t bytes() const { return m_fields.capacity() * sizeof(Field); }
    void dropReferences() override;

    std::vector<Field> m_fields;
};

/// A date: wall-clock time as seconds since 1904-01-01 00:00:00, whatever the zone.
class DateObject final : public Object {
public:
    static constexpr Kind ItsKind = Kind::Date;

    explicit DateObject(std::int64_t longDateTime)
        : seconds(longDateTime)
    {
    }

    std::int64_t seconds;
};

/// A file by its path, which is absolute and with slashes; only its class says how it was written.
class FileObject final : public Object {
public:
    static constexpr Kind ItsKind = Kind::File;

    /// `itsClass` is alias, POSIX file, file, folder, disk, or disk item.
    FileObject(Symbol itsClass, const String& posixPath)
        : fileClass(itsClass)
        , path(posixPath)
    {
    }

    Symbol fileClass;
    String path;
};

class DataObject final : public Object {
public:
    static constexpr Kind ItsKind = Kind::Data;

    DataObject(FourCharCode itsType, Data itsBytes)
        : type(itsType)
        , bytes(std::move(itsBytes))
    {
        charge(bytes.size());
    }
    ~DataObject() override { refund(bytes.size()); }

    FourCharCode type;
    Data bytes;
};

class ApplicationTerms;

class ApplicationObject final : public Object {
public:
    static constexpr Kind ItsKind = Kind::Application;

    explicit ApplicationObject(
        const String& itsName, std::shared_ptr<const ApplicationTerms> itsTerms = nullptr)
        : name(itsName)
        , terms(std::move(itsTerms))
    {
    }

    String name; ///< empty for the application that runs the script
    std::shared_ptr<const ApplicationTerms> terms; ///< of an application outside; null for the others
};

/// A measure: 5 inches.
class UnitObject final : public Object {
public:
    static constexpr Kind ItsKind = Kind::Unit;

    UnitObject(Symbol itsUnit, double itsValue)
        : unit(itsUnit)
        , value(itsValue)
    {
    }

    Symbol unit;
    double value;
};

/// Which elements or which property a reference means.
struct Selector {
    enum class Form : std::uint8_t {
        Property, ///< `name` is the property
        Index,
        Range,
        Every,
        Middle,
        Some,
        Named,
        WithId,
        Beginning,
        End,
        Variable, ///< `name` is a variable of the container, a script
    };

    Form form = Form::Property;
    Symbol name = Symbol::None; ///< the element class or the property
    Datum key {}; ///< index, name or id; first end of a range
    Datum lastKey {}; ///< second end of a range
    Symbol keyClass = Symbol::None; ///< the elements that an end of a range counts, when they are others
    Symbol lastKeyClass = Symbol::None;
};

class ReferenceObject final : public Object {
public:
    static constexpr Kind ItsKind = Kind::Reference;

    ReferenceObject(Datum itsContainer, Selector itsSelector)
        : container(std::move(itsContainer))
        , selector(std::move(itsSelector))
    {
    }

    Datum container;
    Selector selector;

private:
    void dropReferences() override
    {
        container = Datum();
        selector = {};
    }
};

/// An object of an application outside, by the way it is named; only the application knows more. A value like
/// others: it refers to nothing in the script.
class SpecifierObject final : public Object {
public:
    static constexpr Kind ItsKind = Kind::Specifier;

    SpecifierObject(Datum itsContainer, Selector itsSelector)
        : container(std::move(itsContainer))
        , selector(std::move(itsSelector))
    {
    }

    Datum container; ///< another one, or the application
    Selector selector;

private:
    void dropReferences() override
    {
        container = Datum();
        selector = {};
    }
};

/// Makes an object on the current heap.
template <typename T, typename... Arguments> Datum make(Arguments&&... arguments)
{
    return Datum::object(new T(std::forward<Arguments>(arguments)...));
}

} // namespace caddis::applescript
