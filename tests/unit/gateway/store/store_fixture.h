// A store in a folder of its own.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "gateway/store/store.h"
#include "tests/kit/temporary_folder.h"
#include "tests/unit/gateway/store/caller.h"

namespace Morquil::Testing {

/// "2026-03-01T12:00:00Z" and this many seconds.
inline Gateway::Time At(int seconds) {
    return *Gateway::ParseTime("2026-03-01T12:00:00Z") + std::chrono::seconds(seconds);
}

inline Gateway::Change ChangeOf(const std::string& device, const std::string& property, int seconds) {
    return {.time = At(seconds),
            .device = device,
            .property = property,
            .oldValue = std::to_string(seconds - 1),
            .newValue = std::to_string(seconds),
            .origin = "front panel"};
}

inline Gateway::Attempt AttemptOf(const std::string& device, int seconds) {
    return {.time = At(seconds),
            .who = "anna",
            .address = "10.0.0.7",
            .device = device,
            .property = "proc-amp.gain",
            .value = std::to_string(seconds),
            .outcome = "confirmed",
            .status = 200,
            .requestId = "r" + std::to_string(seconds)};
}

class StoreFixture : public testing::Test {
protected:
    Gateway::StoreSettings Settings() {
        return {.path = path_,
                .post = [this](std::function<void()> function) { caller_.Post(std::move(function)); },
                .now = [] { return At(0); }};  // so that no row is old enough to be purged
    }
    void Open() { Open(Settings()); }
    void Open(Gateway::StoreSettings settings) { store_ = std::make_unique<Gateway::Store>(std::move(settings)); }
    void Reopen() {
        store_.reset();
        Open();
    }

    bool Flush() {
        return caller_.Await<bool>([&](auto done) { store_->Flush(done); });
    }
    Gateway::HistoryPage History(Gateway::Query query = {}) {
        return caller_.Await<Gateway::HistoryPage>([&](auto done) { store_->ReadHistory(std::move(query), done); });
    }
    Gateway::AuditPage Audit(Gateway::Query query = {}) {
        return caller_.Await<Gateway::AuditPage>([&](auto done) { store_->ReadAudit(std::move(query), done); });
    }
    Gateway::Verification Verify() {
        return caller_.Await<Gateway::Verification>([&](auto done) { store_->Verify(done); });
    }

    TemporaryFolder folder_;
    std::string path_ = folder_.PathOf("gateway.db");
    Caller caller_;
    std::unique_ptr<Gateway::Store> store_;
};

}  // namespace Morquil::Testing
