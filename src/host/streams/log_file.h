#pragma once

#include <cstdint>
#include <list>

#include "components/stream_manager.h"
#include "host/streams/bounded.h"

namespace loom {

class LogFile final : public Bounded<ILogfile> {
 public:
  explicit LogFile(const CString& path) : path_(path) {}

  CString GetName() const override { return path_; }
  std::int32_t GetVersion() const override { return version_; }
  void SetVersion(std::int32_t version) override { version_ = version; }
  void SetImporting(std::int32_t flag) override { importing_ = flag; }
  std::int32_t GetRowTotal() const override { return row_total_; }
  void SetRowTotal(std::int32_t rows) override { row_total_ = rows; }
  void AddStream(IDataStream* stream) override { streams_.push_back(stream); }
  std::list<IDataStream*> GetStreams() const override { return streams_; }
  bool IsIndoor() const override { return outdoor_ == 0; }
  void SetOutdoor(std::int32_t outdoor) override { outdoor_ = outdoor; }
  void SetHandsetType(std::int32_t model_code) override { model_code_ = model_code; }
  std::int32_t GetHandsetType() const override { return model_code_; }

 private:
  CString path_;
  std::list<IDataStream*> streams_;
  std::int32_t version_ = 0;
  std::int32_t importing_ = 0;
  std::int32_t row_total_ = 0;
  std::int32_t outdoor_ = 1;
  std::int32_t model_code_ = 0;
};

}  // namespace loom
