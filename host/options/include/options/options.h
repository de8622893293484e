// The options and arguments of one command of the program, and where their values go.
//
// What is declared writes to its target when the command line is read; targets outlive the reading. Numbers
// are decimal digits only. Errors in a value are Usage_Error.
#pragma once

#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace host {

class Options {
public:
    enum class Needed { No, Yes };

    struct Parser; // of the library; see options.cpp
    explicit Options(Parser& parser) : parser(parser) {}

    // What is declared from now on stands under this heading of the help.
    void Under(const std::string& heading);

    void Flag(const std::string& name, bool& target, const std::string& help);
    void Text(const std::string& name, std::optional<std::string>& target, const std::string& value,
              const std::string& help);
    // Each use takes one value.
    void Repeatable(const std::string& name, std::vector<std::string>& target, const std::string& value,
                    const std::string& help);
    template <typename Value, typename Target>
    void Number(const std::string& name, Target& target, Value least, Value most, const std::string& help,
                Needed needed = Needed::No) {
        Take_Number(
            name, [&target](long long number) { target = static_cast<Value>(number); }, least, most, help,
            needed);
    }
    // Without a name, in the order of their declaration.
    void Argument(const std::string& name, const std::function<void(const std::string&)>& take,
                  const std::string& help);
    void Argument(const std::string& name, std::string& target, const std::string& help);
    void Arguments(const std::string& name, std::vector<std::string>& target, const std::string& help,
                   Needed needed);
    // Two flags that contradict each other.
    void Exclude(const std::string& flag, const std::string& other);

private:
    void Take_Number(const std::string& name, const std::function<void(long long)>& take, long long least,
                     long long most, const std::string& help, Needed needed);

    Parser& parser;
    std::string heading;
};

} // namespace host
