// Changes are taken back in the order opposite to the one in which they were made, each record at once.
#include <algorithm>
#include <map>
#include <set>

#include "history.h"
#include "record_batch.h"
#include "recordset/writer.h"

namespace stores {

namespace {

using automation::Variant;

using Columns = std::map<std::string, std::optional<std::string>>;

// A record, by its table and its keys.
struct Place {
    const Record_Kind* Kind;
    std::vector<int> Keys;

    friend bool operator<(const Place& left, const Place& right) {
        return std::tie(left.Keys, left.Kind->Table) < std::tie(right.Keys, right.Kind->Table);
    }
};

using Node_Keys = std::vector<int>; // configuration, partition, node
using Partition_Keys = std::pair<int, int>;

Node_Keys Node_Of(const Place& place) {
    return {place.Keys.begin(), place.Keys.begin() + 3};
}

// What a record is to be.
struct Wanted {
    bool Is_There = true;
    bool Is_Whole = false; // columns that are not named are null
    Columns Values;
};

// What an older change leads back to, on top of what younger ones do.
void Take_Back(Wanted& wanted, const Entry& entry) {
    if (!entry.Old) {
        wanted = {false, true, {}};
        return;
    }
    if (!wanted.Is_There || !entry.New)
        wanted = {true, !entry.New, {}};
    for (const auto& [column, value] : *entry.Old)
        wanted.Values[column] = value;
}

const std::vector<recordset::Field_Description> Fields{
    {u"ConfigID"}, {u"PartitionID"}, {u"NodeNumber"}, {u"Record"}, {u"Old"}, {u"New"}, {u"Refusal"}};

class Reversal {
public:
    Reversal(Session& session, Connection& connection, std::string first, std::string last, bool force)
        : connection(connection), change(connection, session.Editor, "store revert"), first(std::move(first)),
          last(std::move(last)), force(force) {}

    // Whether it is to be done.
    bool Plan() {
        if (!Is_There(first) || !Is_There(last))
            return false;
        if (std::stoll(first) > std::stoll(last))
            std::swap(first, last);
        Lock();
        Read_Entries(connection, "WHERE change BETWEEN :first AND :last ORDER BY change DESC, entry DESC",
                     {first, last}, [&](Entry& entry) { Take(entry); });
        if (!force)
            Find_Younger_Changes();
        Read_Present();
        for (const auto& [place, wanted] : plan)
            Compare(place, wanted);
        return refusals.empty() && !is_refused && !steps.empty();
    }

    std::string Do() {
        std::map<Partition_Keys, Record_Batch> batches;
        for (const auto& [place, step] : steps)
            Write(batches.try_emplace({place.Keys[0], place.Keys[1]}, change, place.Keys[0], place.Keys[1])
                      .first->second,
                  place, step);
        for (auto& [keys, batch] : batches)
            batch.Flush();
        std::string number = change.Number();
        change.Close();
        return number;
    }

    Variant Rows() const {
        recordset::Writer writer(Fields);
        for (const std::string& refusal : refusals)
            Add(writer, Byte_Row{{}, {}, {}, {}, {}, {}, refusal});
        for (const auto& [place, step] : steps)
            Add(writer,
                {std::to_string(place.Keys[0]), std::to_string(place.Keys[1]), std::to_string(place.Keys[2]),
                 place.Kind->Table, step.Old ? std::optional(JSON_Of(*step.Old)) : std::nullopt,
                 step.New ? std::optional(JSON_Of(*step.New)) : std::nullopt, step.Refusal});
        return Variant(std::move(writer).Finish_Text());
    }

private:
    // From what a record holds to what it is to hold, the columns that differ.
    struct Step {
        std::optional<Members> Old, New;
        std::optional<std::string> Refusal;
    };

    static void Add(recordset::Writer& writer, const Byte_Row& row) {
        writer.Add_UTF8_Row(UTF8_Row(row.begin(), row.end()));
    }
    bool Is_There(const std::string& number) {
        const bool is_number = !number.empty() && number.size() <= 18 &&
                               number.find_first_not_of("0123456789") == std::string::npos;
        if (is_number && Statement(connection, "SELECT 1 FROM change_log WHERE change = :change LIMIT 1")
                             .First_Row({number}))
            return true;
        refusals.insert("Change " + For_A_Message(number) +
                        " does not exist; see style-editor store history for those that do");
        return false;
    }
    // All of them at first, and in one order: who waits holds nothing that another one waits for.
    void Lock() {
        Statement select(connection,
                         "SELECT DISTINCT config_id, partition_id FROM change_log WHERE change BETWEEN "
                         ":first AND :last ORDER BY config_id, partition_id");
        select.Run({first, last});
        std::set<Partition_Keys> partitions;
        for (UTF8_Row row; select.Next(row);)
            partitions.emplace(std::atoi(std::string(row[0].value_or("")).c_str()),
                               std::atoi(std::string(row[1].value_or("")).c_str()));
        for (const auto& [config, partition] : partitions)
            change.Lock(config, partition);
    }
    void Take(const Entry& entry) {
        if (!entry.Broken.empty()) {
            refusals.insert("Change " + entry.Change_Number() + ", entry " + entry.Columns[1].value_or("?") +
                            " holds no values that could be taken back (" + entry.Broken +
                            "); the owner of the store can look at the table change_log");
            return;
        }
        Place place{entry.Kind, {}};
        for (const Value& key : entry.Keys)
            place.Keys.push_back(*key.Key);
        Take_Back(plan[place], entry);
    }
    void Find_Younger_Changes() {
        std::set<Partition_Keys> partitions;
        for (const auto& [place, wanted] : plan)
            partitions.emplace(place.Keys[0], place.Keys[1]);
        for (const auto& [config, partition] : partitions) {
            Statement select(connection,
                             "SELECT node_number, MAX(change) FROM change_log WHERE config_id = :config "
                             "AND partition_id = :partition AND change > :last GROUP BY node_number");
            select.Run({config, partition, last});
            for (UTF8_Row row; select.Next(row);)
                younger[{config, partition, std::atoi(std::string(row[0].value_or("")).c_str())}] =
                    row[1].value_or("");
        }
    }
    // What the records hold now, one question for each table of a partition.
    void Read_Present() {
        std::map<std::pair<Partition_Keys, const Record_Kind*>, std::string> nodes; // as JSON
        for (const auto& [place, wanted] : plan) {
            std::string& numbers = nodes[{{place.Keys[0], place.Keys[1]}, place.Kind}];
            numbers += (numbers.empty() ? "" : ", ") + std::to_string(place.Keys[2]);
        }
        for (const auto& [where, numbers] : nodes)
            Read_Present(*where.second, where.first, "[" + numbers + "]");
    }
    void Read_Present(const Record_Kind& kind, const Partition_Keys& partition, const std::string& nodes) {
        Statement select(
            connection,
            "SELECT " + SQL_List(kind.Keys) + ", " + SQL_List(kind.Columns) + " FROM " + kind.Table +
                " WHERE config_id = :config AND partition_id = :partition AND node_number IN (SELECT "
                "CAST(v.value AS INTEGER) FROM " +
                (connection.Is_File() ? "json_each(:nodes) AS v)"
                                      : "jsonb_array_elements_text(CAST(:nodes AS jsonb)) AS v(value))"));
        select.Run({partition.first, partition.second, nodes});
        for (UTF8_Row row; select.Next(row);) {
            Place place{&kind, {}};
            for (std::size_t key = 0; key < kind.Keys.size(); ++key)
                place.Keys.push_back(std::atoi(std::string(row[key].value_or("")).c_str()));
            Columns& columns = present[std::move(place)];
            for (std::size_t column = 0; column < kind.Columns.size(); ++column)
                columns[kind.Columns[column]] = row[kind.Keys.size() + column];
        }
    }
    void Compare(const Place& place, const Wanted& wanted) {
        const auto found = present.find(place);
        const Columns* const held = found == present.end() ? nullptr : &found->second;
        Step step;
        if (held && !wanted.Is_There)
            step.Old = Members(held->begin(), held->end());
        else if (wanted.Is_There && (held || wanted.Is_Whole))
            Compare_Columns(step, place, held, wanted);
        else if (wanted.Is_There)
            step.Refusal = "the record that it would change does not exist any more";
        if (!step.Old && !step.New && !step.Refusal)
            return; // it is as it is to be
        if (const auto since = younger.find(Node_Of(place)); since != younger.end())
            step.Refusal = "it was changed by " + Who_And_When(connection, since->second) +
                           " since, in change " + since->second;
        if (step.Refusal)
            is_refused = true;
        steps.emplace(place, std::move(step));
    }
    static void Compare_Columns(Step& step, const Place& place, const Columns* held, const Wanted& wanted) {
        Members before, after;
        for (const std::string& column : place.Kind->Columns) {
            const auto found = wanted.Values.find(column);
            if (found == wanted.Values.end() && !wanted.Is_Whole)
                continue;
            const auto value = found == wanted.Values.end() ? std::nullopt : found->second;
            if (held && held->at(column) == value)
                continue;
            if (value && value->find('\0') != std::string::npos)
                step.Refusal = "its " + column + " was a text that cannot be stored again";
            if (held)
                before.emplace_back(column, held->at(column));
            after.emplace_back(column, value);
        }
        if (held && after.empty())
            return;
        if (held)
            step.Old = std::move(before);
        step.New = std::move(after);
    }
    static void Write(Record_Batch& batch, const Place& place, const Step& step) {
        const Values keys(place.Keys.begin() + 2, place.Keys.end());
        Record_Batch::Fields fields;
        for (const auto& [column, value] : step.New.value_or(Members()))
            fields.emplace_back(column, value ? Value(*value) : Value(nullptr));
        if (!step.New)
            batch.Delete(*place.Kind, keys);
        else if (step.Old)
            batch.Update(*place.Kind, keys, fields);
        else
            batch.Insert(*place.Kind, keys, fields);
    }

    Connection& connection;
    Change change;
    std::string first, last;
    const bool force;
    std::map<Place, Wanted> plan;
    std::map<Place, Columns> present;
    std::map<Node_Keys, std::string> younger; // the number of the last change after those
    std::map<Place, Step> steps;
    std::set<std::string> refusals; // that concern no record
    bool is_refused = false;
};

} // namespace

Reverted Revert(Session& session, const std::string& first, const std::string& last, bool force,
                bool dry_run) {
    Reverted reverted;
    session.Begin_Work(Access::Write);
    try {
        session.Write([&](Connection& connection) {
            Reversal reversal(session, connection, first, last, force);
            const bool is_done = reversal.Plan() && !dry_run;
            reverted.Rows = reversal.Rows();
            if (is_done)
                reverted.Change = reversal.Do();
        });
        if (!reverted.Change.empty())
            session.Commit_Work();
    } catch (...) {
        session.Roll_Back_Work();
        throw;
    }
    session.Roll_Back_Work();
    return reverted;
}

} // namespace stores
