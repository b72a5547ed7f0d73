#pragma once

#include "UffNumbers.h"

#include <array>
#include <string>
#include <vector>

/// One end of what a function was measured between: a node of the structure, and a direction there (0 scalar, 1 to 3 along X,
/// Y and Z, 4 to 6 about them, negative the other way).
struct UffEntity
{
    std::string name;
    int node = 0;
    int direction = 0;
};

/// An axis or, for the ordinate, its numerator or denominator.
struct UffAxis
{
    int type = 0;                   ///< what is measured: 17 time, 18 frequency, ...
    std::array<int, 3> exponents{};  ///< of the units of length, force and temperature
    std::string title;
    std::string units;
};

/// The header of a dataset 58, eleven lines of text in both forms. Texts are UTF-8; "NONE" stands as it is. Lines have fixed
/// columns, which count characters.
struct UffHeader
{
    static constexpr int Lines = 11;
    static constexpr int IdTexts = 5;
    enum Axis { Abscissa, Ordinate, Denominator, ZAxis, Axes };
    enum OrdinateType { RealSingle = 2, RealDouble = 4, ComplexSingle = 5, ComplexDouble = 6 };
    enum AxisType { Time = 17, Frequency = 18, Rpm = 19, Order = 20 };

    std::array<std::string, IdTexts> ids;
    int function = 0;    ///< 1 time response, then as `DaxSpectrumType`
    int functionId = 0;  ///< identification number
    int version = 0;
    int loadCase = 0;
    UffEntity response;
    UffEntity reference;
    int ordinateType = RealSingle;
    long long count = 0;  ///< values, or pairs of abscissa and value
    bool isEven = true;
    double first = 0;  ///< abscissa of the first value, if even, and the step to the next one
    double step = 0;
    double z = 0;
    double rate = 0;  ///< what the step is the inverse of, where the header has it; else 0
    bool isSingle = false;  ///< text with the digits of doubles whose values are floats, where the header says so
    std::array<UffAxis, Axes> axes;

    bool IsComplex() const { return ordinateType == ComplexSingle || ordinateType == ComplexDouble; }
    bool IsDouble() const { return ordinateType == RealDouble || ordinateType == ComplexDouble; }
    /// Numbers of a point: the abscissa, if it is written, and the parts of the value.
    int GetParts() const { return (isEven ? 0 : 1) + (IsComplex() ? 2 : 1); }
    /// Of the data as text.
    UffColumns GetColumns() const;
    double GetRate() const { return rate > 0 ? rate : 1 / step; }

    /// @param lines  without line ends
    /// @return false, and `problem` says why, if it can't be told what the data are
    bool Read(const std::array<std::string, Lines>& lines, std::string* problem);
    /// The lines with their ends. What has more digits than its columns hold stands once more behind column 80, where
    /// others don't look.
    std::string Write() const;

private:
    void ReadExact(const std::string& line);
};

/// A text made fit for so many columns: one line, cut if need be. It begins with no blank, so that it is read as it is written.
std::string UffFitText(const std::string& text, std::size_t columns);
