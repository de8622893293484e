// The entries of a store's history, which may hold what someone has written there past the program. Whatever
// is printed of them cannot be taken for anything else: what would move the cursor, hide or turn text is
// escaped.
#pragma once

#include <ostream>

#include <nlohmann/json.hpp>

#include "automation/text.h"
#include "interfaces/store_history.h"
#include "process/decimal.h"
#include "process/visible_text.h"
#include "run_setup/store_session.h"

namespace host {

using automation::Variant;
using interfaces::Store_History;
using nlohmann::ordered_json;
using Rows = automation::Reference<recordset::Recordset>;

automation::Reference<Store_History> History();

// The texts and nulls of an entry; nothing for anything else, however deep it is.
std::optional<ordered_json> Flat_Object(const std::string& text);

// One row of an answer of the store, which may hold what somebody else has written there.
class Entry {
public:
    explicit Entry(const Rows& rows) : rows(rows) {}

    bool Has(automation::String_View field) const { return !rows->Value(field).Is_Null(); }
    std::string Text(automation::String_View field) const {
        return Has(field) ? automation::To_UTF8(rows->Value(field).To_Text()) : "";
    }
    std::string Shown(automation::String_View field) const {
        return Has(field) ? Visible(rows->Value(field).To_Text()) : "";
    }
    // A number where it is one, else the text, or null.
    ordered_json Number(automation::String_View field) const {
        const auto number = Decimal<std::int64_t>(Text(field));
        return number ? ordered_json(*number) : JSON(field);
    }
    ordered_json JSON(automation::String_View field) const {
        return Has(field) ? ordered_json(Text(field)) : ordered_json();
    }
    // The fields that differ; null when there was no record. A text when it is nothing of ours.
    ordered_json Values(automation::String_View field) const {
        if (!Has(field))
            return nullptr;
        const auto values = Flat_Object(Text(field));
        return values ? *values : ordered_json(Text(field));
    }
    // Older programs noted that a save had touched the node's entry.
    bool Is_News() const {
        const auto is_time = [](const ordered_json& values) {
            return values.is_object() && values.size() == 1 && values.contains("changed");
        };
        return Text(u"Record") != "node_entry" || !is_time(Values(u"Old")) || !is_time(Values(u"New"));
    }

private:
    const Rows& rows;
};

// One line, without its end.
void Print_Place(const Entry& entry, std::ostream& out);
// The values before and after, a line each.
void Print_Fields(const Entry& entry, std::ostream& out);

} // namespace host
