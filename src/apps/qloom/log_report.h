#pragma once

#include <iosfwd>
#include <map>
#include <string>
#include <vector>

#include "apps/qloom/session.h"

namespace loom {

// The entries of the handset question, UTF-8.
std::vector<std::string> HandsetNames();

// The project nodes that logs go under, by the names of the command line.
const std::map<std::string, ImporterTypeEnum>& LogNodes();

// 1 when each of the outcomes has the result 1, 0 when none has, else 2.
int BatchResultOf(const Json& outcomes);

// Result of a file that was named and that the command did not get to.
inline constexpr int kNotAttempted = -3;

// What became of each log and text file of a command, as the facade's listener tells it.
class LogReport {
 public:
  explicit LogReport(Session& session);
  ~LogReport();
  LogReport(const LogReport&) = delete;
  LogReport& operator=(const LogReport&) = delete;

  Json ToJson(int result) const;
  void PrintHuman(std::ostream& out) const;
  // The files that were named: those that the facade did not get to are reported, too.
  void Expect(std::vector<CString> paths) { named_ = std::move(paths); }
  // A text file that the command did not get to.
  void LeaveText(const CString& path) {
    texts_.push_back({.path = path, .type = kImporterText, .result = kNotAttempted});
  }
  // Done when the facade's result says so and every file was imported, in part when only some were.
  int ExitCodeOf(int result) const;
  IDataStream* FindStream(const CString& name) const;  // null when no log has it
  std::vector<IDataStream*> Streams() const;
  std::vector<std::string> StreamNames() const;
  IDataStream* TextStream(const CString& path) const;  // of an imported text file; null when it was not imported

 private:
  Json LogJson(const LogOutcome& log) const;
  std::vector<LogOutcome> Outcomes() const;
  template <class Visit>
  void ForEach(Visit visit) const;
  template <class Visit>
  void ForEachStream(Visit visit) const;

  Session& session_;
  std::vector<CString> named_;
  std::vector<LogOutcome> logs_;
  std::vector<LogOutcome> texts_;
};

}  // namespace loom
