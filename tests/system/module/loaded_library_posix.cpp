#include <dlfcn.h>
#include <elf.h>
#include <gtest/gtest.h>
#include <link.h>

#include <algorithm>
#include <cstdint>

#include "tests/system/module/loaded_library.h"

namespace Morquil::Testing {
namespace {

// The dynamic section of a loaded library; its addresses are already relocated.
class DynamicSection {
public:
    explicit DynamicSection(void* handle) {
        link_map* map = nullptr;
        EXPECT_EQ(dlinfo(handle, RTLD_DI_LINKMAP, &map), 0);
        entries_ = map->l_ld;
    }

    template <class Item>
    const Item* Address(ElfW(Sxword) tag) const {
        for (const ElfW(Dyn)* entry = entries_; entry->d_tag != DT_NULL; ++entry) {
            if (entry->d_tag == tag) {
                return reinterpret_cast<const Item*>(entry->d_un.d_ptr);  // NOLINT(performance-no-int-to-ptr)
            }
        }
        return nullptr;
    }

private:
    const ElfW(Dyn) * entries_ = nullptr;
};

// The GNU hash table holds exactly the exported symbols; calls `use` with the index of each.
template <class Use>
void ForEachHashed(const std::uint32_t* table, Use use) {
    const std::uint32_t bucketCount = table[0];
    const std::uint32_t firstSymbol = table[1];
    const std::uint32_t* const buckets = table + 4 + std::size_t{table[2]} * (sizeof(ElfW(Addr)) / 4);
    const std::uint32_t* const chains = buckets + bucketCount;
    for (std::uint32_t bucket = 0; bucket < bucketCount; ++bucket) {
        if (buckets[bucket] == 0) {
            continue;
        }
        std::uint32_t symbol = buckets[bucket];
        while (true) {
            use(symbol);
            if ((chains[symbol - firstSymbol] & 1) != 0) {
                break;
            }
            ++symbol;
        }
    }
}

}  // namespace

std::vector<std::string> ExpectedExports() {
    return {"DllCanUnloadNow", "DllGetClassObject", "GetMorquilDiscoveryInstance_0000",
            "SysAllocString",  "SysAllocStringLen", "SysFreeString",
            "SysStringLen"};
}

const bool LoadedLibrary::canGo = false;

LoadedLibrary::LoadedLibrary(const std::string& path) : handle_(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    EXPECT_NE(handle_, nullptr) << dlerror();
}

bool LoadedLibrary::IsLoaded(const std::string& path) {
    void* const handle = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (handle != nullptr) {
        dlclose(handle);
    }
    return handle != nullptr;
}

LoadedLibrary::~LoadedLibrary() {
    if (handle_ != nullptr) {
        dlclose(handle_);
    }
}

void* LoadedLibrary::FindAddress(const char* name) const {
    return dlsym(handle_, name);
}

std::vector<std::string> LoadedLibrary::ExportedNames() const {
    const DynamicSection section(handle_);
    const auto* const hash = section.Address<std::uint32_t>(DT_GNU_HASH);
    const auto* const symbols = section.Address<ElfW(Sym)>(DT_SYMTAB);
    const auto* const names = section.Address<char>(DT_STRTAB);
    std::vector<std::string> list;
    if (hash == nullptr || symbols == nullptr || names == nullptr) {
        ADD_FAILURE() << "no symbol table";
        return list;
    }
    ForEachHashed(hash, [&](std::uint32_t symbol) { list.emplace_back(names + symbols[symbol].st_name); });
    std::sort(list.begin(), list.end());
    return list;
}

}  // namespace Morquil::Testing
