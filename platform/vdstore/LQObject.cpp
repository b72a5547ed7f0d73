#include "vdstore/LQObject.h"

#include "MapperCodec.h"
#include "vdbase/VFError.h"
#include "vdstore/LQAttributeNames.h"
#include "vdstore/VDStoreErrorCodes.h"

LQObject::LQObject() : mapper_(this) {}

LQObject::~LQObject()
{
    Detach(false);
}

bool LQObject::Fail() const
{
    error_ = VFErrorGetCode(VFGetBaseLibError());
    return false;
}

bool LQObject::Report(int code, const char* text) const
{
    VFErrorSet(code, text, "LQObject", 0);
    return Fail();
}

bool LQObject::CheckChannel(int channel) const
{
    if (channel >= 0 && channel < GetChannelCount())
        return true;
    VDString text;
    text.Format("A data object has no channel at index %d", channel);
    return Report(VDStoreError::NoChannelIndex, text);
}

bool LQObject::AdjustChannelCount(int count)
{
    if (count < 0)
        return Report(VDStoreError::OutOfRange, "A data object can't have fewer than no channels");
    while (GetChannelCount() > count)
        if (!RemoveChannel(GetChannelCount() - 1))
            return false;
    while (GetChannelCount() < count)
        mapper_.Append();
    return true;
}

bool LQObject::RemoveChannel(int channel)
{
    return CheckChannel(channel) && mapper_.RemoveChannel(channel);
}

std::int64_t LQObject::GetElementCount(int) const
{
    return 0;
}

bool LQObject::AdjustElementCount(std::int64_t, int)
{
    return Report(VDStoreError::OutOfRange, "The channels of this data object have no points");
}

std::int32_t LQObject::GetChannelDataType(int) const
{
    return 0;
}

bool LQObject::GetChanTitle(VDString& title, int channel) const
{
    return CheckChannel(channel) && mapper_.GetChanTitle(title, channel);
}

bool LQObject::SetChanTitle(const char* title, int channel)
{
    return CheckChannel(channel) && mapper_.SetChanTitle(title, channel);
}

bool LQObject::RefreshMetadata(bool keep, int channel)
{
    if (channel != ALL_CHANNELS && !CheckChannel(channel))
        return false;
    for (int i = 0; i < GetChannelCount(); ++i) {
        VDString title;
        if ((channel != ALL_CHANNELS && channel != i) || !mapper_.GetChanTitle(title, i) || title.IsEmpty())
            continue;
        Z4PropertySet* const attributes = mapper_.AdoptMetaDataSet(LQChannelMapper::ATTRIBUTES, nullptr, i);
        if (!keep || !attributes->Exists(LQAttribute::ChanTitle, false))
            attributes->PutString(LQAttribute::ChanTitle, title);
    }
    return true;
}

void LQObject::WriteContent(Z4ByteWriter&) const {}

bool LQObject::ReadContent(Z4ByteReader&)
{
    return true;
}

bool LQObject::Attach(std::shared_ptr<Z4Storage> storage, Z4Node* node, bool isNew)
{
    if (!node->Claim())
        return Fail();
    storage_ = std::move(storage);
    node_ = node;
    if (isNew)
        return true;
    Z4ByteReader reader(node->GetContent());
    if (ReadContent(reader) && VFGetMapper(reader, mapper_) && reader.IsAtEnd())
        return true;
    Detach(false);
    return Report(VDStoreError::ContentDamaged, "The stored description of a data object contradicts itself");
}

bool LQObject::Save()
{
    if (node_ == nullptr || !node_->IsWritable())
        return true;
    if (broken_)
        return Report(VDStoreError::HalfWritten, "A data object can't be saved, since writing to it failed before");
    Z4ByteWriter writer;
    WriteContent(writer);
    VFPutMapper(writer, mapper_);
    node_->SetContent(writer.Take());
    return node_->Commit() || Fail();
}

void LQObject::Detach(bool revert)
{
    if (node_ == nullptr)
        return;
    node_->Disclaim();
    if (revert && node_->IsWritable())
        node_->Revert();
    node_ = nullptr;
    storage_.reset();
}
