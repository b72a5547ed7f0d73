#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// What an expression is compiled to: steps for a machine with a stack of values, one behind the other. Nothing in it nests,
/// so that neither compiling nor running needs more of the processor's stack for a deep expression than for a flat one.

struct CalculatorFunction;

enum class CalculatorOp : std::uint32_t {
    // A value goes onto the stack: `index` is its place in the program's lists, for a boolean the value itself.
    Number,
    Boolean,
    Text,
    Variable,
    // These work on the values on top of the stack.
    Plus,
    Negate,
    Not,
    Truth,  ///< makes the value a boolean
    Add,
    Subtract,
    Multiply,
    Divide,
    Modulo,
    Power,
    BitAnd,
    BitOr,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    Equal,
    NotEqual,
    // These go on at the step `index`.
    And,          ///< if the value is false, which stays; else the value goes
    Or,           ///< if the value is true, which stays; else the value goes
    JumpIfFalse,  ///< the value goes
    Jump,
    // These take `count` arguments from the stack.
    Call,      ///< a function of ours
    UserCall,  ///< one of a derived calculator
};

struct CalculatorStep
{
    CalculatorOp op;
    std::uint32_t position;  ///< of the token in the expression, from 1
    std::uint32_t index = 0;
    std::uint32_t count = 0;
};

struct CalculatorVariable
{
    std::string name;  ///< with its two "#" signs
    int index;         ///< by which its value is asked for; negative for by name
};

struct CalculatorProgram
{
    std::vector<CalculatorStep> steps;
    std::vector<double> numbers;
    std::vector<std::string> texts;
    std::vector<CalculatorVariable> variables;  ///< each name once
    std::vector<const CalculatorFunction*> functions;
    std::vector<std::string> userFunctions;

    /// Whether running it calls operations that a derived calculator may override.
    bool AsksOwner() const { return !variables.empty() || !userFunctions.empty(); }
};

/// Why an expression can't be read or evaluated.
struct CalculatorFailure
{
    std::size_t position = 0;  ///< from 1
    std::string what;
};

/// A piece of an expression or a value for a message, in quotes; a long one is cut.
std::string VFCalculatorQuoted(std::string_view text);
