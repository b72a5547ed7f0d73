#pragma once

#include "vdbase/VDString.h"

#include <cstdint>
#include <initializer_list>
#include <span>
#include <variant>
#include <vector>

/// What a `VDVariant` holds. A buffer's type is its element's type plus 13.
enum VTVariantType : int {
    VTVariantNull = 0,
    VTVariantBoolean = 1,
    VTVariantByte = 2,
    VTVariantShort = 3,
    VTVariantUnsignedShort = 4,
    VTVariantLong = 5,
    VTVariantUnsignedLong = 6,
    VTVariantHuge = 7,
    VTVariantFloat = 8,
    VTVariantDouble = 9,
    VTVariantString = 10,
    VTVariantPointer = 11,
    VTVariantNamedPointer = 12,
    VTVariantList = 13,
    VTVariantShortBuffer = 16,
    VTVariantLongBuffer = 18,
    VTVariantHugeBuffer = 20,
    VTVariantFloatBuffer = 21,
    VTVariantDoubleBuffer = 22,
    VTVariantStringBuffer = 23,
};

/// A tagged value that crosses plug-in boundaries: a scalar, a text, a pointer, a list of variants or a typed buffer.
/// A getter gives false, and leaves its out argument, when the variant holds another type; no getter converts except where
/// it says so.
class VDBASE_API VDVariant
{
public:
    VDVariant() = default;
    explicit VDVariant(bool value);
    explicit VDVariant(long value);
    explicit VDVariant(float value);
    explicit VDVariant(double value);
    explicit VDVariant(const char* value);
    explicit VDVariant(const VDString& value);
    explicit VDVariant(void* value);
    /// A pointer to a constant would otherwise become a boolean.
    explicit VDVariant(const void* value) = delete;
    /// A 64-bit value; a constructor could not be told from that of `long`.
    static VDVariant FromHuge(std::int64_t value);
    /// A list of these items.
    static VDVariant FromList(std::initializer_list<VDVariant> items);

    void Clear();
    int GetType() const noexcept { return type_; }
    bool IsNull() const noexcept { return GetType() == VTVariantNull; }

    void SetBoolean(bool value);
    void SetByte(signed char value);
    void SetShort(short value);
    void SetLong(long value);
    void SetUnsignedLong(unsigned long value);
    void SetHuge(std::int64_t value);
    void SetFloat(float value);
    void SetDouble(double value);
    void SetString(const char* value);
    void SetPointer(void* value);
    /// A pointer with a name that says what it points to. The variant does not own it.
    void SetNamedPointer(const char* name, void* value);

    bool GetBoolean(bool* out) const;
    bool GetByte(signed char* out) const;
    bool GetShort(short* out) const;
    bool GetLong(long* out) const;
    bool GetUnsignedLong(unsigned long* out) const;
    bool GetHuge(std::int64_t* out) const;
    bool GetFloat(float* out) const;
    bool GetDouble(double* out) const;
    bool GetString(VDString* out) const;
    bool GetPointer(void** out) const;
    bool GetNamedPointer(VDString* name, void** out) const;
    /// Any number (or boolean) as a double; false for every other type.
    bool ConvertToDouble(double* out) const;
    /// Any number, boolean or text as text.
    bool ConvertToString(VDString* out) const;

    /// List form. The first `AppendItem` turns a variant that is no list into an empty list.
    void AppendItem(VDVariant item);
    /// Number of list items; 0 if the variant is no list.
    int GetNumItems() const noexcept;
    /// A list item; a null variant outside the list.
    const VDVariant& operator[](int index) const;

    /// Buffer form: allocates `count` zero elements of the type (short, long, huge, float, double or string buffer).
    /// False for another type, a negative count or when memory is short; the variant is then null.
    bool SetBufferSizeAndAllocate(int bufferType, std::int64_t count);
    /// The same, but a buffer that has the type already is used again, with what its elements hold.
    bool FitBuffer(int bufferType, std::int64_t count);
    /// Number of buffer elements; 0 if the variant is no buffer.
    std::int64_t GetBufferSize() const noexcept;
    /// Short, long (32 bits) and huge (64 bits) buffers; false also for a value that an element can't hold.
    bool GetLongAt(std::int64_t index, long* out) const;
    bool SetLongAt(std::int64_t index, long value);
    /// Numeric buffers only; the value is converted, to a whole number by rounding. False if an element can't hold it.
    bool GetFloatAt(std::int64_t index, float* out) const;
    bool GetDoubleAt(std::int64_t index, double* out) const;
    bool SetDoubleAt(std::int64_t index, double value);
    bool GetStringAt(std::int64_t index, VDString* out) const;
    bool SetStringAt(std::int64_t index, const char* value);
    /// All elements as they lie in memory, for work in bulk; valid until the variant changes. `Element` is short, std::int32_t
    /// (long buffer), std::int64_t (huge buffer), float, double or VDString; empty if the buffer is of another type.
    template <class Element>
    std::span<Element> GetBuffer() noexcept
    {
        auto* const buffer = std::get_if<std::vector<Element>>(&value_);
        return buffer == nullptr ? std::span<Element>() : std::span<Element>(*buffer);
    }
    template <class Element>
    std::span<const Element> GetBuffer() const noexcept
    {
        const auto* const buffer = std::get_if<std::vector<Element>>(&value_);
        return buffer == nullptr ? std::span<const Element>() : std::span<const Element>(*buffer);
    }

    /// Numbers of any type compare by value; anything else is equal only to the same type and value.
    bool operator==(const VDVariant& other) const;
    /// Numbers compare by value, texts by bytes; anything else is not above.
    bool operator>(const VDVariant& other) const;

private:
    struct NamedPointer
    {
        VDString name;
        void* pointer = nullptr;
        bool operator==(const NamedPointer&) const = default;
    };
    using List = std::vector<VDVariant>;
    using Value = std::variant<std::monostate, bool, signed char, short, unsigned short, long, unsigned long, float, double,
                               VDString, void*, NamedPointer, List, std::vector<short>, std::vector<std::int32_t>,
                               std::vector<std::int64_t>, std::vector<float>, std::vector<double>, std::vector<VDString>>;

    template <class T>
    void Assign(int type, T value);
    template <class Element>
    void Resize(std::size_t count);
    template <class T>
    bool Fetch(int type, T* out) const;

    int type_ = VTVariantNull;
    Value value_;
};
