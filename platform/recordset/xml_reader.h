// Reads the persisted XML format.
//
// Well-formedness and namespaces are the XML parser's business. On top of it a document type is refused, and
// everything that is no recordset: a root not named xml, rows before or without a row type, a value that its
// field's type cannot hold. Elements and attributes that the format does not know are passed over.
// Time and memory are linear in the text, whatever it holds; nothing recurses. Callable from any thread.
#pragma once

#include <optional>

#include "row_store.h"

namespace recordset {

// Nothing when the text holds no readable recordset. Throws std::bad_alloc only.
std::optional<Row_Store> Read_Persisted(automation::String_View text);

// The same without the short way for the writer's own shape. No NUL is among the first four units.
std::optional<Row_Store> Read_With_Parser(automation::String_View text);

} // namespace recordset
