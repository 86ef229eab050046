#include "host/logstore/record_block_codec.h"

namespace loom::records {

std::span<const BlockCodec> ThirdBlocks() { return kCodecsOfTags<kThirdShareTag, kFourthShareTag>; }

}  // namespace loom::records
