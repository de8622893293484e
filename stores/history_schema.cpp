#include "history_schema.h"

#include <algorithm>
#include <array>

#include "schema.h"

namespace stores {

namespace {

using Texts = std::vector<std::string>;

std::string Concatenated(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts)
        text.append(part);
    return text;
}

std::string Joined(const Texts& parts, const std::string& separator) {
    std::string text;
    for (const std::string& part : parts)
        text.append(text.empty() ? "" : separator).append(part);
    return text;
}

void Replace_All(std::string& text, const std::string& from, const std::string& to) {
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

// The text with "@NAME@" replaced.
std::string Filled(std::string text, const std::vector<std::pair<std::string, std::string>>& names) {
    for (const auto& [name, value] : names)
        Replace_All(text, "@" + name + "@", value);
    return text;
}

// --- expressions that both kinds of database have, each in its own words

struct Dialect {
    const char *Differs, *Quoted, *Quoted_End;
    const char *Old, *New;
};
// A file's own JSON functions are refused in triggers by whoever distrusts files. Control characters are left
// to the one trigger that all entries go through.
constexpr Dialect Of_A_File{"IS NOT", "COALESCE('\"' || replace(replace(CAST(",
                            R"( AS TEXT), '\', '\\'), '"', '\"') || '"', 'null'))", "OLD.", "NEW."};
constexpr Dialect Of_A_Server{"IS DISTINCT FROM", "COALESCE(CAST(to_json(", ") AS text), 'null')", "o.",
                              "n."};

// The old and the new values differ in one of the columns; an entry's time of change alone is no news.
std::string Differ(const Dialect& dialect, const Texts& columns) {
    Texts parts;
    for (const std::string& column : columns)
        if (column != "changed")
            parts.push_back(
                Concatenated({dialect.Old, column, " ", dialect.Differs, " ", dialect.New, column}));
    return Joined(parts, " OR ");
}

// A JSON object of a row's columns: all of them, or those whose values differ or that `all` asks for.
std::string Object(const Dialect& dialect, const Record_Kind& kind, const std::string& row,
                   const std::string& all) {
    Texts parts;
    for (const std::string& column : kind.Columns) {
        const std::string member =
            Concatenated({"', \"", column, "\": ' || ", dialect.Quoted, row, column, dialect.Quoted_End});
        if (all.empty())
            parts.push_back(member);
        else
            parts.push_back(Concatenated({"CASE WHEN ", all, dialect.Old, column, " ", dialect.Differs, " ",
                                          dialect.New, column, " THEN ", member, " ELSE '' END"}));
    }
    return "'{' || substr(" + Joined(parts, " || ") + ", 3) || '}'";
}

std::string Type_Of_Entry(const Record_Kind& kind, const std::string& row) {
    return kind.Keys.size() > 3 ? row + kind.Keys[3] : "NULL";
}

std::string Same_Keys(const Record_Kind& kind, const std::string& left, const std::string& right) {
    Texts parts;
    for (const std::string& key : kind.Keys)
        parts.push_back(Concatenated({left, key, " = ", right, key}));
    return Joined(parts, " AND ");
}

// --- a file

constexpr const char* Create_Log =
    "CREATE TABLE change_log (change BIGINT NOT NULL, entry INTEGER NOT NULL, changed_at TEXT NOT NULL, "
    "changed_by TEXT, "
    "database_user TEXT, editor TEXT, operation TEXT NOT NULL, record TEXT NOT NULL, "
    "config_id INTEGER NOT NULL, partition_id INTEGER NOT NULL, node_number INTEGER NOT NULL, "
    "node_type_id INTEGER, old_values TEXT, new_values TEXT, PRIMARY KEY (change, entry)) WITHOUT ROWID";

// A table in its new layout, with what it holds. By way of a copy: a view on it would be in the way of a
// renaming.
void Rebuild(Texts& steps, const std::string& table, const std::string& definition,
             const std::string& filling) {
    steps.push_back("CREATE TEMPORARY TABLE rebuilt AS SELECT * FROM " + table);
    steps.push_back("DROP TABLE " + table);
    steps.push_back(definition);
    steps.push_back("INSERT INTO " + table + filling + " FROM temp.rebuilt");
    steps.emplace_back("DROP TABLE temp.rebuilt");
}

// Whether nobody has added anything to the table: then it may be made anew.
bool Is_As_Made(Connection& connection, const Record_Kind& kind) {
    const auto found =
        Statement(connection,
                  "SELECT (SELECT COUNT(*) FROM pragma_table_info(:name)), (SELECT COUNT(*) FROM "
                  "sqlite_master WHERE tbl_name = :table AND type <> 'table' AND sql IS NOT NULL)")
            .First_Row({kind.Table, kind.Table});
    return found && (*found)[0] == std::to_string(kind.Keys.size() + kind.Columns.size()) &&
           (*found)[1] == "0";
}

std::string Copied(const Record_Kind& kind) {
    const std::string columns = SQL_List(kind.Keys) + ", " + SQL_List(kind.Columns);
    return " (" + columns + ") SELECT " + columns;
}

Texts File_To_Version_3(Connection& connection) {
    Texts steps;
    for (const Record_Kind* kind : All_Kinds())
        if (Is_As_Made(connection, *kind))
            Rebuild(steps, kind->Table, SQL_Create(*kind) + " WITHOUT ROWID", Copied(*kind));
    steps.emplace_back("DROP INDEX IF EXISTS change_log_of_node");
    Rebuild(steps, "change_log", Create_Log,
            " SELECT change, 1, changed_at, changed_by, database_user, editor, operation, record, config_id, "
            "partition_id, node_number, NULL, old_values, new_values");
    steps.emplace_back(
        "CREATE INDEX change_log_of_partition ON change_log (config_id, partition_id, change, node_number)");
    steps.emplace_back("CREATE TABLE change_author (person TEXT, editor TEXT, operation TEXT)");
    steps.emplace_back("CREATE TABLE change_replaced (old_values TEXT)");
    steps.emplace_back("CREATE VIEW change_entry AS SELECT record, operation, config_id, partition_id, "
                       "node_number, node_type_id, old_values, new_values FROM change_log WHERE 0");
    return steps;
}

// Puts control characters of the entry just made as JSON has them, a few with each statement: SQLite's parser
// does not nest much deeper.
constexpr const char* Escape_Some = R"(
    UPDATE change_log SET old_values = @OLD@, new_values = @NEW@
    WHERE change = @CHANGE@ AND entry = (SELECT MAX(entry) FROM change_log WHERE change = @CHANGE@)
        AND (old_values @ONE@ OR new_values @ONE@);)";

std::string Escape_Controls() {
    constexpr unsigned Together = 8;
    constexpr std::string_view digits = "0123456789abcdef";
    std::string statements;
    for (unsigned first = 0; first < 32; first += Together) {
        const auto replaced = [&](std::string text) {
            for (unsigned code = std::max(first, 1U); code < first + Together; ++code)
                text = Concatenated({"replace(", text, ", char(", std::to_string(code), "), '\\u00",
                                     code < 16 ? "0" : "1", digits.substr(code % 16U, 1), "')"});
            return text;
        };
        const std::string has_one = "GLOB '*[' || char(1) || '-' || char(31) || ']*'";
        statements +=
            Filled(Escape_Some,
                   {{"OLD", replaced("old_values")}, {"NEW", replaced("new_values")}, {"ONE", has_one}});
    }
    return statements;
}

// A change without an author is another program's, which gets a number for each row.
constexpr const char* Note_Entry = R"(
CREATE TRIGGER change_entry_noted INSTEAD OF INSERT ON change_entry BEGIN
    UPDATE change_counter SET last_change = last_change + 1 WHERE NOT EXISTS (SELECT 1 FROM change_author);
    INSERT INTO change_log (change, entry, changed_at, changed_by, database_user, editor, operation, record,
        config_id, partition_id, node_number, node_type_id, old_values, new_values)
    VALUES (@CHANGE@, 1 + COALESCE((SELECT MAX(entry) FROM change_log WHERE change = @CHANGE@), 0),
        strftime('%Y-%m-%d %H:%M:%S', 'now'), (SELECT person FROM change_author), NULL,
        (SELECT editor FROM change_author), COALESCE((SELECT operation FROM change_author), NEW.operation),
        NEW.record, NEW.config_id, NEW.partition_id, NEW.node_number, NEW.node_type_id, NEW.old_values,
        NEW.new_values);
    @ESCAPE@
END)";

void Add_File_Triggers(Texts& steps, const Record_Kind& kind) {
    const auto entry = [&](const std::string& operation, const std::string& row,
                           const std::string& old_values, const std::string& new_values,
                           const std::string& condition = "1") {
        return "INSERT INTO change_entry (record, operation, config_id, partition_id, node_number, "
               "node_type_id, "
               "old_values, new_values) SELECT '" +
               kind.Table + "', '" + operation + "', " + row + "config_id, " + row + "partition_id, " + row +
               "node_number, " + Type_Of_Entry(kind, row) + ", " + old_values + ", " + new_values +
               " WHERE " + condition + "; ";
    };
    const auto trigger = [&](const std::string& name, const std::string& when, const std::string& body) {
        steps.push_back("CREATE TRIGGER " + kind.Table + "_" + name + " " + when + " BEGIN " + body + "END");
    };
    const std::string whole_old = Object(Of_A_File, kind, "OLD.", "");
    const std::string whole_new = Object(Of_A_File, kind, "NEW.", "");
    const std::string table = " ON " + kind.Table;
    // INSERT OR REPLACE removes a row without a trigger for it.
    trigger("inserting", "BEFORE INSERT" + table,
            "DELETE FROM change_replaced; INSERT INTO change_replaced SELECT " +
                Object(Of_A_File, kind, "t.", "") + " FROM " + kind.Table + " t WHERE " +
                Same_Keys(kind, "t.", "NEW.") + "; ");
    const std::string replaced = "(SELECT old_values FROM change_replaced)";
    trigger("inserted", "AFTER INSERT" + table,
            entry("INSERT", "NEW.", replaced, whole_new, replaced + " IS NOT " + whole_new) +
                "DELETE FROM change_replaced; ");
    trigger("deleted", "AFTER DELETE" + table, entry("DELETE", "OLD.", whole_old, "NULL"));
    const std::string same = Same_Keys(kind, "OLD.", "NEW.");
    trigger("updated",
            "AFTER UPDATE" + table + " WHEN NOT (" + same + ") OR " + Differ(Of_A_File, kind.Columns),
            entry("UPDATE", "NEW.", Object(Of_A_File, kind, "OLD.", " "),
                  Object(Of_A_File, kind, "NEW.", " "), same) +
                entry("UPDATE", "OLD.", whole_old, "NULL", "NOT (" + same + ")") +
                entry("UPDATE", "NEW.", "NULL", whole_new, "NOT (" + same + ")"));
}

// --- a server

// What the history may hold stays readable; what may be written, nobody but the owner may write any more.
constexpr const char* Take_Rights = R"(DO $body$
DECLARE
    held record;
BEGIN
    FOR held IN
        SELECT DISTINCT c.oid, CASE c.relkind WHEN 'S' THEN 'SEQUENCE' ELSE 'TABLE' END AS kind,
            CASE a.grantee WHEN 0 THEN 'PUBLIC' ELSE quote_ident(pg_get_userbyid(a.grantee)) END AS grantee
        FROM pg_class c,
            LATERAL (SELECT grantee, privilege_type FROM aclexplode(c.relacl) UNION SELECT x.grantee, x.privilege_type
                FROM pg_attribute t, aclexplode(t.attacl) x WHERE t.attrelid = c.oid) a
        WHERE c.relnamespace = CAST('@SCHEMA_TEXT@' AS regnamespace)
            AND c.relname IN ('change_log', 'change_transaction', 'change_number')
            AND a.grantee <> c.relowner AND a.privilege_type <> 'SELECT'
    LOOP
        IF held.kind = 'SEQUENCE' THEN
            EXECUTE format('REVOKE USAGE, UPDATE ON SEQUENCE %s FROM %s CASCADE', CAST(held.oid AS regclass), held.grantee);
        ELSE
            EXECUTE format('REVOKE INSERT, UPDATE, DELETE, TRUNCATE, REFERENCES, TRIGGER ON %s FROM %s CASCADE',
                CAST(held.oid AS regclass), held.grantee);
        END IF;
    END LOOP;
END $body$)";

// NOLINTBEGIN(bugprone-suspicious-missing-comma): statements that are longer than a line
const Texts Server_To_Version_3{
    "ALTER TABLE change_log DROP CONSTRAINT change_log_pkey",
    "ALTER TABLE change_log ADD COLUMN entry INTEGER NOT NULL DEFAULT 1, ADD COLUMN node_type_id INTEGER, "
    "ALTER COLUMN changed_by DROP NOT NULL, ALTER COLUMN editor DROP NOT NULL, ADD PRIMARY KEY (change, "
    "entry)",
    "ALTER TABLE change_log ALTER COLUMN entry DROP DEFAULT",
    "DROP INDEX change_log_of_node",
    "CREATE INDEX change_log_of_partition ON change_log (config_id, partition_id, change, node_number)",
    "CREATE SEQUENCE change_number",
    "SELECT setval('change_number', last_change) FROM change_counter WHERE last_change > 0",
    "DROP TABLE change_counter",
    "CREATE VIEW change_counter AS SELECT COALESCE(MAX(change), 0) AS last_change FROM change_log",
    "CREATE TABLE change_transaction (xact xid8 NOT NULL PRIMARY KEY, change BIGINT NOT NULL)",
    "CREATE TYPE change_entry AS (config_id integer, partition_id integer, node_number integer, "
    "node_type_id integer, old_values text, new_values text)",
};
// NOLINTEND(bugprone-suspicious-missing-comma)

// Numbers rise in the order of the transactions that write a partition: who has its lock takes the next one,
// unless the transaction has one already that nobody else has overtaken.
constexpr const char* Note_Changes = R"(
CREATE FUNCTION @SCHEMA@.note_changes(of_record text, by_statement text, entries @SCHEMA@.change_entry[])
RETURNS void LANGUAGE plpgsql SET search_path = pg_catalog, pg_temp AS $body$
DECLARE
    place record;
    number bigint;
    newest bigint = 0;
BEGIN
    IF cardinality(entries) = 0 THEN
        RETURN;
    END IF;
    FOR place IN SELECT DISTINCT e.config_id, e.partition_id FROM unnest(entries) e ORDER BY 1, 2 LOOP
        PERFORM pg_advisory_xact_lock(@CLASS@, (place.config_id << 16) # place.partition_id);
        newest = greatest(newest, (SELECT max(l.change) FROM @SCHEMA@.change_log l
            WHERE l.config_id = place.config_id AND l.partition_id = place.partition_id));
    END LOOP;
    SELECT t.change INTO number FROM @SCHEMA@.change_transaction t WHERE t.xact = pg_current_xact_id();
    IF number IS NULL OR number < newest OR (current_setting('transaction_isolation') <> 'read committed'
            AND number < (SELECT n.last_value FROM @SCHEMA@.change_number n)) THEN -- it cannot see what is newest
        number = nextval('@SCHEMA_TEXT@.change_number');
        INSERT INTO @SCHEMA@.change_transaction AS t (xact, change) VALUES (pg_current_xact_id(), number)
            ON CONFLICT (xact) DO UPDATE SET change = EXCLUDED.change;
    END IF;
    INSERT INTO @SCHEMA@.change_log (change, entry, changed_at, changed_by, database_user, editor, operation,
        record, config_id, partition_id, node_number, node_type_id, old_values, new_values)
    SELECT number, row_number() OVER (ORDER BY e.config_id, e.partition_id, e.node_number)
            + (SELECT coalesce(max(l.entry), 0) FROM @SCHEMA@.change_log l WHERE l.change = number),
        to_char(clock_timestamp() AT TIME ZONE 'UTC', 'YYYY-MM-DD HH24:MI:SS'),
        @SCHEMA@.change_claim('person'), session_user, @SCHEMA@.change_claim('editor'),
        coalesce(@SCHEMA@.change_claim('operation'), by_statement), of_record,
        e.config_id, e.partition_id, e.node_number, e.node_type_id, e.old_values, e.new_values
    FROM unnest(entries) e;
END $body$)";

// What the writing program says of itself: short, and nothing but printable ASCII.
constexpr const char* Claim = R"(
CREATE FUNCTION @SCHEMA@.change_claim(name text) RETURNS text LANGUAGE sql STABLE
SET search_path = pg_catalog, pg_temp AS $body$
    SELECT nullif(regexp_replace(left(current_setting('style_node.' || name, true), 200), '[^ -~]', '?', 'g'), '')
$body$)";

// A transaction that is over is none of the next one's affair, in a restored copy of the store least of all.
constexpr const char* Forget = R"(
CREATE FUNCTION @SCHEMA@.forget_transaction() RETURNS trigger LANGUAGE plpgsql SECURITY DEFINER
SET search_path = pg_catalog, pg_temp AS $body$
BEGIN
    DELETE FROM @SCHEMA@.change_transaction t WHERE t.xact = NEW.xact;
    RETURN NULL;
END $body$)";

constexpr const char* Forget_Later = "CREATE CONSTRAINT TRIGGER forget AFTER INSERT ON "
                                     "@SCHEMA@.change_transaction DEFERRABLE INITIALLY DEFERRED "
                                     "FOR EACH ROW EXECUTE FUNCTION @SCHEMA@.forget_transaction()";

constexpr const char* Note_Table = R"(
CREATE FUNCTION @SCHEMA@.note_@TABLE@() RETURNS trigger LANGUAGE plpgsql SECURITY DEFINER
SET search_path = pg_catalog, pg_temp AS $body$
BEGIN
    IF TG_OP = 'INSERT' THEN
        PERFORM @SCHEMA@.note_changes('@TABLE@', TG_OP, ARRAY(SELECT CAST(ROW(n.config_id, n.partition_id,
            n.node_number, @NEW_TYPE@, NULL, @WHOLE_NEW@) AS @SCHEMA@.change_entry) FROM new_rows n));
    ELSIF TG_OP = 'DELETE' THEN
        PERFORM @SCHEMA@.note_changes('@TABLE@', TG_OP, ARRAY(SELECT CAST(ROW(o.config_id, o.partition_id,
            o.node_number, @OLD_TYPE@, @WHOLE_OLD@, NULL) AS @SCHEMA@.change_entry) FROM old_rows o));
    ELSE
        PERFORM @SCHEMA@.note_changes('@TABLE@', TG_OP, ARRAY(SELECT CAST(ROW(
            coalesce(n.config_id, o.config_id), coalesce(n.partition_id, o.partition_id),
            coalesce(n.node_number, o.node_number), coalesce(@NEW_TYPE@, @OLD_TYPE@),
            CASE WHEN o.node_number IS NOT NULL THEN @CHANGED_OLD@ END,
            CASE WHEN n.node_number IS NOT NULL THEN @CHANGED_NEW@ END) AS @SCHEMA@.change_entry)
            FROM old_rows o FULL JOIN new_rows n ON @SAME@
            WHERE o.node_number IS NULL OR n.node_number IS NULL OR @DIFFER@));
    END IF;
    RETURN NULL;
END $body$)";

void Add_Server_Triggers(Texts& steps, const Record_Kind& kind) {
    const std::string one_is_missing = "o.node_number IS NULL OR n.node_number IS NULL OR ";
    steps.push_back(Filled(Note_Table, {{"TABLE", kind.Table},
                                        {"NEW_TYPE", Type_Of_Entry(kind, "n.")},
                                        {"OLD_TYPE", Type_Of_Entry(kind, "o.")},
                                        {"WHOLE_NEW", Object(Of_A_Server, kind, "n.", "")},
                                        {"WHOLE_OLD", Object(Of_A_Server, kind, "o.", "")},
                                        {"CHANGED_NEW", Object(Of_A_Server, kind, "n.", one_is_missing)},
                                        {"CHANGED_OLD", Object(Of_A_Server, kind, "o.", one_is_missing)},
                                        {"SAME", Same_Keys(kind, "o.", "n.")},
                                        {"DIFFER", Differ(Of_A_Server, kind.Columns)}}));
    steps.push_back("REVOKE ALL ON FUNCTION @SCHEMA@.note_" + kind.Table + "() FROM PUBLIC");
    for (const auto& [event, rows] :
         {std::pair("INSERT", "NEW TABLE AS new_rows"), std::pair("DELETE", "OLD TABLE AS old_rows"),
          std::pair("UPDATE", "OLD TABLE AS old_rows NEW TABLE AS new_rows")})
        steps.push_back("CREATE TRIGGER note_" + std::string(event) + " AFTER " + event + " ON @SCHEMA@." +
                        kind.Table + " REFERENCING " + rows +
                        " FOR EACH STATEMENT EXECUTE FUNCTION @SCHEMA@.note_" + kind.Table + "()");
}

Texts Server_Triggers() {
    Texts steps{
        Claim,
        Note_Changes,
        Forget,
        "REVOKE ALL ON FUNCTION @SCHEMA@.note_changes(text, text, @SCHEMA@.change_entry[]) FROM PUBLIC",
        "REVOKE ALL ON FUNCTION @SCHEMA@.forget_transaction() FROM PUBLIC",
        Forget_Later,
        Take_Rights,
    };
    for (const Record_Kind* kind : All_Kinds())
        Add_Server_Triggers(steps, *kind);
    return steps;
}

} // namespace

std::vector<std::string> To_Version_3(Connection& connection) {
    return connection.Is_File() ? File_To_Version_3(connection) : Server_To_Version_3;
}

std::vector<std::string> Triggers(Connection& connection) {
    Texts steps;
    if (connection.Is_File()) {
        steps.push_back(Filled(Note_Entry, {{"ESCAPE", Escape_Controls()},
                                            {"CHANGE", "(SELECT last_change FROM change_counter)"}}));
        for (const Record_Kind* kind : All_Kinds())
            Add_File_Triggers(steps, *kind);
        return steps;
    }
    // As an identifier, and the same within a text.
    const auto row = Statement(connection, "SELECT quote_ident(current_schema()), "
                                           "replace(quote_ident(current_schema()), '''', '''''')")
                         .First_Row();
    steps = Server_Triggers();
    for (std::string& step : steps)
        step = Filled(std::move(step), {{"SCHEMA", (*row)[0].value_or("public")},
                                        {"SCHEMA_TEXT", (*row)[1].value_or("public")},
                                        {"CLASS", std::to_string(Lock_Class)}});
    return steps;
}

int Lock_Number(int config, int partition) {
    return static_cast<int>((static_cast<unsigned>(config) << 16U) ^ static_cast<unsigned>(partition));
}

} // namespace stores
