#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "components/records/testdata.h"
#include "host/logstore/log_writer.h"
#include "host/simulation/route.h"

namespace loom::simulation {

// When and where a record is made.
struct Moment {
  double time_s = 0.0;  // of the log's day
  GeoPoint position;
  bool has_position = true;
};

// Numbers the records of a drive, gives them time and place and writes them.
class RecordSink {
 public:
  explicit RecordSink(LogWriter& log, std::int32_t version) : log_(log), version_(version) {}

  // A record of a kind and device whose header is filled; the caller adds what it has to say and puts it.
  CTestdataBase Start(std::int32_t kind, std::int8_t device, const Moment& moment) const;
  void Put(CTestdataBase& record);

 private:
  LogWriter& log_;
  std::int32_t version_;
  std::int32_t next_id_ = 1;
};

}  // namespace loom::simulation
