#include "automation/text.h"
#include "connection.h"

namespace stores {

std::unique_ptr<Connection> Connection::Open(const Location& location) {
    return location.Is_File ? Open_File(location) : Open_Server(location);
}

void Statement::Run(const Values& values) {
    if (!cursor)
        cursor = connection->Prepare(sql);
    cursor->Run(values);
}

bool Statement::Next(Row& row) {
    if (!cursor->Next(lent))
        return false;
    row.resize(lent.size());
    for (std::size_t index = 0; index < lent.size(); ++index) {
        if (!lent[index]) {
            row[index].reset();
            continue;
        }
        if (!row[index])
            row[index].emplace();
        if (!automation::Convert_UTF8(*lent[index], *row[index]))
            Refuse_Other_Than_UTF8();
    }
    return true;
}

std::optional<Byte_Row> Statement::First_Row(const Values& values) {
    Run(values);
    if (!cursor->Next(lent))
        return std::nullopt;
    Byte_Row row(lent.begin(), lent.end());
    while (cursor->Next(lent))
        continue;
    return row;
}

void Refuse_Other_Than_UTF8() {
    throw automation::Failure(automation::Status_Unspecified, u"The store holds a text that is not UTF-8");
}

} // namespace stores
