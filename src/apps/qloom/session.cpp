#include "apps/qloom/session.h"

#include <unistd.h>

#include <filesystem>
#include <iostream>

#include "platform/encoding.h"

namespace loom {
namespace {

Json PlaceJson(const Notes::Kind& kind, const Note& place) {
  return {{"file", JsonText(place.file)}, {"at", place.at}, {"what", kind.name + ": " + place.what}, {"count", 1}};
}

CString ConfigFolder(const CommonOptions& options) {
  if (!options.config.empty()) return NativePathToGbk(options.config);
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
  return NativePathToGbk((program.parent_path().parent_path() / "Config").native());
}

}  // namespace

Session::Session(const CommonOptions& options, BatchAnswers answers, const CString& worked_on)
    : options_(options),
      notes_scope_(notes_),
      host_(HostOptions{.config_folder = ConfigFolder(options),
                        .project_path = options.project.empty() ? CString() : NativePathToGbk(options.project),
                        .recent_logs_path = {}}),
      front_end_(std::move(answers), options.trace_ui, !options.json && isatty(STDERR_FILENO) != 0) {
  if (!worked_on.IsEmpty()) host_.UseFolderOfLog(worked_on);
  SetFrontEnd(&front_end_);
  manager_.RegisterModuleCommunicator(&host_.communicator());
}

Session::~Session() { SetFrontEnd(nullptr); }

int Session::Finish(Json document, int exit_code) {
  const bool did_something = exit_code == kExitDone || exit_code == kExitInPart;
  if (did_something && save_project_ && !host_.project().IsTemporary()) host_.project().Save();
  if (options_.json) {
    document["messages"] = MessagesJson();
    document["notes"] = NotesJson(notes_);
    std::cout << document.dump(2) << '\n';
  } else {
    PrintDiagnostics();
  }
  if (WasInterrupted()) return kExitCancelled;
  return exit_code;
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

CString AbsolutePath(const std::string& native) {
  return NativePathToGbk(std::filesystem::absolute(native).lexically_normal().native());
}

Json NotesJson(const Notes& notes) {
  Json json = Json::array();
  for (const Notes::Kind& kind : notes.kinds()) {
    for (const Note& place : kind.places) json.push_back(PlaceJson(kind, place));
    if (kind.count > kind.places.size()) {
      json.push_back(
          {{"file", nullptr}, {"at", nullptr}, {"what", kind.name}, {"count", kind.count - kind.places.size()}});
    }
  }
  return json;
}

void PrintNotes(const Notes& notes) {
  for (const Notes::Kind& kind : notes.kinds()) {
    std::cerr << "note: " << kind.name << ": " << kind.count << '\n';
    for (const Note& place : kind.places) {
      std::cerr << "  " << GbkToUtf8(place.file) << ", " << place.at << ": " << place.what << '\n';
    }
  }
}

void Session::PrintDiagnostics() const {
  for (const auto& [request, answer] : front_end_.messages()) {
    std::string text = GbkToUtf8(request.text);
    while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) text.pop_back();
    std::cerr << MessageIconName(request.icon) << ": " << text;
    if (request.buttons != MessageButtons::kOk) std::cerr << " -> " << MessageAnswerName(answer);
    std::cerr << '\n';
  }
  PrintNotes(notes_);
}

}  // namespace loom
