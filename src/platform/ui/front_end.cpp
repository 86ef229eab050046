#include "platform/ui/front_end.h"

#include <utility>

#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/log.h"
#include "platform/path.h"
#include "platform/ui/dialog.h"
#include "platform/ui/message_box.h"
#include "platform/ui/property_sheet.h"

namespace loom {
namespace {

class NullProgress : public ProgressView {
 public:
  void SetText(const CString&) override {}
  void SetRange(int, int) override {}
  void SetPos(int) override {}
  void Pump() override {}
  bool Cancelled() const override { return false; }
};

// Nobody is there.
class AbsentFrontEnd : public FrontEnd {
 public:
  void ShowDialog(CDialog& dialog) override {
    Log(LogLevel::kWarning, "dialog cancelled, nobody is there to answer: " + GbkToUtf8(dialog.GetTitle()));
    dialog.EndDialog(kIdCancel);
  }
  MessageAnswer ShowMessage(const MessageBoxRequest& request) override {
    Log(request.icon == MessageIcon::kInformation ? LogLevel::kInfo : LogLevel::kWarning,
        "message: " + GbkNameToUtf8(request.text));
    return DecliningAnswer(request.buttons);
  }
  std::optional<std::vector<CString>> ShowFileDialog(const FileDialogRequest& request) override {
    Log(LogLevel::kWarning, "file dialog cancelled, nobody is there to answer: " + GbkToUtf8(request.title));
    return std::nullopt;
  }
  std::unique_ptr<ProgressView> ShowProgress(const ProgressRequest&) override {
    return std::make_unique<NullProgress>();
  }
  void SetWaitCursor(bool) override {}
};

CString& HostCaptionStorage() {
  static CString caption = kApplicationCaption;
  return caption;
}

FrontEnd*& CurrentFrontEndPointer() {
  static FrontEnd* current = nullptr;
  return current;
}

}  // namespace

const char* MessageIconName(MessageIcon icon) {
  constexpr const char* kNames[] = {"none", "information", "warning", "error", "question"};
  return kNames[static_cast<std::size_t>(icon)];
}

const char* MessageButtonsName(MessageButtons buttons) {
  constexpr const char* kNames[] = {"ok", "okcancel", "yesno"};
  return kNames[static_cast<std::size_t>(buttons)];
}

const char* MessageAnswerName(MessageAnswer answer) {
  constexpr const char* kNames[] = {"ok", "cancel", "yes", "no"};
  return kNames[static_cast<std::size_t>(answer)];
}

MessageAnswer AgreeingAnswer(MessageButtons buttons) {
  return buttons == MessageButtons::kYesNo ? MessageAnswer::kYes : MessageAnswer::kOk;
}

MessageAnswer DecliningAnswer(MessageButtons buttons) {
  if (buttons == MessageButtons::kYesNo) return MessageAnswer::kNo;
  return buttons == MessageButtons::kOkCancel ? MessageAnswer::kCancel : MessageAnswer::kOk;
}

bool Offers(MessageButtons buttons, MessageAnswer answer) {
  return answer == AgreeingAnswer(buttons) || answer == DecliningAnswer(buttons);
}

std::vector<FileFilter> ParseFileFilters(const CString& text) {
  std::vector<FileFilter> filters;
  const std::vector<CString> parts = text.Split('|');
  for (std::size_t at = 0; at + 1 < parts.size() && !parts[at].IsEmpty(); at += 2)
    filters.push_back({parts[at], parts[at + 1].Split(';')});
  return filters;
}

CString CompletedPath(const FileDialogRequest& request, const CString& path) {
  const bool is_complete = request.default_extension.IsEmpty() || NameOf(path).Find('.') >= 0;
  if (is_complete || (!request.save && FileExists(path))) return path;
  return path + '.' + request.default_extension;
}

std::string ObjectionTo(const FileDialogRequest& request, const std::vector<CString>& paths) {
  if (paths.empty()) return "no file is picked";
  if (paths.size() > 1 && !request.multi_select) return "more than one file is picked";
  for (const CString& path : paths) {
    if (path.IsEmpty()) return "a file has no name";
    if (request.must_exist && !FileExists(CompletedPath(request, path)))
      return GbkNameToUtf8(path) + ": does not exist";
    if (FolderExists(path)) return GbkNameToUtf8(path) + ": is a folder";
  }
  return {};
}

CString OverwriteQuestionFor(const CString& target) { return Format("%s 已存在。要替换它吗？"_gbk, target); }

CString OverwriteQuestion(const FileDialogRequest& request, const std::vector<CString>& paths) {
  if (!request.save || !request.overwrite_prompt) return {};
  for (const CString& path : paths) {
    const CString target = CompletedPath(request, path);
    if (FileExists(target)) return OverwriteQuestionFor(target);
  }
  return {};
}

void FrontEnd::ShowSheet(CPropertySheet& sheet) {
  Log(LogLevel::kWarning, "sheet cancelled, nobody is there to answer: " + GbkToUtf8(sheet.GetTitle()));
  sheet.EndDialog(kIdCancel);
}

const CString& HostCaption() { return HostCaptionStorage(); }

void SetHostCaption(const CString& caption) { HostCaptionStorage() = caption; }

FrontEnd& CurrentFrontEnd() {
  static AbsentFrontEnd absent;
  return CurrentFrontEndPointer() ? *CurrentFrontEndPointer() : absent;
}

FrontEnd* SetFrontEnd(FrontEnd* front_end) { return std::exchange(CurrentFrontEndPointer(), front_end); }

}  // namespace loom
