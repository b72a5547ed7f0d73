#pragma once

#include "vdbase/VDCalculator.h"
#include "vdbase/VDIo.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// Reads the fields of a Famos header. It looks at the file through a small window, so that a field costs no call to the
/// system and a hop over samples costs one. A reader that meets the end of the file fails.
class VDFamosFields
{
public:
    /// The file must be open and outlive the object.
    VDFamosFields(VDIo& file, std::int64_t fileSize);

    std::int64_t GetPosition() const { return windowStart_ + next_; }
    /// A position past the end is allowed; reading there fails.
    void SetPosition(std::int64_t position);
    bool IsAtEnd() const { return GetPosition() >= fileSize_; }

    bool ReadByte(char* byte);
    /// Passes over bytes up to and including the next one of this value. False at the end of the file, and if there is none
    /// up to some place behind the position `limit`.
    bool SkipPast(char byte, std::int64_t limit);
    /// Passes over bytes up to and including the next line feed or ";".
    bool SkipField();

    /// Characters up to the next "," or ";", which is consumed. Leading blanks are trimmed.
    bool ReadField(VDString* text);
    /// A field as a number: decimal, else with a leading "+", else hexadecimal.
    bool ReadInteger(int* value);
    bool ReadInteger(std::int64_t* value);
    /// The same; what is no number is evaluated as an expression.
    bool ReadDouble(double* value);
    /// Whether the last double field was no expression either, and the calculator's report says why.
    bool HasReported() const { return hasReported_; }
    /// A length, so many bytes as they stand, then every byte up to and including the next "," or ";".
    bool ReadString(VDString* text);

private:
    // A page or more would cost a hop over samples more than the keys behind it need.
    static constexpr int WindowSize = 1024;

    bool Fill();
    /// The text is valid until the next read.
    bool ReadToMark(std::string_view* text);
    /// Reads a field into `field_` unless `value` takes it at once.
    template <class Number>
    bool ReadDecimal(Number* value);

    VDIo& file_;
    std::int64_t fileSize_;
    std::int64_t windowStart_ = 0;
    int windowCount_ = 0;
    std::int64_t next_ = 0;
    std::unique_ptr<char[]> window_;
    std::string field_;
    std::optional<VDCalculator> calculator_;
    bool hasReported_ = false;
};
