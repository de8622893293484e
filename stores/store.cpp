#include "stores/store.h"

#include "sample.h"
#include "schema.h"
#include "store_file.h"

namespace stores {

namespace {

void Check_Nodes(std::optional<int> nodes) {
    if (nodes && (*nodes < 0 || *nodes > Most_Nodes))
        throw Store_Error(Store_Error::Reason::Unusable,
                          "A store cannot be made with " + std::to_string(*nodes) +
                              " nodes; take a number from 0 to " + std::to_string(Most_Nodes));
}

std::unique_ptr<Database> Create_Database(const Location& location, std::optional<int> nodes) {
    auto database = std::make_unique<Database>(location);
    Explain(location, [&] {
        database->In_Transaction([&](soci::session& session) {
            Check_Empty(session, location);
            Create_Tables(session);
            Insert_Sample(session, nodes);
        });
    });
    return database;
}

} // namespace

std::shared_ptr<Store> Store::Open(const std::string& url) {
    const Location location = Locate(url);
    auto database = std::make_unique<Database>(location);
    Explain(location, [&] {
        database->In_Transaction([&](soci::session& session) { Check_Schema(session, location); });
    });
    return std::shared_ptr<Store>(new Store(std::move(database)));
}

std::shared_ptr<Store> Store::Create(const std::string& url, std::optional<int> nodes) {
    Check_Nodes(nodes);
    const Location location = Locate(url);
    std::optional<New_File> file;
    if (location.Is_File)
        file.emplace(location);
    auto store = std::shared_ptr<Store>(new Store(Create_Database(location, nodes)));
    if (file)
        file->Keep();
    return store;
}

Store::Store(std::unique_ptr<Database> opened) : database(std::move(opened)) {}

Store::~Store() = default;

} // namespace stores
