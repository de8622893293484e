#include "history_entries.h"

#include "automation/create.h"
#include "interfaces/store_keeper.h"
#include "run_setup/bundled_modules.h"

namespace host {

namespace {

std::string Value_Shown(const ordered_json& value) {
    if (!value.is_string())
        return "null";
    return "\"" + Visible(automation::From_UTF8_Replacing(value.get<std::string>())) + "\"";
}

} // namespace

automation::Reference<Store_History> History() {
    Offer_Bundled_Modules();
    return automation::Create_Bound<Store_History>(interfaces::Store_Keeper::Program_Identity);
}

std::optional<ordered_json> Flat_Object(const std::string& text) {
    bool is_flat = true;
    auto values = ordered_json::parse(
        text,
        [&](int depth, ordered_json::parse_event_t event, ordered_json& value) {
            using Event = ordered_json::parse_event_t;
            const bool is_start = event == Event::object_start || event == Event::array_start;
            const bool is_held = event != Event::value || value.is_string() || value.is_null();
            is_flat = is_flat && is_held && (!is_start || depth == 0);
            return is_flat;
        },
        false);
    return is_flat && values.is_object() ? std::optional(std::move(values)) : std::nullopt;
}

void Print_Fields(const Entry& entry, std::ostream& out) {
    const auto before = entry.Values(u"Old"), after = entry.Values(u"New");
    if (before.is_string() || after.is_string()) {
        out << "    " << Value_Shown(before) << " -> " << Value_Shown(after) << '\n';
        return;
    }
    const auto side = [](const ordered_json& values, const std::string& name) {
        return values.contains(name) ? Value_Shown(values[name]) : std::string("-");
    };
    const auto& named = after.is_null() ? before : after;
    for (const auto& [name, value] : named.items())
        out << "    " << Visible(automation::From_UTF8_Replacing(name)) << ": " << side(before, name)
            << " -> " << side(after, name) << '\n';
}

void Print_Place(const Entry& entry, std::ostream& out) {
    out << entry.Shown(u"Record") << ", configuration " << entry.Shown(u"ConfigID") << ", partition "
        << entry.Shown(u"PartitionID") << ", node " << entry.Shown(u"NodeNumber");
}

} // namespace host
