#include "host/logstore/record_block_codec.h"
#include "host/logstore/record_fields_lte.h"

namespace loom::records {

std::span<const BlockCodec> LteBlocks() { return kCodecs<LteMeasBlock, LteSignalBlock>; }

}  // namespace loom::records
