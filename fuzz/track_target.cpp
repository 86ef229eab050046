// Any bytes as a track: it is refused, or its fixes are places on earth and so is everything between them.
#include <cmath>
#include <cstdlib>

#include "fuzz/memory_file.h"
#include "fuzz/target.h"
#include "host/recordings/track.h"
#include "platform/error.h"
#include "platform/notes.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace loom;
  Notes notes;
  const NotesScope scope(notes);
  const MemoryFile file(data, size);
  recordings::Findings findings;
  try {
    const recordings::Track track = recordings::ReadTrack(file.Path(), findings);
    constexpr std::int64_t kStart_ns = 1'715'909'400'000'000'000;
    for (std::int64_t second = -10; second < 40; ++second) {
      const auto fix = track.At(kStart_ns + second * 500'000'000);
      if (fix && !(std::abs(fix->latitude) <= 90.0 && std::abs(fix->longitude) <= 180.0)) std::abort();
    }
  } catch (const FileError&) {
  }
  return 0;
}
