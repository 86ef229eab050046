#include "host/logstore/record_block_codec.h"

namespace loom::records {

std::span<const BlockCodec> FirstBlocks() { return kCodecsOfTags<0, kSecondShareTag>; }

}  // namespace loom::records
