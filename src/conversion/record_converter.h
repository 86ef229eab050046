#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "components/db_mapper.h"
#include "components/id_set.h"
#include "components/mem_row.h"
#include "components/records/testdata.h"
#include "components/stream_info.h"
#include "conversion/row_ie_writer.h"

namespace loom {

inline constexpr std::int32_t kLogVersionMarkedPositions = 110;  // logs in which a missing coordinate is -1.0

// What the routes differ in at the start of a row.
struct RowStart {
  enum class Travel : std::uint8_t { kOutdoorHandsets, kEveryStream };

  std::size_t room = 110;                     // fields to reserve room for
  bool position_follows_log_version = false;  // valid by the log version's convention, else geographic
  bool distances_follow_log_version = false;  // the same for the positions that distances are taken from
  bool replaces = false;                      // header fields replace, else append
  Travel travel = Travel::kOutdoorHandsets;
  bool cell_distance = true;       // IE 2387, while the cell-distance switch is on
  bool records_record_id = false;  // IE 3 becomes a column of the stream of its own
};
inline constexpr RowStart kHandsetRow{
    .room = 250, .position_follows_log_version = true, .distances_follow_log_version = true};
// Header-only and GSM rows. A coordinate of -1.0 is on the globe, and yet no place from which to measure in the logs
// in which it stands for a missing one.
inline constexpr RowStart kHeaderRow{.distances_follow_log_version = true, .replaces = true};
inline constexpr RowStart kScannerRow{.travel = RowStart::Travel::kEveryStream, .cell_distance = false};
inline constexpr RowStart kDataServiceRow{
    .room = 50, .travel = RowStart::Travel::kEveryStream, .cell_distance = false, .records_record_id = true};
inline constexpr RowStart kLteRow{.cell_distance = false};

// Base of all record converters: the writer, the distances, and what every row starts and ends with. A converter serves
// every stream of a log; what belongs to a stream is in its struct_STREAMINFO.
class CRecordConverter {
 public:
  CRecordConverter() = default;
  CRecordConverter(const CRecordConverter&) = delete;
  CRecordConverter& operator=(const CRecordConverter&) = delete;
  virtual ~CRecordConverter() = default;

  // The settings outlive their use.
  virtual void SetImportSettings(const ImpIESettings& settings) { writer_.SetImportSettings(settings); }

  // Metres to the serving cell; -255 when the key (-1, -2), the position or the cell's position is not valid. The cell
  // source is asked once for as long as the key stays the same. The marked forms take every position but -1.0.
  virtual double DistanceToCell(std::int32_t cell_key, double longitude, double latitude, struct_STREAMINFO& stream);
  virtual double DistanceToCellMarked(std::int32_t cell_key, double longitude, double latitude,
                                      struct_STREAMINFO& stream);
  // Metres since the stream's previous position, 0 when there is none; an invalid position ends the chain.
  virtual double TravelStep(double longitude, double latitude, struct_STREAMINFO& stream);
  virtual double TravelStepMarked(double longitude, double latitude, struct_STREAMINFO& stream);

  // Indoor logs import the optional IEs whatever the settings.
  void SetSettingsEmpty(bool empty) { writer_.set_settings_empty(empty); }
  void SetCellSource(IDBMapper* source) { cell_source_ = source; }
  void SetCellDistanceSwitch(bool on) { cell_distance_switch_ = on; }

  // The network mode in force: kNetworkModeTdScdma or kNetworkModeGsm.
  std::int32_t network_mode() const { return network_mode_; }
  void SetNetworkMode(std::int32_t mode) { network_mode_ = mode; }
  // Takes over the mode that a record announces; raw TD-SCDMA messages (kind 16) mean TD-SCDMA. True when it is GSM.
  bool FollowNetworkMode(const CTestdataBase& record);

 protected:
  // A new row with room for `room` fields. Rows are stored as exactly sized copies: what room is left needs no care.
  static std::unique_ptr<CMemDataRow> MakeRow(std::size_t room);
  // Makes a row, directs the writer to it, and writes number, time, distances, position, time stamp and record id.
  // Keeps the stream's time and position ranges.
  std::unique_ptr<CMemDataRow> StartRow(const RowStart& start, const CTestdataBase& record, struct_STREAMINFO& stream,
                                        std::int32_t selection_switch);
  // IEs 4 to 9 and 26771 as header-only and GSM rows have them.
  void WriteRecordHeader(const CTestdataBase& record);
  // IEs 5 to 9, in all handset rows.
  void WriteRecordNumbers(const CTestdataBase& record);
  void WriteRecordNumbersFrom6(const CTestdataBase& record);

  // A change of network mode makes the old mode's values invalid: Begin... before the row is started keeps what the
  // stream has so far, Invalidate... when it is filled writes invalid values for what of that the row lacks.
  void BeginNetworkModeChange(const CTestdataBase& record, struct_STREAMINFO& stream);
  void InvalidateOldMode();

  bool settings_empty() const { return writer_.settings_empty(); }

  CRowIEWriter writer_;
  IDBMapper* cell_source_ = nullptr;

 private:
  double DistanceFromValid(std::int32_t cell_key, double longitude, double latitude, struct_STREAMINFO& stream);
  double StepFromValid(double longitude, double latitude, struct_STREAMINFO& stream);

  bool cell_distance_switch_ = false;
  std::int32_t network_mode_ = kNetworkModeTdScdma;
  bool mode_changed_ = false;
  IdSet ids_before_change_;
};

// Whether a position lies on the globe; NaN does not.
bool IsGeographic(double longitude, double latitude);

// Position as rows carry it, -255 for a coordinate that is not valid.
Position ValidPosition(const CTestdataBase& record, bool marked);

}  // namespace loom
