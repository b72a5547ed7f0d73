#pragma once

#include "vdbase/VDArray.h"
#include "vdbase/VDVariant.h"

#include <memory>

/// Evaluates expressions of numbers, booleans and texts. An expression is read once, by `SetExpression`, and may then be
/// evaluated any number of times. Names and words have no case, the locale never matters, and white space of any sort parts
/// tokens.
///
/// - Values: numbers ("2.5", "1e-3", "0x1F"), "true", "false", "pi", "e", "inf", "nan", and texts in double quotes, in which
///   a quote is written `\"` or `""` and a backslash before a quote or a backslash `\\`. A variable stands between two "#"
///   signs, and its name may contain "#" inside brackets ("#chan?(#A#==1).B#").
/// - Operators, from the loosest: "? :"; "||", "or"; "&&", "and"; "not"; "==", "!="; "<", "<=", ">", ">="; "|"; "&"; "+",
///   "-"; "*", "/", "%"; the signs "-", "+", "!"; "^" (a power; from the right). What "? :", "and" and "or" don't need is
///   not evaluated. "%" has the sign of its left operand; "&" and "|" work on the bits of whole numbers; "+" also joins two
///   texts.
/// - Functions: abs, sqrt, cbrt, exp, ln and log (natural), log2, log10, sin, cos, tan, asin, acos, atan, sinh, cosh, tanh,
///   asinh, acosh, atanh, floor, ceil, round (half away from 0), rint (half to even), trunc, sign, atan2, hypot, pow, mod,
///   fmod, remainder, max, min, sum, strlen, tolower, toupper, str2dbl.
///
/// A boolean counts as 1 or 0 where a number is needed; a number is true unless it is 0, and the texts "True" and "False"
/// are what they say. A text beside a number or a boolean in a comparison is read as such; if it can't be, the two are
/// unequal, and neither comes first.
///
/// Variables and further functions are those of a derived class; the plain class has none. An operation that fails records
/// why and at which position of the expression, from 1: -65631 for an expression that can't be read, -65632 for one that
/// can't be evaluated, on top of what a variable or function of the derived class recorded in that evaluation. Nesting is
/// bounded by the length alone: an expression may be at most `MaxExpression` bytes long. One thread uses an object at a
/// time.
class VDBASE_API VDCalculator
{
public:
    static constexpr int MaxExpression = 65536;

    VDCalculator();
    virtual ~VDCalculator();
    VDCalculator(const VDCalculator&) = delete;
    VDCalculator& operator=(const VDCalculator&) = delete;

    /// @name What a derived class overrides
    /// Whatever they throw counts as a failure. They may use the object themselves.
    /// @{

    /// Gives the value of a variable. An evaluation asks for it once, and only if it needs it.
    /// @param name   with its two "#" signs
    /// @param value  null on entry; left null, the variable has no value and the evaluation fails
    virtual void GetVariableByName(const char* name, VDVariant& value);
    /// The same for a variable for which `IsVariableNameValid` gave an index.
    virtual void GetVariableByIndex(int index, VDVariant& value);
    /// Whether a name may stand in an expression; asked by `SetExpression`. Unless overridden, any name of a derived class.
    /// @param index  -1 on entry. An index of 0 or above has the value fetched by `GetVariableByIndex`, else by name.
    virtual bool IsVariableNameValid(const char* name, int* index);
    /// Evaluates a function that the calculator doesn't know.
    /// @return false if it fails or isn't known here either
    virtual bool ExecuteUserFunction(const VDString& name, VDArray<VDVariant> arguments, VDVariant* result);
    /// Whether `ExecuteUserFunction` knows a name; asked by `SetExpression`. Unless overridden, true in a derived class,
    /// whose unknown functions then fail when they are evaluated.
    virtual bool IsFunctionNameValid(const char* name);
    /// @}

    /// Sets the expression for the evaluations that follow. False if it can't be read; none is set then.
    bool SetExpression(const char* expression);
    /// Evaluates the expression that is set to a number. False, and `value` untouched, if that fails or the result is a
    /// text.
    bool EvaluateToDouble(double* value);
    /// `SetExpression` and `EvaluateToDouble`.
    bool EvaluateToDouble(const char* expression, double* value);
    /// Evaluates the expression that is set to a boolean. False, and `value` untouched, if that fails.
    bool EvaluateExpressionToBoolean(bool* value);

    /// A text as it stands in an expression: in quotes, with those inside it marked.
    static VDString Quoted(const char* text);

private:
    struct Compiled;
    template <class Take>
    bool Evaluate(const char* routine, Take take);

    std::shared_ptr<Compiled> compiled_;
};
