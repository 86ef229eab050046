#include "host/logstore/record_json.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "components/records/testdata.h"
#include "host/logstore/record_codec.h"
#include "tests/logstore/record_filler.h"
#include "tests/support/places.h"
#include "tests/support/records.h"

namespace loom {
namespace {

struct JsonRecord {
  explicit JsonRecord(const std::string& json) { RecordFromJson(json, 3, record, arena); }
  std::pmr::monotonic_buffer_resource arena;
  CTestdataBase record{false, 0};
};

std::string Canonical(const std::string& json) { return RecordToJson(JsonRecord(json).record); }

TEST(RecordJson, EveryFieldOfEveryBlockComesBack) {
  std::pmr::monotonic_buffer_resource arena;
  CTestdataBase full(false, 0);
  records::FillRecord(full, arena);
  const JsonRecord read(RecordToJson(full));
  EXPECT_EQ("", records::DifferingParts(full, read.record));
  EXPECT_EQ(EncodeRecord(full), EncodeRecord(read.record));
}

TEST(RecordJson, WritesOnlyWhatIsNotAbsent) {
  EXPECT_EQ(R"({"kind":1,"serving_cell":{"lac":5},"gsm_rat":{},"lte_scan":{"first":{"entries":[{}]}}})",
            Canonical(R"({"gsm_rat":{"rat":-1},"lte_scan":{"first":{"count":-1,"entries":[{}]}},
                          "serving_cell":{"uarfcn":-1,"lac":5},"kind":1,"event_id":-1})"));
}

TEST(RecordJson, NumbersReadBackExactly) {
  for (const char* json : {
           R"({"time":0.1,"latitude":1e-300,"longitude":"nan"})",
           R"({"time":86400.123456789,"latitude":"inf","longitude":"-inf"})",
           R"({"latitude":-0.0,"service":{"kind01":{"ie2411":-9223372036854775808,"ie2413":0.1}}})",
           R"({"time_stamp":4294967295,"service":{"kind01":{"ie2411":9223372036854775807,"ie2413":3.4028235e+38}}})",
           R"({"gsm_rlc_qos":{"ie32193":0},"service":{"kind3":{"ie2432":"nan","ie2433":"inf","ie2434":1e-45}}})",
       }) {
    EXPECT_EQ(json, Canonical(json));
  }
  EXPECT_EQ(0.1f,
            JsonRecord(R"({"gsm_dedicated_measurements":{"ie32201":0.1}})").record.gsm_dedicated_measurements->ie32201);
  EXPECT_EQ(5.0, JsonRecord(R"({"latitude":5})").record.latitude);
}

TEST(RecordJson, TextsAreUtf8OutsideAndGbkInside) {
  const struct {
    std::string gbk, json;
  } kCases[] = {
      {"\xB2\xE2\xCA\xD4", R"({"text":"测试"})"},
      {"a\xFFz", R"({"text":"a\\xffz"})"},
      {"\x81", R"({"text":"\\x81"})"},
      {"C:\\x", R"({"text":"C:\\x"})"},
      {"\\x41", R"({"text":"\\x5cx41"})"},
      {"\\\\x41", R"({"text":"\\\\x5cx41"})"},
  };
  for (const auto& c : kCases) {
    const JsonRecord read(c.json);
    EXPECT_EQ(c.gbk, read.record.text) << c.json;
  }
  for (const auto& c : kCases) {
    CTestdataBase record(false, 0);
    record.text = c.gbk;
    EXPECT_EQ(c.gbk, JsonRecord(RecordToJson(record)).record.text) << c.json;
  }
  EXPECT_EQ(kCases[0].json, Canonical(kCases[0].json));
}

TEST(RecordJson, AnyTwoBytesOfTextComeBack) {
  std::string text = "..x41";
  for (int first = 1; first < 256; ++first) {
    for (int second = 1; second < 256; second += first < 128 ? 13 : 1) {
      text[0] = static_cast<char>(first);
      text[1] = static_cast<char>(second);
      CTestdataBase record(false, 0);
      record.text = text;
      ASSERT_EQ(text, JsonRecord(RecordToJson(record)).record.text) << first << " " << second;
    }
  }
}

TEST(RecordJson, RawBytesAreHexadecimal) {
  const JsonRecord read(R"({"raw_length":9,"raw_bytes":"00fFa0","raw_message":""})");
  EXPECT_EQ(9, read.record.raw_length);
  ASSERT_EQ(3u, read.record.raw_bytes.size());
  EXPECT_EQ(std::byte{0xFF}, read.record.raw_bytes[1]);
  EXPECT_EQ(R"({"raw_length":9,"raw_bytes":"00ffa0"})", RecordToJson(read.record));
}

TEST(RecordJson, MarksComeBack) {
  for (const char* json : {R"({"fails":"read"})", R"({"fails":"decode"})", R"({"fails":"read+decode"})"}) {
    EXPECT_EQ(json, Canonical(json));
  }
  EXPECT_TRUE(JsonRecord(R"({"fails":"decode"})").record.fails_to_decode);
}

TEST(RecordJson, ErrorsNameTheLineAndTheField) {
  const struct {
    const char *json, *field;
  } kCases[] = {
      {R"({"kind":1)", ""},
      {R"([])", ""},
      {R"({"time":1e999})", ""},
      {R"({"kin":1})", "kin"},
      {R"({"kind":"1"})", "kind"},
      {R"({"kind":1.0})", "kind"},
      {R"({"kind":2147483648})", "kind"},
      {R"({"kind":18446744073709551615})", "kind"},
      {R"({"device_number":-129})", "device_number"},
      {R"({"ie5":-1})", "ie5"},
      {R"({"time":"noon"})", "time"},
      {R"({"text":5})", "text"},
      {R"({"text":"😀"})", "text"},
      {R"({"raw_bytes":"0g"})", "raw_bytes"},
      {R"({"raw_bytes":"000"})", "raw_bytes"},
      {R"({"fails":"never"})", "fails"},
      {R"({"serving_cell":1})", "serving_cell"},
      {R"({"serving_cell":{"uarfcns":1}})", "serving_cell.uarfcns"},
      {R"({"serving_cell":{"ura_identities":[1,2]}})", "serving_cell.ura_identities"},
      {R"({"neighbours":{"neighbours":{}}})", "neighbours.neighbours"},
      {R"({"neighbours":{"neighbours":[{},{"uarfcn":null}]}})", "neighbours.neighbours[1].uarfcn"},
      {R"({"neighbours":{"neighbours":[{"timeslot_iscp":[{},{},{},{},{},{},{},{}]}]}})",
       "neighbours.neighbours[0].timeslot_iscp"},
      {R"({"service":{"kind3":{"ie2432":1e39}}})", "service.kind3.ie2432"},
      {R"({"block_table":{"ie21249":{"values":[1,2,true]}}})", "block_table.ie21249.values[2]"},
  };
  for (const auto& c : kCases) {
    try {
      const JsonRecord read(c.json);
      ADD_FAILURE() << c.json << " was accepted";
    } catch (const RecordJsonError& error) {
      EXPECT_EQ(3u, error.line());
      EXPECT_EQ(c.field, error.field()) << c.json;
      EXPECT_NE(std::string::npos, std::string(error.what()).find(std::string("line 3: ") + c.field)) << error.what();
    }
  }
}

class RecordDocument : public ::testing::Test {
 protected:
  RecordDocument() {
    std::ifstream file(testing::SourceFolder() / "docs/records.md");
    std::stringstream text;
    text << file.rdbuf();
    text_ = text.str();
  }

  // The lines of the first fence with a language.
  std::string Fence(const std::string& language) const {
    const std::size_t start = text_.find("```" + language + "\n") + language.size() + 4;
    return text_.substr(start, text_.find("```", start) - start);
  }

  std::string text_;
};

TEST_F(RecordDocument, TheExampleInHexIsTheExampleInJson) {
  std::vector<std::byte> payload;
  std::istringstream lines(Fence("hex"));
  for (std::string line; std::getline(lines, line);) {
    std::istringstream digits(line.substr(0, 32));
    for (std::string byte; digits >> byte;) payload.push_back(static_cast<std::byte>(std::stoi(byte, nullptr, 16)));
  }
  const std::string json = Fence("json");
  EXPECT_EQ(payload, EncodeRecord(JsonRecord(json).record));
  EXPECT_EQ(json, Canonical(json) + "\n");
}

}  // namespace
}  // namespace loom
