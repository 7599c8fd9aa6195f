#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "command/output/screen.h"

namespace Morquil::Testing {

/// The keys and the size of a screen that a test plays. Threads: any.
class FakeTerminal {
public:
    void Type(const std::string& keys) {
        const std::lock_guard lock(mutex_);
        keys_ += keys;
        typed_.notify_all();
    }
    void Resize(Command::ScreenSize size) {
        const std::lock_guard lock(mutex_);
        size_ = size;
    }
    bool IsOpen() const {
        const std::lock_guard lock(mutex_);
        return isOpen_;
    }

    std::unique_ptr<Command::Screen> Open() { return std::make_unique<FakeScreen>(*this); }

private:
    class FakeScreen final : public Command::Screen {
    public:
        explicit FakeScreen(FakeTerminal& terminal) : terminal_(terminal) { SetOpen(true); }
        ~FakeScreen() override { SetOpen(false); }

        Command::ScreenSize Size() const override {
            const std::lock_guard lock(terminal_.mutex_);
            return terminal_.size_;
        }
        std::string ReadKeys(std::chrono::milliseconds wait) override {
            std::unique_lock lock(terminal_.mutex_);
            terminal_.typed_.wait_for(lock, wait, [this] { return !terminal_.keys_.empty(); });
            return std::exchange(terminal_.keys_, {});
        }

    private:
        void SetOpen(bool isOpen) {
            const std::lock_guard lock(terminal_.mutex_);
            terminal_.isOpen_ = isOpen;
        }

        FakeTerminal& terminal_;
    };

    mutable std::mutex mutex_;
    std::condition_variable typed_;
    std::string keys_;
    Command::ScreenSize size_;
    bool isOpen_ = false;
};

}  // namespace Morquil::Testing
