#include "UffMetaData.h"

#include "vdarchive/Z4PropertySet.h"
#include "vdstore/LQChannelMapper.h"

namespace {

constexpr const char* VVAxisNames[] = {"Abscissa", "Ordinate", "OrdinateDenominator", "ZAxis"};
constexpr const char* VVExponentNames[] = {"LengthExponent", "ForceExponent", "TemperatureExponent"};

/// Visits the fields that a copy of a channel takes along. A visitor has `Text(name, std::string&)` and `Number(name,
/// int&)`.
template <class Header, class Visitor>
void VisitFields(Header& header, Visitor& visitor)
{
    for (std::size_t i = 0; i < header.ids.size(); ++i)
        visitor.Text("ID" + std::to_string(i + 1), header.ids[i]);
    visitor.Number("FunctionType", header.function);
    visitor.Number("FunctionId", header.functionId);
    visitor.Number("Version", header.version);
    visitor.Number("LoadCase", header.loadCase);
    visitor.Text("ResponseEntity", header.response.name);
    visitor.Number("ResponseNode", header.response.node);
    visitor.Number("ResponseDirection", header.response.direction);
    visitor.Text("ReferenceEntity", header.reference.name);
    visitor.Number("ReferenceNode", header.reference.node);
    visitor.Number("ReferenceDirection", header.reference.direction);
    for (std::size_t axis = 0; axis < header.axes.size(); ++axis) {
        const std::string name = VVAxisNames[axis];
        visitor.Number(name + "Type", header.axes[axis].type);
        for (std::size_t i = 0; i < header.axes[axis].exponents.size(); ++i)
            visitor.Number(name + VVExponentNames[i], header.axes[axis].exponents[i]);
        visitor.Text(name + "Label", header.axes[axis].title);
        visitor.Text(name + "Units", header.axes[axis].units);
    }
}

struct Adder
{
    Z4PropertySet& set;
    void Text(const std::string& name, const std::string& text) { set.AddString(name.c_str(), text.c_str()); }
    void Number(const std::string& name, int number) { set.AddLong(name.c_str(), number); }
};

struct Taker
{
    const Z4PropertySet& set;
    void Text(const std::string& name, std::string& text)
    {
        VDString value;
        if (set.GetString(name.c_str(), &value))
            text = value.Str();
    }
    void Number(const std::string& name, int& number)
    {
        std::int32_t value = 0;
        if (set.GetLong(name.c_str(), &value))
            number = value;
    }
};

}  // namespace

bool UffMetaData::Add(LQChannelMapper& mapper, int index, const UffHeader& header, int number)
{
    Z4PropertySet* const set = mapper.AdoptMetaDataSet(SetName, nullptr, index);
    if (set == nullptr)
        return false;
    Adder adder{*set};
    VisitFields(header, adder);
    adder.Number("Dataset", number);
    adder.Number("OrdinateDataType", header.ordinateType);
    set->AddHuge("NumValues", header.count);
    adder.Number("AbscissaSpacing", header.isEven ? 1 : 0);
    set->AddDouble("AbscissaMinimum", header.first);
    set->AddDouble("AbscissaIncrement", header.step);
    set->AddDouble("ZAxisValue", header.z);
    return true;
}

void UffMetaData::Take(const LQChannelMapper& mapper, int index, UffHeader& header)
{
    const Z4PropertySet* const set = mapper.GetMetaDataSet(SetName, index);
    if (set == nullptr)
        return;
    Taker taker{*set};
    VisitFields(header, taker);
    set->GetDouble("ZAxisValue", &header.z);
}
