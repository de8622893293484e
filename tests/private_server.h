// A PostgreSQL server of the test program's own: a Unix socket in a temporary folder, fast and careless with
// its data. It is started at the first use and gone at the program's end, however that comes. A test that
// needs it fails when it cannot be started.
#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

class Private_Server {
public:
    static Private_Server& Get();

    // An empty database, and its URL as the user that owns it, or as another one. `options`: of CREATE
    // DATABASE.
    std::string New_Database(const std::string& options = "");
    std::string URL(const std::string& database, const std::string& user = "tester",
                    const std::string& more = "") const;

    using Rows = std::vector<std::vector<std::string>>;
    // Runs SQL past the store; the rows it gives, nulls as "<null>". Several statements give their rows in
    // turn.
    Rows SQL(const std::string& url, const std::string& sql) const;

    // SIGKILL for all of it at once; Start makes it run again and waits until it answers.
    void Kill();
    void Start();
    // Until it answers again after the death of one of its processes, for which it lets all others go.
    void Wait();
    pid_t Postmaster() const;
    std::string Socket() const { return folder + "/.s.PGSQL.5432"; }

private:
    Private_Server();
    ~Private_Server();
    Private_Server(const Private_Server&) = delete;
    Private_Server& operator=(const Private_Server&) = delete;

    void Make_Data() const;
    int Times_Ready() const;

    std::string folder;
    int alive = -1; // the guard cleans up when the program no longer holds it
    pid_t guard = -1;
    int databases = 0;
    int times_ready = 0; // since the data was made
};
