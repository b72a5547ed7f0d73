// Takes the input as a keyword, as a text with keywords in it and as an expression, over a small set of metadata. The first
// byte chooses the channel argument and the options.

#include "FuzzFile.h"

#include "daxlib/VFDaxMetaDataExpression.h"
#include "vdbase/VDCalculator.h"
#include "vdbase/VFError.h"
#include "vdstore/LQChannelMapper.h"

#include <cstdlib>

namespace {

/// Three channels and a test with an item of every sort.
class Metadata
{
public:
    Metadata()
    {
        for (int channel = 0; channel < 3; ++channel) {
            LQChannelEntry* const entry = mapper_.Append();
            mapper_.SetChannelNumber(channel * 2 + 1, entry);
            Fill(channel);
        }
        Fill(LQChannelMapper::GLOBAL);
        mappers_.AppendItem(&mapper_);
        mappers_.AppendItem(nullptr);
        channels_.AppendItem(2);
    }

    LQChannelMapper* GetMapper() { return &mapper_; }
    VDArray<LQChannelMapper*>* GetMappers() { return &mappers_; }
    VDArrayWithSort<long>* GetChannels() { return &channels_; }

private:
    void Fill(int slot)
    {
        Z4PropertySet& set = *mapper_.AdoptMetaDataSet("S", nullptr, slot);
        set.AddDouble("A", slot + 0.5);
        set.AddLong("B", slot);
        set.AddString("T", "a \"text\" \\");
        set.AddString("N", "7");
        set.AddBoolean("O", slot % 2 == 0);
        set.AdoptDouble("U", nullptr);
        set.AddDouble("SampleRate", 100);
        set.AddDouble("BaseTime", 1);
        set.AddLong("PMin", 5);
    }

    LQChannelMapper mapper_{nullptr};
    VDArray<LQChannelMapper*> mappers_;
    VDArrayWithSort<long> channels_;
};

/// What must hold for any text: a failure is recorded, and a text in quotes is itself.
void Check(bool holds)
{
    if (!holds)
        std::abort();
}

void CheckCalculator(const VDString& text)
{
    VDCalculator calculator;
    double value = 0;
    VFErrorClear();
    Check(calculator.EvaluateToDouble(text, &value) || VFErrorGetCode(VFGetBaseLibError()) != 0);
    if (2 * text.GetLength() + 8 > VDCalculator::MaxExpression / 2)
        return;
    const VDString quoted = VDCalculator::Quoted(text);
    Check(calculator.EvaluateToDouble("strlen(" + quoted + ")", &value) && value == text.GetLength());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static Metadata metadata;
    if (size == 0)
        return 0;
    const unsigned options = data[0];
    // A C string ends at a zero byte, and so does what is tested here.
    VDString text(std::string(FuzzText(data + 1, size - 1)).c_str());
    const int channel = static_cast<int>(options % 6) - 2;
    const auto flag = [options](int bit) { return static_cast<char>(options >> bit & 1); };
    VDArray<LQChannelMapper*>* const mappers = flag(3) != 0 ? metadata.GetMappers() : nullptr;
    VDArrayWithSort<long>* const channels = flag(4) != 0 ? metadata.GetChannels() : nullptr;

    Z4Property* item = nullptr;
    VDString result;
    double number = 0;
    int type = 0;
    VFErrorClear();
    Check(VFDaxGetMetaDataItem(metadata.GetMapper(), text, channel, &item, flag(5), mappers, channels) || item == nullptr);
    const bool expanded = VFDaxEvaluateStringFromMeta(text, metadata.GetMapper(), channel, flag(5), &result, flag(6),
                                                      mappers, channels, flag(7));
    Check(expanded || (result.IsEmpty() && VFErrorGetCode(VFGetBaseLibError()) != 0));
    Check(VFDaxEvaluateValueFromMeta(text, metadata.GetMapper(), channel, &result, &type) || result.IsEmpty());
    VFErrorClear();
    Check(VFDaxEvaluateDoubleFromMeta(text, metadata.GetMapper(), channel, &number) ||
          VFErrorGetCode(VFGetBaseLibError()) != 0);
    CheckCalculator(text);
    return 0;
}
