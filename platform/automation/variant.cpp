#include "automation/variant.h"

#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

namespace automation {

namespace {

Variant_Block* Allocate_Block(const void* elements, std::size_t count, std::size_t element_size) {
    if (count == 0)
        return nullptr;
    void* memory = std::malloc(sizeof(Variant_Block) + count * element_size);
    if (memory == nullptr)
        throw std::bad_alloc();
    auto* block = new (memory) Variant_Block{static_cast<std::uint32_t>(count)};
    std::memcpy(block + 1, elements, count * element_size);
    return block;
}

bool Has_Block(Variant_Type type) {
    return type == Variant_Type::Text || type == Variant_Type::Byte_Array;
}

String Ascii(const char* text) {
    return String(text, text + std::strlen(text));
}

// 15 significant digits for a double, 7 for a single, in the platform's form of the exponent: 1E+20.
String Floating_Text(double value, int digits) {
    std::array<char, 40> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.*G", digits, value);
    for (char& unit : buffer)
        if (unit == ',') // a decimal comma of the process locale
            unit = '.';
    return Ascii(buffer.data());
}

String Currency_Text(std::int64_t ten_thousandths) {
    const bool negative = ten_thousandths < 0;
    const std::uint64_t size = negative ? 0 - static_cast<std::uint64_t>(ten_thousandths)
                                        : static_cast<std::uint64_t>(ten_thousandths);
    std::string text = (negative ? "-" : "") + std::to_string(size / 10000);
    if (size % 10000 != 0) {
        std::array<char, 8> fraction{};
        std::snprintf(fraction.data(), fraction.size(), ".%04u", static_cast<unsigned>(size % 10000));
        text += fraction.data();
        text.erase(text.find_last_not_of('0') + 1);
    }
    return String(text.begin(), text.end());
}

// Short date followed by the time; a part that is zero is left out.
String Date_Text(double days) {
    const std::int64_t total = std::llround(days * 86400); // seconds first: they may round to the next day
    const auto whole = static_cast<int>(std::floor(static_cast<double>(total) / 86400));
    const auto seconds = static_cast<int>(total - std::int64_t{whole} * 86400);
    const std::chrono::sys_days epoch{std::chrono::year{1899} / 12 / 30};
    const std::chrono::year_month_day date{epoch + std::chrono::days{whole}};
    std::array<char, 64> buffer{};
    String text;
    if (whole != 0 || seconds == 0) {
        std::snprintf(buffer.data(), buffer.size(), "%u/%u/%d", static_cast<unsigned>(date.month()),
                      static_cast<unsigned>(date.day()), static_cast<int>(date.year()));
        text = Ascii(buffer.data());
    }
    if (seconds != 0) {
        const int hour = seconds / 3600;
        std::snprintf(buffer.data(), buffer.size(), "%s%d:%02d:%02d %s", text.empty() ? "" : " ",
                      hour % 12 == 0 ? 12 : hour % 12, seconds / 60 % 60, seconds % 60,
                      hour < 12 ? "AM" : "PM");
        text += Ascii(buffer.data());
    }
    return text;
}

} // namespace

Variant::Variant(Integer value) noexcept : Variant(Variant_Type::Integer) {
    record.As_Integer = value;
}
Variant::Variant(Long value) noexcept : Variant(Variant_Type::Long) {
    record.As_Long = value;
}
Variant::Variant(std::int64_t value) noexcept : Variant(Variant_Type::Long_Long) {
    record.As_Long_Long = value;
}
Variant::Variant(float value) noexcept : Variant(Variant_Type::Single) {
    record.As_Single = value;
}
Variant::Variant(double value) noexcept : Variant(Variant_Type::Double) {
    record.As_Double = value;
}

Variant::Variant(String_View text) : Variant(Variant_Type::Text) {
    record.As_Block = Allocate_Block(text.data(), text.size(), sizeof(char16_t));
}

Variant::Variant(const Reference<Unknown>& object) noexcept : Variant(Variant_Type::Object) {
    record.As_Object = object.Get();
    if (record.As_Object)
        record.As_Object->Add_Reference();
}

Variant::Variant(const Variant& other) : record(other.record) {
    if (Has_Block(record.Type) && record.As_Block) {
        const std::size_t size = record.Type == Variant_Type::Text ? sizeof(char16_t) : 1;
        record.As_Block = Allocate_Block(record.As_Block + 1, record.As_Block->Length, size);
    } else if (record.Type == Variant_Type::Object && record.As_Object) {
        record.As_Object->Add_Reference();
    }
}

Variant::Variant(Variant&& other) noexcept : record(std::exchange(other.record, Variant_Record{})) {}

Variant& Variant::operator=(Variant other) noexcept {
    std::swap(record, other.record);
    return *this;
}

Variant::~Variant() {
    if (Has_Block(record.Type))
        std::free(record.As_Block);
    else if (record.Type == Variant_Type::Object && record.As_Object)
        record.As_Object->Release();
}

Variant Variant::Null() noexcept {
    return Variant(Variant_Type::Null);
}

Variant Variant::Boolean(bool value) noexcept {
    Variant variant(Variant_Type::Boolean);
    variant.record.As_Integer = value ? -1 : 0;
    return variant;
}

Variant Variant::Byte(std::uint8_t value) noexcept {
    Variant variant(Variant_Type::Byte);
    variant.record.As_Byte = value;
    return variant;
}

Variant Variant::Currency(std::int64_t ten_thousandths) noexcept {
    Variant variant(Variant_Type::Currency);
    variant.record.As_Long_Long = ten_thousandths;
    return variant;
}

Variant Variant::Date(double days) noexcept {
    Variant variant(Variant_Type::Date);
    variant.record.As_Double = days;
    return variant;
}

Variant Variant::Bytes(const std::vector<std::uint8_t>& bytes) {
    Variant variant(Variant_Type::Byte_Array);
    variant.record.As_Block = Allocate_Block(bytes.data(), bytes.size(), 1);
    return variant;
}

String_View Variant::Text() const {
    if (record.Type != Variant_Type::Text || record.As_Block == nullptr)
        return {};
    return {reinterpret_cast<const char16_t*>(record.As_Block + 1), record.As_Block->Length};
}

std::vector<std::uint8_t> Variant::Byte_Array() const {
    if (record.Type != Variant_Type::Byte_Array || record.As_Block == nullptr)
        return {};
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(record.As_Block + 1);
    return {bytes, bytes + record.As_Block->Length};
}

String Variant::To_Text() const {
    switch (record.Type) {
    case Variant_Type::Empty:
        return {};
    case Variant_Type::Null:
        Raise(run_time::Invalid_Use_Of_Null);
    case Variant_Type::Integer:
        return Decimal_Text(record.As_Integer);
    case Variant_Type::Long:
        return Decimal_Text(record.As_Long);
    case Variant_Type::Byte:
        return Decimal_Text(record.As_Byte);
    case Variant_Type::Long_Long:
        return Decimal_Text(record.As_Long_Long);
    case Variant_Type::Single:
        return Floating_Text(static_cast<double>(record.As_Single), 7);
    case Variant_Type::Double:
        return Floating_Text(record.As_Double, 15);
    case Variant_Type::Currency:
        return Currency_Text(record.As_Long_Long);
    case Variant_Type::Date:
        return Date_Text(record.As_Double);
    case Variant_Type::Boolean:
        return record.As_Integer != 0 ? u"True" : u"False";
    case Variant_Type::Text:
        return String(Text());
    case Variant_Type::Object:
    case Variant_Type::Byte_Array:
        break;
    }
    Raise(run_time::Type_Mismatch);
}

double Variant::To_Double() const {
    switch (record.Type) {
    case Variant_Type::Empty:
        return 0;
    case Variant_Type::Null:
        Raise(run_time::Invalid_Use_Of_Null);
    case Variant_Type::Integer:
    case Variant_Type::Boolean:
        return record.As_Integer;
    case Variant_Type::Long:
        return record.As_Long;
    case Variant_Type::Byte:
        return record.As_Byte;
    case Variant_Type::Long_Long:
        return static_cast<double>(record.As_Long_Long);
    case Variant_Type::Single:
        return static_cast<double>(record.As_Single);
    case Variant_Type::Double:
    case Variant_Type::Date:
        return record.As_Double;
    case Variant_Type::Currency:
        return static_cast<double>(record.As_Long_Long) / 10000;
    case Variant_Type::Text:
        return automation::To_Double(Text());
    case Variant_Type::Object:
    case Variant_Type::Byte_Array:
        break;
    }
    Raise(run_time::Type_Mismatch);
}

Integer Variant::To_Integer() const {
    return automation::To_Integer(To_Double());
}
Long Variant::To_Long() const {
    return automation::To_Long(To_Double());
}
bool Variant::To_Boolean() const {
    return To_Double() != 0;
}

Reference<Unknown> Variant::To_Object() const {
    if (record.Type != Variant_Type::Object)
        Raise(run_time::Type_Mismatch);
    return record.As_Object ? Reference<Unknown>::To(*record.As_Object) : nullptr;
}

} // namespace automation
