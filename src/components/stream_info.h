#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <vector>

#include "components/field_value.h"
#include "components/id_set.h"
#include "components/mem_row.h"
#include "components/records/state_record.h"
#include "components/stream_manager.h"
#include "components/value_range.h"
#include "platform/cstring.h"

namespace loom {

enum ProtocolCode : std::int32_t { kProtocolNone = 0, kProtocolTdScdma = 1, kProtocolGsm = 2, kProtocolLte = 7 };

// A position in degrees, -255 = none.
struct Position {
  double longitude = kInvalidDouble;
  double latitude = kInvalidDouble;
};

// State of one stream while its log is imported. The importer owns it; converters and the decoder library keep here
// whatever belongs to the stream.
struct struct_STREAMINFO {
  RowMap* rows = nullptr;  // the stream's own
  MergedRowMap* merged_rows = nullptr;
  ValueRange time_s;  // since 1970
  ValueRange longitude;
  ValueRange latitude;
  std::int32_t stream_type = 0;
  CString stream_name;
  CString device_name;
  std::int32_t row_number = 0;  // of the row being made, from 1; after the log the stream's row count
  double day_offset_s = -1.0;   // local midnight of the log's day in seconds since 1970
  std::int32_t log_version = 0;
  std::int32_t protocol = kProtocolNone;

  IdSet ie_ids;  // ids that received a value
  std::set<CString> ie_names{"MessageID", "RecordTime", "Longitude", "Latitude", "RecordID"};
  std::set<CString> event_names;
  std::set<CString> l3_names;
  StateRecord state;  // newest structures of the stream

  std::int32_t cell_key = -1;  // of the cell whose position is cached
  Position cell;
  Position previous;  // last valid position of the travel chain
  double travel_step_m = 0.0;
  std::uint16_t timeslot0_iscp = kInvalidShort;  // set to the invalid value when IE 499 or IE 5412 is invalidated
  std::uint16_t primary_rscp = kInvalidShort;
  std::set<std::int32_t> crc_channels;  // downlink transport channels (1 to 32) whose CRC size is not 0

  STRUCT_SCANNERSCELLSTAT pccpch_run;  // pending
  STRUCT_SCANNERSCELLSTAT dwpch_run;
  std::vector<STRUCT_SCANNERSCELLSTAT> pccpch_runs;  // finished
  std::vector<STRUCT_SCANNERSCELLSTAT> dwpch_runs;
};

}  // namespace loom
