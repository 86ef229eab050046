#pragma once

#include "components/records/block_table.h"
#include "components/records/blocks_gsm.h"
#include "components/records/blocks_td.h"

// setinfo of the structures that a stream keeps: takes over the record's block, true when the record carries one;
// otherwise the structure stays as it is. Lists and texts go on belonging to the record.
namespace loom {
namespace detail {

template <class Block>
bool TakeOver(const CTestdataBase& record, Block& block) {
  const Block* source = BlockOf<Block>(record);
  if (source) block = *source;
  return source != nullptr;
}

}  // namespace detail

inline bool CIE_SCell_Para::setinfo(const CTestdataBase& record) { return detail::TakeOver(record, *this); }
inline bool CIE_SCell_Meas::setinfo(const CTestdataBase& record) { return detail::TakeOver(record, *this); }
inline bool CIE_NCell_Meas::setinfo(const CTestdataBase& record) { return detail::TakeOver(record, *this); }
inline bool CIE_Channel_Para::setinfo(const CTestdataBase& record) { return detail::TakeOver(record, *this); }
inline bool CIE_Meas_Res::setinfo(const CTestdataBase& record) { return detail::TakeOver(record, *this); }
inline bool CIE_Layer12_Config_Para::setinfo(const CTestdataBase& record) { return detail::TakeOver(record, *this); }

inline bool CIE_GSM_SCell_Sys_Info::setinfo(const CTestdataBase& record) { return detail::TakeOver(record, *this); }
inline bool CIE_GSM_SCell_Resel_Sys_Info::setinfo(const CTestdataBase& record) {
  return detail::TakeOver(record, *this);
}
inline bool CIE_GSM_SCell_Radio_Info::setinfo(const CTestdataBase& record) { return detail::TakeOver(record, *this); }
inline bool CIE_GSM_SCell_DSC::setinfo(const CTestdataBase& record) { return detail::TakeOver(record, *this); }
inline bool CIE_GSM_NCell_Info::setinfo(const CTestdataBase& record) { return detail::TakeOver(record, *this); }
inline bool CIE_GSM_MS_Muti_Slot_Class::setinfo(const CTestdataBase& record) { return detail::TakeOver(record, *this); }
inline bool CIE_GSM_Ded_CH_Info::setinfo(const CTestdataBase& record) { return detail::TakeOver(record, *this); }
inline bool CIE_GSM_Ded_Meas_Info::setinfo(const CTestdataBase& record) { return detail::TakeOver(record, *this); }
inline bool CIE_GSM_SCell_Ch_Radio_Link_Counter::setinfo(const CTestdataBase& record) {
  return detail::TakeOver(record, *this);
}
inline bool CIE_GSM_MS_Class::setinfo(const CTestdataBase& record) { return detail::TakeOver(record, *this); }
inline bool CIE_GSM_RAT_Indicate::setinfo(const CTestdataBase& record) { return detail::TakeOver(record, *this); }
inline bool CIE_GSM_LLC_GPRS_Qos_Info::setinfo(const CTestdataBase& record) { return detail::TakeOver(record, *this); }
inline bool CIE_GSM_HO_Num::setinfo(const CTestdataBase& record) { return detail::TakeOver(record, *this); }
inline bool CIE_GSM_RLC_GPRS_Qos_Info::setinfo(const CTestdataBase& record) { return detail::TakeOver(record, *this); }

}  // namespace loom
