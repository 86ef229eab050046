#include "host/streams/stream_store.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "host/streams/merge_rows.h"
#include "platform/encoding.h"

namespace loom {
namespace {

// Uplink streams come from text files; the others from logs as well.
constexpr std::array<std::int32_t, 4> kKnownStreamTypes = {kStreamOutdoorHandset, kStreamIndoorHandset, kStreamUplink,
                                                           kStreamScanner};

}  // namespace

IStreamManager* CStreamManagerCreator::CreateStreamManager() { return &StreamStore::Instance(); }

StreamStore& StreamStore::Instance() {
  static StreamStore store;
  return store;
}

IDataStream* StreamStore::MakeStream(const CString& name, std::int32_t stream_type) {
  if (std::find(kKnownStreamTypes.begin(), kKnownStreamTypes.end(), stream_type) == kKnownStreamTypes.end())
    return nullptr;
  auto stream = std::make_unique<DataStream>(name, stream_type);
  IDataStream* const made = stream.get();
  streams_.emplace(made, std::move(stream));
  return made;
}

void StreamStore::DropLogfile(const CString& path) {
  const auto log = logs_.find(path);
  if (log == logs_.end()) return;
  for (const IDataStream* stream : log->second->GetStreams()) streams_.erase(stream);
  logs_.erase(log);
  DropMergedStreamsOfDropped();
}

void StreamStore::DropMergedStreamsOfDropped() {
  std::erase_if(streams_, [this](const auto& entry) {
    const auto& sources = entry.second->Sources();
    return std::any_of(sources.begin(), sources.end(),
                       [this](const IDataStream* source) { return !streams_.contains(source); });
  });
}

ILogfile* StreamStore::MakeLogfile(const CString& path) {
  const auto [log, is_new] = logs_.try_emplace(path);
  if (!is_new) throw std::logic_error("a log file object exists already for " + GbkToUtf8(path));
  log->second = std::make_unique<LogFile>(path);
  return log->second.get();
}

ILogfile* StreamStore::FindLogfile(const CString& path) {
  const auto log = logs_.find(path);
  return log != logs_.end() ? log->second.get() : nullptr;
}

void StreamStore::GetLogfileNames(std::map<CString, ILogfile*>& names) {
  for (const auto& [path, log] : logs_) names.insert_or_assign(path, log.get());
}

IDataStream* StreamStore::MergeTwoProtocolStream_MsgEvent(IDataStream* td_stream, IDataStream* gsm_stream) {
  if (td_stream == nullptr || gsm_stream == nullptr) return nullptr;
  auto merged = std::make_unique<DataStream>(td_stream->GetName(), td_stream->GetStreamType());
  MergeStreams(*td_stream, *gsm_stream, *merged);
  IDataStream* const made = merged.get();
  streams_.emplace(made, std::move(merged));
  return made;
}

void StreamStore::DropEverything() {
  logs_.clear();
  streams_.clear();
}

}  // namespace loom
