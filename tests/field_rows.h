// Tables of what a person does to a field and what then stands in it. Every row has a dialog of its own,
// opened on node 12 of the sample store; its edits are dropped.
#pragma once

#include "editor_session.h"

constexpr int At_End = -1;
constexpr bool Marked = true;    // Apply is enabled
constexpr bool Unmarked = false; // it is not

struct Field_Row {
    std::string Acts; // script lines between "|"; "$" is the field, "@" the text that it was opened with
    std::string Text; // "@" as above
    int Caret = At_End;
    bool Apply = Marked;
};

// An edit that is undone: the text that the field was opened with, unmarked.
Field_Row Refused(std::string acts);

// Plays all rows on each of the fields and compares text, caret and Apply. An error or an unwanted box fails
// the row.
void Expect_Rows(const std::vector<std::string>& fields, const std::vector<Field_Row>& rows);

// `text` pasted over the whole field.
std::string Paste(std::string_view text);
// A script's quoted form of a UTF-8 text.
std::string Quoted(std::string_view text);
std::string Repeated(std::size_t count, char character);
// The words between the blanks.
std::vector<std::string> Words(std::string_view text);

// The acts as script lines for one field.
std::string Script_Lines(std::string acts, const std::string& field, const std::string& opened_with = {});

// The lines of each job: up to and with its result.
std::vector<Lines> Jobs(const Lines& lines);
