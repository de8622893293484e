// Files that a test hands to the editor: answers of readers and string tables; and what tests of whole jobs
// ask of a transcript.
#pragma once

#include <map>
#include <optional>

#include <gtest/gtest.h>

#include "automation/text.h"
#include "editor_session.h"
#include "resources/resources.h"
#include "shell/replaced_strings.h"

using Rows = std::vector<std::vector<const char*>>; // null pointers are nulls
using Options = std::vector<std::string>;

// A persisted recordset of text fields.
inline std::string Persisted(const std::vector<std::string>& fields, const Rows& rows) {
    std::string xml = "<xml xmlns:s='uuid:BDC6E3F0-6DA3-11d1-A2A3-00AA00C14882' "
                      "xmlns:rs='urn:schemas-microsoft-com:rowset' xmlns:z='#RowsetSchema'>"
                      "<s:Schema id='RowsetSchema'><s:ElementType name='row' content='eltOnly'>";
    for (std::size_t field = 0; field < fields.size(); ++field)
        xml += "<s:AttributeType name='" + fields[field] + "' rs:number='" + std::to_string(field + 1) +
               "' rs:nullable='true'/>";
    xml += "</s:ElementType></s:Schema><rs:data>";
    for (const auto& row : rows) {
        xml += "<z:row";
        for (std::size_t field = 0; field < row.size(); ++field)
            if (row[field])
                xml += " " + fields[field] + "='" + row[field] + "'";
        xml += "/>";
    }
    return xml + "</rs:data></xml>";
}

// Number, label, supervised type, hook flash, threshold, transfer, disconnection.
inline std::string Style_Nodes(const Rows& rows) {
    return Persisted({"NodeNumber", "NodeDescription", "SuperviseID", "Hookflash", "ThresholdTypeID",
                      "Transfer", "Disconnection"},
                     rows);
}

// Retrieve, busy retry, retries, ring limit, the two busy times, ring on, ring off.
inline std::string Detail(const Rows& rows, const char* first = "BusyOn", const char* second = "BusyOff") {
    return Persisted(
        {"Retrieve", "BusyRetry", "NumberRetries", "RingLimit", first, second, "RingOn", "RingOff"}, rows);
}

// The option that lets `target` ("Get_Style_Nodes", "Get_Style_Nodes@2") answer the text.
inline Options Reply(const Editor_Session& session, const std::string& target, const std::string& xml) {
    return {"--reply", target + "=" + session.File("reply-" + target + ".xml", xml)};
}

// The option of a string table that is the built-in one but for some texts: another text, or none.
using Changed_Texts = std::map<int, std::optional<std::string>>;
inline Options Strings(const Editor_Session& session, const Changed_Texts& changed) {
    shell::Restore_Strings();
    std::string table;
    for (int id = 0; id < resources::Texts_Per_Language; ++id) {
        const auto found = changed.find(id);
        if (found != changed.end() && !found->second)
            continue;
        const std::string text =
            found != changed.end() ? *found->second : automation::To_UTF8(resources::Load_String(id));
        table += std::to_string(id) + " \"" + text + "\"\n";
    }
    return {"--strings", session.File("texts.strings", table)};
}

inline Options operator+(Options left, const Options& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

// The texts of some controls, as the last lines about them say.
using Texts = std::map<std::string, std::string>;
inline Texts Shown_Texts(const Lines& lines, const Texts& like) {
    Texts texts;
    for (const auto& [name, text] : like) {
        const Line control = Last_Control(lines, name);
        texts[name] = control.is_null()             ? "<not shown>"
                      : control.contains("caption") ? control.at("caption")
                                                    : control.at("text");
    }
    return texts;
}

inline Line Last_Of(const Lines& lines, std::string_view event) {
    const Lines wanted = Only(lines, event);
    EXPECT_FALSE(wanted.empty()) << "there is no line of " << event;
    return wanted.empty() ? Line::object() : wanted.back();
}

// What the host sees after a job: the answer of Shown and the error record.
struct Record {
    bool Shown;
    std::string Location;
    int Code;
    std::string Description;
    friend bool operator==(const Record&, const Record&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Record& record) {
        return out << (record.Shown ? "True " : "False ") << record.Location << " " << record.Code << " "
                   << record.Description;
    }
};
inline const Record Success{true, "", 0, ""};
constexpr const char* Not_Set = "Object variable or With block variable not set";
constexpr int Unspecified = -2147467259;

inline Record Record_Of(const Line& result) {
    return {result.at("shown"), result.at("ErrLocation"), result.at("ErrCode"), result.at("ErrDescription")};
}
inline Record Last_Record(const Lines& lines) {
    const Line result = Last_Of(lines, "result");
    return result.empty() ? Record{} : Record_Of(result);
}

// The operations alone.
inline std::vector<std::string> Operations(const Lines& lines) {
    std::vector<std::string> names = Calls(lines);
    for (std::string& name : names)
        name.erase(std::min(name.find('('), name.size()));
    return names;
}
