#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "host/logstore/log_reader.h"
#include "host/logstore/log_writer.h"
#include "manager/io_manager.h"
#include "platform/file.h"
#include "tests/support/records.h"
#include "tests/support/scripted_user_gtest.h"
#include "tests/support/temp_folder.h"

namespace loom::testing {

inline constexpr double kTen = 36'000.0;  // o'clock

// A person in front of the log tools, with a folder for logs.
class LogToolTest : public ::testing::Test {
 protected:
  struct Log {
    std::int32_t version = 160;
    std::int32_t test_type = 1;
    LogKind kind = LogKind::kStore;
    CalendarDay day{2024, 5, 17};
  };

  CString File(const CString& name) const { return folder_.File(name); }
  // A log with a record at each of the times of day.
  CString Write(const CString& name, const std::vector<double>& times_s, const Log& log) const {
    LogWriter writer(File(name), {log.kind, log.version, log.test_type, log.day});
    for (const double time_s : times_s) writer.Append(HandsetRecord().At(time_s).Encode(), time_s);
    writer.Finish();
    return File(name);
  }
  CString Write(const CString& name, const std::vector<double>& times_s = {kTen, kTen + 60.0}) const {
    return Write(name, times_s, Log{});
  }
  // Seconds behind ten o'clock of the records.
  std::vector<double> Times(const CString& name) const {
    std::vector<double> times_s;
    LogReader reader(File(name));
    const std::int64_t midnight_s = MidnightSeconds(reader.header().day);
    for (LogPacket packet; reader.Next(packet);)
      times_s.push_back(static_cast<double>(packet.time_ns - midnight_s * 1'000'000'000) / 1e9 - kTen);
    return times_s;
  }

  TempFolder folder_;
  CIOManager manager_;
};

// Work under the wait cursor fails as long as `fails` is set.
class UnluckyUser : public ScriptedUser {
 public:
  void SetWaitCursor(bool on) override {
    if (on && fails) throw std::runtime_error("out of luck");
    ScriptedUser::SetWaitCursor(on);
  }
  bool fails = false;
};

}  // namespace loom::testing
