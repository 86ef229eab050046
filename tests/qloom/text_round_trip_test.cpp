#include <gtest/gtest.h>

#include <set>

#include "platform/encoding.h"
#include "tests/qloom/program.h"
#include "tests/support/temp_folder.h"

namespace loom::test {
namespace {

using nlohmann::json;

// Every file written has these, whatever is chosen.
const std::set<std::string> kAlwaysWritten{"RecordTime", "Longitude", "Latitude", "Distance", "TimeStamp"};

// Streams of simulated drives of every kind of device.
class TextRoundTrip : public ::testing::Test {
 protected:
  struct Stream {
    std::string log;  // with the options to import it
    std::string name;
    std::string protocol;
    std::vector<std::string> ies;
  };

  TextRoundTrip() {
    Drive("town.log", "--handsets td,gsm,lte,lte --scanner --seed 5");
    Drive("house.log --node indoor", "--handsets td,gsm,lte --indoor --seed 7");
  }

  void Drive(const std::string& log, const std::string& options) {
    const ProgramRun made =
        Run("log simulate " + log.substr(0, log.find(' ')) + " --minutes 8 --interval 5 " + options);
    ASSERT_EQ(0, made.exit_code) << made.err;
    const json imported = Run("import " + log + " --json").Json();
    for (const json& stream : imported["logs"][0]["streams"]) {
      if (stream["protocol"] != "DOUBLEPROTOCOL")
        streams_.push_back({log, stream["name"], stream["protocol"], stream["ies"]});
    }
  }
  ProgramRun Run(const std::string& arguments) { return RunQloom(folder_.native(), arguments); }

  // What the import makes of the file that the export wrote.
  json RoundTrip(const Stream& stream, const std::string& ies) {
    const ProgramRun written =
        Run("export-text " + stream.log + " --stream '" + stream.name + "' --out out.txt --ie" + ies);
    EXPECT_EQ(0, written.exit_code) << stream.name << ies << written.err;
    return Run("import-text out.txt --time-format 'yyyy-mm-dd hh:nn:ss.ms' --json").Json();
  }
  static bool HasNote(const json& document, const std::string& text) {
    return document["notes"].dump().find(text) != std::string::npos;
  }

  testing::TempFolder folder_;
  std::vector<Stream> streams_;
};

TEST_F(TextRoundTrip, WhatAStreamHoldsIsListedUnderItsProtocol) {
  const std::string navigator = ReadText(GbkPathToNative(testing::ConfigFolder()) + "/Navigator.xml");
  ASSERT_EQ(11u, streams_.size());
  for (const Stream& stream : streams_) {
    const std::size_t start = navigator.find("value=\"" + stream.protocol + "\"");
    ASSERT_NE(std::string::npos, start) << stream.protocol;
    const std::string listed = navigator.substr(start, navigator.find("</PROTOCOL>", start) - start);
    for (const std::string& ie : stream.ies) {
      EXPECT_TRUE(kAlwaysWritten.contains(ie) || listed.find("<" + ie + " type=\"NAVIGATORPARAMITEM\"") != listed.npos)
          << ie << " of " << stream.name;
    }
  }
}

TEST_F(TextRoundTrip, StreamsComeBackWithTheirProtocol) {
  std::set<std::string> texts;
  const json catalogue = Run("ies --json").Json();
  for (const json& ie : catalogue["ies"]) {
    if (ie["type"] == "text") texts.insert(ie["name"]);
  }
  for (const Stream& stream : streams_) {
    std::string ies;
    for (const std::string& ie : stream.ies) {
      if (!texts.contains(ie) && !kAlwaysWritten.contains(ie)) ies += " " + ie;
    }
    const json whole = RoundTrip(stream, ies);
    EXPECT_EQ(stream.protocol == "LTE" ? "TD-SCDMA" : stream.protocol, whole["stream"]["protocol"]) << stream.name;
    EXPECT_EQ(stream.protocol == "LTE", HasNote(whole, "LTE columns")) << stream.name;
    EXPECT_FALSE(HasNote(whole, "protocol assumed")) << stream.name;

    const json header = RoundTrip(stream, " RecordID");
    EXPECT_EQ("TD-SCDMA", header["stream"]["protocol"]) << stream.name;
    EXPECT_TRUE(HasNote(header, "protocol assumed")) << stream.name;
  }
}

}  // namespace
}  // namespace loom::test
