// apply, copy: make a device like a file or like another device.
#include <algorithm>

#include "command/commands/commands.h"
#include "command/commands/fleet.h"
#include "command/commands/plan.h"
#include "command/commands/send.h"
#include "command/commands/values_file.h"
#include "command/devices/named_devices.h"
#include "command/output/rendering.h"

namespace Morquil::Command {
namespace {

// A value that was right may be changed by a later change of a mode, so there is a second pass.
constexpr int passes = 2;

bool IsDifferent(const Change& change, const morquil::Device& device) {
    return Properties::Confirms(Read(*change.property, device), change.value) == Properties::Confirmation::No;
}

std::vector<Change> Different(const std::vector<Change>& wanted, const morquil::Device& device) {
    std::vector<Change> different;
    std::copy_if(wanted.begin(), wanted.end(), std::back_inserter(different),
                 [&device](const Change& change) { return IsDifferent(change, device); });
    return different;
}

/// What was changed, and what the device did not accept.
class Equalization {
public:
    Equalization(const Context& context, const Link& link) : context_(context), link_(link) {}

    void Run(const std::vector<Change>& wanted) {
        for (int pass = 0; pass < passes; ++pass) {
            failed_.clear();
            for (const Change& change : wanted) {
                if (IsDifferent(change, link_.Device())) {
                    Send(change);
                }
            }
        }
        Print();
        if (!failed_.empty()) {
            throw Failure(ExitCode::NotApplied, CountText(failed_.size()) + " not applied");
        }
    }

private:
    // What the device refuses does not keep it from the rest.
    void Send(const Change& change) {
        const Row row = PlannedAsRow(change, link_.Device());
        const Json planned = PlannedAsJson(change, link_.Device());
        try {
            SendChange(change, link_, false);
            rows_.push_back(row);
            changes_.push_back(planned);
        } catch (const Failure& failure) {
            if (failure.Code() != ExitCode::NotApplied) {
                throw;
            }
            failed_.push_back({change, failure.what()});
        }
    }

    void Print() const {
        if (context_.options.isJson) {
            Json failed = Json::array();
            for (const auto& [change, reason] : failed_) {
                failed.push_back({{"name", change.property->name}, {"reason", reason}});
            }
            PrintJson(context_.terminal,
                      {{"address", context_.options.address}, {"changes", changes_}, {"notApplied", failed}});
            return;
        }
        PrintTable(context_.terminal, rows_);
        for (const auto& [change, reason] : failed_) {
            PrintMessage(context_.terminal, reason);
        }
    }

    static std::string CountText(std::size_t count) {
        return std::to_string(count) + (count == 1 ? " value was" : " values were");
    }

    const Context& context_;
    const Link& link_;
    std::vector<Row> rows_;
    Json changes_ = Json::array();
    std::vector<RefusedChange> failed_;
};

// Nothing is sent unless everything that differs is accepted.
void Equalize(const Context& context, const std::vector<Change>& wanted) {
    const Link link(context);
    const std::vector<Change> different = Different(wanted, link.Device());
    std::string refused;
    for (const auto& [change, reason] : FindRefused(different, link.Device())) {
        refused += (refused.empty() ? "" : "; ") + change.property->name + ": " + reason;
    }
    if (!refused.empty()) {
        throw UsageFailure(refused);
    }
    if (context.options.isDryRun) {
        PrintPlan(context, different, link);
    } else {
        Equalization(context, link).Run(wanted);
    }
}

std::vector<Change> SettingsOf(const Context& context) {
    const Link link(context);
    std::vector<Change> settings;
    for (const Property& property : AllProperties()) {
        const bool isCopied = property.IsReadable() && property.IsWritable() && !IsIdentity(property);
        const std::optional<Value> value = isCopied ? Read(property, link.Device()) : std::nullopt;
        if (value) {
            settings.push_back({&property, *value});
        }
    }
    return settings;
}

}  // namespace

void ApplyFile(const Context& context) {
    const std::string& file = context.options.words.front();
    std::vector<Change> wanted = ParseValuesFile(ReadValuesFile(file), file);
    std::erase_if(wanted, [](const Change& change) { return !change.property->IsWritable(); });
    if (wanted.empty()) {
        throw UsageFailure(file + ": holds no property that can be set");
    }
    Equalize(context, wanted);
}

void CopySettings(const Context& context) {
    const std::vector<std::string> targets = ExpandDevices(context.options.words, context.groupsFile);
    if (std::find(targets.begin(), targets.end(), context.options.address) != targets.end()) {
        throw UsageFailure("copy: " + context.options.address + " is the device to copy from");
    }
    const std::vector<Change> settings = SettingsOf(context);
    RunForAll(context, targets, [&settings](const Context& one) { Equalize(one, settings); });
}

}  // namespace Morquil::Command
