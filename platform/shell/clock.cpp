#include "shell/clock.h"

#include "automation/text.h"

#include <array>
#include <cstring>
#include <langinfo.h>
#include <locale.h>
#include <mutex>

namespace shell {

using automation::String;

namespace {

// The environment's conventions of writing a time; those of its characters come with them, because the
// names of a locale are written in its own character set.
class User_Locale {
public:
    User_Locale() : locale(newlocale(LC_TIME_MASK | LC_CTYPE_MASK, "", locale_t{})) {}
    User_Locale(const User_Locale&) = delete;
    User_Locale& operator=(const User_Locale&) = delete;
    ~User_Locale() {
        if (locale)
            freelocale(locale);
    }

    // Nothing when the locale has no format of its own, or writes in something else than UTF-8.
    std::optional<String> Text_Of(const std::tm& time) const {
        if (!locale || Is_Plain())
            return std::nullopt;
        std::array<char, 256> text;
        const std::size_t length = strftime_l(text.data(), text.size(), "%x %X", &time, locale);
        return length == 0 ? std::nullopt : automation::From_UTF8({text.data(), length});
    }

private:
    // The locale C, under whatever name, writes the year in two digits.
    bool Is_Plain() const { return std::strcmp(nl_langinfo_l(D_FMT, locale), "%m/%d/%y") == 0; }

    const locale_t locale;
};

String Plain_Text(const std::tm& time) {
    const auto number = [](int value) { return std::to_string(value); };
    const auto two_digits = [](int value) {
        return std::string(value < 10 ? ":0" : ":") + std::to_string(value);
    };
    const int hour = time.tm_hour % 12 == 0 ? 12 : time.tm_hour % 12;
    const std::string date =
        number(time.tm_mon + 1) + "/" + number(time.tm_mday) + "/" + number(time.tm_year + 1900);
    const std::string clock = number(hour) + two_digits(time.tm_min) + two_digits(time.tm_sec);
    return *automation::From_UTF8(date + " " + clock + (time.tm_hour < 12 ? " AM" : " PM"));
}

// localtime_r need not look at TZ by itself; tzset writes variables of the whole process.
std::tm Local_Time(std::time_t time) {
    static std::mutex lock;
    const std::lock_guard hold(lock);
    std::tm local{};
    tzset();
    localtime_r(&time, &local);
    return local;
}

} // namespace

String General_Date_Text(std::time_t time) {
    const std::tm local = Local_Time(time);
    return User_Locale().Text_Of(local).value_or(Plain_Text(local));
}

String General_Date_Text() {
    return General_Date_Text(std::time(nullptr));
}

} // namespace shell
