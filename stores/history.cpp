#include "history.h"

#include <algorithm>
#include <charconv>

#include "components.h"
#include "recordset/writer.h"

namespace stores {

namespace {

using automation::Variant;

enum Column : std::size_t {
    Change_Column,
    Entry_Column,
    At,
    By,
    User,
    Operation,
    Record_Column,
    Config,
    Partition,
    Node,
    Type,
    Old,
    New
};
static_assert(Entry_Columns.size() == New + 1);

constexpr std::size_t Longest_Name = 300, Longest_Object = 4'000'000, Longest_Broken = 1000;

constexpr std::array Key_Columns{"config_id", "partition_id", "node_number"};

const std::vector<recordset::Field_Description> Fields{
    {u"Change"},    {u"Entry"},  {u"At"},       {u"By"},          {u"DatabaseUser"},
    {u"Operation"}, {u"Record"}, {u"ConfigID"}, {u"PartitionID"}, {u"NodeNumber"},
    {u"Old"},       {u"New"},    {u"Broken"}};

// One unit more than an entry may have: who finds it knows that the rest is missing.
std::string Bounded(const Connection& connection, std::size_t column) {
    const std::string name = Entry_Columns[column];
    const std::string length = std::to_string((column >= Old ? Longest_Object : Longest_Name) + 1);
    return connection.Is_File()
               ? "COALESCE(substr(CAST(" + name + " AS BLOB), 1, " + length + "), substr(" + name + ", 1, 0))"
               : "left(CAST(" + name + " AS text), " + length + ")";
}

std::optional<std::int64_t> Number_In(const std::optional<std::string>& text) {
    std::int64_t number = 0;
    if (!text)
        return {};
    const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), number);
    return error == std::errc() && end == text->data() + text->size() ? std::optional(number) : std::nullopt;
}

bool Is_Key(const std::optional<std::string>& text) {
    const auto number = Number_In(text);
    return number && *number >= INT32_MIN && *number <= INT32_MAX;
}

bool Is_Name(const std::string& text) {
    return text.size() <= Longest_Name && Can_Be_Delivered(text) &&
           std::none_of(text.begin(), text.end(),
                        [](char each) { return static_cast<unsigned char>(each) < ' '; });
}

const Record_Kind* Kind_Named(const std::string& table) {
    for (const Record_Kind* kind : All_Kinds())
        if (kind->Table == table)
            return kind;
    return nullptr;
}

// An object of columns that the kind has.
std::optional<Members> Values_In(const std::string& json, const Record_Kind* kind) {
    auto members = json.size() <= Longest_Object ? Parse_Members(json) : std::nullopt;
    const auto is_unknown = [&](const auto& member) {
        return kind &&
               std::find(kind->Columns.begin(), kind->Columns.end(), member.first) == kind->Columns.end();
    };
    return members && std::none_of(members->begin(), members->end(), is_unknown) ? members : std::nullopt;
}

bool Is_Sound(Entry& entry, std::size_t column) {
    const auto& text = entry.Columns[column];
    switch (column) {
    case Change_Column:
    case Entry_Column:
        return Number_In(text).has_value();
    case Config:
    case Partition:
    case Node:
        return Is_Key(text);
    case Type:
        return !text || Is_Key(text);
    case At:
    case Operation:
        return text && Is_Name(*text);
    case By:
    case User:
        return !text || Is_Name(*text);
    case Record_Column:
        entry.Kind = text ? Kind_Named(*text) : nullptr;
        return entry.Kind;
    default:
        break;
    }
    auto& values = column == Old ? entry.Old : entry.New;
    if (text)
        values = Values_In(*text, entry.Kind);
    return !text || values;
}

std::string Cut(const std::string& text) {
    const std::string escaped = Escaped(std::string_view(text).substr(0, Longest_Broken));
    return text.size() > Longest_Broken ? escaped + "..." : escaped;
}

// Version 2 did not note the type of an entry in the node list; it wrote those of these nodes alone.
Values Keys_Of(const Entry& entry) {
    Values keys;
    for (const std::size_t column : {Config, Partition, Node})
        keys.emplace_back(static_cast<int>(*Number_In(entry.Columns[column])));
    if (entry.Kind->Keys.size() > keys.size())
        keys.emplace_back(static_cast<int>(Number_In(entry.Columns[Type]).value_or(Style_Node_Type)));
    return keys;
}

void Judge(Entry& entry) {
    for (std::size_t column = 0; column < entry.Columns.size(); ++column) {
        if (Is_Sound(entry, column))
            continue;
        entry.Broken.append(entry.Broken.empty() ? "" : " ").append(Entry_Columns[column]);
        if (entry.Columns[column])
            entry.Columns[column] = Cut(*entry.Columns[column]);
    }
    if (entry.Broken.empty()) {
        entry.Keys = Keys_Of(entry);
        return;
    }
    entry.Kind = nullptr;
}

} // namespace

void Read_Entries(Connection& connection, const std::string& condition, const Values& values,
                  const std::function<void(Entry&)>& take) {
    std::string columns;
    for (std::size_t column = 0; column < Entry_Columns.size(); ++column)
        columns.append(columns.empty() ? "" : ", ").append(Bounded(connection, column));
    Statement select(connection, "SELECT " + columns + " FROM change_log " + condition);
    select.Run(values);
    for (UTF8_Row row; select.Next(row);) {
        Entry entry;
        entry.Columns.assign(row.begin(), row.end());
        Judge(entry);
        take(entry);
    }
}

Variant Changes_Of(Session& session, const std::array<const Variant*, 3>& keys) {
    std::string condition;
    Values values;
    for (std::size_t key = 0; key < keys.size(); ++key) {
        if (keys[key]->Type() == automation::Variant_Type::Empty)
            continue;
        condition += std::string(condition.empty() ? "WHERE " : " AND ") + Key_Columns[key] +
                     " = :" + Key_Columns[key];
        values.emplace_back(Key_Of(*keys[key]));
    }
    recordset::Writer writer(Fields);
    session.Read([&](Connection& connection) {
        Read_Entries(connection, condition + " ORDER BY change, entry", values, [&](Entry& entry) {
            // The JSON of a sound one is written anew: it may hold what is no document's.
            if (entry.Old)
                entry.Columns[Old] = JSON_Of(*entry.Old);
            if (entry.New)
                entry.Columns[New] = JSON_Of(*entry.New);
            UTF8_Row row(entry.Columns.begin(), entry.Columns.end());
            row.erase(row.begin() + Type);
            row.push_back(entry.Broken.empty() ? std::nullopt
                                               : std::optional<std::string_view>(entry.Broken));
            writer.Add_UTF8_Row(row);
        });
    });
    return Variant(std::move(writer).Finish_Text());
}

} // namespace stores
