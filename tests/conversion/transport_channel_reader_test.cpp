#include "conversion/transport_channel_reader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "tests/support/places.h"

namespace loom::testing {
namespace {

using Channels = std::set<std::int32_t>;

std::deque<CString> Lines(const std::string& text) {
  std::deque<CString> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.emplace_back(line);
  return lines;
}

Channels Read(const std::string& text, Channels channels = {}) {
  TransportChannelReader::Read(Lines(text), channels);
  return channels;
}

std::string Uplink(const std::string& entries) { return "ul-AddReconfTransChInfoList\n{\n" + entries + "},\n\n"; }
std::string Downlink(const std::string& entries) { return "dl-AddReconfTransChInfoList\n{\n" + entries + "}\n"; }
std::string UplinkChannel(const std::string& identity, const std::string& crc) {
  return "{\nul-TransportChannelType dch,\ntransportChannelIdentity " + identity +
         ",\nsemistaticTF-Information\n{\nrateMatchingAttribute 100,\ncrc-Size " + crc + "\n}\n},\n";
}
std::string DownlinkChannel(const std::string& identity, const std::string& mode) {
  return "{\ndl-TransportChannelType dch,\ndl-transportChannelIdentity " + identity + ",\n" + mode +
         "\n{\nul-TransportChannelType dch\n}\n},\n";
}

struct ReaderCase {
  const char* what;
  std::string lines;
  Channels before;
  Channels expected;
};
void PrintTo(const ReaderCase& c, std::ostream* out) { *out << c.what; }
class TransportChannelReaderTest : public ::testing::TestWithParam<ReaderCase> {};

TEST_P(TransportChannelReaderTest, FindsTheDownlinkChannelsWithCrc) {
  EXPECT_EQ(GetParam().expected, Read(GetParam().lines, GetParam().before)) << GetParam().what;
}

const std::string kTwoUplinks = Uplink(UplinkChannel("5", "crc0") + UplinkChannel("6", "crc16"));

INSTANTIATE_TEST_SUITE_P(
    Lists, TransportChannelReaderTest,
    ::testing::Values(
        ReaderCase{"nothing", "", {4}, {4}},
        ReaderCase{"explicit sizes",
                   Downlink(DownlinkChannel("5", "crc-Size crc8") + DownlinkChannel("6", "crc-Size crc0")),
                   {6, 7},
                   {5, 7}},
        ReaderCase{"same as the uplink",
                   kTwoUplinks + Downlink(DownlinkChannel("5", "tfs sameAsULTrCH :") +
                                          DownlinkChannel("6", "tfs sameAsULTrCH :")),
                   {5},
                   {6}},
        ReaderCase{"same as an uplink that nobody named", Downlink(DownlinkChannel("7", "sameAsULTrCH")), {}, {7}},
        ReaderCase{"identities at and beyond the borders",
                   Downlink(DownlinkChannel("1", "crc-Size crc16") + DownlinkChannel("32", "crc-Size crc16") +
                            DownlinkChannel("33", "crc-Size crc16") + DownlinkChannel("0", "crc-Size crc16") +
                            DownlinkChannel("-4", "crc-Size crc16") + DownlinkChannel("99999999999", "crc-Size crc16") +
                            DownlinkChannel("x", "crc-Size crc16")),
                   {},
                   {1, 32}},
        ReaderCase{"an uplink identity beyond the border",
                   Uplink(UplinkChannel("33", "crc0")) + Downlink(DownlinkChannel("33", "sameAsULTrCH")),
                   {},
                   {}},
        ReaderCase{"the uplink alone", kTwoUplinks, {}, {}},
        ReaderCase{"what follows the list is not read",
                   Downlink(DownlinkChannel("5", "crc-Size crc16")) +
                       "other\n{\ndl-transportChannelIdentity 9,\ncrc-Size crc16\n}\n",
                   {},
                   {5}},
        ReaderCase{"a list cut off in the middle",
                   "dl-AddReconfTransChInfoList\n{\n{\ndl-transportChannelIdentity 3,\ncrc-Size crc12",
                   {},
                   {3}},
        ReaderCase{"a size without an identity", Downlink("{\ncrc-Size crc16\n},\n"), {}, {}},
        ReaderCase{"a line of braces opens one level only",
                   Downlink("{\nrlc { },\ndl-transportChannelIdentity 2,\n"
                            "crc-Size crc16\n}\n}\n}\n"),
                   {},
                   {2}}));

std::string Content(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

// Downlink channels that the lines of a captured message announce by an identity line, as another decoder saw them.
Channels ExpectedOf(const nlohmann::json& message) {
  Channels channels;
  for (const auto& channel : message["downlink"]) {
    if (channel["identity_line"] != "dl-transportChannelIdentity") continue;
    nlohmann::json crc = channel["crc"];
    if (crc.is_null()) crc = message["uplink"][std::to_string(channel["same_as_ul"].get<int>())];
    if (crc != "crc0") channels.insert(channel["id"].get<std::int32_t>());
  }
  return channels;
}

TEST(CapturedMessages, AreReadAsAnotherDecoderReadThem) {
  const auto folder = SharedSamples() / "rrc";
  if (!std::filesystem::exists(folder / "structure.json")) GTEST_SKIP() << "no samples in " << folder;
  std::size_t channels = 0;
  for (const auto& message : nlohmann::json::parse(Content(folder / "structure.json"))) {
    const std::string name = message["message"].get<std::string>();
    const std::string lines = Content(folder / (name + ".ownline.txt"));
    ASSERT_FALSE(lines.empty()) << name;
    EXPECT_EQ(ExpectedOf(message), Read(lines)) << name;
    channels += Read(lines).size();
  }
  EXPECT_EQ(2u, channels);
}

}  // namespace
}  // namespace loom::testing
