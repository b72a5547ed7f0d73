#pragma once

#include "vdarchive/Z4Bytes.h"
#include "vdarchive/Z4Property.h"
#include "vdstore/VDStoreApi.h"

#include <array>
#include <vector>

/// Data types of columns beside those of `Z4PropertyType`, of which there are short, long, huge, float, double and string.
enum LQColumnType : std::int32_t {
    LQTypeDateTime = static_cast<std::int32_t>(0xa04f107c),     ///< a text of the form of ISO 8601
    LQTypeEnumeration = static_cast<std::int32_t>(0xa04f107d),  ///< a 32-bit whole number that has a text
};

/// One value of an enumeration.
struct LQEnumOption
{
    std::int32_t value = 0;
    VDString text;
};

/// What describes a column of a results table: the same for all data sets of a channel.
class VDSTORE_API LQResultsTableColumn
{
public:
    static constexpr int NumStatusBits = 15;  ///< that have texts

    LQResultsTableColumn(std::int32_t type, bool hasStatus) : type_(type), hasStatus_(hasStatus) {}

    static bool IsType(std::int32_t type);
    static bool IsTextType(std::int32_t type) { return type == Z4TypeString || type == LQTypeDateTime; }

    /// @param reserved  0
    std::int32_t GetDataType(int reserved) const { return reserved == 0 ? type_ : 0; }
    /// Whether each value has a status word.
    bool HasStatus() const { return hasStatus_; }

    const VDString& GetTitle() const { return title_; }
    const VDString& GetUnits() const { return units_; }
    const VDString& GetKeyword() const { return keyword_; }
    void SetTitle(const char* title) { title_ = title; }
    void SetUnits(const char* units) { units_ = units; }
    void SetKeyword(const char* keyword) { keyword_ = keyword; }

    const std::vector<LQEnumOption>& GetEnumOptions() const { return options_; }
    void SetEnumOptions(std::vector<LQEnumOption> options) { options_ = std::move(options); }

    /// Empty where the bit has no text.
    VDString GetStatusBitText(int bit) const;
    /// False for a bit that can't have one.
    bool SetStatusBitText(int bit, const char* text);

private:
    friend class LQResultsTable;

    /// What a column takes in a file at least.
    static constexpr std::size_t SmallestBytes = 25;

    void Write(Z4ByteWriter& writer) const;
    static LQResultsTableColumn Read(Z4ByteReader& reader);

    std::int32_t type_;
    bool hasStatus_;
    VDString title_;
    VDString units_;
    VDString keyword_;
    std::vector<LQEnumOption> options_;
    std::array<VDString, NumStatusBits> bitTexts_;
};
