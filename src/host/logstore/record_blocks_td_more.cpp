#include "host/logstore/record_block_codec.h"
#include "host/logstore/record_fields_td_more.h"

namespace loom::records {

std::span<const BlockCodec> FurtherTdBlocks() {
  return kCodecs<TdBlock252, TdCellIdentities, TdBlock288, TdBlock292, TdBlock296, TdSamples, TdBlock304, TdBlock308,
                 TdBlock312, TdBlock316, TdBlock320, TdBlock324, TdBlock328, TdBlock332, TdSystemInfo, TdBlock344,
                 TdBlock348, TdBlockTable, TdCellList>;
}

}  // namespace loom::records
