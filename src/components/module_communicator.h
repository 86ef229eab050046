#pragma once

#include <cstddef>
#include <span>

#include "components/stream_manager.h"
#include "platform/cstring.h"

namespace loom {

// What the host takes from the module when rows arrive ready made. Numbers are positions in the interface. Of the rows
// handed over, those that live in the stream's own memory (the memory resource of its row map) are kept as they are;
// of any other a copy is kept, and the caller keeps its own.
class IModuleCommunicator {
 public:
  virtual ~IModuleCommunicator() = default;
  // 6. Null when the host has one for the path already.
  virtual ILogfile* MakeLogfile(const CString& path) = 0;
  // 7, 8. Null when the host knows no such kind of stream.
  virtual IDataStream* MakeStream(const CString& path, const CString& name, std::int32_t kind) = 0;
  virtual IDataStream* MakeDualStream(const CString& path, const CString& name) = 0;
  // 9, 10. Blocks of the file, as they stand there.
  virtual void TakeFileHeader(ILogfile* logfile, std::span<const std::byte> file_header,
                              std::span<const std::byte> stream_table) = 0;
  virtual void TakeStreamHeader(IDataStream* stream, std::span<const std::byte> header) = 0;
  // 11, 12. Rows behind those that the stream has.
  virtual void AddRows(IDataStream* stream, std::span<CMemDataRow* const> rows) = 0;
  virtual void AddDualRows(IDataStream* stream, std::span<const CMergeDataRow_2M> rows) = 0;
  // 14. Tells a dual-protocol stream its sources.
  virtual void LinkDualStream(IDataStream* dual, IDataStream* td_scdma, IDataStream* gsm) = 0;
};

}  // namespace loom
