#include "stores/store.h"

#include "sample.h"
#include "schema.h"
#include "store_file.h"
#include "visit.h"

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
    database->Explain([&] {
        database->In_Transaction([&](soci::session& session) {
            Check_Empty(session, location);
            Create_Tables(session);
            Insert_Sample(session, nodes);
        });
    });
    return database;
}

int Version_Of(Database& database) {
    int version = 0;
    database.Explain([&] {
        database.In_Transaction(
            [&](soci::session& session) { version = Version_Of_Store(session, database.Place); });
    });
    return version;
}

void Bring_Up_To_Date(Database& database) {
    database.Explain([&] {
        database.In_Transaction([&](soci::session& session) { Upgrade_Schema(session, database.Place); });
    });
}

} // namespace

std::shared_ptr<Store> Store::Open(const std::string& url) {
    auto database = std::make_unique<Database>(Locate(url));
    const int version = Version_Of(*database);
    if (version < Schema_Version && !database->Place.Is_File)
        throw Store_Error(
            Store_Error::Reason::Unusable,
            "The store " + database->Place.Name + " has version " + std::to_string(version) +
                ", made by an older program; its administrator upgrades it with: style-editor store "
                "upgrade --store " +
                database->Place.Name);
    if (version < Schema_Version)
        Bring_Up_To_Date(*database);
    return std::shared_ptr<Store>(new Store(std::move(database)));
}

void Store::Upgrade(const std::string& url) {
    Database database(Locate(url));
    if (Version_Of(database) < Schema_Version)
        Bring_Up_To_Date(database);
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

std::shared_ptr<Visit> Store::Visit_Here() {
    const std::lock_guard hold(visits_lock);
    std::erase_if(visits, [](const auto& entry) { return entry.second.expired(); });
    auto& known = visits[std::this_thread::get_id()];
    auto visit = known.lock();
    if (!visit)
        known = visit = std::make_shared<Visit>(database->User());
    return visit;
}

} // namespace stores
