// A store of node data on SQL, and the components that stand on it: replacements for the product's closed
// data components, its message box and its label checker.
//
// A store is named by a URL: "sqlite:PATH" or "postgresql://...". The components that a thread creates on it
// share a connection of their own. It keeps what it is given as text, odd values included, and never
// interprets it.
//
// Open and Create throw Store_Error; the components leave their failures in the thread's error object, as
// every automation component does. The schema is described in docs/store-schema.md.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "automation/server.h"
#include "interfaces/store_keeper.h"

namespace stores {

class Connection;
class Session;
struct Location;

// One line that names the store and says what to do about it.
class Store_Error : public std::runtime_error {
public:
    enum class Reason {
        Missing,       // nothing is there yet: Create would make it
        Already_There, // Create found a store and left it alone
        Unusable,      // everything else
    };
    Store_Error(Reason reason, const std::string& message) : std::runtime_error(message), Why(reason) {}

    const Reason Why;
};

// The largest number of nodes that Create makes besides the default node.
constexpr int Most_Nodes = interfaces::Most_Nodes;

// Callable from any thread.
class Store : public std::enable_shared_from_this<Store> {
public:
    // Opens a store that exists; makes no file. A file of an older layout is upgraded; a server's store is
    // not, for that takes rights that an editor does not have and shuts out older programs.
    static std::shared_ptr<Store> Open(const std::string& url);

    // Makes the tables and the sample data and opens the store. With `nodes`, configuration 1, partition 1
    // holds the default node and nodes 1 to `nodes` (0 to Most_Nodes) instead of the sample's. The store is
    // there whole or not at all. A new file gets mode 0600 and the folders that had to be made 0700. An
    // existing store, or a database with other tables, is refused untouched.
    static std::shared_ptr<Store> Create(const std::string& url, std::optional<int> nodes = std::nullopt);

    // Brings a store of an older layout up to this program's in one transaction.
    static void Upgrade(const std::string& url);

    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;
    ~Store();

    // A URL that opens it and may be shown: without a password.
    const std::string& Address() const;
    // The session of the calling thread; it lasts as long as somebody holds it. Throws Store_Error.
    std::shared_ptr<Session> Session_Here();

private:
    explicit Store(std::unique_ptr<Connection> opened);
    static std::shared_ptr<Store> Made(std::unique_ptr<Connection> opened);
    std::unique_ptr<Connection> Spare_Connection();

    const std::unique_ptr<const Location> place;
    std::mutex lock;
    std::vector<std::unique_ptr<Connection>> spare;           // of sessions that ended, for the next ones
    std::map<std::uint64_t, std::weak_ptr<Session>> sessions; // by thread
};

// The store that components are created on from then on; it lives as long as one of them does. Null: the
// user's own again.
void Use_Store(std::shared_ptr<Store> store);

// Every component under the product's identities, and the keeper of the store.
std::span<const automation::Server_Class> Classes();

} // namespace stores
