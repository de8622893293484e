// The texts that the benchmarks read: the list of a partition's nodes as the store hands it over, and the
// same rows in shapes that others might write.
#pragma once

#include <map>
#include <utility>
#include <vector>

#include "automation/number.h"
#include "recordset/recordset.h"
#include "recordset/writer.h"

namespace benchmarks {

using automation::String;

enum class Shape {
    Own,           // the writer's
    Double_Quoted, // other quotes, no line breaks
    Reversed,      // attributes in the other order, behind a declaration and a comment
    Escaped,       // nearly every character a reference
};

inline std::vector<recordset::Field_Description> Node_Fields() {
    return {{u"NodeNumber", recordset::Field_Type::Integer},
            {u"NodeDescription"},
            {u"SuperviseID"},
            {u"Hookflash"},
            {u"ThresholdTypeID"},
            {u"Transfer"},
            {u"Disconnection"}};
}

inline std::vector<std::optional<String>> Node_Row(int row) {
    const String number = automation::Decimal_Text(row);
    return {number, u"Extension " + number, automation::Decimal_Text(row % 5), u"500", u"7", u"!,,9#", u"!"};
}

inline String Replaced(String text, automation::String_View from, automation::String_View to) {
    for (std::size_t at = text.find(from); at != String::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

inline String References_To(const String& text) {
    String all;
    for (const char16_t unit : text)
        all += u"&#" + automation::Decimal_Text(unit) + u";";
    return all;
}

inline void Append_Row(String& text, Shape shape, const std::vector<std::optional<String>>& values) {
    const auto fields = Node_Fields();
    text += u"<z:row";
    for (std::size_t index = 0; index < values.size(); ++index) {
        const std::size_t field = shape == Shape::Reversed ? values.size() - 1 - index : index;
        const String value =
            shape == Shape::Escaped && field > 0 ? References_To(*values[field]) : *values[field];
        text += u" " + fields[field].Name + u"=\"" + value + u"\"";
    }
    text += u"/>";
}

inline String Make_Text(Shape shape, int rows) {
    recordset::Writer writer(Node_Fields());
    if (shape == Shape::Own)
        for (int row = 0; row < rows; ++row)
            writer.Add_Row(Node_Row(row));
    String text = std::move(writer).Finish();
    if (shape == Shape::Own)
        return text;
    String other;
    for (int row = 0; row < rows; ++row)
        Append_Row(other, shape, Node_Row(row));
    text = Replaced(text, u"  </rs:data>", other + u"</rs:data>");
    return shape == Shape::Reversed ? u"<?xml version=\"1.0\"?>\n<!-- nodes -->\n" + text : text;
}

// Made once for each run.
inline const String& Text(Shape shape, int rows) {
    static std::map<std::pair<Shape, int>, String> texts;
    String& text = texts[{shape, rows}];
    if (text.empty())
        text = Make_Text(shape, rows);
    return text;
}

// As the editor opens it.
inline automation::Reference<recordset::Recordset> Opened(automation::String_View text) {
    const auto stream = automation::Create_Bound<recordset::Stream>(recordset::Stream_Program_Identity);
    stream->Open();
    stream->Borrow_Text(text);
    stream->Set_Position(0);
    auto rows = automation::Create_Bound<recordset::Recordset>(recordset::Recordset_Program_Identity);
    rows->Open(stream);
    stream->Close();
    return rows;
}

} // namespace benchmarks
