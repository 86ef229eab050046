#include "host/logstore/record_block_codec.h"

namespace loom::records {

std::span<const BlockCodec> SecondBlocks() { return kCodecsOfTags<kSecondShareTag, kThirdShareTag>; }

}  // namespace loom::records
