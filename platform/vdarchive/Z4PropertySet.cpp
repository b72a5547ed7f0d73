#include "vdarchive/Z4PropertySet.h"

#include "vdarchive/VDArchiveErrorCodes.h"
#include "vdbase/VFError.h"

namespace {

std::string_view NameView(const char* name)
{
    return name == nullptr ? std::string_view() : std::string_view(name);
}

Z4Property* FindProperty(const Z4NamedList<Z4Property>& properties, const VDString& setName, const char* name, bool report)
{
    Z4Property* const property = properties.Find(NameView(name));
    if (property == nullptr && report) {
        VDString text;
        text.Format("Property set \"%s\" has no property \"%s\"", setName.c_str(), VDString(name).c_str());
        VFErrorSet(VDArchiveError::NoProperty, text, "Z4PropertySet::GetProperty", 0);
    }
    return property;
}

}  // namespace

Z4PropertySet::Z4PropertySet(const char* name) : name_(name) {}

Z4PropertySet::~Z4PropertySet() = default;

Z4Property* Z4PropertySet::GetProperty(const char* name, bool report)
{
    return FindProperty(properties_, name_, name, report);
}

const Z4Property* Z4PropertySet::GetProperty(const char* name, bool report) const
{
    return FindProperty(properties_, name_, name, report);
}

bool Z4PropertySet::Lookup(const char* name, Z4Property** property, bool report)
{
    *property = GetProperty(name, report);
    return *property != nullptr;
}

Z4Property* Z4PropertySet::AddProperty(std::unique_ptr<Z4Property> property)
{
    return property == nullptr ? nullptr : properties_.Append(std::move(property));
}

bool Z4PropertySet::RemoveProperty(const char* name)
{
    return properties_.Remove(NameView(name));
}

void Z4PropertySet::RemovePropertiesOf(const Z4PropertySet& set)
{
    properties_.RemoveIf([&set](const Z4Property& property) { return set.Exists(property.GetName(), false); });
}

bool Z4PropertySet::Copy(const Z4Property* property)
{
    if (property == nullptr)
        return false;
    // A property copied onto itself stays the same object, so that who iterates over the set keeps a valid pointer.
    if (properties_.Find(property->GetName().View()) != property)
        properties_.Replace(property->Clone());
    return true;
}

bool Z4PropertySet::Copy(const Z4PropertySet* set, bool keep)
{
    if (set == nullptr)
        return false;
    for (int index = 0; index < set->GetSize(); ++index) {
        const Z4Property* const property = set->GetProperty(index);
        if (!keep || !Exists(property->GetName(), false))
            Copy(property);
    }
    return true;
}
