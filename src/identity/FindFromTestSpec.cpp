// The search of a list for the test that a descriptor names.

#include "VDFileId.h"
#include "VDFileIdArray.h"

#include "daxlib/DaxHandle.h"
#include "frame/VFDaxReport.h"
#include "registry/TestSpecText.h"

#include "vdbase/VFNumber.h"

#include <algorithm>
#include <optional>

namespace {

constexpr const char* VVRoutine = "VDFileIdArray::FindFromTestSpec";

/// Without regard to the case of ASCII letters. The names of a folder differ at their ends.
bool AreEqualNoCase(const VDString& left, const VDString& right)
{
    const std::string_view a = left.View();
    const std::string_view b = right.View();
    const auto lower = [](char byte) { return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte; };
    return a.size() == b.size() &&
           std::equal(a.rbegin(), a.rend(), b.rbegin(), [lower](char x, char y) { return x == y || lower(x) == lower(y); });
}

/// The conditions of a descriptor.
class Conditions
{
public:
    /// @return false, recorded, for a descriptor of more than one test
    bool Read(const VDString& text)
    {
        std::string_view rest = text.View();
        const auto take = [&rest] {
            const std::string_view element = rest.substr(0, rest.find(';'));
            rest.remove_prefix(std::min(element.size() + 1, rest.size()));
            return VDString(element);
        };
        filename_ = take();
        while (!rest.empty())
            if (!ReadField(take(), text))
                return false;
        return true;
    }

    /// All but the access type.
    bool Match(const VDFileIdRecord& record) const
    {
        return AreEqualNoCase(record.filename, filename_) &&
               (!extension_ || AreEqualNoCase(record.extension, *extension_)) && (run_ < 0 || record.run == run_) &&
               (burst_ < 0 || record.burst == burst_) && (mode_ < 0 || record.mode == mode_);
    }
    bool MatchChannels(const VDFileIdRecord& record) const
    {
        if (!channels_)
            return true;
        std::vector<std::int64_t> numbers;
        numbers.reserve(static_cast<std::size_t>(record.channels.GetSize()));
        for (const VDFileIdChanInfo& channel : record.channels)
            numbers.push_back(channel.number);
        std::sort(numbers.begin(), numbers.end());
        return channels_->AreExactly(numbers);
    }
    const std::optional<VTFileAccessType>& GetAccessType() const { return accessType_; }

private:
    bool ReadField(const VDString& field, const VDString& text)
    {
        constexpr int squeezeAll = 8;
        const VDTestSpecOption option = VFReadSpecOption(field, squeezeAll);
        const auto readNumber = [&](int& number) {
            return VFAscToNum(option.value, &number) ||
                   VFDaxReport(DaxError::NotOneTest, VVRoutine, {.appended = text}) != 0;
        };
        switch (option.letter) {
        case 'c':
            if (!channels_)
                channels_.emplace();
            channels_->AddText(option.value.View(), false);
            return true;
        case 'r':
            return readNumber(run_);
        case 'b':
            return readNumber(burst_);
        case 'm':
            return readNumber(mode_);
        case 'x':
            extension_ = option.value;
            return true;
        case 'a':
            accessType_ = VFReadSpecAccessType(option.value);
            return (accessType_ != VTFileAccessUnknown && accessType_ != VTFileAccessFEModels) ||
                   VFDaxReport(DaxError::DescriptorAccessType, VVRoutine, {.appended = text}) != 0;
        default:
            return true;
        }
    }

    VDString filename_;
    std::optional<VDString> extension_;
    int run_ = -1;
    int burst_ = -1;
    int mode_ = -1;
    std::optional<VTFileAccessType> accessType_;
    std::optional<VDNumberRanges> channels_;
};

}  // namespace

int VDFileIdArray::FindFromTestSpec(const char* text, VDFileId** id)
{
    Conditions conditions;
    if (VFGive(id, nullptr) == 0 || !conditions.Read(text))
        return 0;
    const VDFileInfoHandle info(conditions.GetAccessType() ? FINFCreate() : nullptr);
    for (const VDListedId& entry : entries_) {
        const VDFileIdRecord& record = entry.Get()->GetRecord();
        if (!conditions.Match(record))
            continue;
        if (conditions.GetAccessType()) {
            int accessType = VTFileAccessUnknown;
            VDString accessClass;
            if (!info ||
                FINFGetAccessClass(info.Get(), nullptr, record.fileId, record.subId, &accessType, &accessClass) == 0)
                return 0;
            if (accessType != *conditions.GetAccessType())
                continue;
        }
        if (!conditions.MatchChannels(record))
            continue;
        *id = entry.Get();
        return FIDAddRef(entry.Get()) != 0;
    }
    return 1;
}
