#include "host/logstore/record_block_codec.h"
#include "host/logstore/record_fields_scan.h"

namespace loom::records {

std::span<const BlockCodec> ScanBlocks() { return kCodecs<ScanBlock, LteScanResult>; }

}  // namespace loom::records
