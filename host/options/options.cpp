#include "options/options.h"

#include "parser.h"
#include "process/decimal.h"

namespace host {

void Options::Under(const std::string& wanted) {
    heading = wanted;
}

namespace {

CLI::Option* Placed(CLI::Option* option, const std::string& heading) {
    return heading.empty() ? option : option->group(heading);
}

} // namespace

void Options::Flag(const std::string& name, bool& target, const std::string& help) {
    Placed(parser.App.add_flag(name, target, help), heading);
}

void Options::Text(const std::string& name, std::optional<std::string>& target, const std::string& value,
                   const std::string& help) {
    const auto take = [&target](const std::string& text) { target = text; };
    Placed(parser.App.add_option_function<std::string>(name, take, help)->type_name(value), heading);
}

void Options::Repeatable(const std::string& name, std::vector<std::string>& target, const std::string& value,
                         const std::string& help) {
    Placed(parser.App.add_option(name, target, help)->type_name(value)->allow_extra_args(false), heading);
}

// The library would also read octal and hexadecimal numbers.
void Options::Take_Number(const std::string& name, const std::function<void(long long)>& take,
                          long long least, long long most, const std::string& help, Needed needed) {
    const auto read = [=](const std::string& text) {
        const auto number = Decimal<long long>(text);
        if (!number || *number < least || *number > most)
            throw CLI::ValidationError(name, "write a number from " + std::to_string(least) + " to " +
                                                 std::to_string(most) + " instead of '" + text + "'");
        take(*number);
    };
    Placed(parser.App.add_option_function<std::string>(name, read, help)->type_name("N"), heading)
        ->required(needed == Needed::Yes);
}

void Options::Argument(const std::string& name, const std::function<void(const std::string&)>& take,
                       const std::string& help) {
    const auto read = [=](const std::string& text) {
        try {
            take(text);
        } catch (const Usage_Error& error) {
            throw CLI::ValidationError(name, error.what());
        }
    };
    parser.App.add_option_function<std::string>(name, read, help)->required();
}

void Options::Argument(const std::string& name, std::string& target, const std::string& help) {
    parser.App.add_option(name, target, help)->required();
}

void Options::Arguments(const std::string& name, std::vector<std::string>& target, const std::string& help,
                        Needed needed) {
    parser.App.add_option(name, target, help)->required(needed == Needed::Yes);
}

void Options::Exclude(const std::string& flag, const std::string& other) {
    parser.App.get_option(flag)->excludes(other);
}

} // namespace host
