#include "host/recordings/gsm_messages.h"
#include "host/recordings/gsm_packets.h"
#include "host/recordings/layer3.h"
#include "host/recordings/lte_nas.h"
#include "host/recordings/lte_rrc.h"
#include "tests/recordings/recording_test.h"

// Messages: their names, what is read of them, and the records and events that come of them.
namespace loom::test {
namespace {

using namespace recordings;
using Builder = RecordingBuilder;

// Bits as text, blanks apart, filled up with zeros.
std::string FromBits(std::string_view text) {
  std::string bits;
  for (const char c : text)
    if (c != ' ') bits += c;
  bits.append((8 - bits.size() % 8) % 8, '0');
  std::string bytes;
  for (std::size_t i = 0; i < bits.size(); i += 8) bytes += static_cast<char>(std::stoi(bits.substr(i, 8), nullptr, 2));
  return bytes;
}

std::string FromHex(std::string_view text) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < text.size(); i += 2)
    bytes += static_cast<char>(std::stoi(std::string(text.substr(i, 2)), nullptr, 16));
  return bytes;
}

TEST(LteRrc, NamesByChannelAndType) {
  const struct {
    LteRrcChannel channel;
    const char* bits;
    const char* name;
  } kCases[] = {
      {LteRrcChannel::kBcchBch, "0", "MasterInformationBlock"},
      {LteRrcChannel::kBcchDlSch, "00", "SystemInformation"},
      {LteRrcChannel::kBcchDlSch, "01", "SystemInformationBlockType1"},
      {LteRrcChannel::kPcch, "0", "Paging"},
      {LteRrcChannel::kDlCcch, "011", "RRCConnectionSetup"},
      {LteRrcChannel::kDlDcch, "00100", "RRCConnectionReconfiguration"},
      {LteRrcChannel::kDlDcch, "01111", ""},
      {LteRrcChannel::kDlDcch, "1", ""},
      {LteRrcChannel::kUlCcch, "01", "RRCConnectionRequest"},
      {LteRrcChannel::kUlCcch, "1000", "RRCConnectionResumeRequest-r13"},
      {LteRrcChannel::kUlDcch, "01111", "InterFreqRSTDMeasurementIndication-r10"},
      {LteRrcChannel::kUlDcch, "100011", "SCGFailureInformation-r12"},
  };
  for (const auto& test : kCases) EXPECT_EQ(test.name, IdentifyLteRrc(test.channel, AsBytes(FromBits(test.bits))).name);
  EXPECT_EQ("", IdentifyLteRrc(LteRrcChannel::kPcch, {}).name);
}

TEST(LteNas, NamesThroughTheSecurityHeader) {
  const struct {
    const char* hex;
    const char* name;
    bool is_ciphered;
  } kCases[] = {
      {"0741", "Attach request", false},
      {"1700000000000742", "Attach accept", false},
      {"2700000000000742", "", true},
      {"c7a1b2c3", "Service request", false},
      {"5201c1", "Activate default EPS bearer context request", false},
      {"170000000000170000", "", false},
      {"07", "", false},
      {"0701", "", false},
  };
  for (const auto& test : kCases) {
    const std::string message = FromHex(test.hex);
    const NasMessage kind = IdentifyLteNas(AsBytes(message));
    EXPECT_EQ(test.name, kind.name) << test.hex;
    EXPECT_EQ(test.is_ciphered, kind.is_ciphered) << test.hex;
  }
}

// measId 1, RSRP 46, RSRQ 18; further bits by the case.
constexpr const char* kReportHead = "00001 0 000 0 0";

TEST(LteRrc, MeasurementReports) {
  const auto read = [](const std::string& bits) {
    return ReadMeasurementReport(AsBytes(FromBits(kReportHead + bits)));
  };
  const std::string serving = " 00000 0101110 010010";
  EXPECT_EQ(46, read("0" + serving)->rsrp);
  EXPECT_EQ(18, read("0" + serving)->rsrq);
  const auto two = read("1" + serving + " 0 00 001  0 000000111 0 1 1 0101000 001111  0 111110111 0 1 0 0000000");
  ASSERT_EQ(2U, two->neighbours.size());
  EXPECT_EQ(7, two->neighbours[0].physical_cell_id);
  EXPECT_EQ(40, two->neighbours[0].rsrp);
  EXPECT_EQ(15, two->neighbours[0].rsrq);
  EXPECT_EQ(503, two->neighbours[1].physical_cell_id);
  EXPECT_EQ(0, two->neighbours[1].rsrp);
  EXPECT_FALSE(two->neighbours[1].rsrq);
  EXPECT_TRUE(read("1" + serving + " 0 10 000 1")->neighbours.empty());  // GERAN
  const auto in_part = read("1" + serving + " 0 00 001  1 000000111 " + std::string(60, '0'));
  EXPECT_EQ(1U, in_part->neighbours.size());
  EXPECT_TRUE(in_part->is_read_in_part);
  EXPECT_FALSE(ReadMeasurementReport(AsBytes(FromBits(std::string(kReportHead) + "0 00000"))));
}

TEST(LteRrc, SystemInformation1TellsTheFirstNetwork) {
  const std::string message = FromBits(
      "01 000 0 001  1 0100 0110 0000 0 0000 0000 0  0 1 0001 0000 0001 1"
      "0001001000110100 0000101000011011001000000001" +
      std::string(40, '0'));
  const auto identity = ReadSystemInformation1(AsBytes(message));
  EXPECT_EQ((CellIdentity{460, 0, 2, 0x1234, 0xA1B201}), *identity);
  EXPECT_FALSE(ReadSystemInformation1(AsBytes(message.substr(0, 10))));
}

TEST(GsmMessages, FrequencyListsOfEveryForm) {
  // A bit map from ORIG-ARFCN 0x1F8 on.
  std::string bits = "10001110 11111100 0 1" + std::string(110, '0');
  const auto variable = ReadNeighbourList(AsBytes(FromHex("061a") + FromBits(bits)));
  ASSERT_TRUE(variable);
  EXPECT_EQ((std::vector<std::uint16_t>{504, 505}), *variable);
  EXPECT_EQ((std::vector<std::uint16_t>{1, 3}),
            *ReadNeighbourList(AsBytes(FromHex("061a00000000000000000000000000000005"))));
  // Range 1024 without 0: W(1) 512, W(2) 1, W(3) 1: the tree of annex J.
  bits = "10000010 00000000 000000001 000000001" + std::string(94, '0');
  const auto range = ReadNeighbourList(AsBytes(FromHex("061a") + FromBits(bits)));
  EXPECT_EQ((std::vector<std::uint16_t>{1, 512, 513}), *range);
  EXPECT_FALSE(ReadNeighbourList(AsBytes(FromHex("061a00"))));
}

// ---- Records ----

constexpr std::uint8_t kDlDcch = 7;
constexpr std::uint8_t kUlCcch = 8;
constexpr std::uint8_t kUlDcch = 9;

class Messages : public RecordingTest {
 protected:
  std::vector<int> Events() const {
    std::vector<int> events;
    for (const auto& record : records_)
      if (record["kind"] == 7) events.push_back(record["event_id"]);
    return events;
  }
  static Builder::Bytes Text(std::uint8_t channel, std::string_view bits, std::uint16_t pci = 101) {
    return Builder::Rrc(pci, channel, FromBits(bits));
  }
};

TEST_F(Messages, EventsFollowTheMessagesOfAConnectionWithAHandover) {
  Builder recording;
  recording.Put(0xB0C2, 0.0, Builder::ServingCell(101, 0xA1B201));
  recording.Put(0xB0C0, 0.1, Text(kUlCcch, "01")).Put(0xB0C0, 0.2, Text(kUlDcch, "00100"));
  recording.Put(0xB0C0, 0.3, Text(kUlDcch, "00010"));  // a reconfiguration without handover is confirmed
  recording.Put(0xB0C0, 0.4, Text(kDlDcch, "00100 00 0 000 010000 00000 001100110"));
  recording.Put(0xB0C2, 0.5, Builder::ServingCell(102, 0xA1B202));
  recording.Put(0xB0C0, 0.6, Text(kUlDcch, "00010", 102)).Put(0xB0C0, 0.7, Text(kDlDcch, "00101", 102));
  recording.Put(0xB0C2, 0.8, Builder::ServingCell(103, 0xA1B203));  // idle
  recording.Put(0xB0C0, 0.9, Text(kUlCcch, "01", 104));             // the identity of 103 is not that of 104
  Make(recording);
  EXPECT_EQ((std::vector{1201, 1202, 1301, 1302, 1204, 1401, 1201}), Events());
  ASSERT_EQ(14U, records_.size());
  EXPECT_FALSE(records_[12]["lte_measurements"]["serving"].contains("ie33345"));
  EXPECT_EQ("RRCConnectionRequest", records_[0]["layer3_name"]);
  EXPECT_EQ(1201, records_[1]["event_id"]);
  EXPECT_EQ(records_[0]["time"], records_[1]["time"]);
  EXPECT_EQ(2021, records_[0]["message_id"]);
  const auto& serving = records_[0]["lte_measurements"]["serving"];
  EXPECT_EQ(101, serving["physical_cell_id"]);
  EXPECT_EQ(38'400, serving["earfcn"]);
  EXPECT_EQ(4'660, serving["ie33346"]);
  EXPECT_EQ(0xA1B201, serving["ie33345"]);
  EXPECT_EQ(100, serving["ie33354"]);
  EXPECT_EQ(0xA1B202, records_[7]["lte_measurements"]["serving"]["ie33345"]);
}

TEST_F(Messages, ReportsBecomeLevelsAndNeighbours) {
  Builder recording;
  recording.Put(0xB0C0, 0.0,
                Text(kUlDcch, std::string(kReportHead) + "1 00000 0101110 010010" +
                                  " 0 00 000  0 000000111 0 1 1 0000000 001111"));
  recording.Put(0xB0C0, 1.0, Builder::Rrc(101, kUlDcch, FromBits("00010"), 67'086));
  Make(recording);
  const auto& block = records_[0]["lte_measurements"];
  EXPECT_EQ(65'536 - 95, block["serving"]["ie33364"]);
  EXPECT_EQ(65'536 - 11, block["serving"]["ie33365"]);
  EXPECT_EQ(2, block["neighbours"]["count_plus_one"]);
  EXPECT_EQ(7, block["neighbours"]["neighbours"][0]["physical_cell_id"]);
  EXPECT_EQ(1, block["neighbours"]["neighbours"][0]["ie33899"]);  // 0 would be absent
  EXPECT_EQ(15, block["neighbours"]["neighbours"][0]["ie33963"]);
  EXPECT_FALSE(records_[1]["lte_measurements"]["serving"].contains("earfcn"));
  EXPECT_EQ(1U, notes_.Count("EARFCN above 65534, left out"));
}

TEST_F(Messages, GsmRowsHaveTheCellOfTheSystemInformationAndTheReportedNeighbours) {
  const auto rr = [](std::string_view hex) {
    Builder::Bytes body;
    ByteWriter(body).Text(FromHex(hex));
    return body;
  };
  Builder recording;
  recording.Put(0xB0C0, 0.0, Text(kUlCcch, "01"));
  recording.Put(0x713A, 0.5, rr("0003000000050841"));
  recording.Put(0x512F, 1.0,
                rr("811b0a"
                   "49"
                   "061b1234"
                   "00f110"
                   "abcd"));
  recording.Put(0x512F, 2.0,
                rr("831d13"
                   "49"
                   "061d"
                   "00000000000000000000000000000005"));
  recording.Put(0x713A, 2.5, rr("0103000000050841"));
  recording.Put(0x512F, 3.0,
                rr("041512"
                   "0615"
                   "28"
                   "28"
                   "2a"
                   "68"
                   "1c00000000000000000000000000"));
  const RecordingReport report = Make(recording);
  EXPECT_EQ(1U, report.skipped.at("GSM/UMTS NAS message while not on GSM"));
  EXPECT_EQ((std::vector{1201, 1402, 1411}), Events());
  const auto& update = records_[5];
  EXPECT_EQ("LOCATION UPDATING REQUEST", update["layer3_name"]);
  EXPECT_EQ(7, update["model_code"]);
  EXPECT_EQ(3, update["network_mode"]);
  EXPECT_EQ(12'155, update["message_id"]);
  EXPECT_EQ(0, update["direction"]);
  EXPECT_EQ(1, update["serving_cell"]["ie142"]);
  EXPECT_EQ(1, update["serving_cell"]["ie143"]);
  EXPECT_EQ(0x1234, update["serving_cell"]["ie144"]);
  EXPECT_EQ(0xABCD - 65'536, update["serving_cell"]["lac"]);
  const auto& measured = records_.back();
  EXPECT_EQ("MEASUREMENT REPORT", measured["layer3_name"]);
  EXPECT_EQ(40, measured["gsm_serving_cell"]["rx_lev"]);
  EXPECT_EQ(2, measured["gsm_dedicated_measurements"]["ie31966"]);
}

}  // namespace
}  // namespace loom::test
