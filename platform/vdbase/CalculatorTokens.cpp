#include "CalculatorTokens.h"

#include "AsciiText.h"

#include "vdbase/VFNumber.h"

#include <array>
#include <charconv>

namespace {

bool IsDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

bool IsNameStart(char byte)
{
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || byte == '_';
}

bool IsNameByte(char byte)
{
    return IsNameStart(byte) || IsDigit(byte);
}

// The longer ones first.
constexpr std::array<std::string_view, 24> VVSymbols = {"==", "!=", "<=", ">=", "&&", "||", "+", "-", "*", "/", "%", "^",
                                                        "<",  ">",  "!",  "&",  "|",  "?",  ":", ",", "(", ")", "=", ";"};

bool Fail(CalculatorFailure* failure, std::size_t position, std::string what)
{
    *failure = {position, std::move(what)};
    return false;
}

}  // namespace

std::string VFCalculatorQuoted(std::string_view text)
{
    constexpr std::size_t longest = 40;
    return '"' + std::string(text.substr(0, longest)) + (text.size() > longest ? "..." : "") + '"';
}

bool CalculatorTokens::Take(CalculatorToken* token, CalculatorTokenKind kind, std::size_t end)
{
    token->kind = kind;
    token->position = next_ + 1;
    token->spelling = expression_.substr(next_, end - next_);
    next_ = end;
    return true;
}

void CalculatorTokens::SkipWhiteSpace()
{
    next_ = std::min(expression_.find_first_not_of(VVWhiteSpace, next_), expression_.size());
}

bool CalculatorTokens::IsNext(char byte)
{
    SkipWhiteSpace();
    return At(next_) == byte;
}

bool CalculatorTokens::Next(CalculatorToken* token, CalculatorFailure* failure)
{
    SkipWhiteSpace();
    const char first = At(next_);
    if (next_ == expression_.size())
        return Take(token, CalculatorTokenKind::End, next_);
    if (IsDigit(first) || (first == '.' && IsDigit(At(next_ + 1))))
        return TakeNumber(token, failure);
    if (first == '"')
        return TakeText(token, failure);
    if (first == '#')
        return TakeVariable(token, failure);
    if (!IsNameStart(first))
        return TakeSymbol(token, failure);
    std::size_t end = next_ + 1;
    while (IsNameByte(At(end)))
        ++end;
    return Take(token, CalculatorTokenKind::Name, end);
}

bool CalculatorTokens::TakeNumber(CalculatorToken* token, CalculatorFailure* failure)
{
    const auto pastDigits = [this](std::size_t place) {
        while (IsDigit(At(place)))
            ++place;
        return place;
    };
    const char* const begin = expression_.data() + next_;
    if (*begin == '0' && (At(next_ + 1) == 'x' || At(next_ + 1) == 'X')) {
        std::uint64_t bits = 0;
        const auto [stop, error] = std::from_chars(begin + 2, expression_.data() + expression_.size(), bits, 16);
        if (error != std::errc())
            return Fail(failure, next_ + 1, "a hexadecimal number has 1 to 16 digits");
        token->number = static_cast<double>(bits);
        return Take(token, CalculatorTokenKind::Number, next_ + static_cast<std::size_t>(stop - begin));
    }
    std::size_t end = pastDigits(next_);
    if (At(end) == '.')
        end = pastDigits(end + 1);
    if (At(end) == 'e' || At(end) == 'E') {
        const std::size_t digits = end + (At(end + 1) == '+' || At(end + 1) == '-' ? 2 : 1);
        if (IsDigit(At(digits)))
            end = pastDigits(digits);
    }
    const std::string digits(begin, end - next_);
    if (!VFAscToNum(digits.c_str(), &token->number))
        return Fail(failure, next_ + 1, VFCalculatorQuoted(digits) + " is too large for a number");
    return Take(token, CalculatorTokenKind::Number, end);
}

bool CalculatorTokens::TakeText(CalculatorToken* token, CalculatorFailure* failure)
{
    token->text.clear();
    for (std::size_t place = next_ + 1; place < expression_.size(); ++place) {
        const char byte = expression_[place];
        const char following = At(place + 1);
        if ((byte == '\\' && (following == '"' || following == '\\')) || (byte == '"' && following == '"'))
            ++place;
        else if (byte == '"')
            return Take(token, CalculatorTokenKind::Text, place + 1);
        token->text += expression_[place];
    }
    return Fail(failure, next_ + 1, "the text has no closing quote");
}

// The name may have "#" signs inside brackets.
bool CalculatorTokens::TakeVariable(CalculatorToken* token, CalculatorFailure* failure)
{
    int depth = 0;
    for (std::size_t place = next_ + 1; place < expression_.size(); ++place) {
        const char byte = expression_[place];
        if (byte == '#' && depth <= 0)
            return Take(token, CalculatorTokenKind::Variable, place + 1);
        depth += byte == '(' ? 1 : byte == ')' ? -1 : 0;
    }
    return Fail(failure, next_ + 1, "the variable has no closing \"#\"");
}

bool CalculatorTokens::TakeSymbol(CalculatorToken* token, CalculatorFailure* failure)
{
    const std::string_view rest = expression_.substr(next_);
    for (const std::string_view symbol : VVSymbols)
        if (rest.starts_with(symbol))
            return Take(token, CalculatorTokenKind::Symbol, next_ + symbol.size());
    return Fail(failure, next_ + 1, VFCalculatorQuoted(rest.substr(0, 1)) + " has no meaning outside quotes");
}
