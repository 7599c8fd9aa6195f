#include "gateway/store/writer.h"

#include <SQLiteCpp/Transaction.h>

#include <algorithm>
#include <exception>
#include <utility>

#include "gateway/store/audit_table.h"
#include "gateway/store/history_table.h"

namespace Morquil::Gateway {
namespace {

using namespace std::chrono_literals;
using SteadyClock = std::chrono::steady_clock;

// From its arrival to its commit a row takes this long, and the time of one transaction.
constexpr auto gatherFor = 20ms;
constexpr auto firstRetry = 250ms;
constexpr auto longestRetry = 4000ms;
constexpr auto nextSlice = 20ms;  // while there is more to purge
constexpr auto nextLook = 1s;     // otherwise

}  // namespace

Writer::Writer(const StoreSettings& settings, Pending& pending, Worker& worker)
    : settings_(settings), pending_(pending), checkpoint_(settings.path, worker), purge_(settings.caps) {
    TryToOpen();
    thread_ = std::thread([this] { Run(); });
}

Writer::~Writer() {
    thread_.join();
}

StoreCondition Writer::Condition() const {
    const Pending::Counts counts = pending_.Count();
    const Held held(mutex_);
    StoreCondition condition = condition_;
    condition.pending = counts.pending;
    condition.lostChanges = counts.lostChanges;
    condition.lostAttempts = counts.lostAttempts;
    return condition;
}

void Writer::Run() {
    nextPurge_ = SteadyClock::now() + nextLook;
    while (pending_.Wait(batch_.HasRows() ? SteadyClock::now() : nextPurge_, gatherFor)) {
        WritePending();
        if (SteadyClock::now() >= nextPurge_) {
            Purge();
        }
        pending_.Pause(retryAfter_);
    }
    do {
        WritePending();
    } while (retryAfter_ == 0ms && pending_.Count().pending > 0);
}

void Writer::TryToOpen() {
    try {
        Open();
    } catch (const SQLite::Exception& failure) {
        Failed(failure);
    }
}

void Writer::Open() {
    if (!database_) {
        database_ = OpenForWriting(settings_.path);
        checkpoint_.Watch(*database_);
        Succeeded();
    }
    if (!history_ || !audit_) {
        history_ = std::make_unique<HistoryWriter>(*database_);
        audit_ = std::make_unique<AuditWriter>(*database_);
    }
}

void Writer::WritePending() {
    pending_.TakeInto(batch_);
    try {
        Open();
        if (batch_.HasRows()) {
            Write();
        }
    } catch (const SQLite::Exception& failure) {
        Failed(failure);
        Answer(std::exchange(batch_.flushes, {}), false);
        Answer(pending_.TakeFlushes(), false);
        return;
    }
    pending_.Written();
    Answer(batch_.flushes, true);
    batch_ = {};
}

void Writer::Write() {
    SQLite::Transaction transaction(*database_, SQLite::TransactionBehavior::IMMEDIATE);
    for (const Change& change : batch_.changes) {
        history_->Add(change);
    }
    for (const Attempt& attempt : batch_.attempts) {
        audit_->Add(attempt);
    }
    const std::uint64_t losses = NoteLosses();
    audit_->Finish();
    WriteDocuments();
    transaction.commit();
    notedLosses_ = losses;
    Succeeded();
    checkpoint_.AfterCommit(*database_);
}

void Writer::WriteDocuments() {
    SQLite::Statement put(*database_, "INSERT OR REPLACE INTO documents VALUES (?, ?, ?)");
    SQLite::Statement erase(*database_, "DELETE FROM documents WHERE collection = ? AND name = ?");
    for (const auto& [name, text] : batch_.documents) {
        SQLite::Statement& statement = text ? put : erase;
        statement.bind(1, name.first);
        statement.bind(2, name.second);
        if (text) {
            statement.bind(3, *text);
        }
        statement.exec();
        statement.reset();
    }
}

// The audit itself says where it has a hole.
std::uint64_t Writer::NoteLosses() {
    const Pending::Counts counts = pending_.Count();
    const std::uint64_t lost = counts.lostChanges + counts.lostAttempts;
    if (lost > notedLosses_) {
        audit_->Add({.time = settings_.now(),
                     .who = "gateway",
                     .value = "{\"changes\":" + std::to_string(counts.lostChanges) +
                              ",\"attempts\":" + std::to_string(counts.lostAttempts) + "}",
                     .outcome = "not-recorded"});
    }
    return lost;
}

void Writer::Purge() {
    bool hasMore = false;
    try {
        Open();
        hasMore = purge_.Step(*database_, settings_.now());
        Succeeded();
    } catch (const SQLite::Exception& failure) {
        Failed(failure);
    }
    nextPurge_ = SteadyClock::now() + (hasMore ? SteadyClock::duration(nextSlice) : SteadyClock::duration(nextLook));
}

// What was prepared for the transaction that has failed knows names and hashes that are not in the file.
void Writer::Failed(const SQLite::Exception& failure) {
    const StoreFailure description = DescribeFailure(failure, settings_.path);
    history_.reset();
    audit_.reset();
    if (description.state != StoreState::DiskFull) {
        database_.reset();  // the file may be replaced, or become writable
    }
    retryAfter_ = std::clamp<std::chrono::milliseconds>(2 * retryAfter_, firstRetry, longestRetry);
    const Held held(mutex_);
    condition_.state = description.state;
    condition_.sentence = description.sentence;
}

void Writer::Succeeded() {
    retryAfter_ = 0ms;
    const std::int64_t bytes = UsedBytes(*database_);
    const Held held(mutex_);
    condition_.state = StoreState::Writing;
    condition_.sentence.clear();
    condition_.bytes = bytes;
}

void Writer::Answer(const std::vector<std::function<void(bool)>>& flushes, bool isWritten) const {
    for (const std::function<void(bool)>& flush : flushes) {
        settings_.post([flush, isWritten] { flush(isWritten); });
    }
}

}  // namespace Morquil::Gateway
