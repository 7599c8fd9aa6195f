// Keeps salvos and runs them: in parallel over devices, in order within one.
#pragma once

#include <functional>
#include <list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "gateway/people/scope.h"
#include "gateway/salvos/salvo.h"
#include "gateway/salvos/salvo_fleet.h"

namespace Morquil::Gateway {

class ActiveRun;

inline constexpr std::string_view salvosCollection = "salvos";
inline constexpr std::string_view runsCollection = "runs";

struct SalvosSettings {
    SalvoFleet* fleet = nullptr;  // outlives the salvos
    /// Stores a document and calls `written` when it is in the file, or never.
    std::function<void(std::string_view collection, const std::string& name, const std::string& text,
                       std::function<void()> written)>
        put;
    std::function<void(std::string_view collection, const std::string& name)> erase;
    /// A run has got on: events for streams.
    std::function<void(const Run& run)> changed;
    std::function<std::string()> newId;
    std::function<Time()> now = Now;
    std::size_t mostRuns = 1000;  // that are remembered; the oldest is forgotten first
    std::size_t mostSalvos = 1000;
};

struct RunOptions {
    bool isDryRun = false;
    std::optional<OnFailure> onFailure = {};  // in place of the salvo's own
    std::string who = {};
    std::string idempotencyKey = {};
};

struct StartResult {
    enum class Outcome {
        Started,    // or, if it was a dry run, done
        Repeated,   // the idempotency key has been used for the same request: this is the run that it started
        KeyInUse,   // ... for another request
        NotFound,   // no such salvo
        NotOffered  // nothing was set: `steps` says which step the devices would not accept
    };

    Outcome outcome = Outcome::NotFound;
    std::string run = {};
    std::vector<StepResult> steps = {};
};

/// Threads: one, the caller's.
class Salvos {
public:
    explicit Salvos(SalvosSettings settings);
    ~Salvos();
    Salvos(const Salvos&) = delete;
    Salvos& operator=(const Salvos&) = delete;

    using Documents = std::vector<std::pair<std::string, std::string>>;
    /// Takes what the store has kept. A run that was on its way is interrupted: its steps without an outcome are
    /// "unknown". Returns: the names of documents that cannot be read.
    std::vector<std::string> Load(const Documents& salvos, const Documents& runs);

    std::vector<Salvo> All() const;
    const Salvo* Find(const std::string& name) const;
    /// Adds a salvo, or replaces the one of its name. Returns: false if there are too many.
    bool Put(Salvo salvo);
    bool Erase(const std::string& name);

    struct Captured {
        std::vector<Step> steps;
        std::vector<std::string> unknown;  // devices that there are none of
    };
    /// Steps with the present values of all properties that match one of the patterns, can be set and are known.
    /// Without patterns, of all properties.
    Captured Capture(const std::vector<std::string>& devices, const std::vector<std::string>& patterns) const;

    StartResult Start(const std::string& name, const RunOptions& options);
    /// The steps' results and old values; null if there is no such run.
    const Run* FindRun(const std::string& id) const;
    /// Sets what a finished or interrupted run has changed back to the old values, in reverse order.
    /// Returns: false if there is no such run, or it is running, was a dry run, or has been rolled back.
    bool RollBack(const std::string& id, const std::string& who);

private:
    const Run* FindRepeated(const std::string& who, const std::string& idempotencyKey) const;
    Run Prepare(const Salvo& salvo, const RunOptions& options) const;
    void Check(const std::vector<Step>& steps, Run& run) const;
    void TakeRun(Run run);
    Run& Keep(Run run);
    void Activate(Run& run, bool isRollBack);
    void Changed(const Run& run);
    void Save(const std::string& id);
    void Saved(const std::string& id);
    void ForgetOldRuns();

    SalvosSettings settings_;
    std::map<std::string, Salvo> salvos_;
    std::map<std::string, Run> runs_;
    std::list<std::string> order_;  // of the runs, the oldest first
    std::map<std::string, std::shared_ptr<ActiveRun>> active_;
    std::map<std::string, bool> saving_;  // runs that are being written, and whether they have changed since
    std::shared_ptr<bool> isAlive_ = std::make_shared<bool>(true);  // seen by callbacks that come after the end
};

}  // namespace Morquil::Gateway
