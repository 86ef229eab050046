#include "host/recordings/recording_log.h"

#include <algorithm>

#include "host/logstore/record_codec.h"
#include "platform/clock.h"
#include "platform/time_units.h"

namespace loom::recordings {
namespace {

constexpr std::int64_t kMillisecond_ns = 1'000'000;
constexpr std::int64_t kDay_ns = kDay_s * kSecond_ns;
constexpr std::int64_t kEndOfDays_ns = 4'102'444'800 * kSecond_ns;  // 2100-01-01; a log begins in 1970 at the earliest
constexpr std::int64_t kWindow_ns = 60 * kSecond_ns;

std::int64_t DayStart(std::int64_t time_ns) {
  const std::int64_t rest = time_ns % kDay_ns;
  return time_ns - (rest < 0 ? rest + kDay_ns : rest);
}

}  // namespace

std::int32_t UtcOffsetOf(std::int64_t time_s) {
  return static_cast<std::int32_t>(ClockSecondsOf(LocalTimeOf(time_s)) - time_s);
}

RecordingLog::RecordingLog(Options options, const Track& track, Findings& findings)
    : options_(std::move(options)), track_(track), findings_(findings) {}

void RecordingLog::Begin(std::int64_t time_ns) {
  const std::int32_t offset_s = options_.utc_offset_s ? *options_.utc_offset_s : UtcOffsetOf(time_ns / kSecond_ns);
  offset_ns_ = offset_s * kSecond_ns;
  midnight_ns_ = DayStart(time_ns + offset_ns_);
}

void RecordingLog::Put(CTestdataBase& record, std::int64_t time_ns, const PacketPlace& place) {
  if ((options_.from_ns && time_ns < *options_.from_ns) || (options_.until_ns && time_ns >= *options_.until_ns))
    return findings_.Add(Finding::kOutsideWindow);
  const std::int64_t local_ns = time_ns + offset_ns_;
  if (local_ns < 0 || local_ns >= kEndOfDays_ns)
    return findings_.Add(Finding::kOutsideDay, *place.file, place.position_bytes, "");
  record.time.seconds = static_cast<double>(local_ns - midnight_ns_) / 1e9;
  record.time_stamp = static_cast<std::uint32_t>((local_ns - DayStart(local_ns)) / kMillisecond_ns);
  if (!track_.IsEmpty())
    if (const auto fix = track_.At(time_ns)) {
      record.latitude = fix->latitude;
      record.longitude = fix->longitude;
      has_positions_ = true;
    }
  first_ns_ = std::min(first_ns_, time_ns);
  last_ns_ = std::max(last_ns_, time_ns);
  if (time_ns < written_until_ns_) findings_.Add(Finding::kLateRecord, *place.file, place.position_bytes, "");
  const RecordEncoder encoder(record);
  encoder.Store(window_.Put(time_ns, encoder.Bytes()));
  if (counted_ == nullptr || counted_->first != record.kind) counted_ = &*records_.try_emplace(record.kind).first;
  ++counted_->second;
}

void RecordingLog::Open(std::int64_t local_ns) {
  LogHeader header;
  header.day = ClockTimeOf(local_ns / kSecond_ns).day;
  log_ = std::make_unique<LogWriter>(options_.path, header);
  shift_s_ = (midnight_ns_ - DayStart(local_ns)) / kSecond_ns;
}

void RecordingLog::Write(const RecordWindow::Record& record) {
  const std::int64_t local_ns = record.time_ns + offset_ns_;
  if (!log_) Open(local_ns);
  written_until_ns_ = std::max(written_until_ns_, record.time_ns);
  const double time_s = static_cast<double>(local_ns - midnight_ns_) / 1e9 + static_cast<double>(shift_s_);
  if (time_s < 0.0 || time_s >= kEndOfTimes_s) return findings_.Add(Finding::kOutsideDay);
  if (shift_s_ != 0) ShiftRecordTime(record.payload, 0, static_cast<double>(shift_s_));
  NumberRecord(record.payload, 0, next_id_++);
  log_->Append(record.payload, time_s);
}

void RecordingLog::WriteUntil(std::int64_t until_ns) {
  while (const auto record = window_.Take(until_ns)) Write(*record);
}

void RecordingLog::Advance(std::int64_t time_ns) { WriteUntil(time_ns - kWindow_ns); }

bool RecordingLog::Finish() {
  WriteUntil(INT64_MAX);
  if (!log_) return false;
  log_->Finish();
  return true;
}

}  // namespace loom::recordings
