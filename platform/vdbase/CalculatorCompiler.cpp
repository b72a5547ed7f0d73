#include "CalculatorCompiler.h"

#include "AsciiText.h"

#include "vdbase/VDCalculator.h"

#include <array>

namespace {

enum Precedence : int {
    PrecedenceOpening,
    PrecedenceChoice,
    PrecedenceOr,
    PrecedenceAnd,
    PrecedenceNotWord,
    PrecedenceEquality,
    PrecedenceOrder,
    PrecedenceBitOr,
    PrecedenceBitAnd,
    PrecedenceSum,
    PrecedenceProduct,
    PrecedenceSign,
    PrecedencePower,
};

struct Operator
{
    std::string_view spelling;
    Precedence precedence;
    CalculatorOp op;
};

constexpr std::array<Operator, 4> VVPrefixes = {{{"-", PrecedenceSign, CalculatorOp::Negate},
                                                 {"+", PrecedenceSign, CalculatorOp::Plus},
                                                 {"!", PrecedenceSign, CalculatorOp::Not},
                                                 {"not", PrecedenceNotWord, CalculatorOp::Not}}};

constexpr std::array<Operator, 18> VVBinaries = {{{"+", PrecedenceSum, CalculatorOp::Add},
                                                  {"-", PrecedenceSum, CalculatorOp::Subtract},
                                                  {"*", PrecedenceProduct, CalculatorOp::Multiply},
                                                  {"/", PrecedenceProduct, CalculatorOp::Divide},
                                                  {"%", PrecedenceProduct, CalculatorOp::Modulo},
                                                  {"^", PrecedencePower, CalculatorOp::Power},
                                                  {"==", PrecedenceEquality, CalculatorOp::Equal},
                                                  {"!=", PrecedenceEquality, CalculatorOp::NotEqual},
                                                  {"<", PrecedenceOrder, CalculatorOp::Less},
                                                  {">", PrecedenceOrder, CalculatorOp::Greater},
                                                  {"<=", PrecedenceOrder, CalculatorOp::LessEqual},
                                                  {">=", PrecedenceOrder, CalculatorOp::GreaterEqual},
                                                  {"&&", PrecedenceAnd, CalculatorOp::And},
                                                  {"and", PrecedenceAnd, CalculatorOp::And},
                                                  {"||", PrecedenceOr, CalculatorOp::Or},
                                                  {"or", PrecedenceOr, CalculatorOp::Or},
                                                  {"&", PrecedenceBitAnd, CalculatorOp::BitAnd},
                                                  {"|", PrecedenceBitOr, CalculatorOp::BitOr}}};

template <class Table>
const Operator* FindOperator(const Table& table, const CalculatorToken& token)
{
    if (token.kind != CalculatorTokenKind::Symbol && token.kind != CalculatorTokenKind::Name)
        return nullptr;
    for (const Operator& each : table)
        if (VFCompareNoCase(each.spelling, token.spelling) == 0)
            return &each;
    return nullptr;
}

bool IsSymbol(const CalculatorToken& token, std::string_view symbol)
{
    return token.kind == CalculatorTokenKind::Symbol && token.spelling == symbol;
}

/// What a derived calculator says about a name; one that throws doesn't know it.
template <class Ask>
bool IsKnown(Ask ask)
{
    try {
        return ask();
    } catch (...) {
        return false;
    }
}

}  // namespace

bool CalculatorCompiler::FailAt(std::size_t position, const std::string& what)
{
    failure_ = {position, what};
    return false;
}

std::string CalculatorCompiler::Spelling() const
{
    return token_.kind == CalculatorTokenKind::End ? "the end" : VFCalculatorQuoted(token_.spelling);
}

std::uint32_t CalculatorCompiler::Emit(CalculatorOp op, std::size_t index, std::uint32_t count)
{
    program_.steps.push_back({op, static_cast<std::uint32_t>(token_.position), static_cast<std::uint32_t>(index), count});
    return Here() - 1;
}

CalculatorCompiler::Pending CalculatorCompiler::Waiting(Wait wait, int precedence, CalculatorOp op, std::uint32_t jump) const
{
    return {wait, precedence, {op, static_cast<std::uint32_t>(token_.position)}, jump, nullptr};
}

bool CalculatorCompiler::Compile()
{
    do {
        if (!tokens_.Next(&token_, &failure_) || !(needsOperand_ ? TakeOperand() : TakeOperator()))
            return false;
    } while (token_.kind != CalculatorTokenKind::End);
    return true;
}

bool CalculatorCompiler::TakeOperand()
{
    if (FindOperator(VVPrefixes, token_) != nullptr)
        return TakePrefix();
    needsOperand_ = false;
    switch (token_.kind) {
    case CalculatorTokenKind::Number:
        Emit(CalculatorOp::Number, program_.numbers.size());
        program_.numbers.push_back(token_.number);
        return true;
    case CalculatorTokenKind::Text:
        Emit(CalculatorOp::Text, program_.texts.size());
        program_.texts.push_back(token_.text);
        return true;
    case CalculatorTokenKind::Variable:
        return TakeVariable();
    case CalculatorTokenKind::Name:
        return TakeName();
    default:
        break;
    }
    if (IsSymbol(token_, "(")) {
        needsOperand_ = true;
        pending_.push_back(Waiting(Wait::Bracket, PrecedenceOpening, CalculatorOp::Jump));
        return true;
    }
    if (token_.kind == CalculatorTokenKind::End && program_.steps.empty() && pending_.empty())
        return Fail("it is empty");
    return Fail("a value is missing before " + Spelling());
}

bool CalculatorCompiler::TakePrefix()
{
    const Operator& found = *FindOperator(VVPrefixes, token_);
    pending_.push_back(Waiting(Wait::Operator, found.precedence, found.op));
    return true;
}

bool CalculatorCompiler::TakeVariable()
{
    const auto [found, isNew] = variables_.try_emplace(token_.spelling, program_.variables.size());
    if (isNew) {
        CalculatorVariable variable{std::string(token_.spelling), -1};
        if (!IsKnown([&] { return names_.IsVariableNameValid(variable.name.c_str(), &variable.index); }))
            return Fail("there is no variable " + Spelling());
        program_.variables.push_back(std::move(variable));
    }
    Emit(CalculatorOp::Variable, found->second);
    return true;
}

bool CalculatorCompiler::TakeName()
{
    if (tokens_.IsNext('('))
        return TakeCall();
    if (const CalculatorConstant* const constant = VFFindCalculatorConstant(token_.spelling)) {
        if (constant->kind == CalculatorKind::Boolean) {
            Emit(CalculatorOp::Boolean, constant->number != 0 ? 1 : 0);
        } else {
            Emit(CalculatorOp::Number, program_.numbers.size());
            program_.numbers.push_back(constant->number);
        }
        return true;
    }
    if (VFFindCalculatorFunction(token_.spelling) != nullptr)
        return Fail("the function " + Spelling() + " has no brackets");
    return Fail(Spelling() + " is unknown; a variable stands between \"#\" signs, a text in quotes");
}

bool CalculatorCompiler::TakeCall()
{
    Pending call = Waiting(Wait::Call, PrecedenceOpening, CalculatorOp::Call);
    call.function = VFFindCalculatorFunction(token_.spelling);
    if (call.function != nullptr) {
        call.step.index = static_cast<std::uint32_t>(program_.functions.size());
        program_.functions.push_back(call.function);
    } else {
        const std::string name(token_.spelling);
        if (!IsKnown([&] { return names_.IsFunctionNameValid(name.c_str()); }))
            return Fail("there is no function " + Spelling());
        call.step.op = CalculatorOp::UserCall;
        call.step.index = static_cast<std::uint32_t>(program_.userFunctions.size());
        program_.userFunctions.push_back(name);
    }
    pending_.push_back(call);
    if (!tokens_.Next(&token_, &failure_))  // the opening bracket
        return false;
    if (!tokens_.IsNext(')')) {
        needsOperand_ = true;
        return true;
    }
    return tokens_.Next(&token_, &failure_) && EndCall(pending_.back());
}

bool CalculatorCompiler::TakeOperator()
{
    if (FindOperator(VVBinaries, token_) != nullptr)
        return TakeBinary();
    if (token_.kind == CalculatorTokenKind::End)
        return TakeEnd();
    if (IsSymbol(token_, "?"))
        return TakeQuestion();
    if (IsSymbol(token_, ":"))
        return TakeColon();
    if (IsSymbol(token_, ","))
        return TakeComma();
    if (IsSymbol(token_, ")"))
        return TakeClosing();
    if (IsSymbol(token_, "="))
        return Fail("there is no assignment; \"==\" compares");
    return Fail("an operator is missing before " + Spelling());
}

bool CalculatorCompiler::TakeBinary()
{
    const Operator& found = *FindOperator(VVBinaries, token_);
    Reduce(found.precedence, found.precedence != PrecedencePower && found.precedence != PrecedenceOrder);
    if (found.precedence == PrecedenceOrder && !pending_.empty() && pending_.back().precedence == PrecedenceOrder)
        return Fail("comparisons can't be chained; join two of them with \"and\"");
    const bool decides = found.op == CalculatorOp::And || found.op == CalculatorOp::Or;
    const std::uint32_t jump = decides ? Emit(found.op) : 0;
    pending_.push_back(Waiting(Wait::Operator, found.precedence, decides ? CalculatorOp::Truth : found.op, jump));
    needsOperand_ = true;
    return true;
}

bool CalculatorCompiler::TakeQuestion()
{
    Reduce(PrecedenceChoice, false);
    const std::uint32_t jump = Emit(CalculatorOp::JumpIfFalse);
    pending_.push_back(Waiting(Wait::Question, PrecedenceOpening, CalculatorOp::Jump, jump));
    needsOperand_ = true;
    return true;
}

bool CalculatorCompiler::TakeColon()
{
    Reduce(PrecedenceOpening, false);
    if (pending_.empty() || pending_.back().wait != Wait::Question)
        return Fail("\":\" has no \"?\"");
    const std::uint32_t jump = Emit(CalculatorOp::Jump);
    program_.steps[pending_.back().jump].index = Here();
    pending_.back() = Waiting(Wait::Colon, PrecedenceChoice, CalculatorOp::Jump, jump);
    needsOperand_ = true;
    return true;
}

bool CalculatorCompiler::TakeComma()
{
    if (!ReduceToOpening())
        return false;
    if (pending_.empty() || pending_.back().wait != Wait::Call)
        return Fail("\",\" stands outside the brackets of a function");
    ++pending_.back().step.count;
    needsOperand_ = true;
    return true;
}

bool CalculatorCompiler::TakeClosing()
{
    if (!ReduceToOpening())
        return false;
    if (pending_.empty())
        return Fail("\")\" has no \"(\"");
    if (pending_.back().wait == Wait::Call) {
        ++pending_.back().step.count;
        return EndCall(pending_.back());
    }
    pending_.pop_back();
    return true;
}

bool CalculatorCompiler::TakeEnd()
{
    if (!ReduceToOpening())
        return false;
    return pending_.empty() || FailAt(pending_.back().step.position, "the bracket is not closed");
}

void CalculatorCompiler::Reduce(int precedence, bool alsoEqual)
{
    while (!pending_.empty() &&
           (pending_.back().precedence > precedence || (alsoEqual && pending_.back().precedence == precedence))) {
        End(pending_.back());
        pending_.pop_back();
    }
}

bool CalculatorCompiler::ReduceToOpening()
{
    Reduce(PrecedenceOpening, false);
    return pending_.empty() || pending_.back().wait != Wait::Question ||
           FailAt(pending_.back().step.position, "\"?\" has no \":\"");
}

void CalculatorCompiler::End(const Pending& operation)
{
    if (operation.wait != Wait::Colon)
        program_.steps.push_back(operation.step);
    if (operation.jump != 0)
        program_.steps[operation.jump].index = Here();
}

bool CalculatorCompiler::EndCall(const Pending& call)
{
    const std::uint32_t count = call.step.count;
    if (call.function != nullptr && (count < call.function->least || count > call.function->most)) {
        const std::string number = std::to_string(call.function->least);
        return FailAt(call.step.position, VFCalculatorQuoted(call.function->name) + " takes " + number +
                                              (call.function->least == call.function->most ? "" : " or more") +
                                              " arguments, not " + std::to_string(count));
    }
    program_.steps.push_back(call.step);
    pending_.pop_back();
    return true;
}
