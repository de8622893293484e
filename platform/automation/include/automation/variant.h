// Variants: the values that cross an interface and that a recordset's fields hold.
//
// A Variant has the layout of Automation_Variant and nothing else, so that a reference to one can cross a
// module boundary; it owns the text, byte array or object in it. Conversions follow the platform: 94 for
// null, 13 for what is no number, 6 out of range. A variant belongs to one thread at a time.
#pragma once

#include <type_traits>
#include <vector>

#include "automation/unknown.h"

namespace automation {

enum class Variant_Type : std::uint16_t {
    Empty = Automation_Empty,
    Null = Automation_Null,
    Integer = Automation_Integer,
    Long = Automation_Long,
    Single = Automation_Single,
    Double = Automation_Double,
    Currency = Automation_Currency,
    Date = Automation_Date,
    Text = Automation_Text,
    Object = Automation_Object,
    Boolean = Automation_Truth,
    Byte = Automation_Byte,
    Long_Long = Automation_Long_Long,
    Byte_Array = Automation_Byte_Array,
};

class Variant {
public:
    Variant() noexcept : record{} {}
    Variant(Integer value) noexcept : Variant(Variant_Type::Integer) { record.As_Integer = value; }
    Variant(Long value) noexcept : Variant(Variant_Type::Long) { record.As_Long = value; }
    Variant(std::int64_t value) noexcept : Variant(Variant_Type::Long_Long) { record.As_Long_Long = value; }
    Variant(float value) noexcept : Variant(Variant_Type::Single) { record.As_Single = value; }
    Variant(double value) noexcept : Variant(Variant_Type::Double) { record.As_Double = value; }
    Variant(String_View text) : Variant(Variant_Type::Text) {
        record.As_Block = automation::Text(text).Detach();
    }
    Variant(const String& text) : Variant(String_View(text)) {}
    Variant(automation::Text&& text) noexcept : Variant(Variant_Type::Text) {
        record.As_Block = text.Detach();
    }
    Variant(const char16_t* text) : Variant(String_View(text)) {}
    Variant(const Reference<Unknown>& object) noexcept : Variant(Variant_Type::Object) {
        record.As_Object = object.Get();
        if (record.As_Object)
            record.As_Object->Add_Reference();
    }
    Variant(const Variant& other) : record{} { Check(Automation_Copy(&record, &other.record)); }
    Variant(Variant&& other) noexcept : record(std::exchange(other.record, Automation_Variant{})) {}
    Variant& operator=(Variant other) noexcept {
        std::swap(record, other.record);
        return *this;
    }
    ~Variant() { Automation_Clear(&record); }

    // Takes over what the record owns.
    static Variant Adopt(const Automation_Variant& owned) noexcept {
        Variant variant;
        variant.record = owned;
        return variant;
    }
    Automation_Variant Detach() noexcept { return std::exchange(record, Automation_Variant{}); }

    static Variant Null() noexcept { return Variant(Variant_Type::Null); }
    static Variant Boolean(bool value) noexcept {
        Variant variant(Variant_Type::Boolean);
        variant.record.As_Integer = value ? AUTOMATION_TRUE : AUTOMATION_FALSE;
        return variant;
    }
    static Variant Byte(std::uint8_t value) noexcept {
        Variant variant(Variant_Type::Byte);
        variant.record.As_Byte = value;
        return variant;
    }
    static Variant Currency(std::int64_t ten_thousandths) noexcept {
        Variant variant(Variant_Type::Currency);
        variant.record.As_Long_Long = ten_thousandths;
        return variant;
    }
    static Variant Date(double days) noexcept {
        Variant variant(Variant_Type::Date);
        variant.record.As_Double = days;
        return variant;
    }
    static Variant Bytes(const std::vector<std::uint8_t>& bytes) {
        Variant variant(Variant_Type::Byte_Array);
        variant.record.As_Block =
            Automation_New_Bytes(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
        if (!variant.record.As_Block && !bytes.empty())
            throw std::bad_alloc();
        return variant;
    }

    Variant_Type Type() const { return static_cast<Variant_Type>(record.Type); }
    bool Is_Null() const { return record.Type == Automation_Null; }
    const Automation_Variant& Record() const { return record; }

    // The text of a Text variant without a copy; empty for every other type.
    String_View Text() const {
        if (record.Type != Automation_Text || !record.As_Block)
            return {};
        return {reinterpret_cast<const char16_t*>(record.As_Block + 1), record.As_Block->Length};
    }
    std::vector<std::uint8_t> Byte_Array() const {
        if (record.Type != Automation_Byte_Array || !record.As_Block)
            return {};
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(record.As_Block + 1);
        return {bytes, bytes + record.As_Block->Length};
    }

    String To_Text() const {
        return String(record.Type == Automation_Text ? Text() : Converted(Variant_Type::Text).Text());
    }
    double To_Double() const { return Converted(Variant_Type::Double).record.As_Double; }
    Integer To_Integer() const {
        const bool is_one = record.Type == Automation_Integer;
        return is_one ? record.As_Integer : Converted(Variant_Type::Integer).record.As_Integer;
    }
    Long To_Long() const { return Converted(Variant_Type::Long).record.As_Long; }
    bool To_Boolean() const { return Converted(Variant_Type::Boolean).record.As_Integer != 0; }
    Reference<Unknown> To_Object() const {
        if (record.Type != Automation_Object)
            Raise(run_time::Type_Mismatch);
        return record.As_Object ? Reference<Unknown>::To(*record.As_Object) : nullptr;
    }
    // To Integer, Long, Double, Text or Boolean.
    Variant Converted(Variant_Type type) const {
        Variant result;
        Check(Automation_Convert(&result.record, &record, static_cast<std::uint16_t>(type)));
        return result;
    }

private:
    explicit Variant(Variant_Type type) noexcept : record{} {
        record.Type = static_cast<std::uint16_t>(type);
    }

    Automation_Variant record;
};

static_assert(std::is_standard_layout_v<Variant> && sizeof(Variant) == sizeof(Automation_Variant));
static_assert(sizeof(Automation_Variant) == 16);

} // namespace automation
