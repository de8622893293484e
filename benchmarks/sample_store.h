// A store of the benchmarks' own, with its components offered to the process.
#pragma once

#include <filesystem>
#include <string>

#include "classes/class_table.h"
#include "interfaces/product_components.h"
#include "stores/store.h"
#include "table.h"
#include "texts.h"

namespace benchmarks {

constexpr int Most_Nodes = 32'767; // of a partition, with the default node

// Configuration 1, partition 1 holds so many nodes, the default node among them. TMPDIR says where the file
// is.
class Sample_Store {
public:
    explicit Sample_Store(int nodes) {
        Require(mkdtemp(folder.data()) != nullptr, "a folder");
        store = stores::Store::Create("sqlite:" + Path(), nodes - 1);
        Use();
    }
    Sample_Store(const Sample_Store&) = delete;
    Sample_Store& operator=(const Sample_Store&) = delete;
    ~Sample_Store() {
        stores::Use_Store(nullptr);
        std::filesystem::remove_all(folder);
    }
    std::string Path() const { return folder + "/store"; }
    // From now on components are created on it.
    void Use() const {
        stores::Use_Store(store);
        recordset::Offer_Classes();
        for (const auto& served : stores::Classes())
            classes::Provide_Class({served.Program_Identity, served.Class_Identity, served.Create});
    }

private:
    std::shared_ptr<stores::Store> store;
    std::string folder = (std::filesystem::temp_directory_path() / "benchmark_XXXXXX").string();
};

inline automation::Variant Style_Nodes(interfaces::NODES& nodes) {
    automation::Variant answer;
    automation::Check(nodes.Get_Style_Nodes(automation::Variant(u"1"), automation::Variant(u"1"), answer));
    return answer;
}

} // namespace benchmarks
