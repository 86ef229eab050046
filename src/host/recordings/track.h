#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "host/recordings/findings.h"
#include "platform/cstring.h"

namespace loom::recordings {

struct TrackFix {
  std::int64_t time_ns = 0;  // since 1970, UTC
  double latitude = 0.0;     // degrees
  double longitude = 0.0;
};

// Where a receiver was: fixes in the order of their times.
class Track {
 public:
  explicit Track(std::vector<TrackFix> fixes);

  bool IsEmpty() const { return fixes_.empty(); }
  std::int64_t FirstNs() const { return fixes_.front().time_ns; }  // of a track that is not empty
  std::int64_t LastNs() const { return fixes_.back().time_ns; }
  // Straight on between two fixes that are at most 60 s apart; nothing elsewhere.
  std::optional<TrackFix> At(std::int64_t time_ns) const;

 private:
  std::vector<TrackFix> fixes_;
};

// GPX or NMEA, told by content. Points without time or position are noted. Throws FileError when the file cannot be
// read or holds neither.
Track ReadTrack(const CString& path, Findings& findings);

// Of one file format each; `bytes` is the whole file.
std::vector<TrackFix> ReadGpx(const CString& path, std::string_view bytes, Findings& findings);
std::vector<TrackFix> ReadNmea(const CString& path, std::string_view bytes, Findings& findings);

// Nanoseconds since 1970 of "2025-07-13T16:52:47.250Z", with an offset such as "+08:00" in the place of Z. Nothing for
// any other text; a time without either is UTC.
std::optional<std::int64_t> TimeOfIsoText(std::string_view text);

}  // namespace loom::recordings
