#include "host/streams/stream_store.h"

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>

namespace loom {
namespace {

class StreamStoreTest : public ::testing::Test {
 protected:
  ~StreamStoreTest() override { store_.DropEverything(); }

  IDataStream* Stream(const CString& name, const std::vector<double>& times_s) {
    IDataStream* const stream = store_.MakeStream(name, kStreamOutdoorHandset);
    std::int32_t number = 0;
    for (const double time_s : times_s) {
      CMemDataRow row;
      row.SetRecordTime(time_s);
      row.QuickAddIE(4, uniFieldValue::Text(row.AddText("a text that is too long for any small buffer")));
      row.InitFilterByIENumber(300);
      row.SetFFTReport(std::vector<float>(64, 1.5f));
      StoreRow(*stream->GetRows(), ++number, row);
    }
    return stream;
  }

  StreamStore& store_ = StreamStore::Instance();
};

TEST(MemoryRow, KeepsFieldsTextsAndCopiesApart) {
  CMemDataRow row;
  std::vector<std::uint32_t> handles;
  for (std::int32_t id = 0; id < 300; ++id) {
    row.QuickAddIE(id % 250, uniFieldValue(id));
    handles.push_back(row.AddText(std::string(static_cast<std::size_t>(id % 40), 'x') + std::to_string(id)));
  }
  row.AddIE(7, uniFieldValue(-7));   // the first of two
  row.AddIE(900, uniFieldValue(9));  // new
  row.RemoveIE(0);
  row.RemoveIE(12345);
  row.QuickAddIEs(std::vector<std::int32_t>{901, 902}, std::vector<uniFieldValue>(2, uniFieldValue(1.5f)));
  CMemDataRow copy(row);
  CMemDataRow other;
  other.AddIE(1, uniFieldValue(1));
  other.SetFFTReport(std::vector<float>(3, 1.0f));
  row.Release();
  row.QuickAddIE(1, uniFieldValue(0));
  row = other;
  other = copy;
  EXPECT_EQ(302u, other.GetParamID().size());
  EXPECT_EQ(302u, other.GetParamValue().size());
  EXPECT_EQ(-7, other.GetIEValueByID(7)->int_value);
  EXPECT_EQ(250, other.GetIEValueByID(0)->int_value);
  EXPECT_EQ(1.5f, other.GetIEValueByID(902)->float_value);
  EXPECT_FALSE(other.GetIEValueByID(12345));
  EXPECT_EQ(std::string(19, 'x') + "299", other.GetText(handles[299]));
  EXPECT_EQ("0", other.GetText(handles[0]));
  EXPECT_EQ("", other.GetText(handles[299] + 1000));
  EXPECT_EQ(0u, other.GetFFTReportPoints());
  EXPECT_EQ(3u, row.GetFFTReportPoints());
  EXPECT_EQ(1u, row.GetParamID().size());
  other.SetParamID(std::vector<std::int32_t>{2380});
  EXPECT_EQ(1, other.GetIEValueByID(2380)->int_value) << "the first value";
  EXPECT_FALSE(other.GetIEValueByID(2379)) << "a value without an id belongs to none";
  other.AddIE(2379, uniFieldValue(5));
  EXPECT_EQ(2u, other.GetParamID().size());
}

// "T2" is row 2 of the TD-SCDMA stream, "G1" row 1 of the GSM stream.
std::string Order(IDataStream& merged) {
  std::string order;
  for (const auto& [number, pair] : *merged.GetMergedRows()) {
    EXPECT_EQ(pair.row, merged.GetRows()->at(number));
    order += pair.td_row_number != 0 ? "T" + std::to_string(pair.td_row_number) : std::string();
    order += pair.gsm_row_number != 0 ? "G" + std::to_string(pair.gsm_row_number) : std::string();
    order += ' ';
  }
  return order;
}

TEST_F(StreamStoreTest, MergesRowsByTimeKeepingEachSourcesOrder) {
  const double none = kInvalidDouble;
  struct Case {
    const char* what;
    std::vector<double> td, gsm;
    const char* order;
  };
  const Case cases[] = {
      {"interleaved", {1, 3, 5}, {2, 4}, "T1 G1 T2 G2 T3 "},
      {"ties: TD-SCDMA first", {1, 2, 2}, {1, 2}, "T1 G1 T2 T3 G2 "},
      {"a row without a time follows the row before it", {1, none, 5}, {2, 3}, "T1 T2 G1 G2 T3 "},
      {"rows without a time at the start lead", {4, 5}, {none, std::nan(""), 1}, "G1 G2 G3 T1 T2 "},
      {"a source that is not in order itself", {5, 1, none, 3}, {2}, "T2 T3 G1 T4 T1 "},
      {"one side empty", {}, {2, 3}, "G1 G2 "},
      {"both empty", {}, {}, ""},
  };
  for (const Case& c : cases) {
    IDataStream* const merged = store_.MergeTwoProtocolStream_MsgEvent(Stream("td", c.td), Stream("gsm", c.gsm));
    ASSERT_NE(merged, nullptr) << c.what;
    EXPECT_EQ(Order(*merged), c.order) << c.what;
    EXPECT_EQ(merged->GetRowCount(), static_cast<std::int32_t>(c.td.size() + c.gsm.size())) << c.what;
    if (!merged->GetRows()->empty()) {
      EXPECT_EQ(merged->GetRows()->begin()->first, 1) << c.what;
    }
  }
}

TEST_F(StreamStoreTest, MergedStreamRefersToTheRowsAndJoinsBoundsAndNames) {
  IDataStream* const td = Stream("UE_TD", {10, 20});
  IDataStream* const gsm = Stream("UE_GSM", {15});
  td->SetEarliestTime(10);
  td->SetLatestTime(20);
  gsm->SetEarliestTime(15);
  gsm->SetLatestTime(15);
  gsm->SetLongitudeMinimum(121.5);  // the TD-SCDMA side never had a position
  gsm->SetLongitudeMaximum(121.75);
  td->SetLatitudeMinimum(-1);
  td->SetLatitudeMaximum(0.5);
  gsm->SetLatitudeMinimum(0.25);
  gsm->SetLatitudeMaximum(2);
  td->SetFilterOperator("AND");
  td->SetStreamClass(kStreamClassHandset);
  for (const char* name : {"LAC", "UARFCN"}) td->AddIEName(name);
  for (const char* name : {"BCCH", "LAC"}) gsm->AddIEName(name);
  td->AddL3Name("Paging");
  gsm->AddL3Name("Paging");

  IDataStream* const merged = store_.MergeTwoProtocolStream_MsgEvent(td, gsm);
  ASSERT_NE(merged, nullptr);
  EXPECT_EQ(merged->GetRows()->at(2), gsm->GetRows()->at(1));
  EXPECT_EQ(merged->GetProtocol(), "DOUBLEPROTOCOL");
  EXPECT_EQ(merged->GetFilterOperator(), "AND");
  EXPECT_EQ(merged->GetStreamClass(), kStreamClassHandset);
  EXPECT_EQ(merged->GetEarliestTime(), 10);
  EXPECT_EQ(merged->GetLatestTime(), 20);
  EXPECT_EQ(merged->GetLongitudeMinimum(), 121.5);
  EXPECT_EQ(merged->GetLongitudeMaximum(), 121.75);
  EXPECT_EQ(merged->GetLatitudeMinimum(), -1);
  EXPECT_EQ(merged->GetLatitudeMaximum(), 2);
  EXPECT_EQ(merged->GetIENames(), (std::list<CString>{"LAC", "UARFCN", "BCCH"}));
  EXPECT_EQ(merged->GetL3Names(), (std::list<CString>{"Paging"}));

  EXPECT_EQ(store_.MergeTwoProtocolStream_MsgEvent(td, nullptr), nullptr);
  EXPECT_EQ(store_.MergeTwoProtocolStream_MsgEvent(nullptr, gsm), nullptr);
}

// What a dropped log leaves behind is found by the leak check of the sanitizer build.
TEST_F(StreamStoreTest, DroppingALogDropsItsStreamsAndNoOther) {
  ILogfile* const first = store_.MakeLogfile("/logs/first.log");
  first->AddStream(Stream("a", {1, 2}));
  first->AddStream(Stream("b", {1}));
  first->AddStream(store_.MergeTwoProtocolStream_MsgEvent(first->GetStreams().front(), first->GetStreams().back()));
  ILogfile* const second = store_.MakeLogfile("/logs/second.log");
  second->AddStream(Stream("c", {7}));

  EXPECT_EQ(store_.FindLogfile("/logs/first.log"), first);
  EXPECT_THROW(store_.MakeLogfile("/logs/first.log"), std::logic_error);
  store_.DropLogfile("/logs/first.log");
  store_.DropLogfile("/logs/never.log");

  EXPECT_EQ(store_.FindLogfile("/logs/first.log"), nullptr);
  std::map<CString, ILogfile*> names;
  store_.GetLogfileNames(names);
  EXPECT_EQ(names, (std::map<CString, ILogfile*>{{"/logs/second.log", second}}));
  CMemDataRow* const kept = second->GetStreams().front()->GetRows()->at(1);
  EXPECT_EQ(kept->GetRecordTime(), 7);
  EXPECT_EQ(kept->GetText(kept->GetIEValueByID(4)->text), "a text that is too long for any small buffer");
}

TEST_F(StreamStoreTest, RefusesUnknownStreamTypes) {
  for (const std::int32_t type : {1, 2, 6, 14}) {
    IDataStream* const stream = store_.MakeStream("s", type);
    ASSERT_NE(stream, nullptr) << type;
    EXPECT_EQ(stream->GetStreamType(), type);
  }
  for (const std::int32_t type : {-1, 0, 3, 15}) EXPECT_EQ(store_.MakeStream("s", type), nullptr) << type;
}

}  // namespace
}  // namespace loom
