#include "host/simulation/simulator.h"

#include <cmath>
#include <map>
#include <set>

#include "components/records/blocks.h"
#include "host/logstore/log_reader.h"
#include "tests/logstore/log_files.h"

namespace loom::testing {
namespace {

using Key = std::pair<int, std::int32_t>;  // device, network mode

// What the records of a log show.
struct Shown {
  std::map<std::int32_t, int> kinds;
  std::map<std::int32_t, int> models;
  std::map<Key, std::set<std::int32_t>> cells;
  std::set<std::int32_t> events;
  std::set<std::string> messages;
  std::set<std::int8_t> levels;
  int mode_changes = 0;
  int without_position = 0;
  double greatest_speed_mps = 0.0;
  bool stood = false;
  bool in_time_order = true;
};

// Follows device 1 over the ground.
class Track {
 public:
  void Add(const CTestdataBase& record, Shown& shown) {
    if (record.kind != kRecordHandset || record.device_number != 1 || record.message_id != -1) return;
    if (record.longitude == -255.0) {
      time_s_ = -1.0;
      return;
    }
    const double east_m = record.longitude * 111'195.0 * std::cos(39.9087 * 3.14159265 / 180.0);
    const double north_m = record.latitude * 111'195.0;
    if (time_s_ >= 0.0) {
      const double speed = std::hypot(east_m - east_m_, north_m - north_m_) / (record.time.seconds - time_s_);
      shown.greatest_speed_mps = std::max(shown.greatest_speed_mps, speed);
    }
    still_ = std::hypot(east_m - still_east_m_, north_m - still_north_m_) < 15.0 ? still_ + 1 : 0;
    if (still_ == 0) still_east_m_ = east_m, still_north_m_ = north_m;
    if (still_ >= 10) shown.stood = true;
    time_s_ = record.time.seconds;
    east_m_ = east_m;
    north_m_ = north_m;
  }

 private:
  double time_s_ = -1.0;
  double east_m_ = 0.0, north_m_ = 0.0;
  double still_east_m_ = 0.0, still_north_m_ = 0.0;
  int still_ = 0;
};

Shown Look(const CString& path) {
  Shown shown;
  Track track;
  LogReader log(path);
  double time_s = 0.0;
  for (LogPacket packet; log.Next(packet);) {
    std::pmr::monotonic_buffer_resource arena;
    CTestdataBase record(false, 0);
    DecodeRecord(packet.payload, packet.payload_position_bytes, record, arena);
    ++shown.kinds[record.kind];
    if (record.model_code) ++shown.models[record.model_code];
    if (record.serving_cell)
      shown.cells[{record.device_number, record.network_mode}].insert(record.serving_cell->cell_key);
    if (record.event_id != -1) shown.events.insert(record.event_id);
    if (!record.layer3_name.empty()) shown.messages.insert(std::string(record.layer3_name));
    if (record.timeslot_measurements) shown.levels.insert(record.timeslot_measurements->pccpch_rscp);
    shown.mode_changes += record.network_mode_changed;
    shown.without_position += record.longitude == -255.0;
    shown.in_time_order &= record.time.seconds >= time_s;
    time_s = record.time.seconds;
    track.Add(record, shown);
  }
  return shown;
}

TEST(Simulator, DriveShowsEverythingThatADriveHas) {
  const TempFolder folder;
  SimulationOptions options;
  options.minutes = 10.0;
  options.handsets = HandsetsFromText("td,gsm,lte,lte");
  options.scanner = true;
  const SimulationResult drive = SimulateLog(folder.File("a.log"), options);
  EXPECT_EQ(drive.records, ReadThrough(folder.File("a.log")).ids.size());
  const Shown shown = Look(folder.File("a.log"));
  for (const std::int32_t kind : {1, 2, 6, 7, 8, 9, 14, 15}) EXPECT_GT(shown.kinds.count(kind), 0U) << kind;
  for (const std::int32_t model : {14, 15, 16}) EXPECT_GT(shown.models.count(model), 0U) << model;
  EXPECT_GE(shown.kinds.at(kRecordHandset), 4 * 2 * 600) << "two measurements per second and handset";
  EXPECT_GE(shown.mode_changes, 2) << "to GSM and back";
  EXPECT_GT(shown.cells.at(Key(1, kNetworkModeTdScdma)).size(), 3U) << "handovers";
  EXPECT_GT(shown.cells.at(Key(1, kNetworkModeGsm)).size(), 0U);
  EXPECT_EQ(0U, shown.cells.count(Key(2, kNetworkModeTdScdma)));
  for (const std::int32_t event : {1104, 1105, 1302, 1601}) EXPECT_GT(shown.events.count(event), 0U) << event;
  EXPECT_GT(shown.messages.count("RRC Connection Setup"), 0U);
  EXPECT_GT(shown.levels.size(), 20U) << "fading and path loss";
  EXPECT_GT(shown.without_position, 0);
  EXPECT_LT(shown.without_position, shown.kinds.at(kRecordHandset) / 4);
  EXPECT_LT(shown.greatest_speed_mps, 60.0) << "speed with the error of the receiver";
  EXPECT_TRUE(shown.stood);
  EXPECT_TRUE(shown.in_time_order);
  std::set<std::string_view> tables;
  for (const SimulatedCellRow& row : drive.cells) tables.insert(row.table);
  EXPECT_EQ((std::set<std::string_view>{"tbl_Cell", "tbl_Cell_GSM", "tbl_Cell_LTE"}), tables);
}

TEST(Simulator, SameOptionsMakeTheSameBytesAndAnotherSeedOthers) {
  const TempFolder folder;
  SimulationOptions options;
  options.minutes = 1.0;
  SimulateLog(folder.File("a.log"), options);
  SimulateLog(folder.File("b.log"), options);
  options.seed = 2;
  SimulateLog(folder.File("c.log"), options);
  EXPECT_EQ(ReadWholeText(folder.File("a.log")), ReadWholeText(folder.File("b.log")));
  EXPECT_NE(ReadWholeText(folder.File("a.log")), ReadWholeText(folder.File("c.log")));
}

TEST(Simulator, OldLogsMarkMissingPositionsAndMergedOnesGoOnToTheNextDay) {
  const TempFolder folder;
  SimulationOptions options;
  options.minutes = 2.0;
  options.header.version = 110;
  SimulateLog(folder.File("old.log"), options);
  EXPECT_NE(std::string::npos, Dump(folder.File("old.log")).find("\"longitude\":-1.0"));
  options.header.version = 600;
  SimulateLog(folder.File("merged.log"), options);
  CLogFileManager log;
  ASSERT_NE(0, log.OpenFile(folder.Folder(), "merged.log", 0));
  EXPECT_EQ(9, log.GetRecordStartTime().hour());
  EXPECT_EQ(33, log.GetRecordEndTime().hour());
}

TEST(Simulator, RefusesOptionsThatMakeNoSense) {
  const TempFolder folder;
  const auto refuses = [&](auto change) {
    SimulationOptions options;
    change(options);
    EXPECT_THROW(SimulateLog(folder.File("a.log"), options), Error);
    EXPECT_FALSE(FileExists(folder.File("a.log")));
  };
  refuses([](SimulationOptions& o) { o.minutes = 0.0; });
  refuses([](SimulationOptions& o) { o.minutes = std::nan(""); });
  refuses([](SimulationOptions& o) { o.interval_s = 0.0; });
  refuses([](SimulationOptions& o) { o.handsets.clear(); });
  refuses([](SimulationOptions& o) { o.handsets.assign(9, SimulatedNetwork::kGsm); });
  EXPECT_THROW(HandsetsFromText("td,fax"), Error);
}

}  // namespace
}  // namespace loom::testing
