#pragma once

#include "vdarchive/Z4NamedList.h"
#include "vdarchive/Z4ValueProperty.h"

/// A named, ordered list of properties. Names are compared exactly. The set owns its properties; a pointer to one is valid
/// until that property is removed or replaced.
///
/// The typed calls, for each type X:
/// - `AddX` appends a property and gives it, or null if there is one of that name, which stays as it is;
/// - `SetX` gives an existing property the value. A property of another type keeps its type and takes the value as
///   `Z4Property::TakeValue` does; false if it refuses that, or if there is no property of that name;
/// - `PutX` leaves the set with a property of this type and value under the name, whatever was there;
/// - `GetX` gives the value of a defined property, as `Z4Property::TakeValue` does if it is of another type; otherwise false,
///   and `value` stays;
/// - `AdoptX` finds the property of that name or appends an undefined one and says which in `created` (may be null); null if
///   there is one of another type.
class VDARCHIVE_API Z4PropertySet
{
public:
    explicit Z4PropertySet(const char* name);
    ~Z4PropertySet();
    Z4PropertySet(const Z4PropertySet&) = delete;
    Z4PropertySet& operator=(const Z4PropertySet&) = delete;

    const VDString& GetName() const { return name_; }
    int GetSize() const { return properties_.GetSize(); }

    /// Null outside the set.
    Z4Property* GetProperty(int index) { return properties_.At(index); }
    const Z4Property* GetProperty(int index) const { return properties_.At(index); }
    /// Null if absent.
    /// @param report  true records an absent property as an error
    Z4Property* GetProperty(const char* name, bool report);
    const Z4Property* GetProperty(const char* name, bool report) const;
    bool Exists(const char* name, bool report) const { return GetProperty(name, report) != nullptr; }
    /// `GetProperty` with the result in `property`, which is null on failure.
    bool Lookup(const char* name, Z4Property** property, bool report);

    /// Takes a property to the end of the set; null if it is null or there is one of its name, which stays.
    Z4Property* AddProperty(std::unique_ptr<Z4Property> property);
    /// False if absent.
    bool RemoveProperty(const char* name);
    /// Removes every property of which the other set has one of the same name.
    void RemovePropertiesOf(const Z4PropertySet& set);
    void Clear() { properties_.Clear(); }

    /// Puts a copy of the property into the set, in the place of one of that name or else at the end. False for null.
    bool Copy(const Z4Property* property);
    /// Copies each property of a set.
    /// @param keep  true leaves the properties that this set already has
    bool Copy(const Z4PropertySet* set, bool keep);

    /// @name Typed calls
    /// @{
    Z4BooleanProperty* AddBoolean(const char* name, bool value) { return Add<Z4BooleanProperty>(name, value); }
    Z4UnsCharProperty* AddUnsChar(const char* name, std::uint8_t value) { return Add<Z4UnsCharProperty>(name, value); }
    Z4UnsShortProperty* AddUnsShort(const char* name, std::uint16_t value) { return Add<Z4UnsShortProperty>(name, value); }
    Z4ShortProperty* AddShort(const char* name, std::int16_t value) { return Add<Z4ShortProperty>(name, value); }
    Z4UnsLongProperty* AddUnsLong(const char* name, std::uint32_t value) { return Add<Z4UnsLongProperty>(name, value); }
    Z4LongProperty* AddLong(const char* name, std::int32_t value) { return Add<Z4LongProperty>(name, value); }
    Z4UnsHugeProperty* AddUnsHuge(const char* name, std::uint64_t value) { return Add<Z4UnsHugeProperty>(name, value); }
    Z4HugeProperty* AddHuge(const char* name, std::int64_t value) { return Add<Z4HugeProperty>(name, value); }
    Z4FloatProperty* AddFloat(const char* name, float value) { return Add<Z4FloatProperty>(name, value); }
    Z4DoubleProperty* AddDouble(const char* name, double value) { return Add<Z4DoubleProperty>(name, value); }
    Z4StringProperty* AddString(const char* name, const char* value) { return Add<Z4StringProperty>(name, value); }

    bool SetBoolean(const char* name, bool value) { return Set<Z4BooleanProperty>(name, value); }
    bool SetUnsChar(const char* name, std::uint8_t value) { return Set<Z4UnsCharProperty>(name, value); }
    bool SetUnsShort(const char* name, std::uint16_t value) { return Set<Z4UnsShortProperty>(name, value); }
    bool SetShort(const char* name, std::int16_t value) { return Set<Z4ShortProperty>(name, value); }
    bool SetUnsLong(const char* name, std::uint32_t value) { return Set<Z4UnsLongProperty>(name, value); }
    bool SetLong(const char* name, std::int32_t value) { return Set<Z4LongProperty>(name, value); }
    bool SetUnsHuge(const char* name, std::uint64_t value) { return Set<Z4UnsHugeProperty>(name, value); }
    bool SetHuge(const char* name, std::int64_t value) { return Set<Z4HugeProperty>(name, value); }
    bool SetFloat(const char* name, float value) { return Set<Z4FloatProperty>(name, value); }
    bool SetDouble(const char* name, double value) { return Set<Z4DoubleProperty>(name, value); }
    bool SetString(const char* name, const char* value) { return Set<Z4StringProperty>(name, value); }

    void PutBoolean(const char* name, bool value) { Put<Z4BooleanProperty>(name, value); }
    void PutLong(const char* name, std::int32_t value) { Put<Z4LongProperty>(name, value); }
    void PutHuge(const char* name, std::int64_t value) { Put<Z4HugeProperty>(name, value); }
    void PutDouble(const char* name, double value) { Put<Z4DoubleProperty>(name, value); }
    void PutString(const char* name, const char* value) { Put<Z4StringProperty>(name, value); }

    bool GetBoolean(const char* name, bool* value) const { return Get<Z4BooleanProperty>(name, value); }
    bool GetUnsChar(const char* name, std::uint8_t* value) const { return Get<Z4UnsCharProperty>(name, value); }
    bool GetUnsShort(const char* name, std::uint16_t* value) const { return Get<Z4UnsShortProperty>(name, value); }
    bool GetShort(const char* name, std::int16_t* value) const { return Get<Z4ShortProperty>(name, value); }
    bool GetUnsLong(const char* name, std::uint32_t* value) const { return Get<Z4UnsLongProperty>(name, value); }
    bool GetLong(const char* name, std::int32_t* value) const { return Get<Z4LongProperty>(name, value); }
    bool GetUnsHuge(const char* name, std::uint64_t* value) const { return Get<Z4UnsHugeProperty>(name, value); }
    bool GetHuge(const char* name, std::int64_t* value) const { return Get<Z4HugeProperty>(name, value); }
    bool GetFloat(const char* name, float* value) const { return Get<Z4FloatProperty>(name, value); }
    bool GetDouble(const char* name, double* value) const { return Get<Z4DoubleProperty>(name, value); }
    bool GetString(const char* name, VDString* value) const { return Get<Z4StringProperty>(name, value); }

    Z4BooleanProperty* AdoptBoolean(const char* name, bool* created) { return Adopt<Z4BooleanProperty>(name, created); }
    Z4LongProperty* AdoptLong(const char* name, bool* created) { return Adopt<Z4LongProperty>(name, created); }
    Z4HugeProperty* AdoptHuge(const char* name, bool* created) { return Adopt<Z4HugeProperty>(name, created); }
    Z4FloatProperty* AdoptFloat(const char* name, bool* created) { return Adopt<Z4FloatProperty>(name, created); }
    Z4DoubleProperty* AdoptDouble(const char* name, bool* created) { return Adopt<Z4DoubleProperty>(name, created); }
    Z4StringProperty* AdoptString(const char* name, bool* created) { return Adopt<Z4StringProperty>(name, created); }
    /// @}

private:
    template <class Property>
    Property* Add(const char* name, typename Property::Value value)
    {
        return static_cast<Property*>(AddProperty(std::make_unique<Property>(name, std::move(value))));
    }

    template <class Property>
    bool Set(const char* name, typename Property::Value value)
    {
        Z4Property* const property = GetProperty(name, false);
        if (property == nullptr)
            return false;
        if (property->GetType() != Property::PropertyType)
            return property->TakeValue(Property(name, std::move(value)));
        static_cast<Property*>(property)->Set(std::move(value));
        return true;
    }

    template <class Property>
    void Put(const char* name, typename Property::Value value)
    {
        Z4Property* const property = GetProperty(name, false);
        if (property != nullptr && property->GetType() == Property::PropertyType)
            static_cast<Property*>(property)->Set(std::move(value));
        else
            properties_.Replace(std::make_unique<Property>(name, std::move(value)));
    }

    template <class Property>
    bool Get(const char* name, typename Property::Value* value) const
    {
        const Z4Property* const property = GetProperty(name, false);
        if (property == nullptr || !property->IsDefined())
            return false;
        if (property->GetType() == Property::PropertyType) {
            *value = static_cast<const Property*>(property)->Get();
            return true;
        }
        Property converted(name);
        if (!converted.TakeValue(*property))
            return false;
        *value = converted.Get();
        return true;
    }

    template <class Property>
    Property* Adopt(const char* name, bool* created)
    {
        Z4Property* property = GetProperty(name, false);
        const bool isNew = property == nullptr;
        if (isNew)
            property = AddProperty(std::make_unique<Property>(name));
        if (created != nullptr)
            *created = isNew;
        return property->GetType() == Property::PropertyType ? static_cast<Property*>(property) : nullptr;
    }

    VDString name_;
    Z4NamedList<Z4Property> properties_;
};
