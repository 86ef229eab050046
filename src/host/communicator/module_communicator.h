#pragma once

#include <optional>
#include <unordered_map>

#include "components/intermediate/header_blocks.h"
#include "components/module_communicator.h"
#include "components/stream_info.h"

namespace loom {

class StreamStore;
class DataStream;

// Takes ready-made rows into the stream store. What the host's own blocks of a file do not tell (the file is another
// program's) comes from the names and rows: the device number from the "(n)" at the end of the device name, times and
// positions from the rows. Times and positions of a block hold once all rows that it announces have come; before they
// are unknown. Files are taken one after the other.
class ModuleCommunicator final : public IModuleCommunicator {
 public:
  explicit ModuleCommunicator(StreamStore& store) : store_(store) {}

  ILogfile* MakeLogfile(const CString& path) override;
  IDataStream* MakeStream(const CString& path, const CString& name, std::int32_t kind) override;
  IDataStream* MakeDualStream(const CString& path, const CString& name) override;
  void TakeFileHeader(ILogfile* logfile, std::span<const std::byte> file_header,
                      std::span<const std::byte> stream_table) override;
  void TakeStreamHeader(IDataStream* stream, std::span<const std::byte> header) override;
  void AddRows(IDataStream* stream, std::span<CMemDataRow* const> rows) override;
  void AddDualRows(IDataStream* stream, std::span<const CMergeDataRow_2M> rows) override;
  void LinkDualStream(IDataStream* dual, IDataStream* td_scdma, IDataStream* gsm) override;

 private:
  // Of a stream of the file that comes in.
  struct Arrival {
    ILogfile* logfile = nullptr;
    std::optional<StreamHeaderBlock> block = {};  // with the host's fields; none: the rows are measured
    ValueRange time_s = {};
    PositionBounds bounds = {};
  };

  IDataStream* Expect(IDataStream* stream, const CString& path);
  static void Measure(const CMemDataRow& row, Arrival& arrival);
  static void HandOverRanges(const Arrival& arrival, IDataStream& stream);
  static void HandOverMeasured(const Arrival& arrival, IDataStream& stream);
  void WidenLogBounds(const Arrival& arrival) const;

  StreamStore& store_;
  bool log_has_bounds_ = false;  // from the file's own blocks
  std::unordered_map<const IDataStream*, Arrival> arrivals_;
};

}  // namespace loom
