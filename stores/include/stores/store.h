// A store of node data on SQL, and the components that stand on it: replacements for the product's closed
// data components, its message box and its label checker.
//
// A store is named by a URL: "sqlite:PATH" or "postgresql://...". It is one connection, shared by every
// component that was created on it and usable from several threads: an operation holds it from begin to
// commit. It keeps what it is given as text, odd values included, and never interprets it.
//
// Open and Create throw Store_Error; the components leave their failures in the thread's error object, as
// every automation component does. The schema is described in docs/store.md.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <thread>

#include "automation/server.h"
#include "interfaces/store_keeper.h"

namespace stores {

class Database;
class Visit;

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

class Store {
public:
    // Opens a store that exists; makes no file. A file of an older layout is upgraded; a server's store is
    // not, for that takes rights that an editor does not have and shuts out older programs.
    static std::shared_ptr<Store> Open(const std::string& url);

    // Makes the tables and the sample data in one transaction and opens the store. With `nodes`,
    // configuration 1, partition 1 holds the default node and nodes 1 to `nodes` (0 to Most_Nodes) instead
    // of the sample's. A new file gets mode 0600 and the folders that had to be made 0700; when anything
    // fails they are gone again. An existing store, or a database with other tables, is refused untouched.
    static std::shared_ptr<Store> Create(const std::string& url, std::optional<int> nodes = std::nullopt);

    // Brings a store of an older layout up to this program's in one transaction.
    static void Upgrade(const std::string& url);

    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;
    ~Store();

    Database& Data() const { return *database; } // for this layer's own components
    // The visit of the calling thread; it lasts as long as somebody holds it.
    std::shared_ptr<Visit> Visit_Here();

private:
    explicit Store(std::unique_ptr<Database> opened);

    std::unique_ptr<Database> database;
    std::mutex visits_lock;
    std::map<std::thread::id, std::weak_ptr<Visit>> visits;
};

// The store that components are created on from then on; it lives as long as one of them does. Null: the
// user's own again.
void Use_Store(std::shared_ptr<Store> store);

// Every component under the product's identities, and the keeper of the store.
std::span<const automation::Server_Class> Classes();

} // namespace stores
