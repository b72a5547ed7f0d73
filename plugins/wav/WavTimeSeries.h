#pragma once

#include "WavReader.h"
#include "WavWindow.h"
#include "WavWriter.h"

#include "daxlib/FID.h"
#include "daxlib/TimeSeriesPlugin.h"

#include <memory>
#include <optional>
#include <vector>

class LQChannelMapper;

/// One WAV, RF64 or W64 test that is open for time-series access. Every failure is recorded.
class WavTimeSeries
{
public:
    ~WavTimeSeries();

    bool SetId(VDFileId* id);
    bool Open(int mode);
    bool Close();
    bool Flush() { return Flush("WavTS::Flush"); }
    bool GetCapability(int capability) const;
    bool GetValue(long channel, int key, VDVariant& value) const;
    bool PutValue(long channel, int key, const VDVariant& value);
    bool GetData(long channel, std::int64_t first, std::int64_t count, float* values);
    bool GetData(long channel, std::int64_t first, std::int64_t count, double* values);
    /// A value that no sample of the file's encoding is fails, but for doubles in 32-bit floats, which are narrowed.
    template <class T>
    bool PutData(long channel, std::int64_t first, std::int64_t count, const T* values);
    /// Adds the texts of the file to the metadata of the test, where those don't have them yet.
    bool AddMetaData(LQChannelMapper& mapper) const;
    bool Fail(int code, const char* routine, const std::string& detail = {}) const;

private:
    bool TakeMetaData(const VDVariant& value);
    bool MapChannels(const char* routine);
    bool CheckRange(long channel, std::int64_t first, std::int64_t count, const char* routine) const;
    std::int64_t GetNumFrames() const;
    std::int64_t GetNumPoints() const;
    bool Flush(const char* routine);
    bool FlushWindows(const char* routine);
    std::unique_ptr<WavWriter> Update(const char* routine);
    const WavEncoding& ChooseEncoding(int channels) const;
    const WavTexts& GetTexts() const { return reader_ ? reader_->GetTexts() : texts_; }
    VDVariant GetFileValue(int key) const;
    VDVariant GetChannelValue(long channel, int key) const;
    VDVariant GetFormatNames() const;
    std::optional<VDVariant> GetFormatValue(const VDString& name) const;
    bool PutFormatValue(const VDString& name, const VDVariant& value);
    bool PutSampleRate(double rate);
    bool PutBaseTime(double time) const;
    bool PutNumPoints(std::int64_t points);

    VDFileId* id_ = nullptr;
    const WavFormat::Type* type_ = nullptr;
    std::string filename_;
    // One of the two is there while the test is open.
    std::unique_ptr<WavReader> reader_;
    std::unique_ptr<WavWriter> writer_;
    std::optional<WavWindow<float>> floats_;
    std::optional<WavWindow<double>> doubles_;
    std::vector<int> fileChannels_;                ///< position in a frame, from 0, of each channel of the id
    std::int64_t announced_ = 0;                   ///< number of points that was set and may be still to come
    const WavEncoding* wishedEncoding_ = nullptr;  ///< of a file that will be created; null if none is wished for
    WavTexts texts_;                               ///< of the file that is written, or will be
    bool created_ = false;                         ///< so that its texts may still change
    bool unfit_ = false;                           ///< the last values that were put don't fit the encoding
};
