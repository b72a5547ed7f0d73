#pragma once

#include "vdarchive/VDArchiveApi.h"
#include "vdbase/VDString.h"

#include <cstdint>
#include <memory>

/// What a property holds. The values are fixed: they stand in files and cross plug-in boundaries. The type of a list is its
/// element's plus 0x20.
enum VDARCHIVE_API Z4PropertyType : std::int32_t {
    Z4TypeBoolean = static_cast<std::int32_t>(0xa04f1064),
    Z4TypeUnsChar = static_cast<std::int32_t>(0xa04f1065),
    Z4TypeUnsShort = static_cast<std::int32_t>(0xa04f1067),
    Z4TypeShort = static_cast<std::int32_t>(0xa04f1068),
    Z4TypeUnsLong = static_cast<std::int32_t>(0xa04f106b),
    Z4TypeLong = static_cast<std::int32_t>(0xa04f106c),
    Z4TypeUnsHuge = static_cast<std::int32_t>(0xa04f106d),
    Z4TypeHuge = static_cast<std::int32_t>(0xa04f106e),
    Z4TypeFloat = static_cast<std::int32_t>(0xa04f106f),
    Z4TypeDouble = static_cast<std::int32_t>(0xa04f1070),
    Z4TypeString = static_cast<std::int32_t>(0xa04f1071),
    Z4TypeText = static_cast<std::int32_t>(0xa04f1073),        ///< a longer text, such as a remark of several lines
    Z4TypeDoubleList = static_cast<std::int32_t>(0xa04f1090),  ///< a row of doubles
};

/// One metadata item: a name, a type, a value and a defined flag. Name and type never change. An item can exist and be
/// undefined, which says that the fact is known to be unknown; giving it a value makes it defined.
class VDARCHIVE_API Z4Property
{
public:
    /// A new property of a type, undefined; null for a number that is no type.
    static std::unique_ptr<Z4Property> Create(Z4PropertyType type, const char* name);

    virtual ~Z4Property();
    Z4Property& operator=(const Z4Property&) = delete;

    const VDString& GetName() const { return name_; }
    Z4PropertyType GetType() const { return type_; }

    bool IsDefined() const { return defined_; }
    /// The value stays as it is either way; it is 0 or empty if it was never given.
    void SetDefined(bool defined) { defined_ = defined; }

    /// The value as text, or `GetUndefinedText` of an undefined property. A text read back with `FromString` gives the very
    /// same value: numbers have as many digits as that takes. Booleans are "True" and "False".
    VDString ToString() const;
    /// Takes the value from a text, blanks around numbers and booleans aside.
    /// @return false, and nothing changed, for a text that is no value of the type or is out of its range
    bool FromString(const char* text);
    /// Takes the value of a defined property of any type. Numbers cross by value: a whole-number type takes only what it can
    /// hold exactly, a floating-point type the nearest value; everything else crosses by way of its text.
    /// @return false, and nothing changed, for what is no value of the type or is out of its range
    bool TakeValue(const Z4Property& other);
    /// What stands for the value while there is none: "Undefined".
    virtual VDString GetUndefinedText() const;

    virtual std::unique_ptr<Z4Property> Clone() const = 0;

protected:
    Z4Property(Z4PropertyType type, const char* name, bool defined);
    Z4Property(const Z4Property&) = default;

private:
    virtual VDString WriteValue() const = 0;
    virtual bool ReadValue(const char* text) = 0;

    VDString name_;
    Z4PropertyType type_;
    bool defined_;
};
