#include "host/simulation/simulator.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <nlohmann/json.hpp>
#include <optional>

#include "host/logstore/log_writer.h"
#include "host/simulation/handset.h"
#include "host/simulation/radio.h"
#include "host/simulation/record_sink.h"
#include "host/simulation/route.h"
#include "host/simulation/scanner.h"
#include "platform/encoding.h"
#include "platform/error.h"

namespace loom {
namespace {

using namespace simulation;

constexpr double kStart_s = 9.5 * 3600.0;
constexpr double kDayLength_s = 86'400.0;
constexpr double kLongest_min = 10'000.0 * 60.0;
constexpr std::size_t kMostHandsets = 8;
constexpr std::int32_t kMergedVersion = 600;
constexpr double kHoleRadius_m = 180.0;
constexpr double kWallLoss_db = 28.0;
constexpr double kHoleLoss_db = 45.0;

// What is put into the log for every device at a share of the way.
struct Mark {
  int tenths;
  std::int32_t kind;
  std::int32_t event_id;
  const char* text;  // UTF-8
};
constexpr std::array<Mark, 5> kMarks{{{1, kRecordFileMark, -1, "起点"},
                                      {2, kRecordEvent, 1601, nullptr},
                                      {5, kRecordFileMark, -1, "中途"},
                                      {8, kRecordEvent, 1602, nullptr},
                                      {9, kRecordFileMark, -1, "终点"}}};

bool Holds(const SimulationOptions& options, SimulatedNetwork network) {
  return std::find(options.handsets.begin(), options.handsets.end(), network) != options.handsets.end();
}

void Check(const SimulationOptions& options) {
  if (!(options.minutes > 0.0) || options.minutes > kLongest_min) throw Error("a drive takes more than 0 minutes");
  if (!(options.interval_s >= 0.1) || options.interval_s > 3600.0)
    throw Error("the interval between measurements is 0.1 s to one hour");
  if (options.handsets.size() > kMostHandsets) throw Error("a log holds up to 8 handsets");
  if (options.handsets.empty() && !options.scanner) throw Error("a drive needs a handset or a scanner");
}

std::string CellJson(std::string_view table, const Cell& cell) {
  const GeoPoint at = ToDegrees(cell.at);
  nlohmann::ordered_json row{{"MCC", 460}, {"MNC", 0}};
  if (table != "tbl_Cell_LTE") row["LAC"] = cell.lac;
  row["CI"] = cell.ci;
  row["CellName"] = "C" + std::to_string(cell.ci);
  row["Longitude"] = std::round(at.longitude * 1e7) / 1e7;
  row["Latitude"] = std::round(at.latitude * 1e7) / 1e7;
  row["Azimuth"] = std::round(std::fmod(cell.azimuth_deg + 360.0, 360.0));
  row["BeamWidth"] = 65;
  const bool gsm = table == "tbl_Cell_GSM";
  const bool lte = table == "tbl_Cell_LTE";
  row[gsm ? "BCCH" : lte ? "EARFCN" : "UARFCN"] = cell.channel;
  row[gsm ? "BSIC" : lte ? "PCI" : "CellParameterID"] = cell.code;
  return row.dump();
}

// One drive through the town.
class Drive {
 public:
  Drive(const SimulationOptions& options, LogWriter& log)
      : options_(options), sink_(log, options.header.version), style_(options.indoor ? kWalk : kDrive) {
    Random seeds(options.seed);
    const auto steps = static_cast<std::size_t>(std::max(1.0, std::ceil(options.minutes * 60.0 / options.interval_s)));
    route_ = MakeRoute(style_, steps, options.interval_s, seeds.Next());
    const bool dual = Holds(options, SimulatedNetwork::kTdScdma);
    if (dual || options.scanner) td_.emplace(kTdLayer, style_.extent_m, seeds.Next());
    if (dual || Holds(options, SimulatedNetwork::kGsm)) gsm_.emplace(kGsmLayer, style_.extent_m, seeds.Next());
    if (Holds(options, SimulatedNetwork::kLte)) lte_.emplace(kLteLayer, style_.extent_m, seeds.Next());
    if (options.indoor)
      for (auto* layer : {&td_, &gsm_, &lte_})
        if (*layer) (*layer)->SetLoss(kWallLoss_db);
    // TD-SCDMA ends for a while where the way is at four tenths.
    if (td_) td_->SetHole(route_[steps * 4 / 10].at, options.indoor ? 15.0 : kHoleRadius_m, kHoleLoss_db);
    for (std::size_t i = 0; i < options.handsets.size(); ++i)
      handsets_.emplace_back(options.handsets[i], static_cast<std::int8_t>(i + 1), options.interval_s, seeds.Next());
    if (options.scanner) scanner_.emplace(seeds.Next());
  }

  void Run() {
    for (std::size_t step = 0; step < route_.size(); ++step) Step(step);
  }

  std::vector<SimulatedCellRow> CellRows() const {
    std::vector<SimulatedCellRow> rows;
    const auto add = [&](std::string_view table, const std::optional<Layer>& layer) {
      if (!layer) return;
      for (const Cell& cell : layer->cells()) rows.push_back({table, CellJson(table, cell)});
    };
    add("tbl_Cell", td_);
    add("tbl_Cell_GSM", gsm_);
    add("tbl_Cell_LTE", lte_);
    return rows;
  }

 private:
  Moment MomentOf(std::size_t step) const {
    const RoutePoint& point = route_[step];
    const bool next_day = options_.header.version >= kMergedVersion && step >= route_.size() / 2;
    return {kStart_s + (next_day ? kDayLength_s : 0.0) + static_cast<double>(step) * options_.interval_s,
            ToDegrees(point.reported), point.has_position};
  }

  void Step(std::size_t step) {
    const PlanePoint& at = route_[step].at;
    Surroundings surroundings;
    if (td_) surroundings.td = td_->Look(at);
    if (gsm_) surroundings.gsm = gsm_->Look(at);
    if (lte_) surroundings.lte = lte_->Look(at);
    Moment moment = MomentOf(step);
    PutMarks(step, moment);
    const double spacing_s = options_.interval_s / static_cast<double>(handsets_.size() + 1);
    for (Handset& handset : handsets_) {
      handset.Step(moment, surroundings, sink_);
      moment.time_s += spacing_s;
    }
    if (scanner_) scanner_->Step(moment, surroundings.td, surroundings.lte, sink_);
  }

  void PutMarks(std::size_t step, const Moment& moment) {
    for (const Mark& mark : kMarks) {
      if (step == 0 || step != route_.size() * static_cast<std::size_t>(mark.tenths) / 10) continue;
      CTestdataBase record = sink_.Start(mark.kind, 0, moment);
      record.event_id = mark.event_id;
      const CString text = mark.text ? Utf8ToGbk(mark.text) : CString();
      record.raw_message = AUTOTEST::CAutoBuffer(std::as_bytes(std::span(text.str())));
      sink_.Put(record);
    }
  }

  const SimulationOptions& options_;
  RecordSink sink_;
  const RouteStyle& style_;
  std::vector<RoutePoint> route_;
  std::optional<Layer> td_;
  std::optional<Layer> gsm_;
  std::optional<Layer> lte_;
  std::vector<Handset> handsets_;
  std::optional<Scanner> scanner_;
};

}  // namespace

std::vector<SimulatedNetwork> HandsetsFromText(std::string_view text) {
  std::vector<SimulatedNetwork> handsets;
  while (!text.empty()) {
    const std::string_view name = text.substr(0, text.find(','));
    text.remove_prefix(name.size() == text.size() ? name.size() : name.size() + 1);
    if (name == "td")
      handsets.push_back(SimulatedNetwork::kTdScdma);
    else if (name == "gsm")
      handsets.push_back(SimulatedNetwork::kGsm);
    else if (name == "lte")
      handsets.push_back(SimulatedNetwork::kLte);
    else
      throw Error("'" + std::string(name) + "' is no kind of handset (td, gsm, lte)");
  }
  return handsets;
}

SimulationResult SimulateLog(const CString& path, const SimulationOptions& options) {
  Check(options);
  LogWriter log(path, options.header);
  Drive drive(options, log);
  drive.Run();
  log.Finish();
  return {log.RecordCount(), drive.CellRows()};
}

}  // namespace loom
