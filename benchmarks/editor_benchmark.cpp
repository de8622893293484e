// The whole editor on a full partition: opening it up to the first paint, against a plain pipeline from the
// same text to an equal dialog; a step to another node, a key and a save in the open dialog.
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QTimer>
#include <benchmark/benchmark.h>
#include <ctime>
#include <functional>
#include <map>
#include <pugixml.hpp>

#include "component/create.h"
#include "dialog/dlg_gui.h"
#include "plain_dialog.h"
#include "sample_store.h"
#include "style_node/busyness_rules.h"
#include "toolkit/user_input.h"
#include "window/qt_display.h"

namespace {

using namespace benchmarks;
using automation::Variant;
namespace user = toolkit::user_input;

// Of this process's own work: what other programs do meanwhile does not count.
double Seconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

// The store's reader of nodes, whose list is read once: opening is measured from its text on, on both sides.
class Prepared_Nodes final : public automation::Object<interfaces::NODES> {
public:
    explicit Prepared_Nodes(automation::Reference<interfaces::NODES> reader) : store(std::move(reader)) {
        text = Style_Nodes(*store);
    }
    automation::Status Get_Full_Detail(const Variant& config, const Variant& partition, const Variant& node,
                                       Variant& result) override {
        return store->Get_Full_Detail(config, partition, node, result);
    }
    automation::Status Get_Partial_Detail(const Variant& config, const Variant& partition,
                                          const Variant& node, Variant& result) override {
        return store->Get_Partial_Detail(config, partition, node, result);
    }
    automation::Status Get_Enhanced_Detail(const Variant& config, const Variant& partition,
                                           const Variant& node, Variant& result) override {
        return store->Get_Enhanced_Detail(config, partition, node, result);
    }
    automation::Status Get_DialContinue_Detail(const Variant& config, const Variant& partition,
                                               const Variant& node, Variant& result) override {
        return store->Get_DialContinue_Detail(config, partition, node, result);
    }
    automation::Status Get_Style_Nodes(const Variant&, const Variant&, Variant& result) override {
        result = std::exchange(answer, Variant());
        return automation::Status_OK;
    }
    // The answer that the next call hands over.
    void Prepare_Answer() { answer = text; }
    automation::String_View Text() const { return text.Text(); }

private:
    const automation::Reference<interfaces::NODES> store;
    Variant text;
    Variant answer;
};
constexpr automation::Identity Prepared_Class{
    0x5B7E20A4, 0x13C9, 0x4F60, {0x8D, 0x52, 0x6E, 0xA1, 0x07, 0xB3, 0x9C, 0xF8}};

// The partitions that are edited, by their number of nodes.
const Sample_Store& Partition(int nodes) {
    static std::map<int, Sample_Store> partitions;
    return partitions.try_emplace(nodes, nodes).first->second;
}
const Sample_Store& Partition(const benchmark::State& state) {
    return Partition(static_cast<int>(state.range(0)));
}
constexpr int Few_Nodes = 100;

automation::Reference<Prepared_Nodes> prepared; // of the partition that was opened last

automation::Reference<interfaces::NODES> Reader_Of_The_Store() {
    return automation::Bind<interfaces::NODES>(
        automation::Create_Object(interfaces::NODES::Program_Identity));
}

// Runs a job on the node; `act` is called once, when the dialog is up.
void Edit(automation::Integer node, const std::function<void(dialog::dlgGUI&)>& act) {
    const auto editor = automation::Bind<style_node::_Busyness_Rules>(component::Create_Busyness_Rules());
    QTimer soon; // it also comes while pending messages are processed, before the dialog is up
    QObject::connect(&soon, &QTimer::timeout, [&] {
        auto& form = *dialog::dlgGUI::Default_Instance();
        if (!form.Is_Visible())
            return;
        soon.stop();
        act(form);
        form.cmdApply.Set_Enabled(false);
        form.Unload();
    });
    soon.start(0);
    Automation_Boolean done = AUTOMATION_FALSE;
    automation::Check(editor->Shown(1, 1, node, 1, AUTOMATION_TRUE, done));
    Require(done == AUTOMATION_TRUE, "a job without errors");
}

void Prepare(const benchmark::State& state) {
    Partition(state).Use();
    prepared = automation::Make_Object<Prepared_Nodes>(Reader_Of_The_Store());
}

void Open_To_First_Paint(benchmark::State& state) {
    Prepare(state);
    classes::Provide_Class({automation::String(interfaces::NODES::Program_Identity), Prepared_Class,
                            [] { return automation::Reference<automation::Unknown>(prepared); }});
    for (auto _ : state) {
        prepared->Prepare_Answer();
        const auto start = Seconds();
        Edit(1, [&](dialog::dlgGUI& form) {
            QApplication::activeModalWidget()->repaint();
            state.SetIterationTime(Seconds() - start);
            Require(form.cmbNode.Count() == state.range(0) - 1, "every node in the list");
        });
    }
}

QStringList Entries_Of(automation::String_View text) {
    pugi::xml_document document;
    document.load_buffer(text.data(), text.size() * 2, pugi::parse_default, pugi::encoding_utf16);
    QStringList entries;
    for (const auto row : document.document_element().last_child().children())
        if (const auto* number = row.attribute("NodeNumber").value(); *number != '0')
            entries << QString("STYLE ") + number;
    return entries;
}

// The same widgets as the editor's on a small partition, with other entries in the list of nodes.
void Plain_Pipeline(benchmark::State& state) {
    Prepare(state);
    Partition(Few_Nodes).Use();
    Edit(1, [&](dialog::dlgGUI& form) {
        for (auto _ : state) {
            const auto start = Seconds();
            const QStringList nodes = Entries_Of(prepared->Text());
            Require(nodes.size() == state.range(0) - 1, "every node");
            const auto dialog = Make_Plain_Dialog(form);
            auto& list = *dialog->findChild<QComboBox*>("cmbNode");
            list.clear();
            list.insertItems(0, nodes);
            QTimer::singleShot(0, [&] {
                dialog->repaint();
                state.SetIterationTime(Seconds() - start);
                dialog->reject();
            });
            dialog->exec();
        }
    });
}

// There and back, in the middle of the list.
void Step(benchmark::State& state) {
    Partition(state).Use();
    const auto middle = static_cast<automation::Integer>(state.range(0) / 2);
    Edit(middle, [&](dialog::dlgGUI& form) {
        bool back = false;
        for (auto _ : state) {
            Require(!user::Press(back ? form.cmdPrevious : form.cmdNext), "a step");
            back = !back;
        }
    });
}

// A digit behind the others, and its deletion.
void Two_Keys(benchmark::State& state) {
    Partition(state).Use();
    Edit(static_cast<automation::Integer>(state.range(0) / 2), [&](dialog::dlgGUI& form) {
        user::Replace(form.txtTransfer, 0, 32, u"9,,12");
        for (auto _ : state) {
            user::Type(form.txtTransfer, u"3");
            user::Backspace(form.txtTransfer);
        }
        Require(form.txtTransfer.Text() == u"9,,12", "the keys");
    });
}

void Save(benchmark::State& state) {
    Partition(state).Use();
    Edit(static_cast<automation::Integer>(state.range(0) - 1), [&](dialog::dlgGUI& form) {
        for (auto _ : state) {
            form.cmdApply.Set_Enabled(true);
            Require(!user::Press(form.cmdApply) && !form.cmdApply.Enabled(), "a save");
        }
    });
}

// In the open dialog too, so that the process holds in memory what it holds during a save.
void Reread(benchmark::State& state) {
    Partition(state).Use();
    const auto reader = Reader_Of_The_Store();
    Edit(static_cast<automation::Integer>(state.range(0) - 1), [&](dialog::dlgGUI&) {
        for (auto _ : state) {
            const Variant answer = Style_Nodes(*reader);
            Require(Opened(answer.Text())->Record_Count() == state.range(0), "every node");
        }
    });
}

void Of_Partitions(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(Few_Nodes)->Arg(Most_Nodes)->Unit(benchmark::kMicrosecond);
}
void Of_A_Full_Partition(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(Most_Nodes)->Unit(benchmark::kMicrosecond);
}
BENCHMARK(Step)->Apply(Of_Partitions);
BENCHMARK(Two_Keys)->Apply(Of_Partitions);
BENCHMARK(Save)->Apply(Of_A_Full_Partition);
BENCHMARK(Reread)->Apply(Of_A_Full_Partition);
BENCHMARK(Open_To_First_Paint)->Apply(Of_Partitions)->UseManualTime();
BENCHMARK(Plain_Pipeline)->Apply(Of_Partitions)->UseManualTime();

} // namespace

int main(int count, char** arguments) {
    benchmark::Initialize(&count, arguments);
    const auto display = window::Create_Qt_Display({"style-node"});
    toolkit::Set_Display(display.get());
    benchmark::RunSpecifiedBenchmarks();
    toolkit::Discard_All_Forms();
    prepared = nullptr;
    toolkit::Set_Display(nullptr);
}
