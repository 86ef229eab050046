#pragma once

#include <span>
#include <vector>

#include "components/stream_manager.h"
#include "host/sinks/layer.h"
#include "host/streams/row_cursor.h"

namespace loom {

// The rows of a stream, each at the position where it was recorded. Columns are the record time and either the
// elements named (Error for one that the catalogue lacks) or every element that a row has but for the position.
class StreamLayer final : public ILayerSource {
 public:
  StreamLayer(IDataStream& stream, const CString& source, std::span<const CString> elements);

  const LayerSchema& Schema() const override { return schema_; }
  LayerSchema& EditSchema() { return schema_; }
  void GoToStart() override;
  bool Next(RowBlock& block) override;

 private:
  void AddRecordTime();
  void AddElement(std::int32_t ie_id);
  void Take(RowBlock& block, std::size_t at);
  GeoPoint PointOf(std::int64_t row) const;

  RowCursor cursor_;
  LayerSchema schema_;
  std::vector<std::uint32_t> columns_;  // of the cursor, as in the schema
  std::uint32_t longitude_;
  std::uint32_t latitude_;
  std::int64_t next_row_ = 1;
};

}  // namespace loom
