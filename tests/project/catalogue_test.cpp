#include "host/catalogue/catalogue.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/encoding.h"
#include "platform/file.h"
#include "tests/support/places.h"

namespace loom {
namespace {

const CString kConfigFolder = testing::ConfigFolder();

const IECatalogue& Catalogue() {
  static const IECatalogue catalogue = IECatalogue::Load(kConfigFolder);
  return catalogue;
}

IECatalogue ParseIEs(std::string_view text) { return IECatalogue::Parse(text, "ies", "", "events"); }

TEST(Catalogue, NamesAndIdsLeadToEachOther) {
  std::int32_t last_id = 0;
  for (const CIEEntry& entry : Catalogue().Entries()) {
    ASSERT_LT(last_id, entry.id);
    last_id = entry.id;
    ASSERT_EQ(&entry, Catalogue().Find(entry.id));
    ASSERT_EQ(&entry, Catalogue().FindByName(entry.name)) << entry.name;
  }
  EXPECT_EQ(36047, last_id);
}

TEST(Catalogue, StaysValidWhenItIsMoved) {
  IECatalogue from = ParseIEs("5\t3\tX_{1}\t\tint\n");
  const IECatalogue catalogue = std::move(from);
  ASSERT_NE(nullptr, catalogue.FindByName("X_3"));
  EXPECT_EQ(7, catalogue.FindByName("X_3")->id);
}

TEST(Catalogue, RunsBeginAndEndWhereTheConvertersWrite) {
  struct Case {
    std::int32_t id;
    const char* name;
    MemTableFieldTypeEnum type;
  };
  for (const Case& expected : {Case{160, "URAIdentity_0", kFieldInt},
                               {488, "ChannelizationCode_95", kFieldInt},
                               {1034, "TrCHBLER_1", kFieldFloat},
                               {1065, "TrCHBLER_32", kFieldFloat},
                               {1371, "Nbor_ISCP_0_6", kFieldInt},
                               {1372, "Nbor_ISCP_1_0", kFieldInt},
                               {1588, "Nbor_ISCP_31_6", kFieldInt},
                               {1981, "PDCP_DLThroughput_15", kFieldFloat},
                               {2378, "IE_2378", kFieldInt},
                               {2747, "PCCPCH_RSCP_Scan_38", kFieldInt},
                               {33353, "LTE_ServCellIdentity", kFieldText},
                               {33833, "LTE_NborPCI_63", kFieldInt}}) {
    const CIEEntry* entry = Catalogue().Find(expected.id);
    ASSERT_NE(nullptr, entry) << expected.id;
    EXPECT_EQ(CString(expected.name), entry->name) << expected.id;
    EXPECT_EQ(expected.type, entry->type) << expected.id;
  }
}

TEST(Catalogue, AnswersForUnknownIdsAndNames) {
  for (const std::int32_t id : {-255, 0, 190, 1689, 35139, 2'000'000'000}) {
    EXPECT_EQ(nullptr, Catalogue().Find(id)) << id;
    EXPECT_EQ(kFieldInt, Catalogue().TypeOf(id)) << id;
  }
  EXPECT_EQ(nullptr, Catalogue().FindByName("longitude"));
  EXPECT_EQ(CString(), Catalogue().EventName(-1));
  EXPECT_EQ(CString("FileMark"), Catalogue().EventName(1610));
}

TEST(Catalogue, KeepsUnitTypeAndRange) {
  const IECatalogue catalogue =
      IECatalogue::Parse("# head\r\n7\t2\tLevel_{3}_{id}\t°\tfloat\t-1.5\t2e3\r\n", "ies", "3\tCall drop\n", "events");
  const CIEEntry* entry = catalogue.FindByName("Level_4_8");
  ASSERT_NE(nullptr, entry);
  EXPECT_EQ("°"_gbk.view(), entry->unit.view());
  EXPECT_TRUE(entry->has_range);
  EXPECT_EQ(-1.5, entry->minimum);
  EXPECT_EQ(2000.0, entry->maximum);
  EXPECT_EQ(CString("Call drop"), catalogue.EventName(3));
}

TEST(Catalogue, DamagedTablesAreRefusedWithTheirLine) {
  struct Case {
    const char* ies;
    std::int32_t line;
    const char* reason;
  };
  for (const Case& damaged : {Case{"1\t1\tA\t\tint\n\n# note\n1\t1\tB\t\tint", 4, "does not lie above"},
                              {"1\t5\tA_{0}\t\tint\n5\t1\tB\t\tint", 2, "up to 5"},
                              {"1\t1\tA\t\tint\n2\t3\tB_{0}\t\tint\n9\t1\tB_2\t\tint", 3, "name of id 4, B_2"},
                              {"1\t4\tA_{0}_{0:2}\t\tint\n5\t1\tA_1_1\t\tint", 2, "A_1_1"},
                              {"1\t2\tA\t\tint", 1, "running number"},
                              {"1\t1\tA\t\tint\t0", 1, "6 columns instead of 7"},
                              {"1\t1\tA\t\tdouble", 1, "unknown type 'double'"},
                              {"1\t1\tA\t\tint\t5\t4", 1, "above the maximum"},
                              {"1\t1\tA\t\tint\t5\t", 1, "both of its ends"},
                              {"1\t1\tA\t\tint\t0\tnan", 1, "'nan' is no number"},
                              {"x\t1\tA\t\tint", 1, "the id 'x'"},
                              {"1\t0\tA\t\tint", 1, "the count '0'"},
                              {"999999\t2\tA_{0}\t\tint", 1, "from 1 to 1"},
                              {"1\t1\t\t\tint", 1, "the name is empty"},
                              {"1\t1\t1A\t\tint", 1, "starts with a letter"},
                              {"1\t1\tA b\t\tint", 1, "letters, digits and underscores"},
                              {"1\t2\tA_{0\t\tint", 1, "not closed"},
                              {"1\t2\tA_{y}\t\tint", 1, "no start number"},
                              {"1\t2\tA_{0}_{0}\t\tint", 1, "how many values"},
                              {"1\t2\tA_{0}_{0:0}\t\tint", 1, "behind the colon"},
                              Case{"1\t2\tA_{0}_{0:2}_{0:2}_{0:2}\t\tint", 1, "three running numbers"},
                              {"1\t1\tA\t\xFF\tint", 1, ""}}) {
    try {
      ParseIEs(damaged.ies);
      ADD_FAILURE() << "accepted: " << damaged.ies;
    } catch (const CatalogueError& error) {
      EXPECT_EQ(damaged.line, error.line()) << damaged.ies;
      const std::string text = error.what();
      EXPECT_EQ(0u, text.find("ies line " + std::to_string(damaged.line) + ": ")) << text;
      EXPECT_NE(std::string::npos, text.find(damaged.reason)) << text;
    }
  }
  EXPECT_THROW(IECatalogue::Parse("", "ies", "2\tA\n2\tB\n", "events"), CatalogueError);
  EXPECT_THROW(IECatalogue::Load(kConfigFolder + "/no such folder"), FileError);
}

// Elements of the navigator file in document order, each with the tag of the group around it.
struct NavigatorElement {
  std::string tag;
  std::string type;
  std::string parent;
};

std::vector<NavigatorElement> ReadNavigator() {
  const std::string text = ReadWholeText(kConfigFolder + CString("/Navigator.xml"));
  std::vector<NavigatorElement> elements;
  std::vector<std::string> open{""};
  for (auto at = text.find("?>"); (at = text.find('<', at)) != std::string::npos;) {
    const std::string element = text.substr(at + 1, text.find('>', at) - at - 1);
    at += element.size();
    if (element[0] == '/') {
      open.pop_back();
      continue;
    }
    const auto type = element.find("type=\"") + 6;
    const std::string tag = element.substr(0, element.find(' '));
    elements.push_back({tag, element.substr(type, element.find('"', type) - type), open.back()});
    if (!element.ends_with('/')) open.push_back(tag);
  }
  return elements;
}

// What rows of every protocol hold stands under each of them.
TEST(Navigator, EveryItemIsAnElementOfTheCatalogueAndStandsOnceInItsPart) {
  std::set<std::string> seen;
  std::set<std::pair<int, std::string>> seen_in_part;
  int part = 0;
  for (const NavigatorElement& element : ReadNavigator()) {
    if (element.parent == "Navigator") ++part;
    if (element.type != "NAVIGATORPARAMITEM") continue;
    EXPECT_NE(nullptr, Catalogue().FindByName(CString(std::string_view(element.tag)))) << element.tag;
    EXPECT_TRUE(seen_in_part.emplace(part, element.tag).second) << element.tag;
    seen.insert(element.tag);
  }
  EXPECT_LT(5000u, seen.size());
}

TEST(Navigator, GroupsThatAreSelectedAsOneBeginWithTheElementThatStandsForThem) {
  std::map<std::string, std::string> first_child;
  for (const NavigatorElement& element : ReadNavigator()) first_child.try_emplace(element.parent, element.tag);
  struct Group {
    const char* tag;
    std::int32_t base_id;
  };
  for (const Group& group : {Group{"URAIdentities", 160}, {"TimeslotISCP", 511},       {"Timeslot_DPCH_RSCP", 5407},
                             {"Timeslot_CIR", 5428},      {"CCTrchDirection", 265},    {"TrCHBLER", 1034},
                             {"NborISCP", 1365},          {"NborCarrierRSSI", 1109},   {"RLC_DLThroughput", 1623},
                             {"PDCP_ULThroughput", 1958}, {"HS_PDSCHDATA_TSN", 26157}, {"UARFCN_Scan", 2436},
                             {"PCCPCH_RSCP_Scan", 2710},  {"RSSI_Frame_Scan", 3534},   {"UARFCN_RSSI_Scan", 3610},
                             {"GSM_NC_CI", 32085},        {"NborC31", 32151},          {"NborRxLevAccessMin", 32258},
                             {"TimeslotInfo_0", 191},     {"DPCHInfo_0", 297}}) {
    const CIEEntry* entry = Catalogue().Find(group.base_id);
    ASSERT_NE(nullptr, entry) << group.base_id;
    EXPECT_EQ(entry->name.str(), first_child[group.tag]) << group.tag;
  }
}

TEST(Navigator, KeepsTheOrderThatItsReadersRelyOn) {
  std::vector<std::string> top;
  std::vector<std::string> independent;
  std::map<std::string, std::size_t> places;
  for (const NavigatorElement& element : ReadNavigator()) {
    places.try_emplace(element.tag, places.size());
    if (element.parent == "Navigator") top.push_back(element.tag);
    if (element.parent == "Independent_Parameters") independent.push_back(element.tag);
  }
  EXPECT_EQ((std::vector<std::string>{"PROTOCOL", "PROTOCOL", "PROTOCOL", "Independent", "Events"}), top);
  EXPECT_EQ((std::vector<std::string>{"RecordTime", "Longitude", "Latitude", "Distance", "TimeStamp"}), independent);
  for (const char* scan : {"Pilot_Measurements_Scan", "PCCPCH_Measurements_Scan", "RSSI_Measurements_Scan"}) {
    ASSERT_TRUE(places.contains(scan));
    EXPECT_LT(places["UARFCN_Scan"], places[scan]);
  }
}

}  // namespace
}  // namespace loom
