// Objects: a frame of 24 bytes, then the values. All numbers are little-endian.
//
//   0  4  "DOBJ"
//   4  4  id
//   8  4  version
//  12  4  extra
//  16  8  length of what follows the frame in bytes; -1 until the object is finished
//
// A long takes 4 bytes, a char 1, a text its length as 4 bytes and then its bytes.

#include "VDIoObjects.h"

#include "FileReport.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <utility>

namespace {

constexpr std::string_view VVMark = "DOBJ";
constexpr std::int64_t VVFrameSize = 24;
constexpr std::int64_t VVLengthOffset = 16;
/// What is put goes to the file in pieces of about this size.
constexpr std::size_t VVPendingLimit = 262144;

template <class Value>
std::array<unsigned char, sizeof(Value)> VFToBytes(Value value)
{
    std::array<unsigned char, sizeof(Value)> bytes{};
    for (unsigned char& byte : bytes) {
        byte = static_cast<unsigned char>(value);
        if constexpr (sizeof(Value) > 1)
            value = static_cast<Value>(value >> 8);
    }
    return bytes;
}

template <class Value>
Value VFFromBytes(const unsigned char* bytes)
{
    Value value = 0;
    for (std::size_t i = sizeof(Value); i-- > 0;)
        value = static_cast<Value>(value << 8 | bytes[i]);
    return value;
}

}  // namespace

VDIo::Objects& VDIo::NeedObjects()
{
    if (!objects_)
        objects_ = std::make_unique<Objects>();
    return *objects_;
}

bool VDIo::StartWriteObject(int id, int version, int extra)
{
    Objects& objects = NeedObjects();
    objects.written.push_back({position_, false});
    const auto putNumber = [this](std::uint32_t number) { return PutBytes(VFToBytes(number).data(), 4); };
    return PutBytes(VVMark.data(), VVMark.size()) && putNumber(static_cast<std::uint32_t>(id)) &&
           putNumber(static_cast<std::uint32_t>(version)) && putNumber(static_cast<std::uint32_t>(extra)) &&
           PutBytes(VFToBytes<std::uint64_t>(~std::uint64_t{0}).data(), 8);
}

bool VDIo::FinishWriteObject(std::int64_t* context)
{
    Objects& objects = NeedObjects();
    if (objects.written.empty())
        return VFReportFile(VDBaseError::FileWrite, filename_, "no object was begun", "VDIo::FinishWriteObject");
    const Objects::Written object = objects.written.back();
    bool done = !object.failed;
    if (done) {
        const auto length = VFToBytes(static_cast<std::uint64_t>(position_ - object.begin - VVFrameSize));
        const std::int64_t at = object.begin + VVLengthOffset;
        if (at >= objects.pendingOffset && !objects.pending.empty()) {
            std::memcpy(objects.pending.data() + (at - objects.pendingOffset), length.data(), length.size());
        } else {
            const std::int64_t behind = position_;
            done = Write(at, static_cast<std::int64_t>(length.size()), length.data());
            position_ = behind;
        }
    }
    objects.written.pop_back();
    if (objects.written.empty())
        done = FlushObjects() && done;
    else if (!done)
        objects.written.back().failed = true;
    if (context != nullptr)
        *context = object.begin;
    return done;
}

bool VDIo::Put(long value)
{
    if (value >= std::numeric_limits<std::int32_t>::min() && value <= std::numeric_limits<std::int32_t>::max())
        return PutBytes(VFToBytes(static_cast<std::uint32_t>(value)).data(), 4);
    if (objects_ && !objects_->written.empty())
        objects_->written.back().failed = true;
    return VFReportFile(VDBaseError::FileWrite, filename_, "a number has more than 32 bits", "VDIo::Put");
}

bool VDIo::Put(char value)
{
    return PutBytes(&value, 1);
}

bool VDIo::Put(const VDString& value)
{
    return Put(static_cast<long>(value.View().size())) && PutBytes(value.c_str(), value.View().size());
}

bool VDIo::PutBytes(const void* bytes, std::size_t count)
{
    Objects& objects = NeedObjects();
    if (objects.pending.empty())
        objects.pendingOffset = position_;
    objects.pending.append(static_cast<const char*>(bytes), count);
    position_ += static_cast<std::int64_t>(count);
    if (!objects.written.empty() && objects.pending.size() < VVPendingLimit)
        return true;
    if (FlushObjects())
        return true;
    if (!objects.written.empty())
        objects.written.back().failed = true;
    return false;
}

bool VDIo::FlushObjects()
{
    const std::string pending = std::exchange(objects_->pending, {});
    const std::int64_t behind = position_;
    const bool done =
        pending.empty() || Write(objects_->pendingOffset, static_cast<std::int64_t>(pending.size()), pending.data());
    position_ = behind;
    return done;
}

bool VDIo::StartReadObject(std::int64_t* context, int* id, int* version, int* extra)
{
    const std::int64_t begin = position_;
    const std::int64_t end = FindReadEnd();
    // There is an object to leave in any case.
    Objects& objects = NeedObjects();
    objects.readEnds.push_back(begin);
    std::array<unsigned char, VVFrameSize> frame{};
    if (end - begin < VVFrameSize || !Read(begin, VVFrameSize, frame.data(), nullptr) ||
        std::memcmp(frame.data(), VVMark.data(), VVMark.size()) != 0)
        return VFReportFile(VDBaseError::FileRead, filename_, "there is no object", "VDIo::StartReadObject");
    const auto length = VFFromBytes<std::uint64_t>(frame.data() + VVLengthOffset);
    if (length > static_cast<std::uint64_t>(end - begin - VVFrameSize))
        return VFReportFile(VDBaseError::FileRead, filename_, "an object isn't whole", "VDIo::StartReadObject");
    objects.readEnds.back() = begin + VVFrameSize + static_cast<std::int64_t>(length);
    const auto give = [&](int* out, int offset) {
        if (out != nullptr)
            *out = static_cast<int>(VFFromBytes<std::uint32_t>(frame.data() + offset));
    };
    give(id, 4);
    give(version, 8);
    give(extra, 12);
    if (context != nullptr)
        *context = begin;
    return true;
}

bool VDIo::FinishReadObject()
{
    if (!objects_ || objects_->readEnds.empty())
        return VFReportFile(VDBaseError::FileRead, filename_, "no object was entered", "VDIo::FinishReadObject");
    position_ = objects_->readEnds.back();
    objects_->readEnds.pop_back();
    return true;
}

std::int64_t VDIo::FindReadEnd() const
{
    return objects_ && !objects_->readEnds.empty() ? objects_->readEnds.back() : GetFileSize();
}

bool VDIo::GetBytes(void* bytes, std::int64_t count)
{
    if (count > FindReadEnd() - position_)
        return VFReportFile(VDBaseError::FileRead, filename_, "a value lies behind the end", "VDIo::Get");
    return Read(position_, count, bytes, nullptr);
}

bool VDIo::Get(long* value)
{
    std::array<unsigned char, 4> bytes{};
    if (!GetBytes(bytes.data(), 4))
        return false;
    *value = static_cast<std::int32_t>(VFFromBytes<std::uint32_t>(bytes.data()));
    return true;
}

bool VDIo::Get(char* value)
{
    return GetBytes(value, 1);
}

bool VDIo::Get(VDString* value)
{
    long length = 0;
    if (!Get(&length))
        return false;
    if (length < 0 || length > FindReadEnd() - position_)
        return VFReportFile(VDBaseError::FileRead, filename_, "the length of a text is wrong", "VDIo::Get");
    std::string text(static_cast<std::size_t>(length), '\0');
    if (!GetBytes(text.data(), length))
        return false;
    *value = VDString(std::move(text));
    return true;
}
