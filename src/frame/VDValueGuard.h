#pragma once

#include <utility>

/// Gives a variable a value for the length of a scope.
template <class Value>
class VDValueGuard
{
public:
    VDValueGuard(Value& variable, Value value) : variable_(variable), before_(std::exchange(variable, value)) {}
    ~VDValueGuard() { variable_ = before_; }
    VDValueGuard(const VDValueGuard&) = delete;
    VDValueGuard& operator=(const VDValueGuard&) = delete;

private:
    Value& variable_;
    Value before_;
};
