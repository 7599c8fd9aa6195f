// The built library, loaded into the test as a host loads it.
#pragma once

#include <cstdlib>
#include <string>
#include <vector>

namespace Morquil::Testing {

/// The path of the library to test: libMorquilAPI.so or MorquilAPI.dll of this build, or of another one that the
/// environment names.
inline const char* LibraryPath() {
    const char* const other = std::getenv("MORQUIL_TESTED_LIBRARY");
    return other != nullptr ? other : MORQUIL_LIBRARY_PATH;
}

/// The names that this system's hosts call, in alphabetical order.
std::vector<std::string> ExpectedExports();

class LoadedLibrary {
public:
    /// Loads the library, or a copy of it; a failure is the test's.
    explicit LoadedLibrary(const std::string& path = LibraryPath());
    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;
    ~LoadedLibrary();

    /// The system's handle.
    void* Get() const { return handle_; }

    /// The exported function `name`, or null.
    template <class Function>
    Function* Find(const char* name) const {
        return reinterpret_cast<Function*>(FindAddress(name));
    }

    /// All exported names in alphabetical order.
    std::vector<std::string> ExportedNames() const;

    /// Whether this process has a library of this path loaded.
    static bool IsLoaded(const std::string& path);

    /// Whether the system unloads a library that is no longer used; else it stays for the life of the process.
    static const bool canGo;

private:
    void* FindAddress(const char* name) const;

    void* handle_;
};

}  // namespace Morquil::Testing
