#pragma once

#include <cstdint>
#include <list>

#include "components/stream_manager.h"

namespace loom {

class LogFile final : public ILogfile {
 public:
  explicit LogFile(const CString& path) : path_(path) {}

  CString GetName() const override { return path_; }
  std::int32_t GetVersion() const override { return version_; }
  void SetVersion(std::int32_t version) override { version_ = version; }
  void SetImporting(std::int32_t flag) override { importing_ = flag; }
  double GetLongitudeMaximum() const override { return longitude_maximum_; }
  void SetLongitudeMaximum(double degrees) override { longitude_maximum_ = degrees; }
  double GetLongitudeMinimum() const override { return longitude_minimum_; }
  void SetLongitudeMinimum(double degrees) override { longitude_minimum_ = degrees; }
  double GetLatitudeMaximum() const override { return latitude_maximum_; }
  void SetLatitudeMaximum(double degrees) override { latitude_maximum_ = degrees; }
  double GetLatitudeMinimum() const override { return latitude_minimum_; }
  void SetLatitudeMinimum(double degrees) override { latitude_minimum_ = degrees; }
  std::int32_t GetRowTotal() const override { return row_total_; }
  void SetRowTotal(std::int32_t rows) override { row_total_ = rows; }
  void AddStream(IDataStream* stream) override { streams_.push_back(stream); }
  std::list<IDataStream*> GetStreams() const override { return streams_; }
  bool IsIndoor() const override { return outdoor_ == 0; }
  void SetOutdoor(std::int32_t outdoor) override { outdoor_ = outdoor; }
  void SetHandsetType(std::int32_t model_code) override { handset_type_ = model_code; }
  std::int32_t GetHandsetType() const override { return handset_type_; }

 private:
  CString path_;
  std::list<IDataStream*> streams_;
  double longitude_maximum_ = kInvalidDouble;
  double longitude_minimum_ = kInvalidDouble;
  double latitude_maximum_ = kInvalidDouble;
  double latitude_minimum_ = kInvalidDouble;
  std::int32_t version_ = 0;
  std::int32_t importing_ = 0;
  std::int32_t row_total_ = 0;
  std::int32_t outdoor_ = 1;
  std::int32_t handset_type_ = 0;
};

}  // namespace loom
