#include "gateway/fleet/fleet_book.h"

#include <gtest/gtest.h>

#include "tests/kit/temporary_folder.h"

namespace Morquil::Gateway {
namespace {

DeviceEntry Named(const std::string& name, const std::string& label = {}) {
    return {name, label, "10.0.0.1"};
}

std::string NamesIn(const FleetBook& book) {
    std::string names;
    for (const DeviceEntry& entry : book.Entries()) {
        names += entry.name + (entry.label.empty() ? "" : "=" + entry.label) + " ";
    }
    return names;
}

TEST(FleetBook, HoldsTheConfiguredDevicesWithTheEditsOverThem) {
    FleetBook book;
    book.Configure({Named("a"), Named("b"), Named("c")});
    book.Put(Named("b", "edited"));
    book.Put(Named("d"));
    book.Remove("c");
    EXPECT_EQ(NamesIn(book), "a b=edited d ");
    EXPECT_TRUE(book.Has("d"));
    EXPECT_FALSE(book.Has("c"));
}

TEST(FleetBook, KeepsEditsWhenTheConfigurationChanges) {
    FleetBook book;
    book.Configure({Named("a"), Named("b")});
    book.Remove("a");
    book.Put(Named("x"));
    book.Configure({Named("a"), Named("b", "new"), Named("c")});
    EXPECT_EQ(NamesIn(book), "b=new c x ");
}

TEST(FleetBook, ARemovedDeviceCanBeAddedAgain) {
    FleetBook book;
    book.Configure({Named("a")});
    book.Remove("a");
    book.Put(Named("a", "again"));
    EXPECT_EQ(NamesIn(book), "a=again ");
}

TEST(FleetBook, ReadsBackWhatItHasSaved) {
    FleetBook book;
    book.Configure({Named("a"), Named("b")});
    book.Remove("a");
    book.Put({"x", "Label \"quoted\"", "host", "Room", {"t1", "t2"}, false});
    FleetBook other;
    other.Configure({Named("a"), Named("b")});
    EXPECT_EQ(other.Load(book.Save()), "");
    EXPECT_EQ(other.Entries(), book.Entries());
}

TEST(FleetBook, KeepsItsEditsWhenAFileCannotBeRead) {
    FleetBook book;
    book.Put(Named("x"));
    for (const char* const content : {"", "[]", "{\"devices\": 3}", "{\"devices\": [{\"name\": \"a b\"}]}",
                                      "{\"devices\": [], \"removed\": [3]}"}) {
        EXPECT_NE(book.Load(content), "") << content;
        EXPECT_EQ(NamesIn(book), "x ") << content;
    }
}

TEST(ReplaceFile, ReplacesAFileAsAWhole) {
    const Testing::TemporaryFolder folder;
    const std::string path = folder.Make("f", "old");
    EXPECT_EQ(ReplaceFile(path, "new"), "");
    EXPECT_EQ(Testing::ContentOf(path), "new");
    EXPECT_EQ(folder.Names(), std::set<std::string>{"f"});
}

TEST(ReplaceFile, SaysWhyItCannot) {
    EXPECT_EQ(ReplaceFile("/nowhere/at/all", "x"), "No such file or directory");
}

}  // namespace
}  // namespace Morquil::Gateway
