#pragma once

#include "CalculatorFunctions.h"
#include "CalculatorTokens.h"

#include <unordered_map>
#include <vector>

class VDCalculator;

/// Compiles an expression: operators wait on a stack of our own until their right operand is complete, which bounds nesting
/// by memory in proportion to the text. Each token is looked at once.
class CalculatorCompiler
{
public:
    /// @param names  says which variables and functions there are
    CalculatorCompiler(VDCalculator& names, std::string_view expression) : names_(names), tokens_(expression) {}

    /// False, and `GetFailure` says why, if the expression can't be read.
    bool Compile();
    CalculatorProgram TakeProgram() { return std::move(program_); }
    const CalculatorFailure& GetFailure() const { return failure_; }

private:
    enum class Wait { Operator, Bracket, Call, Question, Colon };

    /// What waits for its end: an operator for its right operand, a bracket for its partner.
    struct Pending
    {
        Wait wait;
        int precedence;
        CalculatorStep step;
        std::uint32_t jump;  ///< the step whose target is the end; 0 for none, as the first step of all is a value
        const CalculatorFunction* function;
    };

    bool TakeOperand();
    bool TakeName();
    bool TakeCall();
    bool TakeVariable();
    bool TakePrefix();
    bool TakeOperator();
    bool TakeBinary();
    bool TakeQuestion();
    bool TakeColon();
    bool TakeComma();
    bool TakeClosing();
    bool TakeEnd();

    /// Ends the operators that bind tighter than the precedence.
    void Reduce(int precedence, bool alsoEqual);
    /// Ends all operators down to the next bracket or question mark. False if that waits for something else.
    bool ReduceToOpening();
    void End(const Pending& operation);
    bool EndCall(const Pending& call);
    std::uint32_t Emit(CalculatorOp op, std::size_t index = 0, std::uint32_t count = 0);
    std::uint32_t Here() const { return static_cast<std::uint32_t>(program_.steps.size()); }
    Pending Waiting(Wait wait, int precedence, CalculatorOp op, std::uint32_t jump = 0) const;
    bool Fail(const std::string& what) { return FailAt(token_.position, what); }
    bool FailAt(std::size_t position, const std::string& what);
    std::string Spelling() const;

    VDCalculator& names_;
    CalculatorTokens tokens_;
    CalculatorToken token_;
    CalculatorProgram program_;
    CalculatorFailure failure_;
    std::vector<Pending> pending_;
    std::unordered_map<std::string_view, std::uint32_t> variables_;  // of the program, by the names in the expression
    bool needsOperand_ = true;
};
