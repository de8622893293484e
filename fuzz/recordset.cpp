// XML to recordset. The short way for the writer's own shape against the XML parser: whatever it takes, both
// give the same. What the writer writes is always taken, and reading gives it back.
#include <string_view>

#include "automation/failure.h"
#include "canonical_reader.h"
#include "recordset/writer.h"
#include "require.h"
#include "xml_reader.h"

namespace {

using automation::String;
using automation::String_View;
using recordset::Field_Type;
using recordset::Row_Store;

void Look_At_Every_Value(const Row_Store& rows) {
    for (std::size_t row = 0; row < rows.Row_Count(); ++row)
        for (std::size_t field = 0; field < rows.Fields().size(); ++field)
            rows.Value(row, field).Is_Null();
}

// Whether the short way takes the text.
bool Read_Both_Ways(const String& text) {
    const auto taken = recordset::Read_Canonical_Form(text);
    const auto parsed = taken ? recordset::Read_With_Parser(text) : recordset::Read_Persisted(text);
    if (taken)
        REQUIRE(taken == parsed);
    if (parsed)
        Look_At_Every_Value(*parsed);
    return taken.has_value();
}

String Wide(std::string_view bytes) {
    String text;
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2)
        text += static_cast<char16_t>(static_cast<unsigned char>(bytes[at]) |
                                      static_cast<unsigned char>(bytes[at + 1]) << 8);
    return text;
}

// The writer's beginning with a number and two texts for each row, one of them under another name.
const String& Beginning() {
    static const String text = [] {
        recordset::Writer writer(
            {{u"N", Field_Type::Integer}, {u"T", Field_Type::Text, 30}, {u"a b", Field_Type::Text}});
        String whole = std::move(writer).Finish();
        whole.resize(whole.rfind(u"  </rs:data>"));
        return whole;
    }();
    return text;
}

std::string_view Take_Piece(std::string_view& rest) {
    const auto piece = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(piece.size() + 1, rest.size()));
    return piece;
}

// The first line names the fields, separated by blanks, the others are values.
void Write_And_Read(std::string_view bytes) {
    std::vector<recordset::Field_Description> fields;
    for (auto names = Take_Piece(bytes); !names.empty();) {
        const auto name = names.substr(0, names.find(' '));
        names.remove_prefix(std::min(name.size() + 1, names.size()));
        fields.push_back({automation::From_UTF8_Replacing(name)});
    }
    if (fields.empty() || fields.size() > 64)
        return;
    try {
        recordset::Writer writer(fields);
        std::vector<std::vector<std::optional<String>>> rows;
        while (!bytes.empty()) {
            auto& row = rows.emplace_back();
            for (std::size_t field = 0; field < fields.size(); ++field) {
                const auto value = Take_Piece(bytes);
                row.push_back(value == "~" ? std::nullopt
                                           : std::optional(automation::From_UTF8_Replacing(value)));
            }
            writer.Add_Row(row);
        }
        const String text = std::move(writer).Finish();
        REQUIRE(Read_Both_Ways(text));
        const auto read = recordset::Read_Persisted(text);
        REQUIRE(read->Row_Count() == rows.size());
        for (std::size_t row = 0; row < rows.size(); ++row)
            for (std::size_t field = 0; field < fields.size(); ++field) {
                const auto value = read->Value(row, field);
                REQUIRE(value.Is_Null() == !rows[row][field]);
                REQUIRE(value.Is_Null() || value.Text() == *rows[row][field]);
            }
    } catch (const automation::Failure& failure) {
        REQUIRE(failure.Number == automation::run_time::Invalid_Argument); // no text that XML holds
    }
}

} // namespace

// The first byte chooses what the others are.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (bytes.empty())
        return 0;
    const char kind = bytes.front();
    bytes.remove_prefix(1);
    switch (kind) {
    case 'u': // a whole document in UTF-16
        Read_Both_Ways(Wide(bytes));
        break;
    case 'r': // rows behind the writer's beginning
        Read_Both_Ways(Beginning() + automation::From_UTF8_Replacing(bytes));
        break;
    case 'R': // the same in UTF-16, and ended
        Read_Both_Ways(Beginning() + Wide(bytes) + u"  </rs:data>\n</xml>\n");
        break;
    case 'w':
        Write_And_Read(bytes);
        break;
    default: // a whole document
        Read_Both_Ways(automation::From_UTF8_Replacing(bytes));
    }
    return 0;
}
