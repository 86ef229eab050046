#include "host/recordings/record_window.h"

#include <algorithm>
#include <utility>

namespace loom::recordings {

RecordWindow::Entry RecordWindow::Store(std::int64_t time_ns, std::size_t payload_bytes) {
  if (chunks_.empty() || chunks_.back().size - chunks_.back().used < payload_bytes) {
    Chunk chunk;
    chunk.size = std::max(kChunkBytes, payload_bytes);
    const bool uses_spare = spare_ && chunk.size == kChunkBytes;
    chunk.bytes = uses_spare ? std::move(spare_) : std::make_unique_for_overwrite<std::byte[]>(chunk.size);
    held_bytes_ += chunk.size;
    chunks_.push_back(std::move(chunk));
  }
  Chunk& chunk = chunks_.back();
  const Entry entry{time_ns, next_number_++, first_chunk_ + chunks_.size() - 1, static_cast<std::uint32_t>(chunk.used),
                    static_cast<std::uint32_t>(payload_bytes)};
  chunk.used += payload_bytes;
  ++chunk.entries;
  return entry;
}

// A chunk goes once all of its records went; those behind the front one wait for it.
void RecordWindow::Release(const Entry& entry) {
  Chunk& chunk = chunks_[entry.chunk - first_chunk_];
  if (--chunk.entries > 0 || entry.chunk == first_chunk_ + chunks_.size() - 1) return;
  held_bytes_ -= chunk.size;
  if (chunk.size == kChunkBytes) spare_ = std::move(chunk.bytes);
  chunk.bytes.reset();
  while (chunks_.size() > 1 && !chunks_.front().bytes) {
    chunks_.pop_front();
    ++first_chunk_;
  }
}

std::byte* RecordWindow::Put(std::int64_t time_ns, std::size_t payload_bytes) {
  if (given_) Release(*std::exchange(given_, std::nullopt));
  const Entry entry = Store(time_ns, payload_bytes);
  if (!HasRun() || run_.back().time_ns <= time_ns)
    run_.push_back(entry);
  else
    strays_.push(entry);
  return chunks_.back().bytes.get() + entry.offset;
}

bool RecordWindow::TakesFromRun() const { return strays_.empty() || (HasRun() && strays_.top() > run_[run_begin_]); }

void RecordWindow::PopRun() {
  if (++run_begin_ < run_.size() / 2) return;
  run_.erase(run_.begin(), run_.begin() + static_cast<std::ptrdiff_t>(run_begin_));
  run_begin_ = 0;
}

std::optional<RecordWindow::Record> RecordWindow::Take(std::int64_t until_ns) {
  if (given_) Release(*std::exchange(given_, std::nullopt));
  if (!HasRun() && strays_.empty()) return std::nullopt;
  const bool is_from_run = TakesFromRun();
  const Entry entry = is_from_run ? run_[run_begin_] : strays_.top();
  if (entry.time_ns > until_ns && held_bytes_ <= kMostBytes) return std::nullopt;
  if (is_from_run)
    PopRun();
  else
    strays_.pop();
  given_ = entry;
  Chunk& chunk = chunks_[entry.chunk - first_chunk_];
  return Record{entry.time_ns, {chunk.bytes.get() + entry.offset, entry.bytes}};
}

}  // namespace loom::recordings
