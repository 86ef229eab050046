#include "host/logstore/record_block_codec.h"

namespace loom::records {

std::span<const BlockCodec> FourthBlocks() { return kCodecsOfTags<kFourthShareTag, kEndOfTags>; }

}  // namespace loom::records
