#include "stores/store.h"

#include "sample.h"
#include "schema.h"
#include "session.h"
#include "store_file.h"

namespace stores {

namespace {

constexpr std::size_t Most_Spare_Connections = 4; // of threads that edit in turn

void Check_Nodes(std::optional<int> nodes) {
    if (nodes && (*nodes < 0 || *nodes > Most_Nodes))
        throw Store_Error(Store_Error::Reason::Unusable,
                          "A store cannot be made with " + std::to_string(*nodes) +
                              " nodes; take a number from 0 to " + std::to_string(Most_Nodes));
}

void In_Transaction(std::unique_ptr<Connection>& connection, Access access, const Body& body) {
    Transaction transaction(connection, access);
    transaction.Run(body);
    transaction.Commit();
}

// Of two programs that make a server's tables at once the second waits here, and then finds them.
void Wait_For_Others(Connection& connection) {
    if (!connection.Is_File())
        Statement(connection, "SELECT pg_advisory_xact_lock(1398033733)").Run(); // a number of our own
}

void Fill(Connection& connection, std::optional<int> nodes) {
    Create_Tables(connection);
    Insert_Sample(connection, nodes);
    Begin_History(connection);
}

// False when something has the name already.
bool Is_Published(const Location& location, std::optional<int> nodes) try {
    // An existing file is looked into first: what is in it says more than that it exists.
    Connection::Open(location);
    return false;
} catch (const Store_Error& error) {
    if (error.Why != Store_Error::Reason::Missing)
        throw;
    try {
        Publish_File(location, File_Image(location, [&](Connection& memory) { Fill(memory, nodes); }));
        return true;
    } catch (const Store_Error& failure) {
        if (failure.Why != Store_Error::Reason::Already_There) // another program was faster
            throw;
        return false;
    }
}

int Version_Of(std::unique_ptr<Connection>& connection) {
    int version = 0;
    In_Transaction(connection, Access::Read, [&](Connection& open) { version = Version_Of_Store(open); });
    return version;
}

} // namespace

std::shared_ptr<Store> Store::Open(const std::string& url) {
    auto connection = Connection::Open(Locate(url));
    const int version = Version_Of(connection);
    if (version < Schema_Version && !connection->Is_File())
        throw Store_Error(
            Store_Error::Reason::Unusable,
            "The store " + connection->Place.Name + " has version " + std::to_string(version) +
                ", made by an older program; its administrator upgrades it with: style-editor store "
                "upgrade --store " +
                connection->Place.Address);
    if (version < Schema_Version)
        In_Transaction(connection, Access::Write, Upgrade_Schema);
    return Made(std::move(connection));
}

void Store::Upgrade(const std::string& url) {
    auto connection = Connection::Open(Locate(url));
    if (Version_Of(connection) < Schema_Version)
        In_Transaction(connection, Access::Write, Upgrade_Schema);
}

std::shared_ptr<Store> Store::Create(const std::string& url, std::optional<int> nodes) {
    Check_Nodes(nodes);
    const Location location = Locate(url);
    if (location.Is_File && Is_Published(location, nodes))
        return Made(Connection::Open(location));
    auto connection = Connection::Open(location);
    In_Transaction(connection, Access::Write, [&](Connection& open) {
        Wait_For_Others(open);
        Check_Empty(open);
        Fill(open, nodes);
    });
    return Made(std::move(connection));
}

std::shared_ptr<Store> Store::Made(std::unique_ptr<Connection> opened) {
    return std::shared_ptr<Store>(new Store(std::move(opened)));
}

Store::Store(std::unique_ptr<Connection> opened) : place(std::make_unique<const Location>(opened->Place)) {
    spare.push_back(std::move(opened));
}

Store::~Store() = default;

const std::string& Store::Address() const {
    return place->Address;
}

std::unique_ptr<Connection> Store::Spare_Connection() {
    {
        const std::lock_guard hold(lock);
        if (!spare.empty()) {
            auto connection = std::move(spare.back());
            spare.pop_back();
            return connection;
        }
    }
    return Connection::Open(*place);
}

std::shared_ptr<Session> Store::Session_Here() {
    const std::uint64_t thread = Automation_This_Thread();
    {
        const std::lock_guard hold(lock);
        std::erase_if(sessions, [](const auto& entry) { return entry.second.expired(); });
        if (const auto known = sessions.find(thread); known != sessions.end())
            if (auto session = known->second.lock())
                return session;
    }
    // What ends the session outlives it, in the store's own map: it must not keep the store.
    const auto end = [kept = shared_from_this()](Session* ended) mutable {
        const auto store = std::move(kept);
        auto connection = ended->Give_Back();
        delete ended;
        const std::lock_guard hold(store->lock);
        if (store->spare.size() < Most_Spare_Connections)
            store->spare.push_back(std::move(connection));
    };
    std::shared_ptr<Session> session(new Session(Spare_Connection()), end);
    const std::lock_guard hold(lock);
    sessions.insert_or_assign(thread, session);
    return session;
}

} // namespace stores
