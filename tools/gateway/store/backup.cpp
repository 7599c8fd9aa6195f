#include "gateway/store/backup.h"

#include <SQLiteCpp/Backup.h>
#include <SQLiteCpp/Transaction.h>
#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

#include "gateway/store/database.h"

namespace Morquil::Gateway {
namespace {

constexpr int pagesPerStep = 1000;

// Empty, for the owner only.
bool MakeNew(const std::string& path) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file >= 0) {
        close(file);
    }
    return file >= 0;
}

std::string SystemProblem(const std::string& path, int error) {
    return path + ": " + std::generic_category().message(error);
}

// While the transaction lasts, the connection sees the database as it was at its beginning.
std::string Copy(const std::string& from, const std::string& to, const std::atomic<bool>& isEnding) {
    const Connection source = OpenForReading(from);
    const SQLite::Transaction view(*source);
    source->execAndGet("SELECT count(*) FROM documents");
    SQLite::Database target(to, SQLite::OPEN_READWRITE);
    SQLite::Backup backup(target, *source);
    while (backup.executeStep(pagesPerStep) != SQLITE_DONE) {
        if (isEnding.load()) {
            return "The gateway is stopping";
        }
    }
    return {};
}

}  // namespace

std::string BackUp(const std::string& from, const std::string& to, const std::atomic<bool>& isEnding) {
    const std::string partial = to + ".partial";
    if (access(to.c_str(), F_OK) == 0) {
        return SystemProblem(to, EEXIST);
    }
    std::remove(partial.c_str());
    if (!MakeNew(partial)) {
        return SystemProblem(partial, errno);
    }
    std::string problem;
    try {
        problem = Copy(from, partial, isEnding);
    } catch (const SQLite::Exception& failure) {
        problem = DescribeFailure(failure, from).sentence + " (" + failure.what() + ")";
    }
    if (problem.empty() && std::rename(partial.c_str(), to.c_str()) != 0) {
        problem = SystemProblem(to, errno);
    }
    if (!problem.empty()) {
        std::remove(partial.c_str());
    }
    return problem;
}

}  // namespace Morquil::Gateway
