#include "vdbase/VDCalculator.h"

#include "CalculatorCompiler.h"
#include "CalculatorMachine.h"

#include "vdbase/VDBaseErrorCodes.h"
#include "vdbase/VFError.h"

#include <cstring>
#include <typeinfo>
#include <utility>

/// A compiled expression, and the machine that ran it last.
struct VDCalculator::Compiled
{
    CalculatorProgram program;
    CalculatorMachine machine;
    bool isRunning = false;
};

namespace {

bool Report(int code, const char* routine, const CalculatorFailure& failure, bool chain)
{
    const char* const verb = code == VDBaseError::ExpressionText ? "read" : "evaluated";
    VDString text;
    text.Format("The expression can't be %s at position %zu: ", verb, failure.position);
    VFErrorSet(code, text + failure.what.c_str(), routine, chain ? 1 : 0);
    return false;
}

bool ReportNoMemory(const char* routine)
{
    VFErrorSet(VDBaseError::ExpressionValue, "Out of memory", routine, 0);
    return false;
}

}  // namespace

VDCalculator::VDCalculator() = default;

VDCalculator::~VDCalculator() = default;

void VDCalculator::GetVariableByName(const char*, VDVariant&) {}

void VDCalculator::GetVariableByIndex(int, VDVariant&) {}

bool VDCalculator::IsVariableNameValid(const char* name, int*)
{
    return name != nullptr && std::strlen(name) > 2 && typeid(*this) != typeid(VDCalculator);
}

bool VDCalculator::ExecuteUserFunction(const VDString&, VDArray<VDVariant>, VDVariant*)
{
    return false;
}

bool VDCalculator::IsFunctionNameValid(const char*)
{
    return typeid(*this) != typeid(VDCalculator);
}

bool VDCalculator::SetExpression(const char* expression)
{
    const char* const routine = "VDCalculator::SetExpression";
    try {
        compiled_.reset();
        const std::size_t length = expression == nullptr ? 0 : strnlen(expression, MaxExpression + 1);
        if (length > MaxExpression)
            return Report(VDBaseError::ExpressionText, routine,
                          {length, "it is longer than " + std::to_string(MaxExpression) + " characters"}, false);
        CalculatorCompiler compiler(*this, {expression, length});
        if (!compiler.Compile())
            return Report(VDBaseError::ExpressionText, routine, compiler.GetFailure(), false);
        compiled_ = std::make_shared<Compiled>();
        compiled_->program = compiler.TakeProgram();
        return true;
    } catch (const std::exception&) {
        return ReportNoMemory(routine);
    }
}

// Runs the expression that is set and takes its value with `take(machine, value)`.
template <class Take>
bool VDCalculator::Evaluate(const char* routine, Take take)
{
    // A variable or function may use this very object, so the program stays alive, and a second run gets its own machine.
    const std::shared_ptr<Compiled> compiled = compiled_;
    if (compiled == nullptr)
        return Report(VDBaseError::ExpressionValue, routine, {1, "no expression is set"}, false);
    const bool asksOwner = compiled->program.AsksOwner();
    if (asksOwner)
        VFErrorClear();
    const auto run = [&](CalculatorMachine& machine) {
        CalculatorValue value;
        return (machine.Run(compiled->program, *this, &value) && take(machine, value)) ||
               Report(VDBaseError::ExpressionValue, routine, machine.GetFailure(), asksOwner);
    };
    const bool isOutermost = !std::exchange(compiled->isRunning, true);
    bool done = false;
    try {
        if (isOutermost) {
            done = run(compiled->machine);
        } else {
            CalculatorMachine machine;
            done = run(machine);
        }
    } catch (const std::exception&) {
        ReportNoMemory(routine);
    }
    compiled->isRunning = !isOutermost;
    return done;
}

bool VDCalculator::EvaluateToDouble(double* value)
{
    return Evaluate("VDCalculator::EvaluateToDouble", [&](CalculatorMachine& machine, const CalculatorValue& result) {
        if (result.kind == CalculatorKind::Text)
            return machine.Fail(1, "the result is the text " + VFCalculatorQuoted(*result.text) + ", not a number");
        *value = result.number;
        return true;
    });
}

bool VDCalculator::EvaluateToDouble(const char* expression, double* value)
{
    return SetExpression(expression) && EvaluateToDouble(value);
}

bool VDCalculator::EvaluateExpressionToBoolean(bool* value)
{
    return Evaluate(
        "VDCalculator::EvaluateExpressionToBoolean",
        [&](CalculatorMachine& machine, const CalculatorValue& result) { return machine.GetTruth(result, 1, value); });
}

VDString VDCalculator::Quoted(const char* text)
{
    const std::string_view bytes = text == nullptr ? std::string_view() : std::string_view(text);
    std::string quoted = "\"";
    for (std::size_t place = 0; place < bytes.size(); ++place) {
        const char following = place + 1 < bytes.size() ? bytes[place + 1] : '"';
        if (bytes[place] == '"' || (bytes[place] == '\\' && (following == '"' || following == '\\')))
            quoted += '\\';
        quoted += bytes[place];
    }
    return VDString(quoted + '"');
}
