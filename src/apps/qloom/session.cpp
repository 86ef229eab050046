#include "apps/qloom/session.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <thread>
#include <utility>

#include "platform/encoding.h"

namespace loom {
namespace {

// People read the kinds of notes in their language; machines know them by the English name.
std::string_view NameOfKind(const NoteKind& kind) {
  for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* const locale = std::getenv(variable);
    if (locale != nullptr && *locale != '\0')
      return std::string_view(locale).starts_with("zh") ? kind.chinese_name : kind.name;
  }
  return kind.name;
}

Json PlaceJson(const Notes::Kind& kind, const Note& place) {
  return {{"file", JsonText(place.file)},
          {"at", place.at},
          {"kind", kind.name()},
          {"what", std::string(kind.name()) + ": " + place.what},
          {"count", 1}};
}

CString ConfigFolder(const CommonOptions& options) {
  if (!options.config.empty()) return NamedPath(options.config);
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
  return NativePathToGbk((program.parent_path().parent_path() / "Config").native());
}

// Says whom it waits for, once, and for how long at most.
class WaitingForProject {
 public:
  explicit WaitingForProject(std::int32_t wait_s)
      : wait_s_(wait_s), until_(Clock::now() + std::chrono::seconds(wait_s)) {}

  void operator()(const ProjectInUse& in_use) {
    if (WasInterrupted()) throw Error("the project was not waited for any longer");
    if (Clock::now() >= until_) throw Error(in_use.what() + (", waited for " + std::to_string(wait_s_) + " s"));
    if (!std::exchange(is_told_, true))
      std::cerr << "qloom: " << WithCharacters(in_use.what()) << "; waiting for up to " << wait_s_ << " s\n";
    std::this_thread::sleep_for(std::min<Clock::duration>(kPause, until_ - Clock::now()));
  }

 private:
  using Clock = std::chrono::steady_clock;
  static constexpr std::chrono::milliseconds kPause{50};

  std::int32_t wait_s_;
  Clock::time_point until_;
  bool is_told_ = false;
};

ProjectAccess AccessFor(const CommonOptions& options, ProjectUse use) {
  if (use == ProjectUse::kRead) return {.mode = ProjectAccess::Mode::kRead};
  return {.mode = ProjectAccess::Mode::kWrite, .wait = WaitingForProject(options.wait_s)};
}

// Of a session that ended without reporting, for the document that tells why.
Json unreported = Json::object();

// Bytes that are no UTF-8, as paths and reasons may hold, do not cost the document.
void PrintDocument(const Json& document, int indent) {
  std::cout << document.dump(indent, ' ', false, Json::error_handler_t::replace) << '\n';
}

}  // namespace

Session::Session(const CommonOptions& options, BatchAnswers answers, const CString& worked_on, ProjectUse use)
    : options_(options),
      save_project_(use == ProjectUse::kChange),
      notes_scope_(notes_),
      host_(HostOptions{.config_folder = ConfigFolder(options),
                        .project_path = options.project.empty() ? CString() : NamedPath(options.project),
                        .recent_logs_path = {},
                        .project_access = AccessFor(options, use)}),
      front_end_(std::move(answers), options, !options.json && isatty(STDERR_FILENO) != 0) {
  if (!worked_on.IsEmpty()) host_.UseFolderOfLog(worked_on);
  SetFrontEnd(&front_end_);
  manager_.RegisterModuleCommunicator(&host_.communicator());
}

Session::~Session() {
  SetFrontEnd(nullptr);
  if (is_reported_) return;
  if (options_.json)
    unreported = {{"messages", MessagesJson()}, {"notes", NotesJson(notes_)}};
  else
    PrintDiagnostics();
}

// What kept the project from being saved; empty when nothing did, or there is nothing to save.
std::string Session::SaveProject(int exit_code) {
  const bool did_something = exit_code == kExitDone || exit_code == kExitInPart;
  if (!did_something || !save_project_ || host_.project().IsTemporary()) return {};
  try {
    host_.project().Save();
  } catch (const Error& error) {
    std::cerr << "qloom: " << WithCharacters(error.what()) << '\n';
    return error.what();
  }
  return {};
}

int Session::Finish(Json document, int exit_code) {
  const std::string error = SaveProject(exit_code);
  if (!error.empty()) {
    document["error"] = error;
    exit_code = kExitFailed;
  }
  if (options_.json) {
    document["messages"] = MessagesJson();
    document["notes"] = NotesJson(notes_);
    PrintDocument(document, 2);
  } else {
    PrintDiagnostics();
  }
  is_reported_ = true;
  // What was done before the interrupt came is done.
  const bool is_done = exit_code == kExitDone && !document.contains("error");
  return WasInterrupted() && error.empty() && !is_done ? kExitCancelled : exit_code;
}

int Session::FinishLines(int exit_code, const std::string& error) {
  const std::string not_saved = SaveProject(exit_code);
  if (!not_saved.empty()) exit_code = kExitFailed;
  if (options_.json && exit_code != kExitDone) {
    Json document{{"result", 0}};
    if (!error.empty() || !not_saved.empty()) document["error"] = error.empty() ? not_saved : error;
    document["messages"] = MessagesJson();
    document["notes"] = NotesJson(notes_);
    PrintDocument(document, -1);
  }
  PrintDiagnostics();
  is_reported_ = true;
  return WasInterrupted() && not_saved.empty() && exit_code != kExitDone ? kExitCancelled : exit_code;
}

void ReportWrongUsage(int argc, char** argv, const std::string& what) {
  const auto is_json = [](const char* argument) { return std::string_view(argument) == "--json"; };
  if (std::any_of(argv + 1, argv + argc, is_json)) PrintDocument({{"result", 0}, {"error", what}}, -1);
}

int ReportFailure(const CommonOptions& options, const std::string& what) {
  std::cerr << "qloom: " << WithCharacters(what) << '\n';
  if (options.json) {
    Json document{{"result", 0}, {"error", what}, {"messages", Json::array()}, {"notes", Json::array()}};
    document.update(unreported);
    PrintDocument(document, -1);
  }
  return WasInterrupted() ? kExitCancelled : kExitFailed;
}

Json Session::MessagesJson() const {
  Json messages = Json::array();
  for (const auto& [request, answer] : front_end_.messages()) {
    messages.push_back(MessageJson(request));
    messages.back()["answer"] = MessageAnswerName(answer);
  }
  return messages;
}

Json MessageJson(const MessageBoxRequest& request) {
  return {{"text", JsonText(request.text)},
          {"caption", JsonText(request.caption)},
          {"icon", MessageIconName(request.icon)},
          {"buttons", MessageButtonsName(request.buttons)}};
}

CString NamedPath(const std::string& native) { return NativeNameToGbk(native); }

CString AbsolutePath(const std::string& native) {
  return NativePathToGbk(std::filesystem::absolute(WithBytes(native)).lexically_normal().native());
}

Json NotesJson(const Notes& notes) {
  Json json = Json::array();
  for (const Notes::Kind& kind : notes.kinds()) {
    for (const Note& place : kind.places) json.push_back(PlaceJson(kind, place));
    if (kind.count > kind.places.size()) {
      json.push_back({{"file", nullptr},
                      {"at", nullptr},
                      {"kind", kind.name()},
                      {"what", kind.name()},
                      {"count", kind.count - kind.places.size()}});
    }
  }
  return json;
}

void PrintNotes(const Notes& notes) {
  for (const Notes::Kind& kind : notes.kinds()) {
    std::cerr << "note: " << NameOfKind(*kind.declared) << ": " << kind.count << '\n';
    for (const Note& place : kind.places) {
      std::cerr << "  " << GbkNameToNative(place.file) << ", " << place.at << ": " << place.what << '\n';
    }
  }
}

void Session::PrintDiagnostics() const {
  for (const auto& [request, answer] : front_end_.messages()) {
    std::string text = GbkNameToNative(request.text);
    while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) text.pop_back();
    if (request.icon != MessageIcon::kNone) std::cerr << MessageIconName(request.icon) << ": ";
    std::cerr << text;
    if (request.buttons != MessageButtons::kOk) std::cerr << " -> " << MessageAnswerName(answer);
    std::cerr << '\n';
  }
  PrintNotes(notes_);
}

}  // namespace loom
