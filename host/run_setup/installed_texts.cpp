#include "run_setup/installed_texts.h"

#include <filesystem>
#include <fstream>
#include <map>

#include "classes/registration.h"
#include "process/decimal.h"
#include "process/errors.h"

namespace host {

namespace {

namespace fs = std::filesystem;

constexpr Integer Built_In = 1;

// "# Texts of the STYLE Node Editor: language 2, German." is how a table begins.
std::string Name_In(const fs::path& table, Integer language) {
    std::string line;
    std::ifstream in(table);
    std::getline(in, line);
    const std::string mark = "language " + std::to_string(language) + ", ";
    const auto found = line.find(mark);
    const auto name = found == std::string::npos ? "" : line.substr(found + mark.size());
    return name.substr(0, name.find('.'));
}

std::map<Integer, fs::path> Tables() {
    std::map<Integer, fs::path> tables;
    std::error_code none;
    for (const auto& entry :
         fs::directory_iterator(classes::Platform_Folder() + "/style-node/strings", none)) {
        const std::string name = entry.path().stem();
        const std::string start = "language_";
        if (!name.starts_with(start) || entry.path().extension() != ".strings")
            continue;
        if (const auto language = Decimal<Integer>(name.substr(start.size()));
            language && *language > Built_In)
            tables.emplace(*language, entry.path());
    }
    return tables;
}

} // namespace

std::optional<std::string> Installed_Texts(Integer language) {
    if (language == Built_In)
        return {};
    const auto tables = Tables();
    if (const auto found = tables.find(language); found != tables.end())
        return found->second;
    std::string all = "1 English";
    for (const auto& [number, table] : tables)
        all += ", " + std::to_string(number) + " " + Name_In(table, number);
    throw Start_Error("there are no texts for language " + std::to_string(language) + "; installed are " +
                      all + "; see --strings for a table of your own");
}

} // namespace host
