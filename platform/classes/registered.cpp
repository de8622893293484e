#include "registered.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <mutex>
#include <sys/stat.h>

#include "automation/text.h"
#include "hives.h"
#include "trust.h"

namespace classes {

using automation::Identity;
using automation::String;
using automation::String_View;

namespace {

// What tells a hive from the one that was there before.
struct Stamp {
    dev_t Device = 0;
    ino_t Node = 0;
    off_t Size = 0;
    timespec Changed{};

    explicit Stamp(const std::string& path) {
        struct stat status {};
        if (stat(path.c_str(), &status) == 0) {
            Device = status.st_dev;
            Node = status.st_ino;
            Size = status.st_size;
            Changed = status.st_ctim;
        }
    }
    bool operator==(const Stamp& other) const {
        return Device == other.Device && Node == other.Node && Size == other.Size &&
               Changed.tv_sec == other.Changed.tv_sec && Changed.tv_nsec == other.Changed.tv_nsec;
    }
};

struct Cached_Hive {
    Stamp Seen;
    shell::Hive_View View;
};

} // namespace

// A hive is read once and again when its file has changed; a folder's rights are looked at every time.
shell::Hive_View Open_Hive(Scope scope) {
    static std::mutex lock;
    static std::map<std::string, Cached_Hive> cache;
    const std::string path = Hive_Path(scope);
    if (path.empty())
        return {};
    if (const auto problem = Distrust(path))
        throw Registration_Error("the class hive is not used: " + *problem);
    const Stamp stamp(path);
    const std::lock_guard hold(lock);
    const auto found = cache.find(path);
    if (found != cache.end() && found->second.Seen == stamp)
        return found->second.View;
    try {
        auto view = shell::Hive_View::Load(path);
        cache.insert_or_assign(path, Cached_Hive{stamp, view});
        return view;
    } catch (const shell::Format_Error& error) {
        throw Registration_Error(std::string("the class hive is not used: ") + error.what());
    }
}

String Class_Key(Scope scope) {
    return scope == Scope::User ? u"HKEY_CURRENT_USER\\Software\\Classes"
                                : u"HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes";
}

String Identity_Key(Scope scope, const std::string& class_identity) {
    return Class_Key(scope) + u"\\CLSID\\" + automation::From_UTF8_Replacing(class_identity);
}

String Program_Key(Scope scope, String_View program_identity) {
    return Class_Key(scope) + u"\\" + String(program_identity);
}

std::string Identity_Text(const Identity& identity) {
    std::array<char, 40> text{};
    const auto& d = identity.D;
    std::snprintf(text.data(), text.size(), "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}", identity.A,
                  identity.B, identity.C, d[0], d[1], d[2], d[3], d[4], d[5], d[6], d[7]);
    return text.data();
}

std::optional<Identity> Parse_Identity(const std::string& text) {
    Identity identity{};
    auto& d = identity.D;
    int end = 0;
    const int count =
        std::sscanf(text.c_str(), "{%8x-%4hx-%4hx-%2hhx%2hhx-%2hhx%2hhx%2hhx%2hhx%2hhx%2hhx}%n", &identity.A,
                    &identity.B, &identity.C, &d[0], &d[1], &d[2], &d[3], &d[4], &d[5], &d[6], &d[7], &end);
    if (count != 11 || end != 38 || text.size() != 38)
        return std::nullopt;
    return identity;
}

std::optional<Place> Find_Registered(const Identity& class_identity) {
    const std::string text = Identity_Text(class_identity);
    for (const Scope scope : {Scope::User, Scope::Machine}) {
        const auto hive = Open_Hive(scope);
        const String key = Identity_Key(scope, text) + u"\\InprocServer32";
        if (const auto module = hive.Text(key))
            return Place{class_identity, *module, hive.Text(key, "ThreadingModel").value_or("Apartment")};
    }
    return std::nullopt;
}

std::optional<Place> Find_Registered(String_View program_identity) {
    const std::string name = automation::To_UTF8(program_identity);
    for (const Scope scope : {Scope::User, Scope::Machine}) {
        const auto text = Open_Hive(scope).Text(Program_Key(scope, program_identity) + u"\\CLSID");
        if (!text)
            continue;
        const auto identity = Parse_Identity(*text);
        if (!identity)
            throw Registration_Error(Hive_Path(scope) + ": " + name + " has \"" + *text +
                                     "\" in the place of a class identity; register its module anew");
        auto place = Find_Registered(*identity);
        if (!place)
            throw Registration_Error(Hive_Path(scope) + ": " + name +
                                     " has no module; register its module anew");
        return place;
    }
    return std::nullopt;
}

} // namespace classes
