#include "translation/strings_commands.h"

#include "process/errors.h"
#include "process/visible_text.h"
#include "translation.h"

namespace host {

namespace {

class Check_Command final : public Subcommand {
    Outline About() const override { return {"strings check", "Say what is wrong with a string table"}; }

    void Declare(Options& options) override { options.Argument("FILE", file, "The string table"); }

    int Run(const Streams& streams) override {
        bool is_right = true;
        Print_Visibly(streams.Out, [&](std::ostream& out) { is_right = Check_Strings(file, out); });
        return is_right ? status::OK : status::Strings_Wrong;
    }

    std::string file;
};

class Picture_Command final : public Subcommand {
    Outline About() const override { return {"strings picture", "Draw the dialog with a string table"}; }

    void Declare(Options& options) override {
        options.Argument("FILE", file, "The string table");
        options.Argument("PNG", picture, "The picture's file");
        options.Number<Integer>("--language", language, 1, INT16_MAX,
                                "Language; without it the table's first");
    }

    int Run(const Streams& streams) override {
        Print_Visibly(streams.Out, [&](std::ostream& out) { Picture_Strings(file, picture, language, out); });
        return status::OK;
    }

    std::string file, picture;
    std::optional<Integer> language;
};

} // namespace

std::unique_ptr<Subcommand> Make_Check_Command() {
    return std::make_unique<Check_Command>();
}

std::unique_ptr<Subcommand> Make_Picture_Command() {
    return std::make_unique<Picture_Command>();
}

} // namespace host
