#include "vdarchive/Z4PropertyCodec.h"

#include "PropertyTypes.h"

namespace {

constexpr std::size_t SmallestPropertyBytes = 10;

template <class T>
void PutValue(Z4ByteWriter& writer, const T& value)
{
    writer.Put(value);
}

void PutValue(Z4ByteWriter& writer, const VDString& value)
{
    writer.PutText(value.View());
}

void PutValue(Z4ByteWriter& writer, const std::vector<double>& values)
{
    writer.Put(static_cast<std::uint32_t>(values.size()));
    for (const double value : values)
        writer.Put(value);
}

template <class T>
void GetValue(Z4ByteReader& reader, T* value)
{
    *value = reader.Get<T>();
}

void GetValue(Z4ByteReader& reader, VDString* value)
{
    *value = reader.GetText();
}

void GetValue(Z4ByteReader& reader, std::vector<double>* values)
{
    values->resize(reader.GetCount(sizeof(double)));
    for (double& value : *values)
        value = reader.Get<double>();
}

}  // namespace

void VFPutPropertySet(Z4ByteWriter& writer, const Z4PropertySet& set)
{
    writer.PutText(set.GetName().View());
    writer.Put(static_cast<std::uint32_t>(set.GetSize()));
    for (int i = 0; i < set.GetSize(); ++i) {
        const Z4Property& property = *set.GetProperty(i);
        writer.PutText(property.GetName().View());
        writer.Put(static_cast<std::int32_t>(property.GetType()));
        writer.Put(property.IsDefined());
        AllPropertyTypes::Visit(property, [&writer](const auto& typed) { PutValue(writer, typed.Get()); });
    }
}

bool VFGetProperties(Z4ByteReader& reader, Z4PropertySet& set)
{
    const std::uint32_t count = reader.GetCount(SmallestPropertyBytes);
    for (std::uint32_t i = 0; i < count && reader.IsGood(); ++i) {
        const VDString name = reader.GetText();
        auto property = Z4Property::Create(static_cast<Z4PropertyType>(reader.Get<std::int32_t>()), name);
        const bool isDefined = reader.Get<bool>();
        if (property == nullptr) {
            reader.Fail();
            break;
        }
        AllPropertyTypes::Visit(*property, [&reader]<class Typed>(Typed& typed) {
            typename Typed::Value value{};
            GetValue(reader, &value);
            typed.Set(std::move(value));
        });
        property->SetDefined(isDefined);
        if (set.AddProperty(std::move(property)) == nullptr)
            reader.Fail();
    }
    return reader.IsGood();
}

std::unique_ptr<Z4PropertySet> VFGetPropertySet(Z4ByteReader& reader)
{
    auto set = std::make_unique<Z4PropertySet>(reader.GetText());
    return VFGetProperties(reader, *set) ? std::move(set) : nullptr;
}
