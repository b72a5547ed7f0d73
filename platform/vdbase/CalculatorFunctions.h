#pragma once

#include <cstdint>
#include <string>
#include <string_view>

enum class CalculatorKind : std::uint8_t { Number, Boolean, Text };

/// A value on the machine's stack.
struct CalculatorValue
{
    CalculatorKind kind = CalculatorKind::Number;
    double number = 0;                  ///< 1 or 0 of a boolean
    const std::string* text = nullptr;  ///< not owned
};

/// What the calculator knows by name. Names have no case.
struct CalculatorFunction
{
    using Numeric = double (*)(const CalculatorValue* arguments, std::size_t count);
    enum class TextWork : std::uint8_t { None, Length, Lower, Upper, ToNumber };

    std::string_view name;
    std::uint32_t least;  ///< how many arguments it takes
    std::uint32_t most;
    Numeric numeric;  ///< of a function of numbers; all arguments have been made numbers
    TextWork textWork = TextWork::None;
};

struct CalculatorConstant
{
    std::string_view name;
    CalculatorKind kind;
    double number;
};

/// Null for a name that is unknown.
const CalculatorFunction* VFFindCalculatorFunction(std::string_view name);
const CalculatorConstant* VFFindCalculatorConstant(std::string_view name);
