#include "sample.h"

#include <array>
#include <utility>

#include "schema.h"

namespace stores {

namespace {

constexpr const char* Entry_Changed = "3/18/2024 9:30:00 AM";
constexpr std::array Captions{"BLIND", "PARTIAL", "FULL", "DIALCONTINUE", "ENHANCED"};

// Retrieve, busy retry in seconds, retries, rings, busy on and off (or both busy on-times), ring on and
// off in milliseconds.
using Detail = std::array<const char*, 8>;
constexpr Detail Office{"!", "4", "3", "5", "500", "500", "2000", "4000"};
constexpr Detail Branch{"!,*1", "6", "2", "8", "400", "400", "1000", "4000"};
constexpr Detail Overseas{"!,,#", "10", "5", "10", "350", "350", "400", "2000"};
constexpr Detail Fast_Busy{"!!", "2", "6", "4", "250", "250", "2000", "4000"};
constexpr Detail Unset_Retrieve{"(null)", "4", "3", "5", "500", "500", "2000", "4000"};
constexpr Detail Unset_Rings{"!", "4", "3", nullptr, "350", "650", nullptr, nullptr};

struct Node {
    int Config, Partition, Number;
    const char* Label;
    int Supervised_Type;
    const char* Hookflash;
    const char* Threshold;
    const char* Transfer;
    const char* Disconnection;
    const Detail* Record; // null: none, as for every Blind node
};

constexpr std::array First_Partition{
    Node{1, 1, 0, "Default transfer", 1, "500", "7", "!", "!", &Office},
    Node{1, 1, 1, "Reception desk", 2, "500", "7", "!,,9#", "!,,*", &Office},
    Node{1, 1, 2, "Announcement only", 0, "600", "7", "!,8#", "!", nullptr},
    Node{1, 1, 3, "Sales queue", 1, "500", "4", "!,,7", "!", &Fast_Busy},
    Node{1, 1, 5, "Service hotline", 3, "700", "6", "!,,9,1#", "!,*", &Branch},
    Node{1, 1, 6, nullptr, 2, "550", "5", "!,,6#", "!", &Office},
    Node{1, 1, 8, "(null)", 1, "500", "7", "!,8", "!", &Unset_Retrieve},
    Node{1, 1, 9, "Night attendant", 4, "800", "2", "!,,0#", "!!", &Branch},
    Node{1, 1, 10, "Branch office overseas", 2, "750", "8", "!,,9*", "!,#", &Overseas},
    Node{1, 1, 12, "Second-level support", 1, "500", "7", "!,,12#", "!", &Office},
    Node{1, 1, 14, "Fax line", 3, "600", "3", "!,4#", "!", nullptr},
    Node{1, 1, 15, "Duty phone", 4, "650", "1", "!,,15#", "!,*", &Unset_Rings},
    Node{1, 1, 20, "Consultant, external", 0, "500", nullptr, nullptr, "!", nullptr},
};

constexpr std::array Second_Partition{
    Node{1, 2, 0, "Default transfer", 0, "500", "7", "!", "!", nullptr},
    Node{1, 2, 3, "Warehouse", 1, "500", "7", "!,3#", "!", &Office},
    Node{1, 2, 7, "Workshop", 2, "600", "6", "!,7#", "!", &Fast_Busy},
    Node{1, 2, 9, "Gate", 4, "500", "7", "!,9#", "!", &Branch},
};

struct List_Row {
    const char* ID;
    const char* English;
    const char* German;
};

constexpr std::array Node_Types{
    List_Row{"1", "MENU", "MENÜ"},           List_Row{"2", "PROMPT", "ANSAGE"},
    List_Row{"3", "QUEUE", "WARTESCHLANGE"}, List_Row{"4", "TRANSFER", "WEITERLEITUNG"},
    List_Row{"5", "STYLE", "STIL"},          List_Row{"6", "VOICE MAIL", "SPRACHBOX"},
    List_Row{"7", "SCHEDULE", "ZEITPLAN"},   List_Row{"8", "DIRECTORY", "VERZEICHNIS"},
    List_Row{"9", "HANG UP", "AUFLEGEN"},
};

constexpr std::array Threshold_Types{
    List_Row{"7", "Standard", "Standard"}, List_Row{"1", "Very low", "Sehr niedrig"},
    List_Row{"2", "Low", "Niedrig"},       List_Row{"3", "Medium low", "Eher niedrig"},
    List_Row{"4", "Medium", "Mittel"},     List_Row{"5", "Medium high", "Eher hoch"},
    List_Row{"6", "High", "Hoch"},         List_Row{"8", "Very high", "Sehr hoch"},
};

// Inserts rows many at a time: a server may be a long way off.
class Row_Inserter {
public:
    Row_Inserter(Connection& connection, const Record_Kind& kind)
        : connection(connection), start(SQL_Insert(kind)), full(connection, "") {
        start.erase(start.find(" VALUES ("));
    }

    void Add(const Values& row) {
        columns = row.size();
        values.insert(values.end(), row.begin(), row.end());
        if (values.size() < Most_Rows * columns)
            return;
        if (!is_prepared)
            full = Statement(connection, SQL_For(Most_Rows));
        is_prepared = true;
        full.Run(std::exchange(values, {}));
    }
    void Flush() {
        if (!values.empty())
            Statement(connection, SQL_For(values.size() / columns)).Run(std::exchange(values, {}));
    }

private:
    static constexpr std::size_t Most_Rows = 500; // their values are fewer than either database binds

    std::string SQL_For(std::size_t rows) const {
        std::string sql = start + " VALUES ";
        for (std::size_t at = 0; at < rows * columns; ++at)
            sql += (at % columns > 0 ? ", :v" : at > 0 ? "), (:v" : "(:v") + std::to_string(at);
        return sql + ")";
    }

    Connection& connection;
    std::string start;
    Statement full; // once there are so many rows
    bool is_prepared = false;
    std::size_t columns = 0;
    Values values; // of the rows that wait
};

// Inserts whole nodes: record, entry in the node list, detail record.
class Node_Inserter {
public:
    explicit Node_Inserter(Connection& connection)
        : record(connection, Node_Record()),
          entry(connection, Node_Entry()), details{
                                               Row_Inserter(connection, Detail_Record(*Detail_Tables[0])),
                                               Row_Inserter(connection, Detail_Record(*Detail_Tables[1])),
                                               Row_Inserter(connection, Detail_Record(*Detail_Tables[2])),
                                               Row_Inserter(connection, Detail_Record(*Detail_Tables[3]))} {}

    void Insert(const Node& node) {
        const auto type = static_cast<std::size_t>(node.Supervised_Type);
        record.Add({node.Config, node.Partition, node.Number, node.Hookflash, node.Threshold, node.Transfer,
                    node.Disconnection, Captions[type], std::to_string(type), node.Label});
        entry.Add({node.Config, node.Partition, node.Number, Style_Node_Type, node.Label, Entry_Changed});
        if (!node.Record)
            return;
        Values values{node.Config, node.Partition, node.Number, std::to_string(type)};
        values.insert(values.end(), node.Record->begin(), node.Record->end());
        details[type - 1].Add(values);
    }
    void Flush() {
        record.Flush();
        entry.Flush();
        for (Row_Inserter& detail : details)
            detail.Flush();
    }

private:
    Row_Inserter record, entry;
    std::array<Row_Inserter, 4> details;
};

// A node of a long partition: all types in turn, node 12 a Partial one.
Node Numbered(int config, int partition, int number, const char* label) {
    constexpr std::array Hookflashes{"500", "600", "700", "800"};
    constexpr std::array Thresholds{"7", "1", "2", "3", "4", "5", "6", "8"};
    constexpr std::array Transfers{"!,,9#", "!,8#", "!"};
    constexpr std::array Records{&Office, &Branch, &Overseas, &Fast_Busy};
    const auto index = static_cast<std::size_t>(number);
    const int type = (number + 4) % 5;
    return {config,
            partition,
            number,
            label,
            type,
            Hookflashes[index % Hookflashes.size()],
            Thresholds[index % Thresholds.size()],
            Transfers[index % Transfers.size()],
            "!",
            type == 0 ? nullptr : Records[index % Records.size()]};
}

void Insert_Numbered(Node_Inserter& inserter, int config, int partition, int last) {
    inserter.Insert(Numbered(config, partition, 0, "Default transfer"));
    for (int number = 1; number <= last; ++number) {
        const std::string label = "Extension " + std::to_string(1000 + number);
        inserter.Insert(Numbered(config, partition, number, label.c_str()));
    }
}

template <typename Rows>
void Insert_List(Connection& connection, const std::string& sql, const Rows& rows) {
    Statement insert(connection, sql);
    int position = 0;
    for (const List_Row& row : rows)
        insert.Run({++position, row.ID, row.English, row.German});
}

void Insert_Lists(Connection& connection) {
    Insert_List(connection,
                "INSERT INTO node_type (list_position, id, language_1, language_2) "
                "VALUES (:position, :id, :english, :german)",
                Node_Types);
    Insert_List(connection,
                "INSERT INTO threshold_type (list_position, threshold_type_id, language_1, language_2) "
                "VALUES (:position, :id, :english, :german)",
                Threshold_Types);
}

void Insert_Configuration(Connection& connection) {
    Statement insert(connection,
                     "INSERT INTO configuration (list_position, product_name, system_number, site_name, "
                     "site_number, product_version, release_number) "
                     "VALUES (:position, :product, :system, :site, :number, :version, :release)");
    insert.Run({1, "ZEBRIX", "1", "Main site", "12", "4.2", "420"});
}

} // namespace

void Insert_Sample(Connection& connection, std::optional<int> nodes) {
    Node_Inserter inserter(connection);
    if (nodes)
        Insert_Numbered(inserter, 1, 1, *nodes);
    else
        for (const Node& node : First_Partition)
            inserter.Insert(node);
    for (const Node& node : Second_Partition)
        inserter.Insert(node);
    Insert_Numbered(inserter, 3, 1, 12);
    inserter.Flush();
    Insert_Lists(connection);
    Insert_Configuration(connection);
}

} // namespace stores
