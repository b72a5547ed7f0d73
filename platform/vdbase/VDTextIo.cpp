#include "vdbase/VDTextIo.h"

#include "FileReport.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace {

constexpr int BufferSize = 65536;

}  // namespace

VDTextIo::VDTextIo(const char* filename) : io_(filename) {}

VDTextIo::~VDTextIo()
{
    Close();
}

bool VDTextIo::Open(int mode)
{
    if (!Close())
        return false;
    if (mode != VTOpenRead && mode != VTOpenCreate)
        return VFReportFile(VDBaseError::FileOpen, io_.GetFilename(), "a text file is opened to read it or to create it",
                            "VDTextIo::Open");
    if (!io_.Open(mode))
        return false;
    buffer_ = std::make_unique_for_overwrite<char[]>(BufferSize);
    bufferCount_ = 0;
    bufferNext_ = 0;
    afterReturn_ = false;
    writing_ = mode == VTOpenCreate;
    return true;
}

bool VDTextIo::Close()
{
    const bool flushed = !writing_ || Flush();
    writing_ = false;
    bufferCount_ = 0;
    bufferNext_ = 0;
    return io_.Close() && flushed;
}

bool VDTextIo::Fill()
{
    std::int64_t got = 0;
    bufferNext_ = 0;
    bufferCount_ = io_.ReadAtCur(BufferSize, buffer_.get(), &got) ? static_cast<int>(got) : -1;
    return bufferCount_ > 0;
}

bool VDTextIo::ReadString(VDString* line, int maxLength, bool* truncated)
{
    if (truncated != nullptr)
        *truncated = false;
    if (writing_ || !io_.IsOpen() || maxLength < 1)
        return VFReportFile(VDBaseError::FileRead, io_.GetFilename(),
                            maxLength < 1 ? "the length of a line is below 1" : "it isn't open for reading",
                            "VDTextIo::ReadString");
    std::string text;
    bool any = false;  // something of the line was there, be it only its end
    while (bufferNext_ < bufferCount_ || Fill()) {
        const char* const end = buffer_.get() + bufferCount_;
        const char* from = buffer_.get() + bufferNext_;
        if (afterReturn_) {
            afterReturn_ = false;
            if (*from == '\n') {
                ++bufferNext_;
                continue;
            }
        }
        any = true;
        const char* const limit = from + std::min<std::ptrdiff_t>(end - from, maxLength - static_cast<int>(text.size()));
        const char* const stop = std::find_if(from, limit, [](char byte) { return byte == '\n' || byte == '\r'; });
        text.append(from, stop);
        bufferNext_ += static_cast<int>(stop - from);
        if (stop == end)
            continue;
        if (*stop == '\n' || *stop == '\r') {
            afterReturn_ = *stop == '\r';
            ++bufferNext_;
        } else if (truncated != nullptr) {
            *truncated = true;
        }
        break;
    }
    *line = VDString(std::move(text));
    return any && bufferCount_ >= 0;
}

bool VDTextIo::Flush()
{
    if (bufferCount_ > 0 && !io_.WriteAtCur(bufferCount_, buffer_.get()))
        return false;
    bufferCount_ = 0;
    return true;
}

bool VDTextIo::WriteString(const char* line)
{
    if (!writing_)
        return VFReportFile(VDBaseError::FileWrite, io_.GetFilename(), "it isn't open for writing", "VDTextIo::WriteString");
    // After a failure the bytes stay pending: the next try writes them at the same place.
    const auto put = [this](std::string_view text) {
        while (!text.empty()) {
            if (bufferCount_ == BufferSize && !Flush())
                return false;
            const std::size_t part = std::min(text.size(), static_cast<std::size_t>(BufferSize - bufferCount_));
            text.copy(buffer_.get() + bufferCount_, part);
            bufferCount_ += static_cast<int>(part);
            text.remove_prefix(part);
        }
        return true;
    };
    return put(line == nullptr ? "" : line) && put("\n");
}
