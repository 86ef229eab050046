#pragma once

#include <gtest/gtest.h>

#include "components/project.h"
#include "host/analysis/series.h"
#include "host/application.h"
#include "host/streams/stream_store.h"
#include "tests/support/places.h"

namespace loom::analysis {

inline constexpr std::int32_t kRscp = 499;       // int
inline constexpr std::int32_t kBestRscp = 500;   // short
inline constexpr std::int32_t kBler = 1066;      // float
inline constexpr std::int32_t kTdCellKey = 146;  // int
constexpr double kStart_s = 1'715'938'200.0;

// A row after another of one stream: Row(second, longitude, latitude).With(id, value)...
class AnalysisTest : public ::testing::Test {
 protected:
  class RowBuilder {
   public:
    explicit RowBuilder(CMemDataRow& row) : row_(row) {}
    RowBuilder& With(std::int32_t id, int value) { return Add(id, uniFieldValue(value)); }
    RowBuilder& With(std::int32_t id, float value) { return Add(id, uniFieldValue(value)); }
    RowBuilder& With(std::int32_t id, const char* text) { return Add(id, uniFieldValue::Text(row_.AddText(text))); }

   private:
    RowBuilder& Add(std::int32_t id, uniFieldValue value) {
      row_.QuickAddIE(id, value);
      return *this;
    }
    CMemDataRow& row_;
  };

  RowBuilder Row(double second) {
    CMemDataRow row;
    row.SetRecordTime(kStart_s + second);
    return RowBuilder(*StoreRow(rows_, static_cast<std::int32_t>(rows_.size()) + 1, row));
  }
  RowBuilder Row(double second, float longitude, float latitude) {
    return Row(second).With(2379, longitude).With(2380, latitude);
  }
  Samples Collect(std::vector<std::int32_t> elements) const { return CollectSamples(rows_, elements); }

  HostApplication host_{loom::testing::PlainHost()};
  RowMap& rows_ = *StreamStore::Instance().MakeStream("a", kStreamOutdoorHandset)->GetRows();
};

}  // namespace loom::analysis
