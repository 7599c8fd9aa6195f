#include "gateway/store/export_text.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "tests/unit/gateway/store/store_fixture.h"

namespace Morquil::Testing {
namespace {

using Gateway::CsvField;
using Gateway::Format;
using Gateway::Slice;

TEST(Csv, QuotesWhatWouldBreakALine) {
    EXPECT_EQ(CsvField("plain text"), "plain text");
    EXPECT_EQ(CsvField("a,b"), "\"a,b\"");
    EXPECT_EQ(CsvField("say \"hi\""), "\"say \"\"hi\"\"\"");
    EXPECT_EQ(CsvField("a\nb"), "\"a\nb\"");
    EXPECT_EQ(CsvField(""), "");
}

TEST(Csv, KeepsSpreadsheetsFromCalculating) {
    EXPECT_EQ(CsvField("=1+1"), "'=1+1");
    EXPECT_EQ(CsvField("@sum"), "'@sum");
    EXPECT_EQ(CsvField("+cmd|' /C calc'!A0"), "'+cmd|' /C calc'!A0");
    EXPECT_EQ(CsvField("-2+3"), "'-2+3");
    EXPECT_EQ(CsvField("\t=1"), "'\t=1");
    EXPECT_EQ(CsvField("=HYPERLINK(\"x\",\"y\")"), "\"'=HYPERLINK(\"\"x\"\",\"\"y\"\")\"");
}

TEST(Csv, LeavesNumbersAlone) {
    EXPECT_EQ(CsvField("-12"), "-12");
    EXPECT_EQ(CsvField("-0.5"), "-0.5");
    EXPECT_EQ(CsvField("12"), "12");
}

TEST(Csv, ShowsTextsWithoutTheQuotesOfJson) {
    Gateway::Change change = ChangeOf("cam-1", "input.name", 5);
    change.id = 9;
    change.oldValue = "null";
    change.newValue = R"("=a \"b\"")";
    EXPECT_EQ(ToCsv(change), "9,2026-03-01T12:00:05.000Z,cam-1,input.name,,\"'=a \"\"b\"\"\",front panel,\r\n");
}

TEST(JsonLines, AreParsedBack) {
    Gateway::Attempt attempt = AttemptOf("cam-1", 5);
    attempt.who = "a\"b\n\xFF";
    attempt.value = "\"on\"";
    const std::string line = ToJsonLine(attempt);
    EXPECT_EQ(std::count(line.begin(), line.end(), '\n'), 1);
    const nlohmann::json json = nlohmann::json::parse(line);
    EXPECT_EQ(json["value"], "on");
    EXPECT_EQ(json["status"], 200);
    EXPECT_EQ(json["who"], "a\"b\n\xEF\xBF\xBD");
}

class Export : public StoreFixture {
protected:
    std::string All(Format format) {
        std::string text;
        Gateway::Query query;
        do {
            const Slice slice = caller_.Await<Slice>([&](auto done) { store_->ExportHistory(query, format, done); });
            EXPECT_EQ(slice.problem, "");
            EXPECT_LT(slice.text.size(), std::size_t{1} << 20);
            text += slice.text;
            query.after = slice.next;
        } while (!query.after.empty());
        return text;
    }
};

TEST_F(Export, ConsistsOfSlicesThatHoldEveryRowOnce) {
    Open();
    for (int i = 0; i < 2500; ++i) {
        store_->Add(ChangeOf("cam-1", "output.mode", i));
    }
    ASSERT_TRUE(Flush());
    const std::string csv = All(Format::Csv);
    EXPECT_EQ(std::count(csv.begin(), csv.end(), '\n'), 2501);
    EXPECT_EQ(csv.rfind("id,time,device,property,old,new,origin,who\r\n"), 0U) << "the names only once, in front";
    const std::string lines = All(Format::JsonLines);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 2500);
}

}  // namespace
}  // namespace Morquil::Testing
