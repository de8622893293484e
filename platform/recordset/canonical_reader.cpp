#include "canonical_reader.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "canonical_form.h"
#include "packed_texts.h"

namespace recordset {

namespace {

using automation::String;
using automation::String_View;

// A row looks at each field once: with more of them its time would not be linear in the text any more.
constexpr std::size_t Most_Fields = 64;

class Canonical_Reader {
public:
    explicit Canonical_Reader(String_View text) : rest(text) {}
    std::optional<Row_Store> Read();

private:
    bool Take(String_View piece);
    std::optional<String> Take_Value();
    bool Take_Digits();
    bool Take_Fields();
    bool Take_Field();
    bool Take_Name(String& own_name);
    Decoder Take_Type();
    bool Take_Row();
    bool Take_Column(std::uint32_t column);

    String_View rest;
    std::vector<String> attributes; // what stands before each field's value in a row
    Row_Store store;
    Packed_Texts texts{store};
};

bool Canonical_Reader::Take(String_View piece) {
    if (rest.size() < piece.size() ||
        std::memcmp(rest.data(), piece.data(), piece.size() * sizeof(char16_t)) != 0)
        return false;
    rest.remove_prefix(piece.size());
    return true;
}

// A value of the schema, with the quote behind it.
std::optional<String> Canonical_Reader::Take_Value() {
    Row_Store kept;
    Packed_Texts value(kept);
    if (!value.Take(rest))
        return std::nullopt;
    value.Flush();
    return automation::From_UTF8(kept.Text(value.Place()));
}

bool Canonical_Reader::Take_Digits() {
    const auto value = Take_Value();
    return value && value->find_first_not_of(u"0123456789") == String::npos;
}

bool Canonical_Reader::Take_Fields() {
    while (Take(canonical_form::Field_Begin))
        if (attributes.size() == Most_Fields || !Take_Field())
            return false;
    return Take(canonical_form::Data_Begin);
}

bool Canonical_Reader::Take_Field() {
    Row_Store::Field field{};
    if (!Take_Name(field.Name))
        return false;
    field.Decode = Take_Type();
    store.Add_Field(std::move(field));
    return store.Fields().back().Decode && Take(canonical_form::Field_End);
}

bool Canonical_Reader::Take_Name(String& own_name) {
    const auto attribute = Take(canonical_form::Name) ? Take_Value() : std::nullopt;
    const auto name = attribute && Take(canonical_form::Own_Name) ? Take_Value() : attribute;
    if (!name || !canonical_form::Is_Legal_Name(*attribute))
        return false;
    own_name = *name;
    attributes.push_back(canonical_form::Before_Value(*attribute));
    const bool is_new =
        std::find(attributes.begin(), attributes.end(), attributes.back()) + 1 == attributes.end();
    return is_new && Take(canonical_form::Number) && Take_Digits();
}

// Null when it is none that the writer writes.
Decoder Canonical_Reader::Take_Type() {
    const auto name =
        Take(canonical_form::Type_Begin) && Take(canonical_form::Type) ? Take_Value() : std::nullopt;
    if (!name || (Take(canonical_form::Longest) && !Take_Digits()))
        return nullptr;
    Take(canonical_form::Fixed_Length);
    const auto* type = std::find(std::begin(canonical_form::Types), std::end(canonical_form::Types), *name);
    return type == std::end(canonical_form::Types) ? nullptr : Decoder_Of(automation::To_UTF8(*type));
}

bool Canonical_Reader::Take_Row() {
    for (std::uint32_t column = 0; rest.starts_with(u' '); ++column)
        if (column == attributes.size() || !Take_Column(column))
            return false;
    store.End_Row();
    return Take(canonical_form::Row_End);
}

// True also when the row has no value in that column.
bool Canonical_Reader::Take_Column(std::uint32_t column) {
    if (!Take(attributes[column]))
        return true;
    if (!texts.Take(rest))
        return false;
    store.Add_Cell({column, texts.Place()});
    const Decoder decode = store.Fields()[column].Decode;
    if (decode == Decoded_Text)
        return true;
    const auto value = texts.Short_Value();
    return value && Decoded_As(decode, *value);
}

std::optional<Row_Store> Canonical_Reader::Read() {
    if (!Take(canonical_form::Beginning()) || !Take_Fields())
        return std::nullopt;
    store.Reserve(rest.size() / 2, rest.size() / 16); // mostly enough, and untouched memory costs nothing
    while (Take(canonical_form::Row_Begin))
        if (!Take_Row())
            return std::nullopt;
    if (rest != canonical_form::End)
        return std::nullopt;
    texts.Flush();
    store.Shrink();
    return std::move(store);
}

} // namespace

std::optional<Row_Store> Read_Canonical_Form(String_View text) {
    return Canonical_Reader(text).Read();
}

} // namespace recordset
