#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "host/logstore/log_json.h"
#include "host/recordings/make_log.h"
#include "platform/notes.h"
#include "tests/recordings/recording_builder.h"
#include "tests/support/temp_folder.h"

namespace loom::test {

// Makes logs of recordings that a test builds, and reads them back. Local time is eight hours ahead of UTC.
class RecordingTest : public ::testing::Test {
 protected:
  static constexpr double kLocalStart_s = 9.5 * 3600.0;  // of kStart_s

  RecordingReport Make(const std::vector<const RecordingBuilder*>& recordings) {
    for (std::size_t i = 0; i < recordings.size(); ++i) {
      const std::string name = "recording" + std::to_string(i);
      recordings[i]->Save((folder_.native() / name).string());
      options_.files.push_back(folder_.File(name.c_str()));
    }
    return MakeLog();
  }
  RecordingReport Make(const RecordingBuilder& recording) { return Make(std::vector{&recording}); }

  RecordingReport MakeLog() {
    options_.out = folder_.File("out.log");
    options_.utc_offset_s = 8 * 3600;
    const RecordingReport report = MakeLogFromRecordings(options_);
    records_.clear();
    if (!report.is_written) return report;
    std::ostringstream lines;
    DumpLog(options_.out, lines);
    std::istringstream text(lines.str());
    for (std::string line; std::getline(text, line);) records_.push_back(nlohmann::json::parse(line));
    header_ = records_.front();
    records_.erase(records_.begin());
    return report;
  }

  // Of every record, in the order of the log.
  template <class Value>
  std::vector<Value> All(const char* name, Value absent) const {
    std::vector<Value> values;
    for (const auto& record : records_) values.push_back(record.value(name, absent));
    return values;
  }
  std::vector<double> SecondsFromStart() const {
    std::vector<double> times;
    for (const double time : All("time", 0.0)) times.push_back(std::round((time - kLocalStart_s) * 1000.0) / 1000.0);
    return times;
  }

  Notes notes_;
  NotesScope scope_{notes_};
  testing::TempFolder folder_;
  RecordingOptions options_;
  nlohmann::json header_;
  std::vector<nlohmann::json> records_;
};

}  // namespace loom::test
