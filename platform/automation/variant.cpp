#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "automation/number.h"
#include "automation/text.h"
#include "automation/variant.h"

namespace automation {

namespace {

Automation_Block* New_Block(const void* elements, std::size_t count, std::size_t element_size) noexcept {
    if (count == 0)
        return nullptr;
    auto* block =
        static_cast<Automation_Block*>(std::malloc(sizeof(Automation_Block) + count * element_size));
    if (block) {
        block->Length = static_cast<std::uint32_t>(count);
        std::memcpy(block + 1, elements, count * element_size);
    }
    return block;
}

String Ascii(const char* text) {
    return String(text, text + std::strlen(text));
}

// 15 significant digits for a double, 7 for a single, in the platform's form of the exponent: 1E+20.
String Floating_Text(double value, int digits) {
    std::array<char, 40> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.*G", digits, value + 0.0); // a negative zero has no sign
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

// Short date followed by the time; a part that is zero is left out. Dates are those of the years 100 to 9999.
String Date_Text(double days) {
    constexpr double before_first = -657435, behind_last = 2958466;
    if (!(days > before_first && days < behind_last))
        Raise(run_time::Overflow);
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

// The value behind a variant by reference.
Automation_Variant Referred(const Automation_Variant& variant) {
    if ((variant.Type & Automation_By_Reference) == 0)
        return variant;
    if (!variant.As_Reference)
        Raise(run_time::Invalid_Argument);
    Automation_Variant value{};
    value.Type = static_cast<std::uint16_t>(variant.Type & ~Automation_By_Reference);
    switch (value.Type) {
    case Automation_Byte:
        std::memcpy(&value.As_Byte, variant.As_Reference, sizeof(value.As_Byte));
        break;
    case Automation_Integer:
    case Automation_Truth:
        std::memcpy(&value.As_Integer, variant.As_Reference, sizeof(value.As_Integer));
        break;
    case Automation_Long:
    case Automation_Single:
        std::memcpy(&value.As_Long, variant.As_Reference, sizeof(value.As_Long));
        break;
    default:
        std::memcpy(&value.As_Long_Long, variant.As_Reference, sizeof(value.As_Long_Long));
    }
    return value;
}

String_View Units_Of(const Automation_Block* block) {
    if (!block)
        return {};
    return {reinterpret_cast<const char16_t*>(block + 1), block->Length};
}

String Text_Of(const Automation_Variant& value) {
    switch (value.Type) {
    case Automation_Empty:
        return {};
    case Automation_Null:
        Raise(run_time::Invalid_Use_Of_Null);
    case Automation_Integer:
        return Decimal_Text(value.As_Integer);
    case Automation_Long:
        return Decimal_Text(value.As_Long);
    case Automation_Byte:
        return Decimal_Text(value.As_Byte);
    case Automation_Long_Long:
        return Decimal_Text(value.As_Long_Long);
    case Automation_Single:
        return Floating_Text(static_cast<double>(value.As_Single), 7);
    case Automation_Double:
        return Floating_Text(value.As_Double, 15);
    case Automation_Currency:
        return Currency_Text(value.As_Long_Long);
    case Automation_Date:
        return Date_Text(value.As_Double);
    case Automation_Truth:
        return value.As_Integer != 0 ? u"True" : u"False";
    case Automation_Text:
        return String(Units_Of(value.As_Block));
    default:
        Raise(run_time::Type_Mismatch);
    }
}

double Double_Of(const Automation_Variant& value) {
    switch (value.Type) {
    case Automation_Empty:
        return 0;
    case Automation_Null:
        Raise(run_time::Invalid_Use_Of_Null);
    case Automation_Integer:
    case Automation_Truth:
        return value.As_Integer;
    case Automation_Long:
        return value.As_Long;
    case Automation_Byte:
        return value.As_Byte;
    case Automation_Long_Long:
        return static_cast<double>(value.As_Long_Long);
    case Automation_Single:
        return static_cast<double>(value.As_Single);
    case Automation_Double:
    case Automation_Date:
        return value.As_Double;
    case Automation_Currency:
        return static_cast<double>(value.As_Long_Long) / 10000;
    case Automation_Text:
        return To_Double(Units_Of(value.As_Block));
    default:
        Raise(run_time::Type_Mismatch);
    }
}

// A text of a truth value reads back as one.
bool Truth_Of(const Automation_Variant& value) {
    if (value.Type == Automation_Text)
        for (const bool truth : {true, false})
            if (Equal_Ignoring_Case(Units_Of(value.As_Block), truth ? u"True" : u"False"))
                return truth;
    return Double_Of(value) != 0;
}

Variant Conversion(const Automation_Variant& value, std::uint16_t type) {
    switch (type) {
    case Automation_Integer:
        return To_Integer(Double_Of(value));
    case Automation_Long:
        return To_Long(Double_Of(value));
    case Automation_Double:
        return Double_Of(value);
    case Automation_Text:
        return Text_Of(value);
    case Automation_Truth:
        return Variant::Boolean(Truth_Of(value));
    default:
        Raise(run_time::Type_Mismatch);
    }
}

// The status alone: an earlier failure's error object, which nobody has taken, must not speak for this one.
Status Without_Error(Long number) noexcept {
    Drop_Error();
    return Status_Of(number);
}

} // namespace

} // namespace automation

using namespace automation;

Automation_Block* Automation_New_Text(const char16_t* units, std::uint32_t length) noexcept {
    return New_Block(units, length, sizeof(char16_t));
}

Automation_Block* Automation_New_Bytes(const void* bytes, std::uint32_t length) noexcept {
    return New_Block(bytes, length, 1);
}

void Automation_Free(Automation_Block* block) noexcept {
    std::free(block);
}

void Automation_Clear(Automation_Variant* variant) noexcept {
    if (variant->Type == Automation_Text || variant->Type == Automation_Byte_Array)
        std::free(variant->As_Block);
    else if (variant->Type == Automation_Object && variant->As_Object)
        variant->As_Object->Release();
    *variant = {};
}

Automation_Status Automation_Copy(Automation_Variant* to, const Automation_Variant* from) noexcept {
    Automation_Variant copy = *from;
    if (copy.Type == Automation_Object && copy.As_Object) {
        copy.As_Object->Add_Reference();
    } else if ((copy.Type == Automation_Text || copy.Type == Automation_Byte_Array) && from->As_Block) {
        const std::size_t size = copy.Type == Automation_Text ? sizeof(char16_t) : 1;
        copy.As_Block = New_Block(from->As_Block + 1, from->As_Block->Length, size);
        if (!copy.As_Block && from->As_Block->Length != 0)
            return Without_Error(run_time::Out_Of_Memory);
    }
    *to = copy;
    return Status_OK;
}

Automation_Status Automation_Convert(Automation_Variant* to, const Automation_Variant* from,
                                     std::uint16_t type) noexcept {
    try {
        *to = Conversion(Referred(*from), type).Detach();
        return Status_OK;
    } catch (const Failure& failure) {
        return Without_Error(failure.Number);
    } catch (...) {
        return Without_Error(run_time::Out_Of_Memory);
    }
}
