#pragma once

#include "platform/script/applescript/Objects.h"
#include "platform/script/applescript/Syntax.h"

/// Expressions that name a part of something: a property, an element, the elements that fit a condition.
namespace caddis::applescript {

/// What stands before `of`. Without a target it is part of `it`.
class Specifier : public Expression {
public:
    ExpressionPointer target;

protected:
    Datum container(Frame& frame) const;
};

/// A part that can be named by itself: a property or elements.
class NamingSpecifier : public Specifier {
public:
    Datum evaluate(Frame& frame) const override;
    Datum reference(Frame& frame) const override;
    Datum asContainer(Frame& frame) const override;

protected:
    virtual Selector selector(Frame& frame) const = 0;
    virtual Datum valueIn(Frame& frame, const Datum& container) const = 0;
};

/// name of x
class PropertyExpression final : public NamingSpecifier {
public:
    explicit PropertyExpression(Symbol itsName)
        : name(itsName)
    {
    }
    void assign(Frame& frame, const Datum& value) const override;

    Symbol name;

private:
    Selector selector(Frame&) const override { return { Selector::Form::Property, name }; }
    Datum valueIn(Frame& frame, const Datum& container) const override;
};

/// item 3 of x, words 1 thru -2 of x, every item of x
class ElementExpression final : public NamingSpecifier {
public:
    ElementExpression(Symbol itsClass, Selector::Form itsForm)
        : elementClass(itsClass)
        , form(itsForm)
    {
    }
    Datum evaluate(Frame& frame) const override;
    Datum reference(Frame& frame) const override;
    Datum asContainer(Frame& frame) const override;
    void assign(Frame& frame, const Datum& value) const override;

    Symbol elementClass;
    Selector::Form form;
    ExpressionPointer key;
    ExpressionPointer lastKey;
    Symbol keyClass = Symbol::None;
    Symbol lastKeyClass = Symbol::None;

private:
    Selector selector(Frame& frame) const override;
    Datum valueIn(Frame& frame, const Datum& container) const override;
    bool namesFileAlone(Frame& frame) const;
    Datum fileAlone(Frame& frame) const;
};

/// every file of x whose name is y
class FilterExpression final : public Specifier {
public:
    FilterExpression(std::unique_ptr<ElementExpression> itsElements, ExpressionPointer itsCondition)
        : elements(std::move(itsElements))
        , condition(std::move(itsCondition))
    {
    }
    Datum evaluate(Frame& frame) const override;

    std::unique_ptr<ElementExpression> elements;
    ExpressionPointer condition;
};

} // namespace caddis::applescript
