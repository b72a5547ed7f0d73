#pragma once

#include "CalculatorFunctions.h"
#include "CalculatorProgram.h"

#include "vdbase/VDVariant.h"

#include <deque>

class VDCalculator;

/// Runs compiled expressions. An object that is used again for the same program keeps its memory.
class CalculatorMachine
{
public:
    /// Runs the program once.
    /// @param owner   is asked for variables and functions, for a variable at most once, when it is first needed
    /// @param result  valid until the next run
    /// @return false, and `GetFailure` says why, if it can't be evaluated
    bool Run(const CalculatorProgram& program, VDCalculator& owner, CalculatorValue* result);
    const CalculatorFailure& GetFailure() const { return failure_; }
    /// Whether a value counts as true: a number unless it is 0, a text if it is "True". False for any other text than that
    /// and "False", and the failure is set.
    bool GetTruth(const CalculatorValue& value, std::size_t position, bool* truth);
    bool Fail(std::size_t position, const std::string& what);

private:
    /// The value of a variable in this run.
    struct Slot
    {
        std::uint64_t run = 0;
        CalculatorValue value;
        std::string text;
    };

    bool Do(const CalculatorStep& step, std::size_t* next);
    bool PushVariable(const CalculatorStep& step);
    bool Unary(const CalculatorStep& step);
    bool Binary(const CalculatorStep& step);
    bool Compare(const CalculatorStep& step, const CalculatorValue& left, const CalculatorValue& right, bool* result);
    bool Arithmetic(const CalculatorStep& step, double* left, double right);
    bool BitWise(const CalculatorStep& step, double* left, double right);
    bool Decide(const CalculatorStep& step, std::size_t* next);
    bool Call(const CalculatorStep& step);
    bool CallText(const CalculatorStep& step, const CalculatorFunction& function);
    bool CallUser(const CalculatorStep& step);
    bool MakeNumber(CalculatorValue* value, const CalculatorStep& step);
    /// The value of a text that was made in this run; the sum of these is bounded.
    bool MakeText(std::string text, const CalculatorStep& step, CalculatorValue* value);

    void Push(double number, CalculatorKind kind = CalculatorKind::Number) { stack_.push_back({kind, number, nullptr}); }
    void PopTo(const CalculatorValue& value, std::size_t count);
    /// The arguments of a call: the last values of the stack.
    CalculatorValue* Arguments(std::size_t count) { return stack_.data() + (stack_.size() - count); }

    const CalculatorProgram* program_ = nullptr;
    VDCalculator* owner_ = nullptr;
    std::uint64_t run_ = 0;
    std::vector<CalculatorValue> stack_;
    std::vector<Slot> slots_;
    std::deque<std::string> made_;
    std::size_t madeBytes_ = 0;
    CalculatorFailure failure_;
};
