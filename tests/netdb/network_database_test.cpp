#include "host/netdb/network_database.h"

#include <gtest/gtest.h>

#include "components/factory.h"
#include "host/netdb/db_mapper.h"

namespace loom {
namespace {

NetworkRow Cell(std::int64_t lac, std::int64_t ci, double longitude, double latitude) {
  return {{"LAC", lac}, {"CI", ci}, {"Longitude", longitude}, {"Latitude", latitude}};
}

class NetworkDatabaseTest : public ::testing::Test {
 protected:
  NetworkDatabaseTest() { DBMapper::Instance().Use(&network_); }
  ~NetworkDatabaseTest() override { DBMapper::Instance().Use(nullptr); }

  std::pair<double, double> PositionOf(std::uint32_t key) {
    double longitude = 1, latitude = 1;
    CFactory::Instance().CreateDBMapper()->GetCellPosition(static_cast<std::int32_t>(key), longitude, latitude);
    return {longitude, latitude};
  }

  static constexpr std::pair<double, double> kNone{-255.0, -255.0};
  Database database_;
  NetworkDatabase network_{database_};
};

TEST_F(NetworkDatabaseTest, FindsAPositionOnlyForAKeyOfExactlyOneCell) {
  NetworkRow with_rnc = Cell(7000, 20, 3, 30);
  with_rnc.emplace_back("RNCID", std::int64_t{77});
  network_.PutRows("tbl_Cell", {Cell(45000, (1 << 16) + 1001, 1, 10),
                                Cell(45001, (2 << 16) + 1001, 2, 20),
                                with_rnc,
                                Cell(7000, (5 << 16) + 9, 4, 40),
                                {{"CI", std::int64_t{500}}}});
  network_.PutRows(
      "tbl_Cell_LTE",
      {{{"PCI", std::int64_t{17}},
        {"EARFCN", std::int64_t{38950}},
        {"Longitude", 5.0},
        {"Latitude", CString("50")}},  // a number as text
       {{"PCI", std::int64_t{18}}, {"Frequency", 2585.5}, {"Longitude", 6.0}, {"Latitude", 60.0}},
       {{"PCI", std::int64_t{18}}, {"Frequency", 2330.0}, {"Longitude", 7.0}, {"Latitude", 70.0}},
       {{"PCI", std::int64_t{19}}, {"Frequency", 2330.0}, {"Longitude", 8.0}, {"Latitude", 80.0}},
       {{"PCI", std::int64_t{19}}, {"EARFCN", std::int64_t{38950}}, {"Longitude", 9.0}, {"Latitude", 81.0}}});
  using P = std::pair<double, double>;
  struct Case {
    const char* what;
    std::uint32_t key;
    P position;
  };
  const Case cases[] = {
      {"LAC and cell id, key above 2^31", (45000u << 16) | 1001, {1, 10}},
      {"the same cell id under another LAC", (45001u << 16) | 1001, {2, 20}},
      {"a cell id alone, which two cells have with an RNC id", 1001, kNone},
      {"a cell id alone that one LAC has", 20, {3, 30}},
      {"RNC id and cell id", (77u << 16) | 20, {3, 30}},
      {"a cell identity of 28 bits", (5u << 16) + 9, {4, 40}},
      {"a cell without a position", 500, kNone},
      {"an unknown cell", (45002u << 16) | 1001, kNone},
      {"LTE by EARFCN", (17u << 16) | 2330, {5, 50}},
      {"LTE by frequency, whole MHz", (18u << 16) | 2585, {6, 60}},
      {"LTE, the same PCI on another frequency", (18u << 16) | 2330, {7, 70}},
      {"LTE, two cells of one PCI and frequency", (19u << 16) | 2330, kNone},
  };
  for (const Case& c : cases) EXPECT_EQ(PositionOf(c.key), c.position) << c.what;

  network_.PutRows("tbl_Cell", {Cell(45000, (1 << 16) + 1001, 11, 12)});  // a query that is prepared sees what changes
  EXPECT_EQ(PositionOf((45000u << 16) | 1001), (P{11, 12}));
}

TEST_F(NetworkDatabaseTest, ATableExistsOnceItHoldsRows) {
  IDBMapper& mapper = *CFactory::Instance().CreateDBMapper();
  EXPECT_FALSE(mapper.TableExists("tbl_Cell"));
  EXPECT_EQ(PositionOf(1), kNone);
  network_.PutRows("tbl_Cell", {});
  EXPECT_FALSE(mapper.TableExists("tbl_Cell"));
  network_.PutRows("tbl_Cell", {Cell(1, 1, 1, 1)});
  EXPECT_TRUE(mapper.TableExists("tbl_Cell"));
  EXPECT_FALSE(mapper.TableExists("tbl_Cell_GSM"));
  EXPECT_FALSE(mapper.TableExists("logs"));
  DBMapper::Instance().Use(nullptr);
  EXPECT_FALSE(mapper.TableExists("tbl_Cell"));
  EXPECT_EQ(PositionOf(1), kNone);
}

TEST_F(NetworkDatabaseTest, RowsComeBackWithAnyColumnsAndReplaceByKey) {
  const CString site = "淮海路"_gbk;
  const CString not_gbk(std::string_view("\xFF\x80", 2));
  const NetworkRow first = {{"LAC", std::int64_t{5}},
                            {"CI", std::int64_t{6}},
                            {"SiteName", site},
                            {"作者 \"x\""_gbk, not_gbk},
                            {"Tilt", 2.5}};
  const NetworkRow second = {{"lac", std::int64_t{5}}, {"CI", std::int64_t{7}}};
  auto counts = network_.PutRows("tbl_Cell_GSM", {first, second});
  EXPECT_EQ(counts.added, 2);
  EXPECT_EQ(counts.replaced, 0);
  const NetworkRow second_named = {{"LAC", std::int64_t{5}}, {"CI", std::int64_t{7}}};
  EXPECT_EQ(network_.ListRows("tbl_Cell_GSM"), (std::vector<NetworkRow>{first, second_named}));

  counts = network_.PutRows("tbl_Cell_GSM", {{{"LAC", CString("5")}, {"CI", CString("6")}, {"BCCH", std::int64_t{9}}}});
  EXPECT_EQ(counts.added, 0);
  EXPECT_EQ(counts.replaced, 1);
  const NetworkRow replaced = {{"LAC", std::int64_t{5}}, {"CI", std::int64_t{6}}, {"BCCH", std::int64_t{9}}};
  EXPECT_EQ(network_.ListRows("tbl_Cell_GSM"), (std::vector<NetworkRow>{second_named, replaced}));
}

// What tells two cells apart, and what is a value of one cell.
TEST_F(NetworkDatabaseTest, CellsAreKnownByTheirIdentity) {
  using I = std::int64_t;
  const struct {
    const char* what;
    const char* table;
    NetworkRow first, second;
    bool is_one;
  } kCases[] = {
      {"another LAC", "tbl_Cell", Cell(1, 70000, 1, 1), Cell(2, 70000, 1, 1), true},
      {"a short identity", "tbl_Cell", Cell(1, 7, 1, 1), Cell(2, 7, 1, 1), true},
      {"another RNC", "tbl_Cell", {{"CI", I{7}}, {"RNCID", I{1}}}, {{"CI", I{7}}, {"RNCID", I{2}}}, false},
      {"written in two ways", "tbl_Cell", {{"CI", I{7}}, {"RNCID", I{1}}}, {{"CI", I{65543}}}, true},
      {"another network", "tbl_Cell", {{"MNC", I{0}}, {"CI", I{7}}}, {{"MNC", I{7}}, {"CI", I{7}}}, false},
      {"LTE, 28 bits", "tbl_Cell_LTE", {{"CI", I{256}}, {"PCI", I{1}}}, {{"CI", I{256}}, {"PCI", I{2}}}, true},
      {"LTE, PCI", "tbl_Cell_LTE", {{"CI", I{1}}, {"PCI", I{1}}}, {{"CI", I{1}}, {"PCI", I{2}}}, false},
      {"LTE, EARFCN", "tbl_Cell_LTE", {{"CI", I{1}}, {"EARFCN", I{1}}}, {{"CI", I{1}}, {"EARFCN", I{2}}}, false},
      {"LTE, place", "tbl_Cell_LTE", {{"CI", I{1}}, {"Latitude", 1.5}}, {{"CI", I{1}}, {"Latitude", 2.5}}, false},
      {"LTE, another name", "tbl_Cell_LTE", {{"CI", I{1}}}, {{"CI", I{1}}, {"CellName", CString("x")}}, true},
      {"LTE, eNodeB",
       "tbl_Cell_LTE",
       {{"CI", I{1}}, {"eNodeBID", I{5}}, {"PCI", I{1}}},
       {{"CI", I{1}}, {"eNodeBID", I{5}}, {"PCI", I{2}}},
       true},
  };
  for (const auto& [what, table, first, second, is_one] : kCases) {
    Database database;
    const auto counts = NetworkDatabase(database).PutRows(table, {first, second});
    EXPECT_EQ(is_one ? 1 : 2, counts.added) << what;
    EXPECT_EQ(is_one ? std::vector<std::int64_t>{0} : std::vector<std::int64_t>{}, counts.superseded) << what;
  }
}

TEST_F(NetworkDatabaseTest, RowsThatAnOlderProjectStoredTwiceBecomeOne) {
  network_.PutRows("tbl_Cell", {Cell(1, 70000, 1, 1)});
  database_.Execute("DROP INDEX tbl_Cell_key");
  database_.Execute("INSERT INTO tbl_Cell(LAC, CI, Longitude, Latitude) VALUES(2, 70000, 2, 2), (NULL, NULL, 3, 3)");
  EXPECT_EQ(PositionOf(70000), kNone);
  network_.PutRows("tbl_Cell", {});
  EXPECT_EQ(PositionOf(70000), (std::pair<double, double>{2, 2}));
  EXPECT_EQ(2u, network_.ListRows("tbl_Cell").size());
}

TEST_F(NetworkDatabaseTest, ColumnsThatDifferInCaseAloneAreStoredApart) {
  const auto put = [&](std::vector<CString> columns, std::vector<NetworkValue> row) {
    bool is_first = true;
    network_.PutRows("tbl_Cell", columns, [&](std::vector<NetworkValue>& values) {
      values = row;
      return std::exchange(is_first, false);
    });
  };
  using I = std::int64_t;
  put({"CI", "Foo", "foo", "ci"}, {I{1}, I{10}, I{11}, I{12}});
  put({"CI", "FOO", "foo"}, {I{2}, I{20}, I{21}});
  const NetworkRow first{{"CI", I{1}}, {"Foo", I{10}}, {"foo", I{11}}, {"ci", I{12}}};
  const NetworkRow second{{"CI", I{2}}, {"foo", I{21}}, {"FOO", I{20}}};
  EXPECT_EQ((std::vector<NetworkRow>{first, second}), network_.ListRows("tbl_Cell"));
  Database other_database;
  NetworkDatabase other(other_database);
  other.PutRows("tbl_Cell", network_.ListRows("tbl_Cell"));
  EXPECT_EQ(network_.ListRows("tbl_Cell"), other.ListRows("tbl_Cell"));
}

TEST_F(NetworkDatabaseTest, AFailureStoresNothingAndNamesTheRow) {
  const NetworkRow good = Cell(1, 1, 1, 1);
  for (const NetworkRow& bad : {NetworkRow{}, NetworkRow{{"CI", std::int64_t{2}}, {"CI", std::int64_t{3}}}}) {
    try {
      network_.PutRows("tbl_Cell", {good, bad});
      ADD_FAILURE() << "stored";
    } catch (const Error& error) {
      EXPECT_NE(std::string(error.what()).find("tbl_Cell, row 2: "), std::string::npos) << error.what();
    }
    EXPECT_FALSE(network_.HoldsRows("tbl_Cell"));
  }
  EXPECT_THROW(network_.PutRows("tbl_Cell", {{{"", 1.0}}}), Error);
  EXPECT_THROW(network_.PutRows("logs", {good}), Error);
  EXPECT_THROW(network_.ListRows("tbl_Cell; DROP TABLE x"), Error);
}

}  // namespace
}  // namespace loom
