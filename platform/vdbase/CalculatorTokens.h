#pragma once

#include "CalculatorProgram.h"

#include <string_view>

enum class CalculatorTokenKind { End, Number, Text, Name, Variable, Symbol };

struct CalculatorToken
{
    CalculatorTokenKind kind = CalculatorTokenKind::End;
    std::size_t position = 0;   ///< from 1
    std::string_view spelling;  ///< as it stands in the expression
    double number = 0;          ///< value of a number
    std::string text;           ///< value of a text
};

/// Parts an expression into its tokens. The locale never matters.
class CalculatorTokens
{
public:
    explicit CalculatorTokens(std::string_view expression) : expression_(expression) {}

    /// The next token; at the end one of the kind `End`, again and again.
    /// @return false, and `failure` set, if what comes is none
    bool Next(CalculatorToken* token, CalculatorFailure* failure);
    /// Whether the next byte behind white space is this one.
    bool IsNext(char byte);

private:
    bool TakeNumber(CalculatorToken* token, CalculatorFailure* failure);
    bool TakeText(CalculatorToken* token, CalculatorFailure* failure);
    bool TakeVariable(CalculatorToken* token, CalculatorFailure* failure);
    bool TakeSymbol(CalculatorToken* token, CalculatorFailure* failure);
    void SkipWhiteSpace();
    char At(std::size_t place) const { return place < expression_.size() ? expression_[place] : '\0'; }
    /// Ends the token in front of the place `end`.
    bool Take(CalculatorToken* token, CalculatorTokenKind kind, std::size_t end);

    std::string_view expression_;
    std::size_t next_ = 0;
};
