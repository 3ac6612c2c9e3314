#include "platform/script/applescript/Coercions.h"

namespace caddis::applescript {

namespace {

enum class Dimension { Length, Area, Volume, Liquid, Mass, Temperature };

// value in the dimension's base unit = value * factor + offset. Base units: metre, square metre, cubic metre,
// litre, kilogram, kelvin.
struct UnitRow {
    Symbol name;
    Dimension dimension;
    double factor;
    double offset = 0;
};

constexpr double Inch = 0.0254;
constexpr double Foot = 0.3048;
constexpr double Yard = 0.9144;
constexpr double Mile = 1609.344;
constexpr double Gallon = 3.785411784;
constexpr double Pound = 0.45359237;

constexpr UnitRow rows[] = {
    { Symbol::Inches, Dimension::Length, Inch },
    { Symbol::Feet, Dimension::Length, Foot },
    { Symbol::Yards, Dimension::Length, Yard },
    { Symbol::Miles, Dimension::Length, Mile },
    { Symbol::Meters, Dimension::Length, 1 },
    { Symbol::Centimeters, Dimension::Length, 0.01 },
    { Symbol::Kilometers, Dimension::Length, 1000 },
    { Symbol::SquareFeet, Dimension::Area, Foot* Foot },
    { Symbol::SquareYards, Dimension::Area, Yard* Yard },
    { Symbol::SquareMiles, Dimension::Area, Mile* Mile },
    { Symbol::SquareMeters, Dimension::Area, 1 },
    { Symbol::SquareKilometers, Dimension::Area, 1e6 },
    { Symbol::CubicCentimeters, Dimension::Volume, 1e-6 },
    { Symbol::CubicFeet, Dimension::Volume, Foot* Foot* Foot },
    { Symbol::CubicInches, Dimension::Volume, Inch* Inch* Inch },
    { Symbol::CubicMeters, Dimension::Volume, 1 },
    { Symbol::CubicYards, Dimension::Volume, Yard* Yard* Yard },
    { Symbol::Liters, Dimension::Liquid, 1 },
    { Symbol::Gallons, Dimension::Liquid, Gallon },
    { Symbol::Quarts, Dimension::Liquid, Gallon / 4 },
    { Symbol::Grams, Dimension::Mass, 0.001 },
    { Symbol::Kilograms, Dimension::Mass, 1 },
    { Symbol::Ounces, Dimension::Mass, Pound / 16 },
    { Symbol::Pounds, Dimension::Mass, Pound },
    { Symbol::DegreesCelsius, Dimension::Temperature, 1, 273.15 },
    { Symbol::DegreesFahrenheit, Dimension::Temperature, 5.0 / 9, 273.15 - 32 * 5.0 / 9 },
    { Symbol::DegreesKelvin, Dimension::Temperature, 1 },
};

const UnitRow* rowOf(Symbol name)
{
    for (const UnitRow& row : rows) {
        if (row.name == name)
            return &row;
    }
    return nullptr;
}

} // namespace

bool isUnit(Symbol name) { return rowOf(name) != nullptr; }

std::optional<Datum> convertUnit(const UnitObject& value, Symbol unit)
{
    const UnitRow* from = rowOf(value.unit);
    const UnitRow* to = rowOf(unit);
    if (!from || !to || from->dimension != to->dimension)
        return std::nullopt;
    return make<UnitObject>(unit, (value.value * from->factor + from->offset - to->offset) / to->factor);
}

} // namespace caddis::applescript
