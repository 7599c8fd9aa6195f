#include "command/arguments/command_forms.h"

namespace Morquil::Command {
namespace {

constexpr std::string_view names =
    "Properties, the beginning of names up to a point, or patterns; all if there are none";

// clang-format off
constexpr CommandForm forms[] = {
    {"status", "Show the device, its input and its output", "", "", 0, 0,
        {"morquilctl -d 192.168.1.10 status", "morquilctl -d 192.168.1.10 -d 192.168.1.11 status --json"}},
    {"get", "Show values", "[NAME]...", names, 0, 0,
        {"morquilctl get output.video-mode proc-amp", "morquilctl get --value input.signal-present"}},
    {"set", "Set values, and wait until the device reports them", "NAME VALUE...", "Properties and their values; commands such as timecode.start have none", 1, 0,
        {"morquilctl set output.video-mode 1080i50 proc-amp.gain -3", "morquilctl set timecode.generate-value 10:00:00:00 timecode.start"}},
    {"ranges", "Show what the device accepts now", "[NAME]...", names, 0, 0,
        {"morquilctl ranges output.video-mode", "morquilctl ranges 'audio.*'"}},
    {"diff", "Compare a device with a file or another device", "[FILE]", "Values as `get --json` writes them, or a settings file; - for standard input; none to compare two devices", 0, 1,
        {"morquilctl diff studio-1.json", "morquilctl -d 192.168.1.10 -d 192.168.1.11 diff"}},
    {"apply", "Set what differs from a file", "FILE", "Values as `get --json` writes them; - for standard input", 1, 1,
        {"morquilctl apply --dry-run studio-1.json", "morquilctl get --json proc-amp | morquilctl -d 192.168.1.11 apply -"}},
    {"copy", "Copy settings from one device to others", "ADDRESS...", "The devices, or groups of them", 1, 0,
        {"morquilctl -d 192.168.1.10 copy 192.168.1.11 192.168.1.12", "morquilctl -d 192.168.1.10 copy --dry-run @rack-2"}},
    {"watch", "Show changes until interrupted", "[NAME]...", names, 0, 0,
        {"morquilctl watch input reference.signal-locked", "morquilctl watch --json --wait-reconnect input.signal-present"}},
    {"top", "Show devices live on the whole screen", "[NAME]...", "Properties whose changes are shown, the beginning of names up to a point, or patterns; all if there are none", 0, 0,
        {"morquilctl -d 192.168.1.10 -d 192.168.1.11 top", "morquilctl -d @rack-1 top input output"}},
    {"save", "Write the device's settings to a file", "FILE", "The file; - for standard output; {} stands for the address", 1, 1,
        {"morquilctl save studio-1.settings", "morquilctl -d @rack-1 save 'backup-{}.settings'"}},
    {"load", "Play back the settings in a file", "FILE", "The file; - for standard input; {} stands for the address", 1, 1,
        {"morquilctl load studio-1.settings", "morquilctl load --partial levels.settings"}},
    {"preset", "Save, recall or name presets", "", "", 0, 0,
        {"morquilctl preset save 3", "morquilctl preset name 3 'Late show'"}},
    {"preset save", "Save the settings as a preset", "NUMBER", "The preset", 1, 1,
        {"morquilctl preset save 3", "morquilctl -d 192.168.1.10 preset save 1"}},
    {"preset recall", "Recall the settings of a preset", "NUMBER", "The preset", 1, 1,
        {"morquilctl preset recall 3", "morquilctl -d @rack-1 preset recall 1"}},
    {"preset name", "Show or set the name of a preset", "NUMBER [NAME]", "The preset, and its new name", 1, 2,
        {"morquilctl preset name 3", "morquilctl preset name 3 'Late show'"}},
    {"list", "Show all properties", "[NAME]...", names, 0, 0,
        {"morquilctl list proc-amp", "morquilctl list --json"}},
    {"completion", "Write a script that completes the command line", "SHELL", "bash, zsh or fish", 1, 1,
        {"source <(morquilctl completion bash)", "morquilctl completion fish | source"}}};
// clang-format on

}  // namespace

std::span<const CommandForm> CommandForms() {
    return forms;
}

}  // namespace Morquil::Command
