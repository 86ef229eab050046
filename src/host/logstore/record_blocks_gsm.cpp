#include "host/logstore/record_block_codec.h"
#include "host/logstore/record_fields_gsm.h"

namespace loom::records {

std::span<const BlockCodec> GsmBlocks() {
  return kCodecs<CIE_GSM_SCell_Sys_Info, CIE_GSM_SCell_Resel_Sys_Info, CIE_GSM_SCell_Radio_Info, CIE_GSM_SCell_DSC,
                 CIE_GSM_NCell_Info, CIE_GSM_MS_Muti_Slot_Class, CIE_GSM_Ded_CH_Info, CIE_GSM_Ded_Meas_Info,
                 CIE_GSM_SCell_Ch_Radio_Link_Counter, CIE_GSM_MS_Class, CIE_GSM_RAT_Indicate, CIE_GSM_LLC_GPRS_Qos_Info,
                 CIE_GSM_HO_Num, CIE_GSM_RLC_GPRS_Qos_Info, CIE_GSM_2230E_Simple_Info>;
}

}  // namespace loom::records
