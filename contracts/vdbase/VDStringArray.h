#pragma once

#include "vdbase/VDArray.h"
#include "vdbase/VDString.h"

/// An ordered list of texts.
class VDBASE_API VDStringArray : public VDArray<VDString>
{
public:
    using VDArray<VDString>::VDArray;

    /// Index of the first text that equals `value` exactly; -1 if absent.
    /// @param fromStart  1 searches the whole list; 0 searches from the end backwards
    int Find(const char* value, int fromStart = 1) const;
    /// The same without regard to case.
    int FindNoCase(const char* value) const;

    /// Replaces the content by the parts of the text between separators; an empty text gives no part, and empty parts stay.
    /// @param separators  each byte of it separates
    /// @param maxParts    0 for no limit; otherwise the last part takes the rest
    /// @return the number of parts
    int SplitString(const char* text, const char* separators, int maxParts = 0);

    /// Ascending byte order.
    void Sort();
    void MakeUpper();
    /// @param noCase  non-zero compares without regard to case
    bool AreEqual(const VDStringArray& other, int noCase) const;
};
