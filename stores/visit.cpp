#include "visit.h"

#include <array>
#include <pwd.h>
#include <random>
#include <unistd.h>

namespace stores {

namespace {

// Names come from the machine's administration, but end in messages and tables: blanks and controls do not.
std::string Printable(std::string name) {
    for (char& character : name)
        if (static_cast<unsigned char>(character) <= ' ' || static_cast<unsigned char>(character) >= 0x7F)
            character = '?';
    return name;
}

std::string User_Name() {
    std::array<char, 4096> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found)
        return entry.pw_name;
    return "user-" + std::to_string(getuid());
}

std::string Host_Name() {
    std::array<char, 256> buffer{};
    return gethostname(buffer.data(), buffer.size() - 1) == 0 && buffer[0] ? buffer.data() : "unknown";
}

std::string Random_Name() {
    std::random_device source;
    return std::to_string(source()) + "-" + std::to_string(source()) + "-" + std::to_string(source());
}

} // namespace

Visit::Visit(std::optional<std::string> database_user)
    : person(Printable(User_Name() + "@" + Host_Name())), editor(Random_Name()),
      database_user(std::move(database_user)) {}

void Visit::Note_Reading(int config, int partition, std::string change) {
    readings[{config, partition}] = std::move(change);
}

std::optional<std::string> Visit::Read_At(int config, int partition) const {
    const auto found = readings.find({config, partition});
    return found == readings.end() ? std::nullopt : std::optional(found->second);
}

} // namespace stores
