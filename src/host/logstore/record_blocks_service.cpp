#include "host/logstore/record_block_codec.h"
#include "host/logstore/record_fields_service.h"

namespace loom::records {

std::span<const BlockCodec> ServiceBlocks() { return kCodecs<ServiceBlock, DataTestFirst, DataTestSecond>; }

}  // namespace loom::records
