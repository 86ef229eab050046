#include "host/logstore/record_block_codec.h"
#include "host/logstore/record_fields_td.h"

namespace loom::records {

std::span<const BlockCodec> TdBlocks() {
  return kCodecs<CIE_SCell_Para, CIE_SCell_Meas, CIE_NCell_Meas, CIE_Channel_Para, CIE_Meas_Res,
                 CIE_Layer12_Config_Para>;
}

}  // namespace loom::records
