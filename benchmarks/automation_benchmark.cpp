// What the binary interface costs: creating the object through the registry, a call through it, a call by
// name.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <memory>

#include "automation/create.h"
#include "classes/registration.h"
#include "style_node/busyness_rules.h"

namespace {

using style_node::_Busyness_Rules;
using Editor = automation::Reference<_Busyness_Rules>;

// Registers the modules in folders of this run's own, beside its store.
std::string Registered_Modules() {
    std::string folder = (std::filesystem::temp_directory_path() / "benchmark-XXXXXX").string();
    if (mkdtemp(folder.data()) == nullptr)
        std::abort();
    for (const char* variable : {"STYLE_NODE_MACHINE_CLASSES", "XDG_CONFIG_HOME", "XDG_DATA_HOME"})
        setenv(variable, (folder + "/" + variable).c_str(), 1);
    for (const char* module : {COMPONENT, STAND_INS})
        classes::Register_Module(module, classes::Scope::User);
    return folder;
}

Editor Create() {
    return automation::Create_Bound<_Busyness_Rules>(_Busyness_Rules::Program_Identity);
}

// The same work as reading ErrCode, without an interface. There are two, so that no call is resolved here.
class Plain {
public:
    virtual ~Plain() = default;
    virtual automation::Long Code() const { return code; }
    automation::Long code = 0;
};
class Other : public Plain {
    automation::Long Code() const override { return 1; }
};
__attribute__((noinline)) automation::Long Code_Of(const Plain& plain) {
    return plain.code;
}

void Create_Through_The_Registry(benchmark::State& state) {
    const Editor first = Create();
    for (auto _ : state)
        benchmark::DoNotOptimize(Create().Get());
}
BENCHMARK(Create_Through_The_Registry)->Unit(benchmark::kMicrosecond);

template <bool is_virtual>
void Call_A_Function(benchmark::State& state) {
    std::unique_ptr<Plain> plain = std::make_unique<Plain>();
    if (state.max_iterations == 0)
        plain = std::make_unique<Other>();
    for (auto _ : state) {
        Plain* object = plain.get();
        benchmark::DoNotOptimize(object);
        benchmark::DoNotOptimize(is_virtual ? object->Code() : Code_Of(*object));
    }
}
BENCHMARK(Call_A_Function<false>)->Name("Call_A_Function");
BENCHMARK(Call_A_Function<true>)->Name("Call_A_Virtual_Function");

void Call_Through_The_Interface(benchmark::State& state) {
    const Editor editor = Create();
    for (auto _ : state) {
        automation::Long code = 0;
        benchmark::DoNotOptimize(editor->Get_ErrCode(code));
        benchmark::DoNotOptimize(code);
    }
}
BENCHMARK(Call_Through_The_Interface);

void Call_By_Name(benchmark::State& state) {
    const Editor editor = Create();
    const Automation_Name name{u"ErrCode", 7};
    for (auto _ : state) {
        automation::Long member = 0;
        Automation_Variant result{};
        editor->Get_Member_Identities(&name, 1, &member);
        editor->Invoke(member, AUTOMATION_PROPERTY_GET, nullptr, &result, nullptr);
        benchmark::DoNotOptimize(result);
    }
}
BENCHMARK(Call_By_Name);

} // namespace

int main(int count, char** arguments) {
    benchmark::Initialize(&count, arguments);
    if (benchmark::ReportUnrecognizedArguments(count, arguments))
        return 2;
    const std::string folder = Registered_Modules();
    benchmark::RunSpecifiedBenchmarks();
    std::filesystem::remove_all(folder);
}
