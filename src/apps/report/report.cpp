#include "apps/report/report.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "apps/report/page_text.h"
#include "apps/report/stream_part.h"
#include "host/application.h"
#include "host/host_folders.h"
#include "host/netdb/network_database.h"
#include "platform/clock.h"
#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/interrupt.h"
#include "platform/path.h"

namespace loom {
namespace {

template <class Value>
Json Known(const std::optional<Value>& value) {
  return value ? Json(*value) : Json();
}

// By the numbers that served cells know them by; those that are not drawn are empty.
Json NetworkJson(const std::vector<analysis::NetworkCell>& cells, const std::vector<bool>& serves,
                 const report::RouteBounds& near) {
  Json json = Json::array();
  for (std::size_t at = 0; at < cells.size(); ++at) {
    const analysis::NetworkCell& cell = cells[at];
    if (!serves[at] && !near.IsNear(cell.longitude, cell.latitude)) {
      json.push_back(nullptr);
      continue;
    }
    json.push_back({{"name", GbkToUtf8(cell.name)},
                    {"protocol", cell.protocol},
                    {"longitude", cell.longitude},
                    {"latitude", cell.latitude},
                    {"azimuth", Known(cell.azimuth)},
                    {"beam", Known(cell.beam_width)}});
  }
  return json;
}

const char* SeverityName(NoteSeverity severity) {
  switch (severity) {
    case NoteSeverity::kLost:
      return "lost";
    case NoteSeverity::kMended:
      return "mended";
    default:
      return "told";
  }
}

Json NotesPart(const Notes* notes) {
  Json json = Json::array();
  if (notes == nullptr) return json;
  for (const Notes::Kind& kind : notes->kinds()) {
    Json places = Json::array();
    for (const Note& place : kind.places) {
      places.push_back({{"file", GbkNameToUtf8(NameOf(place.file))}, {"at", place.at}, {"what", place.what}});
    }
    json.push_back({{"name", kind.name()},
                    {"chinese", kind.declared->chinese_name},
                    {"severity", SeverityName(kind.declared->severity)},
                    {"count", kind.count},
                    {"places", std::move(places)}});
  }
  return json;
}

Json FilesPart(const std::vector<CString>& files) {
  Json json = Json::array();
  for (const CString& file : files) json.push_back(GbkNameToUtf8(NameOf(file)));
  return json;
}

std::string TitleFrom(const std::vector<CString>& files) {
  std::string title;
  for (std::size_t at = 0; at < std::min<std::size_t>(files.size(), 3); ++at)
    title += (at == 0 ? "" : ", ") + GbkNameToUtf8(TitleOf(files[at]));
  return files.size() > 3 ? title + " ..." : title;
}

// Of local time, where the drive began.
std::int64_t ClockOffset(const std::vector<IDataStream*>& streams) {
  for (const IDataStream* const stream : streams) {
    const double start_s = stream->GetEarliestTime();
    if (start_s == kInvalidDouble || !(std::abs(start_s) < 2e11)) continue;
    const auto whole_s = static_cast<std::int64_t>(start_s);
    return ClockSecondsOf(LocalTimeOf(whole_s)) - whole_s;
  }
  return 0;
}

std::vector<std::string> NamesByNumber(const std::map<std::string, std::size_t>& numbers) {
  std::vector<std::string> names(numbers.size());
  for (const auto& [name, number] : numbers) names[number] = name;
  return names;
}

analysis::ClassTable LoadClasses(const ReportOptions& options) {
  return analysis::ClassTable::Load(options.classes_file.IsEmpty() ? JoinPath(GetChosenConfigFolder(), "classes.tsv")
                                                                   : options.classes_file);
}

}  // namespace

bool CanWriteReports() { return !report::PageText().empty(); }

std::string TilesObjection(const std::string& address) {
  const bool is_address = address.starts_with("https://") || address.starts_with("http://");
  for (const char* const part : {"{z}", "{x}", "{y}"}) {
    if (!is_address || address.find(part) == std::string::npos)
      return "tiles have an address like https://tiles.example/{z}/{x}/{y}.png";
  }
  const bool is_plain = address.find_first_of("\"'<>;, \\") == std::string::npos;
  return is_plain ? "" : "the address of tiles holds a character that no address has";
}

std::vector<IDataStream*> ReportedStreams(const std::vector<IDataStream*>& streams) {
  std::vector<IDataStream*> own;
  std::ranges::copy_if(streams, std::back_inserter(own),
                       [](IDataStream* stream) { return stream->GetMergedRows()->empty(); });
  return own;
}

ReportSummary WriteReport(HostApplication& host, const ReportInput& input, const ReportOptions& options,
                          const CString& out) {
  if (!CanWriteReports())
    throw Error("this program was built without Leaflet and dygraphs, which the page of a report needs");
  const analysis::ClassTable classes = LoadClasses(options);
  const std::vector<analysis::NetworkCell> network = analysis::ReadNetworkCells(host.network());
  report::PageParts parts{.options = options,
                          .catalogue = host.catalogue(),
                          .classes = classes,
                          .network = network,
                          .elements = report::ElementList(host.catalogue(), classes),
                          .columns = {},
                          .names = {},
                          .bounds = {},
                          .network_serves = std::vector<bool>(network.size()),
                          .summary = {}};
  const std::string title = options.title.empty() ? TitleFrom(input.files) : options.title;
  Json page{
      {"program", options.program},
      {"title", title},
      {"clock_offset", ClockOffset(input.streams)},
      {"tiles", options.tiles},
      {"bins", {{"time", options.bins.time_s}, {"distance", options.bins.distance_m}, {"grid", options.bins.grid_m}}},
      {"files", FilesPart(input.files)},
      {"notes", NotesPart(input.notes)}};
  page["streams"] = Json::array();
  for (IDataStream* const stream : input.streams) {
    StopIfInterrupted();
    page["streams"].push_back(report::StreamPart(*stream, parts));
  }
  page["elements"] = parts.elements.ToJson();
  page["names"] = NamesByNumber(parts.names);
  page["network"] = NetworkJson(network, parts.network_serves, parts.bounds);
  AtomicFile file(out);
  report::WritePage({.title = title, .tiles = options.tiles, .document = page, .columns = parts.columns.bytes()}, file);
  parts.summary.bytes = file.Position();
  file.Commit();
  return parts.summary;
}

}  // namespace loom
