// Variants: the values that cross an interface and that a recordset's fields hold.
//
// A Variant has the layout of Variant_Record and nothing else, so that a reference to one can cross a
// module boundary; a text or a byte array in it is a counted block owned by the variant, an object a
// counted pointer. Conversions follow the platform: 94 for null, 13 for what is no number, 6 out of range.
// A variant belongs to one thread at a time.
#pragma once

#include <cstdint>
#include <type_traits>
#include <vector>

#include "automation/number.h"
#include "automation/unknown.h"

namespace automation {

enum class Variant_Type : std::uint16_t {
    Empty = 0,
    Null = 1,
    Integer = 2,
    Long = 3,
    Single = 4,
    Double = 5,
    Currency = 6, // units of 1/10000
    Date = 7,     // days since 1899-12-30, the time of day as the fraction
    Text = 8,
    Object = 9,
    Boolean = 11, // True -1, False 0
    Byte = 17,
    Long_Long = 20,
    Byte_Array = 0x2011,
};

// A counted run of code units or bytes on the automation heap.
struct Variant_Block {
    std::uint32_t Length;
    // Length elements follow
};

struct Variant_Record {
    Variant_Type Type;
    std::uint16_t Reserved[3];
    union {
        std::int16_t As_Integer; // also Boolean
        std::int32_t As_Long;
        std::int64_t As_Long_Long; // also Currency
        float As_Single;
        double As_Double; // also Date
        std::uint8_t As_Byte;
        Variant_Block* As_Block; // Text, Byte_Array; null means no elements
        Unknown* As_Object;
    };
};

class Variant {
public:
    Variant() noexcept : record{} {}
    Variant(Integer value) noexcept;
    Variant(Long value) noexcept;
    Variant(std::int64_t value) noexcept;
    Variant(float value) noexcept;
    Variant(double value) noexcept;
    Variant(String_View text);
    Variant(const String& text) : Variant(String_View(text)) {}
    Variant(const char16_t* text) : Variant(String_View(text)) {}
    Variant(const Reference<Unknown>& object) noexcept;
    Variant(const Variant& other);
    Variant(Variant&& other) noexcept;
    Variant& operator=(Variant other) noexcept;
    ~Variant();

    static Variant Null() noexcept;
    static Variant Boolean(bool value) noexcept;
    static Variant Byte(std::uint8_t value) noexcept;
    static Variant Currency(std::int64_t ten_thousandths) noexcept;
    static Variant Date(double days) noexcept;
    static Variant Bytes(const std::vector<std::uint8_t>& bytes);

    Variant_Type Type() const { return record.Type; }
    bool Is_Null() const { return record.Type == Variant_Type::Null; }
    const Variant_Record& Record() const { return record; }

    // The text of a Text variant without a copy; empty for every other type.
    String_View Text() const;
    std::vector<std::uint8_t> Byte_Array() const;

    String To_Text() const;
    double To_Double() const;
    Integer To_Integer() const;
    Long To_Long() const;
    bool To_Boolean() const;
    Reference<Unknown> To_Object() const;

private:
    explicit Variant(Variant_Type type) noexcept : record{} { record.Type = type; }

    Variant_Record record;
};

static_assert(std::is_standard_layout_v<Variant> && sizeof(Variant) == sizeof(Variant_Record));
static_assert(sizeof(Variant_Record) == 16);

} // namespace automation
