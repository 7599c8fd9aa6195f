#include <windows.h>

#include <shellapi.h>

#include <cstdlib>
#include <cwchar>

#include "command/arguments/exit_code.h"
#include "command/output/screen.h"
#include "command/program/system.h"
#include "morquil/text.hpp"

namespace Morquil::Command {
namespace {

std::atomic<bool>* interrupted = nullptr;

BOOL WINAPI HandleControl(DWORD /*event*/) {
    if (!interrupted->exchange(true)) {
        return TRUE;
    }
    RestoreTerminal();
    return FALSE;
}

}  // namespace

// The narrow words have lost the characters that the code page lacks.
std::vector<std::string> CommandLineWords(int /*count*/, char** /*words*/) {
    int count = 0;
    wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> texts;
    for (int at = 1; words != nullptr && at < count; ++at) {
        texts.push_back(morquil::detail::Utf8FromUtf16(words[at]));
    }
    LocalFree(words);
    return texts;
}

void NoteInterruption(std::atomic<bool>& flag) {
    interrupted = &flag;
    SetConsoleCtrlHandler(&HandleControl, TRUE);
}

void EndInterrupted() {
    std::_Exit(static_cast<int>(ExitCode::Interrupted));
}

// Windows has no signal for broken pipes.
void IgnoreBrokenPipes() {}

std::string EnvironmentVariable(const char* name) {
    const std::wstring wideName(name, name + std::char_traits<char>::length(name));
    const wchar_t* const value = _wgetenv(wideName.c_str());
    return value != nullptr ? morquil::detail::Utf8FromUtf16(value) : "";
}

std::string ConfigurationFolder() {
    return EnvironmentVariable("APPDATA");
}

}  // namespace Morquil::Command
