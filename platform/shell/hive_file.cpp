#include "shell/hive_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "automation/text.h"
#include "hive.h"
#include "shell/file_bytes.h"
#include "shell/registry.h"
#include "text_file.h"

namespace shell {

using automation::String;
using automation::String_View;

namespace {

bool Is_There(const std::string& path) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0 || errno != ENOENT;
}

[[noreturn]] void Refuse_Unwritable(const std::string& path, int error) {
    throw Format_Error(0, "cannot be written: " + std::generic_category().message(error), path);
}

class Descriptor {
public:
    Descriptor(const std::string& path, int flags, mode_t mode = 0)
        : descriptor(open(path.c_str(), flags | O_CLOEXEC | O_NOFOLLOW, mode)) {
        if (descriptor < 0)
            Refuse_Unwritable(path, errno);
    }
    ~Descriptor() { close(descriptor); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int Get() const { return descriptor; }

private:
    const int descriptor;
};

// The lines of a registry file; those of removed keys can go as a whole.
class Hive_Lines {
public:
    explicit Hive_Lines(std::vector<String> existing) : lines(std::move(existing)) {
        while (!lines.empty() && Without_Blanks(lines.back()).empty())
            lines.pop_back();
        if (lines.empty())
            lines.emplace_back(u"Windows Registry Editor Version 5.00");
    }

    void Remove(const String& key) {
        const String folded = automation::Case_Folded(key);
        bool goes = false;
        bool continued = false;
        std::erase_if(lines, [&](const String& whole) {
            const String_View line = Without_Blanks(whole);
            if (!continued && line.starts_with(u'['))
                goes = Is_At_Or_Below(line, folded);
            continued = line.ends_with(u'\\') && !line.starts_with(u';') && !line.starts_with(u'[');
            return goes;
        });
    }

    void Add(const Hive_Text& text) {
        const String header = u"[" + text.Key + u"]";
        if (last_added != header) {
            lines.emplace_back();
            lines.push_back(header);
            last_added = header;
        }
        lines.push_back((text.Name.empty() ? u"@" : Quoted(text.Name)) + u"=" + Quoted(text.Text));
    }

    std::string Bytes() const {
        std::string bytes;
        for (const String& line : lines)
            bytes += automation::To_UTF8(line) + "\r\n";
        return bytes;
    }

private:
    static bool Is_At_Or_Below(String_View line, const String& folded_key) {
        const String found = automation::Case_Folded(line.substr(1, line.rfind(u']') - 1));
        return found == folded_key || found.starts_with(folded_key + u"\\");
    }
    static String Quoted(String_View text) {
        String quoted = u"\"";
        for (const char16_t unit : text) {
            if (unit == u'\\' || unit == u'"')
                quoted += u'\\';
            quoted += unit;
        }
        return quoted + u"\"";
    }

    std::vector<String> lines;
    String last_added;
};

void Write_All(const std::string& path, int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR)
            Refuse_Unwritable(path, errno);
        if (count > 0)
            bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    if (fsync(descriptor) != 0)
        Refuse_Unwritable(path, errno);
}

// The new file is complete before it gets the old one's name.
void Replace_File(const std::string& path, std::string_view bytes, mode_t mode) {
    const std::string fresh = path + ".new";
    unlink(fresh.c_str()); // of a run that was cut off; the folder is locked
    try {
        const Descriptor file(fresh, O_WRONLY | O_CREAT | O_EXCL, mode);
        if (fchmod(file.Get(), mode) != 0)
            Refuse_Unwritable(fresh, errno);
        Write_All(fresh, file.Get(), bytes);
        if (rename(fresh.c_str(), path.c_str()) != 0)
            Refuse_Unwritable(path, errno);
    } catch (...) {
        unlink(fresh.c_str());
        throw;
    }
}

void Make_Folder(const std::filesystem::path& folder, mode_t mode) {
    if (folder.empty() || Is_There(folder))
        return;
    Make_Folder(folder.parent_path(), mode);
    if (mkdir(folder.c_str(), mode) != 0 && errno != EEXIST)
        Refuse_Unwritable(folder, errno);
}

} // namespace

Hive_View Hive_View::Load(const std::string& path) {
    Hive_View view;
    if (!Is_There(path))
        return view;
    try {
        view.hive = Parse_Hive(File_Bytes(path));
    } catch (const Format_Error& error) {
        throw Format_Error(error.Line, error.Reason, path);
    }
    return view;
}

std::optional<std::string> Hive_View::Text(String_View key, const char* name) const {
    const Hive::Values* values = hive ? hive->Find(key) : nullptr;
    if (!values)
        return std::nullopt;
    const auto found =
        values->find(automation::Case_Folded(automation::From_UTF8_Replacing(name ? name : "")));
    if (found == values->end() || found->second.Type != registry_type::Text)
        return std::nullopt;
    std::string text = found->second.Bytes;
    text.resize(std::min(text.find('\0'), text.size()));
    return text;
}

std::vector<String> Hive_View::Names_Below(String_View key) const {
    return hive ? hive->Names_Below(key) : std::vector<String>();
}

void Change_Hive(const std::string& path, const std::vector<String>& removed_keys,
                 const std::vector<Hive_Text>& added, unsigned mode) {
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    const mode_t read_bits = mode & 0444U;
    Make_Folder(folder, 0700 | read_bits | read_bits >> 2U);
    const Descriptor lock(folder, O_RDONLY | O_DIRECTORY);
    if (flock(lock.Get(), LOCK_EX) != 0)
        Refuse_Unwritable(folder, errno);
    Hive_View::Load(path); // a broken one stays as it is
    Hive_Lines lines(Is_There(path) ? Unicode_Lines(File_Bytes(path)) : std::vector<String>());
    for (const String& key : removed_keys)
        lines.Remove(key);
    for (const Hive_Text& text : added)
        lines.Add(text);
    Replace_File(path, lines.Bytes(), mode);
}

} // namespace shell
