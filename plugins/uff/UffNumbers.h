#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Numbers as Fortran and others write them into lines of text.

/// Reads one whole field of fixed width, blanks around the number aside. An exponent may be marked by "D" or by its sign alone;
/// a field of nothing but blanks is 0, as in Fortran, and one of asterisks, which stands for a number that didn't fit, is NaN.
/// @return false, and `value` untouched, for anything else
template <class T>
bool UffReadField(std::string_view field, T* value);
bool UffReadField(std::string_view field, long long* value);

/// How the values of a line are laid out: fields of one width or another, in turn.
class UffColumns
{
public:
    /// @param first   width of the first field of a group, and `other` of the rest
    UffColumns(int first, int other, int fieldsInGroup, int groupsInLine)
        : first_(first), other_(other), fieldsInGroup_(fieldsInGroup), count_(fieldsInGroup * groupsInLine)
    {
    }

    /// Fields of a full line.
    int GetCount() const { return count_; }
    int GetWidth(int field) const { return field % fieldsInGroup_ == 0 ? first_ : other_; }
    /// A line that the end of the file cut off ends with its last whole field.
    std::string_view DropCutField(std::string_view line) const;

private:
    int first_;
    int other_;
    int fieldsInGroup_;
    int count_;
};

/// Reads the numbers of a line: parted by blanks if that gives as many as expected, else by columns, else in whatever way makes
/// sense of all of it.
/// @param expected  0 if that isn't known
/// @param values    gets them behind what is there
/// @return false if a part of the line is no number
template <class T>
bool UffReadLine(std::string_view line, const UffColumns& columns, int expected, std::vector<T>* values);

/// A number as "1E13.5" and "1E20.12" write it, to the right of its columns.
/// @param digits  behind the point
std::string UffWriteNumber(double value, int width, int digits);
