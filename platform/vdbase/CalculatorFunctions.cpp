#include "CalculatorFunctions.h"

#include "AsciiText.h"

#include <array>
#include <cmath>
#include <limits>
#include <numbers>

namespace {

using Value = CalculatorValue;
using TextWork = CalculatorFunction::TextWork;

constexpr auto VVAnyCount = std::numeric_limits<std::uint32_t>::max();

template <double (*Function)(double)>
double Of(const Value* arguments, std::size_t)
{
    return Function(arguments[0].number);
}

template <double (*Function)(double, double)>
double OfTwo(const Value* arguments, std::size_t)
{
    return Function(arguments[0].number, arguments[1].number);
}

/// What `better` chooses among the arguments; a NaN among them is the result.
template <class Better>
double Choose(const Value* arguments, std::size_t count, Better better)
{
    double chosen = arguments[0].number;
    for (std::size_t at = 1; at < count; ++at)
        if (better(arguments[at].number, chosen) || std::isnan(arguments[at].number))
            chosen = arguments[at].number;
    return chosen;
}

double Max(const Value* arguments, std::size_t count)
{
    return Choose(arguments, count, [](double left, double right) { return left > right; });
}

double Min(const Value* arguments, std::size_t count)
{
    return Choose(arguments, count, [](double left, double right) { return left < right; });
}

double Sum(const Value* arguments, std::size_t count)
{
    double sum = 0;
    for (std::size_t at = 0; at < count; ++at)
        sum += arguments[at].number;
    return sum;
}

double Sign(double value)
{
    return value > 0 ? 1 : value < 0 ? -1 : value;
}

constexpr CalculatorFunction One(std::string_view name, CalculatorFunction::Numeric function)
{
    return {name, 1, 1, function};
}

constexpr CalculatorFunction Two(std::string_view name, CalculatorFunction::Numeric function)
{
    return {name, 2, 2, function};
}

constexpr CalculatorFunction Many(std::string_view name, CalculatorFunction::Numeric function)
{
    return {name, 1, VVAnyCount, function};
}

constexpr CalculatorFunction OfText(std::string_view name, TextWork work)
{
    return {name, 1, 1, nullptr, work};
}

constexpr std::array VVFunctions = {
    One("abs", Of<std::fabs>),
    One("sqrt", Of<std::sqrt>),
    One("cbrt", Of<std::cbrt>),
    One("exp", Of<std::exp>),
    One("ln", Of<std::log>),
    One("log", Of<std::log>),
    One("log2", Of<std::log2>),
    One("log10", Of<std::log10>),
    One("sin", Of<std::sin>),
    One("cos", Of<std::cos>),
    One("tan", Of<std::tan>),
    One("asin", Of<std::asin>),
    One("acos", Of<std::acos>),
    One("atan", Of<std::atan>),
    One("sinh", Of<std::sinh>),
    One("cosh", Of<std::cosh>),
    One("tanh", Of<std::tanh>),
    One("asinh", Of<std::asinh>),
    One("acosh", Of<std::acosh>),
    One("atanh", Of<std::atanh>),
    One("floor", Of<std::floor>),
    One("ceil", Of<std::ceil>),
    One("round", Of<std::round>),
    One("rint", Of<std::rint>),
    One("trunc", Of<std::trunc>),
    One("sign", Of<Sign>),
    Two("atan2", OfTwo<std::atan2>),
    Two("hypot", OfTwo<std::hypot>),
    Two("pow", OfTwo<std::pow>),
    Two("mod", OfTwo<std::fmod>),
    Two("fmod", OfTwo<std::fmod>),
    Two("remainder", OfTwo<std::remainder>),
    Many("max", Max),
    Many("min", Min),
    Many("sum", Sum),
    OfText("strlen", TextWork::Length),
    OfText("tolower", TextWork::Lower),
    OfText("toupper", TextWork::Upper),
    OfText("str2dbl", TextWork::ToNumber),
};

constexpr std::array<CalculatorConstant, 6> VVConstants = {{
    {"true", CalculatorKind::Boolean, 1},
    {"false", CalculatorKind::Boolean, 0},
    {"pi", CalculatorKind::Number, std::numbers::pi},
    {"e", CalculatorKind::Number, std::numbers::e},
    {"inf", CalculatorKind::Number, std::numeric_limits<double>::infinity()},
    {"nan", CalculatorKind::Number, std::numeric_limits<double>::quiet_NaN()},
}};

template <class Table>
auto FindRow(const Table& table, std::string_view name) -> decltype(table.data())
{
    for (const auto& row : table)
        if (VFCompareNoCase(row.name, name) == 0)
            return &row;
    return nullptr;
}

}  // namespace

const CalculatorFunction* VFFindCalculatorFunction(std::string_view name)
{
    return FindRow(VVFunctions, name);
}

const CalculatorConstant* VFFindCalculatorConstant(std::string_view name)
{
    return FindRow(VVConstants, name);
}
