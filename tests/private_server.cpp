#include "private_server.h"

#include <array>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <sys/wait.h>
#include <thread>

#include <gtest/gtest.h>
#include <libpq-fe.h>

#include "ordinary_user.h"

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

// Debian keeps the server's programs out of the usual path.
std::string Program(const std::string& name) {
    for (int version = 30; version > 9; --version)
        if (const std::string path = "/usr/lib/postgresql/" + std::to_string(version) + "/bin/" + name;
            fs::exists(path))
            return path;
    throw std::runtime_error("there is no PostgreSQL server on this machine; install the package postgresql");
}

// Runs in the background as an ordinary user, its output in a file.
pid_t Spawn(std::vector<std::string> words, const std::string& log) {
    const pid_t child = fork();
    if (child != 0)
        return child;
    const int out = open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0666);
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    if (setsid() > 0 && dup2(out, 1) == 1 && dup2(out, 2) == 2 && chdir("/") == 0 && Become_Ordinary_User())
        execv(pointers[0], pointers.data());
    _exit(127);
}

bool Becomes_True(const std::function<bool()>& condition, std::chrono::seconds patience = 60s) {
    const auto until = std::chrono::steady_clock::now() + patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > until)
            return false;
        std::this_thread::sleep_for(5ms);
    }
    return true;
}

pid_t Postmaster_In(const std::string& folder) {
    pid_t process = 0;
    std::ifstream(folder + "/data/postmaster.pid") >> process;
    return process;
}

std::vector<pid_t> Children_Of(pid_t parent) {
    std::vector<pid_t> children;
    for (const auto& entry : fs::directory_iterator("/proc")) {
        std::ifstream status(entry.path() / "stat");
        pid_t process = 0, its_parent = 0;
        std::string name, state;
        if (status >> process && std::getline(status, name, ')') && status >> state >> its_parent &&
            its_parent == parent)
            children.push_back(process);
    }
    return children;
}

// Outlives the program only to clear up behind it.
[[noreturn]] void Guard(int program_is_there, const std::string& folder) {
    const int nothing = open("/dev/null", O_RDWR);
    for (const int descriptor : {0, 1, 2})
        dup2(nothing, descriptor);
    setsid();
    char byte = 0;
    while (read(program_is_there, &byte, 1) < 0 && errno == EINTR)
        continue;
    if (const pid_t server = Postmaster_In(folder); server > 0) {
        kill(server, SIGCONT);
        kill(server, SIGQUIT);
        Becomes_True([&] { return kill(server, 0) != 0; }, 10s);
    }
    std::error_code ignored;
    fs::remove_all(folder, ignored);
    _exit(0);
}

} // namespace

Private_Server& Private_Server::Get() {
    static Private_Server server;
    return server;
}

Private_Server::Private_Server() {
    std::string pattern = (fs::temp_directory_path() / "style_server_XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr)
        throw std::runtime_error("no folder for the server");
    folder = pattern;
    Give_To_Ordinary_User(folder);
    std::array<int, 2> pipe{};
    if (pipe2(pipe.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    guard = fork();
    if (guard == 0) {
        close(pipe[1]);
        Guard(pipe[0], folder);
    }
    close(pipe[0]);
    alive = pipe[1];
    Make_Data();
    Start();
}

Private_Server::~Private_Server() {
    const pid_t server = Postmaster();
    if (server > 0 && kill(server, SIGQUIT) == 0)
        waitpid(server, nullptr, 0);
    close(alive);
    waitpid(guard, nullptr, 0);
}

void Private_Server::Make_Data() const {
    const std::string log = folder + "/initdb.log";
    const pid_t maker = Spawn({Program("initdb"), "--pgdata=" + folder + "/data", "--username=tester",
                               "--auth=trust", "--no-sync", "--encoding=UTF8", "--locale=C"},
                              log);
    int status = 0;
    if (waitpid(maker, &status, 0) != maker || status != 0)
        throw std::runtime_error("the server's data could not be made: " +
                                 std::string(std::istreambuf_iterator(std::ifstream(log).rdbuf()), {}));
}

void Private_Server::Start() {
    const std::vector<std::string> command{Program("postgres"),
                                           "-D",
                                           folder + "/data",
                                           "-k",
                                           folder,
                                           "-c",
                                           "listen_addresses=",
                                           "-c",
                                           "fsync=off",
                                           "-c",
                                           "shared_buffers=8MB",
                                           "-c",
                                           "max_connections=50",
                                           "-c",
                                           "autovacuum=off",
                                           "-c",
                                           "log_checkpoints=off"};
    // After a kill the last of the old processes may still be there; then a start is refused.
    const bool runs = Becomes_True([&] {
        const pid_t server = Spawn(command, folder + "/server.log");
        while (waitpid(server, nullptr, WNOHANG) == 0) {
            if (PQping(URL("postgres").c_str()) == PQPING_OK)
                return true;
            std::this_thread::sleep_for(5ms);
        }
        return false;
    });
    if (!runs)
        throw std::runtime_error(
            "the server does not start: " +
            std::string(std::istreambuf_iterator(std::ifstream(folder + "/server.log").rdbuf()), {}));
    Wait();
}

int Private_Server::Times_Ready() const {
    std::ifstream log(folder + "/server.log");
    int times = 0;
    for (std::string line; std::getline(log, line);)
        times += line.find("ready to accept connections") != std::string::npos;
    return times;
}

void Private_Server::Wait() {
    EXPECT_TRUE(Becomes_True([&] { return Times_Ready() > times_ready; }));
    times_ready = Times_Ready();
    EXPECT_TRUE(Becomes_True([&] { return PQping(URL("postgres").c_str()) == PQPING_OK; }));
}

pid_t Private_Server::Postmaster() const {
    return Postmaster_In(folder);
}

void Private_Server::Kill() {
    const pid_t server = Postmaster();
    kill(server, SIGSTOP); // it is not to see its children die
    for (const pid_t child : Children_Of(server))
        kill(child, SIGKILL);
    kill(server, SIGKILL);
    waitpid(server, nullptr, 0);
}

std::string Private_Server::New_Database(const std::string& options) {
    const std::string name = "store_" + std::to_string(++databases);
    SQL(URL("postgres"), "CREATE DATABASE " + name + " " + options);
    return URL(name);
}

std::string Private_Server::URL(const std::string& database, const std::string& user,
                                const std::string& more) const {
    return "postgresql://" + user + "@/" + database + "?host=" + folder + more;
}

Private_Server::Rows Private_Server::SQL(const std::string& url, const std::string& sql) const {
    Rows rows;
    PGconn* const connection = PQconnectdb((url + "&client_encoding=UTF8").c_str());
    PQsetNoticeProcessor(
        connection, [](void*, const char*) {}, nullptr);
    EXPECT_EQ(PQsendQuery(connection, sql.c_str()), 1) << url << ": " << PQerrorMessage(connection);
    while (PGresult* const result = PQgetResult(connection)) {
        EXPECT_EQ(PQresultErrorField(result, PG_DIAG_SQLSTATE), nullptr)
            << sql << ": " << PQresultErrorMessage(result);
        for (int row = 0; row < PQntuples(result); ++row) {
            auto& texts = rows.emplace_back();
            for (int column = 0; column < PQnfields(result); ++column) {
                std::string text =
                    PQgetisnull(result, row, column) ? "<null>" : PQgetvalue(result, row, column);
                if (PQftype(result, column) == 16) // a Boolean, as SQLite shows it
                    text = text == "t" ? "1" : "0";
                texts.push_back(text);
            }
        }
        PQclear(result);
    }
    PQfinish(connection);
    return rows;
}
