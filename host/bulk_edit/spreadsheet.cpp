#include "spreadsheet.h"

#include <algorithm>
#include <memory>
#include <new>

#include <csv.h>

#include "automation/text.h"

namespace host {

namespace {

constexpr std::size_t Own = interfaces::Node_Record;
constexpr std::size_t Longest_Cell = 1'000'000; // bytes; a node's texts are a thousandth of it

struct Column {
    enum class What { Number, Change, Value } Is;
    std::size_t Kind = 0, Index = 0; // of a value
};

std::string Name_Of(const Column& column) {
    switch (column.Is) {
    case Column::What::Number:
        return "NodeNumber";
    case Column::What::Change:
        return "Change";
    case Column::What::Value:
        break;
    }
    return Full_Name(column.Kind, column.Index);
}

std::vector<Column> All_Columns() {
    std::vector<Column> columns{{Column::What::Number}, {Column::What::Change}};
    for (std::size_t kind = 0; kind < Record_Kinds; ++kind)
        for (std::size_t index = 0; index < Values_Of_A_Record; ++index)
            columns.push_back({Column::What::Value, kind, index});
    return columns;
}

// A value that follows from others as a rule; such a column stands there only if one does not.
bool May_Follow(const Column& column) {
    if (column.Is != Column::What::Value)
        return false;
    return column.Kind == Own ? column.Index >= node_value::Entry_Label : column.Index == detail_value::Type;
}

// Null where there is nothing to write.
const Stored* Cell_Of(const Node& node, const Column& column) {
    const auto& record = node.Records[column.Kind];
    return record && !Follows(node, column.Kind, column.Index) ? &(*record)[column.Index] : nullptr;
}

std::string Quoted(const std::string& text) {
    if (!text.empty() && text.find_first_of("\",;\r\n") == std::string::npos && text.front() != ' ' &&
        text.back() != ' ')
        return text;
    std::string quoted = "\"";
    for (const char byte : text)
        quoted += byte == '"' ? std::string("\"\"") : std::string(1, byte);
    return quoted + "\"";
}

std::string Cell(const Node& node, const Column& column) {
    switch (column.Is) {
    case Column::What::Number:
        return std::to_string(node.Number);
    case Column::What::Change:
        return automation::To_UTF8(node.Change);
    case Column::What::Value:
        break;
    }
    const Stored* const value = Cell_Of(node, column);
    return value && *value ? Quoted(automation::To_UTF8(**value)) : "";
}

// Reads through libcsv, whose functions answer by calling back.
class Reader {
public:
    explicit Reader(std::string_view text) : text(text) {
        if (csv_init(&parser, CSV_STRICT | CSV_STRICT_FINI | CSV_EMPTY_IS_NULL) != 0)
            throw std::bad_alloc();
        csv_set_space_func(&parser, [](unsigned char) { return 0; }); // blanks belong to a cell
        const auto first = text.substr(0, text.find('\n'));
        if (first.find(',') == std::string_view::npos && first.find(';') != std::string_view::npos)
            csv_set_delim(&parser, ';');
    }
    ~Reader() { csv_free(&parser); }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    std::vector<Spreadsheet_Row> Read() {
        for (std::string_view rest = text; !rest.empty(); ++line) {
            const std::string_view now = rest.substr(0, std::min(rest.find('\n'), rest.size() - 1) + 1);
            rest.remove_prefix(now.size());
            if (csv_parse(&parser, now.data(), now.size(), Take_Cell, Take_Row, this) != now.size())
                return Broken();
        }
        if (csv_fini(&parser, Take_Cell, Take_Row, this) != 0)
            return Broken();
        return std::move(rows);
    }

private:
    using Cell_Text = std::optional<std::string>; // nothing: empty and not in quotes

    static void Take_Cell(void* bytes, std::size_t size, void* self) {
        Reader& reader = *static_cast<Reader*>(self);
        const bool fits = size <= Longest_Cell;
        reader.too_long = reader.too_long || !fits;
        reader.cells.push_back(bytes && fits ? Cell_Text({static_cast<const char*>(bytes), size})
                                             : Cell_Text());
    }
    static void Take_Row(int, void* self) {
        Reader& reader = *static_cast<Reader*>(self);
        reader.Row();
        reader.cells.clear();
        reader.too_long = false;
        reader.begin = reader.line + 1;
    }

    std::vector<Spreadsheet_Row> Broken() {
        if (csv_error(&parser) == CSV_ENOMEM)
            throw std::bad_alloc();
        rows.push_back(
            {std::min(line, begin), {}, "a quote in a cell is written twice, and the cell stands in quotes"});
        return std::move(rows);
    }

    void Row() try {
        if (std::all_of(cells.begin(), cells.end(),
                        [](const Cell_Text& cell) { return !cell || cell->empty(); }))
            return;
        if (is_lost)
            return;
        if (too_long)
            throw Line_Error("a cell is longer than " + std::to_string(Longest_Cell) + " bytes");
        if (columns.empty())
            Take_Columns();
        else
            rows.push_back({begin, Node(), {}});
    } catch (const Line_Error& error) {
        rows.push_back({begin, {}, error.what()});
    }

    // Without the first line the others mean nothing.
    void Take_Columns() {
        is_lost = true;
        std::vector<std::optional<Column>> named;
        const auto known = All_Columns();
        for (const Cell_Text& cell : cells) {
            const auto is_it = [&](const Column& column) { return cell && Name_Of(column) == *cell; };
            const auto found = std::find_if(known.begin(), known.end(), is_it);
            if (found == known.end() && cell)
                throw Line_Error(
                    "\"" + *cell +
                    "\" is no value of a node; see style-editor store export --csv for the names");
            const auto same = [&](const auto& other) { return other && cell && Name_Of(*other) == *cell; };
            if (std::any_of(named.begin(), named.end(), same))
                throw Line_Error("\"" + *cell + "\" names two columns");
            named.push_back(found == known.end() ? std::nullopt : std::optional(*found));
        }
        const auto is_number = [](const auto& column) {
            return column && column->Is == Column::What::Number;
        };
        if (std::none_of(named.begin(), named.end(), is_number))
            throw Line_Error("the first line names the columns, and one of them is NodeNumber");
        columns = std::move(named);
        is_lost = false;
    }

    Wanted_Node Node() const {
        Wanted_Node wanted;
        std::optional<std::string> number;
        for (std::size_t at = 0; at < cells.size(); ++at) {
            const bool is_empty = !cells[at] || cells[at]->empty();
            if (at >= columns.size() || !columns[at]) {
                if (!is_empty)
                    throw Line_Error("cell " + std::to_string(at + 1) + " stands in a column without a name");
                continue;
            }
            const Column& column = *columns[at];
            if (column.Is == Column::What::Number)
                number = cells[at];
            else if (column.Is == Column::What::Change)
                wanted.Change = Wanted_Change(cells[at]);
            else if (cells[at])
                wanted.Records[column.Kind].Given[column.Index] = automation::From_UTF8_Replacing(*cells[at]);
            else if (!May_Follow(column))
                wanted.Records[column.Kind].Left_Empty.insert(column.Index);
        }
        wanted.Number = Wanted_Number(number);
        return wanted;
    }

    const std::string_view text;
    csv_parser parser{};
    std::vector<Cell_Text> cells;
    bool too_long = false;
    bool is_lost = false;                       // the first line is none
    std::size_t line = 1, begin = 1;            // counted from 1
    std::vector<std::optional<Column>> columns; // none before the first line
    std::vector<Spreadsheet_Row> rows;
};

bool Is_Empty(const Stored& value) {
    return !value || value->empty();
}

} // namespace

std::string Spreadsheet_Of(const Nodes& nodes) {
    std::vector<Column> columns = All_Columns();
    std::erase_if(columns, [&](const Column& column) {
        const auto is_written = [&](const auto& entry) { return Cell_Of(entry.second, column) != nullptr; };
        return May_Follow(column) && std::none_of(nodes.begin(), nodes.end(), is_written);
    });
    std::string text;
    const auto add_row = [&](const auto& cell_of) {
        for (const Column& column : columns)
            text += (&column == &columns.front() ? "" : ",") + cell_of(column);
        text += "\r\n";
    };
    add_row(Name_Of);
    for (const auto& [number, node] : nodes)
        add_row([&, &of = node](const Column& column) { return Cell(of, column); });
    return text;
}

bool Is_Spreadsheet(const std::string& file, std::string_view text) {
    const auto first = text.substr(0, text.find('\n'));
    const bool is_json = first.find_first_not_of(" \t\r") != std::string_view::npos &&
                         first[first.find_first_not_of(" \t\r")] == '{';
    return !is_json && (file.ends_with(".csv") || first.find("NodeNumber") != std::string_view::npos);
}

std::vector<Spreadsheet_Row> Parse_Spreadsheet(std::string_view text) {
    return Reader(text).Read();
}

void Settle_Empty_Cells(Wanted_Node& wanted, const Node& stored) {
    for (auto& [kind, record] : wanted.Records) {
        const auto& held = stored.Records[kind];
        const bool goes = held && kind != Own && record.Given.empty();
        for (const std::size_t at : record.Left_Empty)
            if (held && !Is_Empty((*held)[at]))
                record.Given[at] = String();
        if (goes && !record.Given.empty())
            record = {true, {}, {}};
    }
    std::erase_if(wanted.Records,
                  [](const auto& entry) { return !entry.second.Removed && entry.second.Given.empty(); });
}

} // namespace host
