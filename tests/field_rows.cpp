#include "field_rows.h"

#include <algorithm>
#include <sstream>

#include <gtest/gtest.h>

#include "automation/text.h"

namespace {

constexpr std::string_view Open = "shown 1 1 12\n";
constexpr std::string_view Close = "answer discard\nclose\n";

void Replace_All(std::string& text, std::string_view from, std::string_view to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

std::string Opened_With(Editor_Session& session, const std::string& field) {
    std::string script(Open);
    script.append("show ").append(field).append("\n").append(Close);
    return Last_Control(session.Play(script), field).at("text");
}

std::string State(const std::string& text, std::size_t caret, bool apply) {
    return "'" + text + "' caret " + std::to_string(caret) + (apply ? " marked" : " unmarked");
}

std::string Wanted(const Field_Row& row, const std::string& opened_with) {
    const std::string text = row.Text == "@" ? opened_with : row.Text;
    const std::size_t length = automation::From_UTF8(text).value().size();
    return State(text, row.Caret == At_End ? length : static_cast<std::size_t>(row.Caret), row.Apply);
}

std::string Found(const Lines& job) {
    const Lines controls = Only(job, "control");
    const Line& result = job.back();
    if (controls.size() != 2 || !Only(job, "refused").empty() || !result.at("shown"))
        return "not played: " + Line(job).dump();
    return State(controls[0].at("text"), controls[0].at("caret"), controls[1].at("enabled"));
}

void Expect_Rows_On(Editor_Session& session, const std::string& field, const std::vector<Field_Row>& rows) {
    const std::string opened_with = Opened_With(session, field);
    std::string script;
    for (const Field_Row& row : rows)
        script.append(Open)
            .append(Script_Lines(row.Acts, field, opened_with))
            .append("show " + field + " cmdApply\n")
            .append(Close);
    const std::vector<Lines> jobs = Jobs(session.Play(script));
    ASSERT_EQ(jobs.size(), rows.size()) << field << ": " << session.Errors();
    for (std::size_t index = 0; index < rows.size(); ++index)
        EXPECT_EQ(Found(jobs[index]), Wanted(rows[index], opened_with))
            << field << ": " << rows[index].Acts.substr(0, 200);
}

} // namespace

void Expect_Rows(const std::vector<std::string>& fields, const std::vector<Field_Row>& rows) {
    Editor_Session session;
    for (const std::string& field : fields)
        Expect_Rows_On(session, field, rows);
}

Field_Row Refused(std::string acts) {
    return {std::move(acts), "@", At_End, Unmarked};
}

std::string Paste(std::string_view text) {
    return "paste $ " + Quoted(text);
}

std::string Quoted(std::string_view text) {
    std::string quoted = "\"";
    for (const char character : text) {
        if (character == '"' || character == '\\')
            quoted += '\\';
        if (character == '\0')
            quoted += "\\u0000";
        else if (character == '\n')
            quoted += "\\n";
        else
            quoted += character;
    }
    return quoted + "\"";
}

std::string Repeated(std::size_t count, char character) {
    return std::string(count, character);
}

std::vector<std::string> Words(std::string_view text) {
    std::vector<std::string> words;
    std::istringstream stream{std::string(text)};
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

std::string Script_Lines(std::string acts, const std::string& field, const std::string& opened_with) {
    std::replace(acts.begin(), acts.end(), '|', '\n');
    Replace_All(acts, "$", field);
    Replace_All(acts, "@", opened_with);
    return acts + "\n";
}

std::vector<Lines> Jobs(const Lines& lines) {
    std::vector<Lines> jobs(1);
    for (const Line& line : lines) {
        jobs.back().push_back(line);
        if (line.at("event") == "result")
            jobs.emplace_back();
    }
    jobs.pop_back(); // behind the last result nothing is played
    return jobs;
}
