#include "CalculatorMachine.h"

#include "AsciiText.h"

#include "vdbase/VDCalculator.h"
#include "vdbase/VFNumber.h"

#include <algorithm>
#include <cmath>

namespace {

using Kind = CalculatorKind;
using Op = CalculatorOp;

// Values of variables may be long, and a few operators could join very many of them.
constexpr std::size_t VVMostMadeBytes = std::size_t{16} << 20;

/// Takes a value that a derived calculator gave. False if it is none.
bool Convert(const VDVariant& variant, CalculatorValue* value, std::string* text)
{
    bool truth = false;
    VDString bytes;
    *value = {};
    if (variant.GetBoolean(&truth)) {
        *value = {Kind::Boolean, truth ? 1.0 : 0.0, nullptr};
    } else if (variant.GetString(&bytes)) {
        *text = bytes.Str();
        *value = {Kind::Text, 0, text};
    } else {
        return variant.ConvertToDouble(&value->number);
    }
    return true;
}

VDVariant ToVariant(const CalculatorValue& value)
{
    if (value.kind == Kind::Text)
        return VDVariant(VDString(*value.text));
    return value.kind == Kind::Boolean ? VDVariant(value.number != 0) : VDVariant(value.number);
}

template <class T>
bool IsOrdered(Op op, const T& left, const T& right)
{
    switch (op) {
    case Op::Less:
        return left < right;
    case Op::LessEqual:
        return left <= right;
    case Op::Greater:
        return left > right;
    case Op::GreaterEqual:
        return left >= right;
    case Op::NotEqual:
        return left != right;
    default:
        return left == right;
    }
}

/// A text beside a number or a boolean, as such.
bool ReadBeside(const CalculatorValue& text, const CalculatorValue& other, double* number)
{
    bool truth = false;
    if (other.kind == Kind::Number)
        return VFAscToNum(text.text->c_str(), number);
    if (!VFAscToBoolean(text.text->c_str(), &truth))
        return false;
    *number = truth ? 1 : 0;
    return true;
}

/// Whether a number is a whole one that a double holds exactly.
bool IsWhole(double number)
{
    return std::abs(number) <= 0x1p53 && number == std::trunc(number);
}

}  // namespace

bool CalculatorMachine::Fail(std::size_t position, const std::string& what)
{
    failure_ = {position, what};
    return false;
}

bool CalculatorMachine::Run(const CalculatorProgram& program, VDCalculator& owner, CalculatorValue* result)
{
    if (program_ != &program) {
        slots_.clear();
        slots_.resize(program.variables.size());
        program_ = &program;
    }
    owner_ = &owner;
    ++run_;
    stack_.clear();
    made_.clear();
    madeBytes_ = 0;
    for (std::size_t next = 0; next < program.steps.size();)
        if (!Do(program.steps[next], &next))
            return false;
    *result = stack_.back();
    return true;
}

bool CalculatorMachine::Do(const CalculatorStep& step, std::size_t* next)
{
    ++*next;
    switch (step.op) {
    case Op::Number:
        Push(program_->numbers[step.index]);
        return true;
    case Op::Boolean:
        Push(step.index, Kind::Boolean);
        return true;
    case Op::Text:
        stack_.push_back({Kind::Text, 0, &program_->texts[step.index]});
        return true;
    case Op::Variable:
        return PushVariable(step);
    case Op::Plus:
    case Op::Negate:
    case Op::Not:
    case Op::Truth:
        return Unary(step);
    case Op::And:
    case Op::Or:
    case Op::JumpIfFalse:
        return Decide(step, next);
    case Op::Jump:
        *next = step.index;
        return true;
    case Op::Call:
        return Call(step);
    case Op::UserCall:
        return CallUser(step);
    default:
        return Binary(step);
    }
}

bool CalculatorMachine::PushVariable(const CalculatorStep& step)
{
    Slot& slot = slots_[step.index];
    if (slot.run != run_) {
        const CalculatorVariable& variable = program_->variables[step.index];
        VDVariant value;
        try {
            if (variable.index >= 0)
                owner_->GetVariableByIndex(variable.index, value);
            else
                owner_->GetVariableByName(variable.name.c_str(), value);
        } catch (...) {
            value.Clear();
        }
        if (!Convert(value, &slot.value, &slot.text))
            return Fail(step.position, "the variable " + VFCalculatorQuoted(variable.name) + " has no value");
        slot.run = run_;
    }
    stack_.push_back(slot.value);
    return true;
}

bool CalculatorMachine::MakeNumber(CalculatorValue* value, const CalculatorStep& step)
{
    if (value->kind == Kind::Text)
        return Fail(step.position, "the text " + VFCalculatorQuoted(*value->text) + " stands where a number is needed");
    value->kind = Kind::Number;
    return true;
}

bool CalculatorMachine::GetTruth(const CalculatorValue& value, std::size_t position, bool* truth)
{
    if (value.kind != Kind::Text)
        *truth = value.number != 0;
    else if (!VFAscToBoolean(value.text->c_str(), truth))
        return Fail(position, "the text " + VFCalculatorQuoted(*value.text) + " is neither true nor false");
    return true;
}

bool CalculatorMachine::Unary(const CalculatorStep& step)
{
    CalculatorValue& value = stack_.back();
    if (step.op == Op::Plus || step.op == Op::Negate) {
        if (!MakeNumber(&value, step))
            return false;
        value.number = step.op == Op::Negate ? -value.number : value.number;
        return true;
    }
    bool truth = false;
    if (!GetTruth(value, step.position, &truth))
        return false;
    value = {Kind::Boolean, truth == (step.op == Op::Truth) ? 1.0 : 0.0, nullptr};
    return true;
}

bool CalculatorMachine::Decide(const CalculatorStep& step, std::size_t* next)
{
    bool truth = false;
    if (!GetTruth(stack_.back(), step.position, &truth))
        return false;
    const bool jumps = truth == (step.op == Op::Or);
    if (jumps)
        *next = step.index;
    if (jumps && step.op != Op::JumpIfFalse)
        stack_.back() = {Kind::Boolean, truth ? 1.0 : 0.0, nullptr};
    else
        stack_.pop_back();
    return true;
}

bool CalculatorMachine::Binary(const CalculatorStep& step)
{
    CalculatorValue right = stack_.back();
    stack_.pop_back();
    CalculatorValue& left = stack_.back();
    if (step.op >= Op::Less && step.op <= Op::NotEqual) {
        bool result = false;
        if (!Compare(step, left, right, &result))
            return false;
        left = {Kind::Boolean, result ? 1.0 : 0.0, nullptr};
        return true;
    }
    if (step.op == Op::Add && left.kind == Kind::Text && right.kind == Kind::Text)
        return MakeText(*left.text + *right.text, step, &left);
    return MakeNumber(&left, step) && MakeNumber(&right, step) && Arithmetic(step, &left.number, right.number);
}

bool CalculatorMachine::Compare(const CalculatorStep& step, const CalculatorValue& left, const CalculatorValue& right,
                                bool* result)
{
    const bool leftIsText = left.kind == Kind::Text;
    const bool rightIsText = right.kind == Kind::Text;
    double leftNumber = left.number;
    double rightNumber = right.number;
    if (leftIsText && rightIsText) {
        *result = IsOrdered(step.op, *left.text, *right.text);
    } else if ((leftIsText && !ReadBeside(left, right, &leftNumber)) ||
               (rightIsText && !ReadBeside(right, left, &rightNumber))) {
        if (step.op != Op::Equal && step.op != Op::NotEqual)
            return Fail(step.position, "the text " + VFCalculatorQuoted(*(leftIsText ? left : right).text) +
                                           " can't be compared with a number");
        *result = step.op == Op::NotEqual;
    } else {
        *result = IsOrdered(step.op, leftNumber, rightNumber);
    }
    return true;
}

bool CalculatorMachine::Arithmetic(const CalculatorStep& step, double* left, double right)
{
    switch (step.op) {
    case Op::Add:
        *left += right;
        return true;
    case Op::Subtract:
        *left -= right;
        return true;
    case Op::Multiply:
        *left *= right;
        return true;
    case Op::Divide:
        *left /= right;
        return true;
    case Op::Modulo:
        *left = std::fmod(*left, right);
        return true;
    case Op::Power:
        *left = std::pow(*left, right);
        return true;
    default:
        return BitWise(step, left, right);
    }
}

bool CalculatorMachine::BitWise(const CalculatorStep& step, double* left, double right)
{
    if (!IsWhole(*left) || !IsWhole(right))
        return Fail(step.position, "the bits of a number that is not whole or too large");
    const auto leftBits = static_cast<std::int64_t>(*left);
    const auto rightBits = static_cast<std::int64_t>(right);
    *left = static_cast<double>(step.op == Op::BitAnd ? leftBits & rightBits : leftBits | rightBits);
    return true;
}

bool CalculatorMachine::MakeText(std::string text, const CalculatorStep& step, CalculatorValue* value)
{
    madeBytes_ += text.size();
    if (madeBytes_ > VVMostMadeBytes)
        return Fail(step.position, "the texts become too long");
    *value = {Kind::Text, 0, &made_.emplace_back(std::move(text))};
    return true;
}

void CalculatorMachine::PopTo(const CalculatorValue& value, std::size_t count)
{
    stack_.resize(stack_.size() - count);
    stack_.push_back(value);
}

bool CalculatorMachine::Call(const CalculatorStep& step)
{
    const CalculatorFunction& function = *program_->functions[step.index];
    CalculatorValue* const arguments = Arguments(step.count);
    if (function.numeric == nullptr)
        return CallText(step, function);
    for (std::size_t at = 0; at < step.count; ++at)
        if (!MakeNumber(arguments + at, step))
            return false;
    PopTo({Kind::Number, function.numeric(arguments, step.count), nullptr}, step.count);
    return true;
}

bool CalculatorMachine::CallText(const CalculatorStep& step, const CalculatorFunction& function)
{
    using Work = CalculatorFunction::TextWork;
    CalculatorValue& value = stack_.back();
    if (value.kind != Kind::Text)
        return Fail(step.position, VFCalculatorQuoted(function.name) + " needs a text");
    std::string text = *value.text;
    switch (function.textWork) {
    case Work::Length:
        value = {Kind::Number, static_cast<double>(text.size()), nullptr};
        return true;
    case Work::ToNumber:
        value = {};
        return VFAscToNum(text.c_str(), &value.number) ||
               Fail(step.position, "the text " + VFCalculatorQuoted(text) + " is no number");
    case Work::Lower:
        std::transform(text.begin(), text.end(), text.begin(), VFAsciiLower);
        break;
    default:
        std::transform(text.begin(), text.end(), text.begin(), VFAsciiUpper);
        break;
    }
    return MakeText(std::move(text), step, &value);
}

bool CalculatorMachine::CallUser(const CalculatorStep& step)
{
    const std::string& name = program_->userFunctions[step.index];
    VDArray<VDVariant> arguments;
    arguments.Reserve(static_cast<int>(step.count));
    for (std::size_t at = 0; at < step.count; ++at)
        arguments.AppendItem(ToVariant(Arguments(step.count)[at]));
    VDVariant answer;
    CalculatorValue value;
    std::string text;
    bool done = false;
    try {
        done = owner_->ExecuteUserFunction(VDString(name), std::move(arguments), &answer);
    } catch (...) {
        // A function that throws has failed.
    }
    if (!done || !Convert(answer, &value, &text))
        return Fail(step.position, "the function " + VFCalculatorQuoted(name) + " has failed");
    if (value.kind == Kind::Text && !MakeText(std::move(text), step, &value))
        return false;
    PopTo(value, step.count);
    return true;
}
