#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/logstore/log_header.h"
#include "platform/cstring.h"

namespace loom {

enum class SimulatedNetwork {
  kTdScdma,  // a dual-mode handset: it changes to GSM where TD-SCDMA ends and comes back
  kGsm,      // a handset that stays in GSM
  kLte,      // measurements (model code 14) and signalling (model code 15), taking turns over the handsets
};

struct SimulationOptions {
  double minutes = 10.0;
  std::vector<SimulatedNetwork> handsets{SimulatedNetwork::kTdScdma};  // device numbers from 1; 1 to 8 of them
  bool scanner = false;
  bool indoor = false;      // walked through a building instead of driven through a town
  double interval_s = 0.5;  // between two measurement records of a handset
  std::uint64_t seed = 1;
  LogHeader header{LogKind::kStore, 160, 1, {2024, 5, 17}};  // test type 2 goes with indoor
};

// "td,gsm,lte" and so on; throws Error for anything else.
std::vector<SimulatedNetwork> HandsetsFromText(std::string_view text);

// The cells of the simulated town, ready to be put into the network-element tables.
struct SimulatedCellRow {
  std::string_view table;  // "tbl_Cell", "tbl_Cell_GSM", "tbl_Cell_LTE"
  std::string json;        // one object: column names and values
};

struct SimulationResult {
  std::uint64_t records = 0;
  std::vector<SimulatedCellRow> cells;
};

// Writes the log of a simulated drive: measurements, layer-3 messages, events, file marks, data-service results and
// scanner records of a vehicle that drives, turns and stops among cells with path loss, shadowing and fading. The same
// options make the same bytes. From version 600 on (merged logs) the second half takes place on the next day.
// Throws FileError, and Error for options that make no sense.
SimulationResult SimulateLog(const CString& path, const SimulationOptions& options);

}  // namespace loom
