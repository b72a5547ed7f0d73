#include "UffWriter.h"

#include "vdarchive/VDStorageOs.h"
#include "vdbase/VDBaseErrorCodes.h"
#include "vdbase/VFError.h"

#include <bit>
#include <cmath>
#include <cstring>

namespace {

constexpr std::size_t BlockBytes = 256 * 1024;
constexpr const char* Mark = "    -1\n";
constexpr long long MostValues = 9'999'999'999;  // ten columns

template <class T>
void Append(std::string& bytes, double number)
{
    using Bits = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
    auto bits = std::bit_cast<Bits>(static_cast<T>(number));
    if constexpr (std::endian::native == std::endian::big)
        bits = sizeof(T) == 4 ? __builtin_bswap32(static_cast<std::uint32_t>(bits)) : __builtin_bswap64(bits);
    bytes.append(reinterpret_cast<const char*>(&bits), sizeof bits);
}

/// "58b": little-endian, IEEE 754, eleven lines, the number of bytes.
std::string BinaryHead(std::int64_t bytes)
{
    const std::string size = std::to_string(bytes);
    return "    58b     1     2          11" + std::string(12 - std::min<std::size_t>(size.size(), 12), ' ') + size +
           "     0     0           0           0\n";
}

std::int64_t NumberBytes(const UffHeader& header)
{
    return header.IsDouble() ? 8 : 4;
}

}  // namespace

UffWriter::UffWriter(const std::string& filename, bool isText, int channels)
    : isText_(isText), data_(*LQGetDataManager()), filename_(filename), headers_(static_cast<std::size_t>(channels))
{
}

UffWriter::~UffWriter()
{
    if (stage_ != nullptr)
        data_.GetFileManager()->CloseFile(stage_, false);
}

Z4Storage* UffWriter::GetStorage()
{
    if (stage_ == nullptr)
        stage_ = data_.GetFileManager()->CreateFile((filename_ + ".values").c_str(), nullptr);
    return stage_ == nullptr ? nullptr : stage_->GetRoot();
}

template <class T>
bool UffWriter::FitsText(T value)
{
    T read = 0;
    return std::isfinite(value) && UffReadField(UffWriteNumber(static_cast<double>(value), 20, 12), &read) && read == value;
}

template bool UffWriter::FitsText(float);
template bool UffWriter::FitsText(double);

void UffWriter::TakeFields(std::size_t channel, const UffHeader& fields)
{
    UffHeader& header = GetHeader(channel);
    for (std::size_t i = 1; i < header.ids.size(); ++i)
        header.ids[i] = fields.ids[i];
    // Correlations lie over time as well.
    if (header.function == 1 && (fields.function == 7 || fields.function == 8))
        header.function = fields.function;
    header.functionId = fields.functionId;
    header.version = fields.version;
    header.loadCase = fields.loadCase;
    header.response = fields.response;
    header.reference = fields.reference;
    header.z = fields.z;
    for (std::size_t axis = 0; axis < header.axes.size(); ++axis) {
        const UffAxis own = header.axes[axis];
        header.axes[axis] = fields.axes[axis];
        if (!own.title.empty())
            header.axes[axis].title = own.title;
        if (!own.units.empty())
            header.axes[axis].units = own.units;
        if (own.type != 0)
            header.axes[axis].type = own.type;
    }
}

bool UffWriter::ReportSystem(int error) const
{
    VDString text;
    text.Format("%s: %s", filename_.c_str(), std::strerror(error));
    return VFErrorSet(VDBaseError::FileWrite, text, "UffWriter", 0) != 0;
}

bool UffWriter::FlushBytes()
{
    const int error = output_->Write(written_, static_cast<std::int64_t>(bytes_.size()), bytes_.data());
    written_ += static_cast<std::int64_t>(bytes_.size());
    bytes_.clear();
    return error == 0 || ReportSystem(error);
}

bool UffWriter::Write(const std::string& bytes)
{
    bytes_ += bytes;
    return bytes_.size() < BlockBytes || FlushBytes();
}

bool UffWriter::Flush()
{
    if (!isChanged_)
        return true;
    VDStorageOs& os = VDStorageOs::System();
    VDString place;
    std::unique_ptr<VDStorageFile> before;
    int error = os.Resolve(filename_.c_str(), &place);
    if (error == 0 && os.Open(place, VTStorageOpen::Update, &before) != 0)
        before.reset();
    if (error == 0)
        error = os.Make(place, before.get(), &output_);
    if (error != 0)
        return ReportSystem(error);
    written_ = 0;
    bytes_.clear();
    bool good = WriteDatasets() && FlushBytes();
    if (good) {
        error = output_->Sync();
        if (error == 0)
            error = output_->GiveName(place, true);
        if (error == 0)
            error = output_->SyncName();
        good = error == 0 || ReportSystem(error);
    }
    output_.reset();
    isChanged_ = !good;
    return good;
}

bool UffWriter::BeginDataset(const UffHeader& header)
{
    numbers_ = 0;
    if (header.count > MostValues)
        return VFErrorSet(VDBaseError::FileWrite, "A dataset of a universal file has at most 9,999,999,999 values",
                          "UffWriter", 0) != 0;
    return Write(Mark +
                 (isText_ ? std::string("    58\n") : BinaryHead(header.count * header.GetParts() * NumberBytes(header))) +
                 header.Write());
}

bool UffWriter::WriteNumbers(const UffHeader& header, const double* numbers, std::int64_t count)
{
    const UffColumns columns = header.GetColumns();
    for (std::int64_t i = 0; i < count; ++i) {
        if (!isText_) {
            header.IsDouble() ? Append<double>(bytes_, numbers[i]) : Append<float>(bytes_, numbers[i]);
        } else {
            const auto field = static_cast<int>(numbers_ % columns.GetCount());
            const int width = columns.GetWidth(field);
            if (field == 0 && numbers_ > 0)
                bytes_ += '\n';
            bytes_ += UffWriteNumber(numbers[i], width, width == 20 ? 12 : 5);
        }
        ++numbers_;
        if (bytes_.size() >= BlockBytes && !FlushBytes())
            return false;
    }
    return true;
}

bool UffWriter::EndDataset()
{
    // The mark follows binary data at once.
    return Write((numbers_ > 0 && isText_ ? "\n" : "") + std::string(Mark));
}
