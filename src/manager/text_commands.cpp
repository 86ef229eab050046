#include "manager/text_commands.h"

#include "components/project.h"
#include "components/resource_handle.h"
#include "manager/io_registry.h"
#include "platform/completes.h"
#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/path.h"
#include "platform/ui/message_box.h"
#include "text/import/text_import_pages.h"
#include "text/import/text_importer.h"
#include "text/import/text_lines.h"
#include "text/import/title_tokens.h"
#include "text/selection/import_wiz.h"

namespace loom {
namespace {

bool AskForSettings(TextImportSettings& settings) {
  CImportWiz wizard("文本文件导入向导"_gbk);
  wizard.SetWizardMode();
  CTextImportWizPage1 page1(settings);
  CTextImportWizPage2 page2(settings);
  CTextImportWizPage3 page3(settings);
  wizard.AddPage(page1);
  wizard.AddPage(page2);
  wizard.AddPage(page3);
  return wizard.DoModal() == kIdWizardFinish;
}

CString ProtocolOf(const ILogfile& logfile, const CString& stream_name) {
  for (const IDataStream* stream : logfile.GetStreams()) {
    if (stream->GetName() == stream_name) return stream->GetProtocol();
  }
  return {};
}

CProjectTxtFile RecordOf(const TextStreamSettings& settings, const ILogfile& logfile) {
  CProjectStream stream;
  stream.SetFilterOperator("AND");
  stream.SetProtocol(ProtocolOf(logfile, settings.stream_full_name));
  stream.SetStreamName(settings.stream_full_name);
  stream.SetStreamType(Format("%d", StreamKindOf(settings.stream_type)));
  CProjectTxtFile record;
  settings.PutInto(record);
  record.SetTxtName(logfile.GetName());
  record.SetTxtPath(logfile.GetName());
  record.SetStreamType(settings.stream_type);
  record.SetStreams({{settings.stream_full_name, stream}});
  return record;
}

TextStreamSettings SettingsOf(const CProjectTxtFile& record) {
  TextStreamSettings settings;
  settings.TakeFrom(record);
  settings.stream_full_name = record.GetStreams().begin()->first;
  settings.stream_name = settings.stream_full_name.Mid(settings.stream_full_name.ReverseFind('_') + 1);
  settings.stream_type = record.GetStreamType();
  return settings;
}

// 1 while the file still has the columns of its record, else 0.
int MatchTextFiles(const ColumnMap& columns, const CProjectTxtFile& record, const CString& path) {
  const int count = ResultOr(-1, [&] {
    TextLines lines(path);
    std::string_view line;
    return lines.Next(line) ? CountTitleTokens(line, record.GetSeparate()) : -1;
  });
  const std::int32_t largest = columns.empty() ? -1 : columns.rbegin()->first;
  return count > largest && record.GetStreamType() != kInvalidInt ? 1 : 0;
}

void RemoveRecord(const CString& path) {
  g_project->RemoveTxtFile(path);
  g_project->modified = 1;
}

}  // namespace

int TextCommands::ImportTxt() {
  return ResultOr<int>(kImportFailed, [this] { return ImportChosen(); });
}

int TextCommands::ImportChosen() {
  const CResourceHandle resources;
  TextImportSettings settings;
  return AskForSettings(settings) ? ImportNew(settings, {}) : kImportFailed;
}

int TextCommands::ImportTextAs(const TextImportSettings& settings, const CString& protocol) {
  return ResultOr<int>(kImportFailed, [&] { return ImportNew(settings, protocol); });
}

int TextCommands::ImportNew(const TextImportSettings& chosen, const CString& protocol) {
  const CString& path = chosen.path;
  if (CStreamManagerCreator::CreateStreamManager()->FindLogfile(path)) {
    ShowMessageBox(Format("已有同名文本文件:%s !"_gbk, NameOf(path)), MessageIcon::kWarning);
    return kImportFailed;
  }
  TextStreamSettings settings = chosen;
  settings.stream_full_name = TitleOf(path) + "_" + settings.stream_name;
  settings.protocol_is_given = !protocol.IsEmpty();
  ILogfile* logfile = nullptr;
  const int result = Import(path, settings, logfile);
  if (result != kImportDone) return result;
  if (!protocol.IsEmpty()) {
    for (IDataStream* stream : logfile->GetStreams()) stream->SetProtocol(protocol);
  }
  g_project->AddTxtFile(RecordOf(settings, *logfile));
  g_project->modified = 1;
  return result;
}

// Import with the messages about its result.
int TextCommands::Import(const CString& path, const TextStreamSettings& settings, ILogfile*& logfile) {
  CTextImporter* const importer = registry_.GetTextImporter();
  if (importer == nullptr) return kImportFailed;
  importer->SetSettings(settings);
  const int result = ResultOr<int>(kImportFailed, [&] { return importer->Import(path, &logfile); });
  if (result == kImportFailed)
    ShowMessageBox(Format("导入文本文件：%s 失败! \n"_gbk, path), MessageIcon::kError);
  else if (result == kImportAlreadyPresent)
    ShowMessageBox(Format("已有同名文本文件：%s ! \n"_gbk, NameOf(path)), MessageIcon::kWarning);
  listener_({.path = path, .type = kImporterText, .result = result, .logfile = logfile});
  return result;
}

int TextCommands::OpenTxt(const CString& path) {
  return ResultOr<int>(kImportFailed, [&] { return Reopen(path); });
}

int TextCommands::Reopen(const CString& path) {
  if (!FileExists(path)) {
    ShowMessageBox(Format("找不到文本文件：%s ，请确认路径! \n"_gbk, path), MessageIcon::kWarning);
    RemoveRecord(path);
    return kImportFailed;
  }
  const CProjectTxtFile* const listed = g_project->GetProjectTxtFileByName(path);
  if (listed == nullptr) throw Error("the project records no text file " + GbkToUtf8(path));
  const CProjectTxtFile record = *listed;
  const bool fits = !record.GetStreams().empty() && MatchTextFiles(record.GetColumnMapIE(), record, path) == 1;
  if (!fits) return AskWhetherAgain(path);
  ILogfile* logfile = nullptr;
  const int result = Import(path, SettingsOf(record), logfile);
  if (result != kImportDone && result != kImportAlreadyPresent) RemoveRecord(path);
  return result;
}

// A recorded file that no longer fits leaves the project; the person may import it anew.
int TextCommands::AskWhetherAgain(const CString& path) {
  const MessageAnswer answer = ShowMessageBox("系统检测出原工程中的文本文件有修改是否重新执行导入？"_gbk,
                                              MessageIcon::kWarning, MessageButtons::kOkCancel);
  RemoveRecord(path);
  return answer == MessageAnswer::kOk ? ImportTxt() : kImportFailed;
}

}  // namespace loom
