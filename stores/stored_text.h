// Texts as a store holds them, which may be anything: those that a document can carry, another form for those
// that it cannot, and the JSON of the history. Pure functions on UTF-8.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace stores {

// Whether a persisted recordset can carry it: the characters of XML 1.0, well-formed.
bool Is_Deliverable(char16_t unit);
bool Can_Be_Delivered(std::string_view bytes);

// One that a document can carry: "\\" for a backslash, "\uXXXX" for a code unit and "\xXX" for a byte that it
// cannot.
std::string Escaped(std::string_view bytes);

// A name, a time or an operation in a message: escaped, and cut short.
std::string For_A_Message(std::string_view bytes);

// The members of a JSON object, each a text or null, in their order.
using Members = std::vector<std::pair<std::string, std::optional<std::string>>>;

// Nothing for everything else, however deeply it nests.
std::optional<Members> Parse_Members(std::string_view json);

// A JSON string that a document can carry. Bytes that are no UTF-8 become U+FFFD.
std::string Quoted(std::string_view text);
std::string JSON_Of(const Members& members);

} // namespace stores
