#include "vdstore/LQChannelMapper.h"

// The calls of `LQChannelMapper` that reach through the sets to single items.

namespace {

template <class Value>
bool GetValue(const Z4PropertySet* set, bool (Z4PropertySet::*get)(const char*, Value*) const, const char* name,
              Value* value)
{
    return set != nullptr && (set->*get)(name, value);
}

template <class Value>
bool PutValue(Z4PropertySet* set, void (Z4PropertySet::*put)(const char*, Value), const char* name, Value value)
{
    if (set == nullptr)
        return false;
    (set->*put)(name, value);
    return true;
}

}  // namespace

Z4PropertySet* LQChannelMapper::FindSetOfItem(const char* name, int index) const
{
    Z4PropertySet* const attributes = GetMetaDataSet(ATTRIBUTES, index);
    if (attributes != nullptr && attributes->Exists(name, false))
        return attributes;
    for (int i = 0; i < GetMetaDataSetCount(index); ++i)
        if (Z4PropertySet* const set = GetMetaDataSet(i, index); set->Exists(name, false))
            return set;
    return nullptr;
}

Z4Property* LQChannelMapper::GetMetaDataItem(const char* name, int index) const
{
    Z4PropertySet* const set = FindSetOfItem(name, index);
    return set == nullptr ? nullptr : set->GetProperty(name, false);
}

bool LQChannelMapper::GetStringMetaDataItem(const char* name, VDString* value, int index) const
{
    const Z4Property* const item = GetMetaDataItem(name, index);
    if (item == nullptr || !item->IsDefined() || (item->GetType() != Z4TypeString && item->GetType() != Z4TypeText))
        return false;
    *value = item->ToString();
    return true;
}

bool LQChannelMapper::GetDoubleMetaDataItem(const char* name, double* value, int index) const
{
    return GetValue(FindSetOfItem(name, index), &Z4PropertySet::GetDouble, name, value);
}

bool LQChannelMapper::GetHugeMetaDataItem(const char* name, std::int64_t* value, int index) const
{
    return GetValue(FindSetOfItem(name, index), &Z4PropertySet::GetHuge, name, value);
}

bool LQChannelMapper::GetLongMetaDataItem(const char* name, std::int32_t* value, int index) const
{
    return GetValue(FindSetOfItem(name, index), &Z4PropertySet::GetLong, name, value);
}

bool LQChannelMapper::GetBooleanMetaDataItem(const char* name, bool* value, int index) const
{
    return GetValue(FindSetOfItem(name, index), &Z4PropertySet::GetBoolean, name, value);
}

bool LQChannelMapper::SetStringAttribute(const char* name, const char* value, int index)
{
    return PutValue(AdoptMetaDataSet(ATTRIBUTES, nullptr, index), &Z4PropertySet::PutString, name, value);
}

bool LQChannelMapper::SetDoubleAttribute(const char* name, double value, int index)
{
    return PutValue(AdoptMetaDataSet(ATTRIBUTES, nullptr, index), &Z4PropertySet::PutDouble, name, value);
}

bool LQChannelMapper::SetHugeAttribute(const char* name, std::int64_t value, int index)
{
    return PutValue(AdoptMetaDataSet(ATTRIBUTES, nullptr, index), &Z4PropertySet::PutHuge, name, value);
}

bool LQChannelMapper::SetLongAttribute(const char* name, std::int32_t value, int index)
{
    return PutValue(AdoptMetaDataSet(ATTRIBUTES, nullptr, index), &Z4PropertySet::PutLong, name, value);
}

bool LQChannelMapper::SetBooleanAttribute(const char* name, bool value, int index)
{
    return PutValue(AdoptMetaDataSet(ATTRIBUTES, nullptr, index), &Z4PropertySet::PutBoolean, name, value);
}
