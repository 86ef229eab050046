#pragma once

#include <cstring>
#include <memory>
#include <memory_resource>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "components/records/block_table.h"
#include "components/records/blocks.h"
#include "components/records/testdata.h"
#include "host/logstore/record_codec.h"
#include "platform/cstring.h"

namespace loom {

// A record that keeps everything it refers to; copies share it.
class TestRecord : public CTestdataBase {
 public:
  TestRecord(const CTestdataBase& record, std::shared_ptr<std::pmr::monotonic_buffer_resource> storage)
      : CTestdataBase(record), storage_(std::move(storage)) {}

 private:
  std::shared_ptr<std::pmr::monotonic_buffer_resource> storage_;
};

// Starts from a valid record of its kind and changes one thing per call:
//   HandsetRecord().Model(kModelRv2210).Device(3).Mode(kNetworkModeGsm).At(36000.5).Position(116.3, 39.9)
//       .With(CIE_NCell_Meas{.count = 1, .neighbours = std::array{TdNeighbour{.uarfcn = 10054}}})
//       .Build()
// Texts, lists and blocks that are handed in are copied.
class RecordBuilder {
 public:
  explicit RecordBuilder(std::int32_t kind) {
    record_.arena = storage_.get();
    record_.kind = kind;
    record_.device_number = 1;
    Id(1).Mode(kNetworkModeTdScdma).At(36000.0).Position(116.3, 39.9);
  }

  RecordBuilder& Id(std::int32_t id) { return record_.record_id = id, *this; }
  RecordBuilder& Model(std::int32_t model_code) { return record_.model_code = model_code, *this; }
  RecordBuilder& Device(int number) { return record_.device_number = static_cast<std::int8_t>(number), *this; }
  RecordBuilder& Mode(std::int32_t mode) { return record_.network_mode = mode, *this; }
  RecordBuilder& ModeChanged() { return record_.network_mode_changed = 1, *this; }
  RecordBuilder& At(double time_s) { return record_.time.seconds = time_s, *this; }
  RecordBuilder& Position(double longitude, double latitude) {
    record_.longitude = longitude;
    record_.latitude = latitude;
    return *this;
  }
  RecordBuilder& NoPosition() { return Position(-255.0, -255.0); }
  RecordBuilder& Event(std::int32_t event_id) { return record_.event_id = event_id, *this; }
  RecordBuilder& Text(const CString& text) { return record_.text = Keep(text), *this; }
  RecordBuilder& Message(std::int32_t message_id, const CString& layer3_name) {
    record_.message_id = message_id;
    record_.layer3_name = Keep(layer3_name);
    return *this;
  }
  RecordBuilder& MessageText(const CString& text) { return record_.message_text = Keep(text), *this; }
  // What the decoder renders the message into; lines end with '\n'.
  RecordBuilder& Lines(const CString& lines) { return record_.layer3_lines = Keep(lines), *this; }
  RecordBuilder& Channel(int channel) { return record_.channel = static_cast<std::int8_t>(channel), *this; }
  RecordBuilder& Direction(int direction) { return record_.direction = static_cast<std::int8_t>(direction), *this; }
  // Raw bytes with the length that fits them.
  RecordBuilder& RawBytes(std::string_view bytes) {
    record_.raw_bytes = std::as_bytes(std::span(Keep(bytes)));
    record_.raw_length = static_cast<std::int32_t>(bytes.size());
    return *this;
  }
  RecordBuilder& RawMessage(std::string_view bytes) {
    record_.raw_message = AUTOTEST::CAutoBuffer(std::as_bytes(std::span(Keep(bytes))));
    return *this;
  }
  RecordBuilder& FailsToRead() { return record_.fails_to_read = true, *this; }
  RecordBuilder& FailsToDecode() { return record_.fails_to_decode = true, *this; }

  // Any other member of the header: Set(&CTestdataBase::ie7, 5).
  template <class Member>
  RecordBuilder& Set(Member CTestdataBase::*member, std::type_identity_t<Member> value) {
    return record_.*member = value, *this;
  }

  template <class Block>
  RecordBuilder& With(const Block& block) {
    CTestdataBase lone(false, 0);
    BlockOf<Block>(lone) = &block;
    CTestdataBase copy(false, 0);
    DecodeRecord(KeepBytes(EncodeRecord(lone)), 0, copy, *storage_);
    BlockOf<Block>(record_) = BlockOf<Block>(copy);
    return *this;
  }

  TestRecord Build() const { return TestRecord(record_, storage_); }
  operator TestRecord() const { return Build(); }
  // The payload that the record has in a log.
  std::vector<std::byte> Encode() const { return EncodeRecord(record_); }

 private:
  std::span<const std::byte> KeepBytes(std::span<const std::byte> bytes) {
    auto* kept = static_cast<std::byte*>(storage_->allocate(bytes.size() + 1, 1));
    if (!bytes.empty()) std::memcpy(kept, bytes.data(), bytes.size());
    return {kept, bytes.size()};
  }
  RecordText Keep(std::string_view text) {
    if (text.empty()) return {};
    return {reinterpret_cast<const char*>(KeepBytes(std::as_bytes(std::span(text))).data()), text.size()};
  }

  std::shared_ptr<std::pmr::monotonic_buffer_resource> storage_ =
      std::make_shared<std::pmr::monotonic_buffer_resource>();
  CTestdataBase record_{false, 0};
};

inline RecordBuilder HandsetRecord() { return RecordBuilder(kRecordHandset).Model(kModelRv2230); }
inline RecordBuilder GsmRecord() { return HandsetRecord().Mode(kNetworkModeGsm); }
// Model kModelTn300Lte or kModelH500Lte.
inline RecordBuilder LteRecord(std::int32_t model_code) { return RecordBuilder(kRecordHandset).Model(model_code); }
inline RecordBuilder EventRecord(std::int32_t event_id) { return RecordBuilder(kRecordEvent).Event(event_id); }
inline RecordBuilder FileMarkRecord(std::string_view text) {
  return RecordBuilder(kRecordFileMark).Device(0).RawMessage(text);
}
inline RecordBuilder HeaderOnlyRecord() { return RecordBuilder(kRecordHeaderOnly).Mode(kNetworkModeGsm); }
inline RecordBuilder ScannerRecord(std::int8_t scan_type) {
  return RecordBuilder(kRecordScanner).With(ScanBlock{.scan_type = scan_type});
}
inline RecordBuilder ServiceRecord(std::int16_t service_kind) {
  return RecordBuilder(kRecordDataService).With(ServiceBlock{.service_kind = service_kind});
}

}  // namespace loom
