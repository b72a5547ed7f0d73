#pragma once

#include "vdbase/VDArray.h"
#include "vdbase/VDVariant.h"

#include <memory>

/// Evaluates expressions of numbers, booleans ("true", "false") and texts in double quotes, with the usual operators,
/// comparisons and mathematical functions. A variable stands between two "#" signs, and its name may contain "#" inside
/// brackets ("#chan?(#A#==1).B#"). Names are resolved through the virtual operations, which a derived class overrides. The
/// plain class has no variables. An expression may be at most `MaxExpression` bytes long. One thread uses an object at a
/// time.
class VDBASE_API VDCalculator
{
public:
    static constexpr int MaxExpression = 65536;

    VDCalculator();
    virtual ~VDCalculator();
    VDCalculator(const VDCalculator&) = delete;
    VDCalculator& operator=(const VDCalculator&) = delete;

    /// Gives the value of a variable.
    /// @param name   with its two "#" signs
    /// @param value  null on entry; left null, the variable has no value and the evaluation fails
    virtual void GetVariableByName(const char* name, VDVariant& value);
    /// The same for a variable for which `IsVariableNameValid` gave an index.
    virtual void GetVariableByIndex(int index, VDVariant& value);
    /// Whether a name may stand in an expression.
    /// @param index  -1 on entry. An index of 0 or above has the value fetched by `GetVariableByIndex`, else by name.
    virtual bool IsVariableNameValid(const char* name, int* index);
    /// Evaluates a function that the calculator doesn't know.
    /// @return false if it isn't known here either
    virtual bool ExecuteUserFunction(const VDString& name, VDArray<VDVariant> arguments, VDVariant* result);

    /// Sets the expression for the evaluations that follow. False if it can't be read.
    bool SetExpression(const char* expression);
    /// Sets the expression and evaluates it to a number; a boolean counts as 1 or 0. False, and `value` untouched, if that
    /// fails.
    bool EvaluateToDouble(const char* expression, double* value);
    /// Evaluates the expression that is set to a boolean: a number is true unless it is 0, a text is "True" or "False"
    /// without regard to case. False, and `value` untouched, if that fails.
    bool EvaluateExpressionToBoolean(bool* value);

private:
    class Engine;
    std::unique_ptr<Engine> engine_;
};
