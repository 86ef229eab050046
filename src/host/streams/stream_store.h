#pragma once

#include <map>
#include <memory>
#include <unordered_map>

#include "components/stream_manager.h"
#include "host/streams/data_stream.h"
#include "host/streams/log_file.h"

namespace loom {

// The stream manager. A stream belongs to it from the moment it is made; it goes with the log file object that it was
// added to, a merged stream at the latest with its sources.
class StreamStore final : public IStreamManager {
 public:
  static StreamStore& Instance();

  IDataStream* MakeStream(const CString& name, std::int32_t stream_type) override;
  void DropLogfile(const CString& path) override;
  ILogfile* MakeLogfile(const CString& path) override;  // throws std::logic_error when there is one already
  ILogfile* FindLogfile(const CString& path) override;
  void GetLogfileNames(std::map<CString, ILogfile*>& names) override;
  IDataStream* MergeTwoProtocolStream_MsgEvent(IDataStream* td_stream, IDataStream* gsm_stream) override;

  void DropEverything();

 private:
  StreamStore() = default;
  void DropMergedStreamsOfDropped();

  std::map<CString, std::unique_ptr<LogFile>> logs_;  // by path
  std::unordered_map<const IDataStream*, std::unique_ptr<DataStream>> streams_;
};

}  // namespace loom
