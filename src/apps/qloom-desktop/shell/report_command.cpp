#include "apps/qloom-desktop/shell/report_command.h"

#include <QDesktopServices>
#include <QGuiApplication>
#include <QUrl>
#include <algorithm>
#include <map>

#include "apps/qloom-desktop/front_end/qt_text.h"
#include "apps/report/report.h"
#include "components/stream_manager.h"

namespace loom {
namespace {

// Those that the streams came from.
std::vector<CString> FilesOf(const std::vector<IDataStream*>& streams) {
  std::map<CString, ILogfile*> logs;
  CStreamManagerCreator::CreateStreamManager()->GetLogfileNames(logs);
  std::vector<CString> files;
  for (const auto& [name, logfile] : logs) {
    const bool is_used = std::ranges::any_of(logfile->GetStreams(), [&](IDataStream* stream) {
      return std::ranges::find(streams, stream) != streams.end();
    });
    if (is_used) files.push_back(logfile->GetName());
  }
  return files;
}

}  // namespace

void WriteReportOf(DesktopSession& session, const std::vector<IDataStream*>& streams, const CString& out) {
  const std::vector<IDataStream*> own = ReportedStreams(streams);
  const std::vector<IDataStream*>& reported = own.empty() ? streams : own;
  ReportOptions options;
  options.program = "qloom-desktop " QLOOM_VERSION;
  WriteReport(session.host(), {.streams = reported, .files = FilesOf(reported), .notes = &session.notes()}, options,
              out);
  if (QGuiApplication::platformName() != QLatin1String("offscreen"))
    QDesktopServices::openUrl(QUrl::fromLocalFile(PathToQt(out)));
}

}  // namespace loom
