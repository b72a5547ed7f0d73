#pragma once

/// Writes an out argument. A null one makes the operation fail without a report.
template <class Out, class Value>
int VFGive(Out* out, const Value& value)
{
    if (out == nullptr)
        return 0;
    *out = value;
    return 1;
}

/// The same for two out arguments, of which either may be left out.
template <class FirstOut, class FirstValue, class SecondOut, class SecondValue>
int VFGiveTwo(FirstOut* firstOut, const FirstValue& first, SecondOut* secondOut, const SecondValue& second)
{
    const int firstGiven = VFGive(firstOut, first);
    const int secondGiven = VFGive(secondOut, second);
    return firstGiven | secondGiven;
}
