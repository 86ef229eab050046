#pragma once

#include <cstddef>
#include <cstdint>

#include "components/records/blocks_gsm.h"
#include "components/records/blocks_td.h"
#include "conversion/field_table.h"

// Tables of the GSM blocks, by their position in the record.
namespace loom {

// Values that are present in a range only: -1 is absent.
constexpr std::int32_t BelowEight(std::int32_t value) { return value < 8 ? value : -1; }
constexpr std::int32_t FromOneTo31(std::int32_t value) { return value >= 1 && value <= 31 ? value : -1; }
// Position, from 1, of the lowest of the four low bits that is set.
constexpr std::int32_t LowestBit(std::int32_t bits) {
  for (std::int32_t position = 1; position <= 4; ++position) {
    if ((bits >> (position - 1) & 1) != 0) return position;
  }
  return -1;
}
constexpr std::int32_t KiloUpTo2048(std::int32_t value) { return value / 1000 > 2048 ? kInvalidInt : value / 1000; }
constexpr std::int32_t UnsignedKilo(std::int32_t word) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(word) / 1000);
}

inline constexpr Markers kInRange{.base = Markers::Base::kOfResult};
inline constexpr Rule kUnmarked = kAsIs.Marked(kNoMarkers);
inline constexpr Rule kUnlessMinusOne = kAsIs.Marked({.absent = -1});
constexpr Rule UnlessEqual(std::int64_t absent) { return kAsIs.Marked(OnlyAbsent(absent)); }

// Which of three values, C2, C31 or C32 (3GPP TS 45.008), a cell comes with.
enum class ReselectionForm : std::uint8_t { kNone, kC2, kC31, kC32 };
constexpr ReselectionForm FormOf(std::uint8_t form) {
  if (form == 1) return ReselectionForm::kC2;
  if (form == 2 || form == 3) return ReselectionForm::kC31;
  return form >= 4 && form <= 7 ? ReselectionForm::kC32 : ReselectionForm::kNone;
}

// clang-format off

// 356
inline constexpr auto kGsmServingCellFields = FieldTable<CIE_GSM_SCell_Sys_Info>({
    Own<&CIE_GSM_SCell_Sys_Info::ie31706>(),
    Own<&CIE_GSM_SCell_Sys_Info::ie31701>(),
    Own<&CIE_GSM_SCell_Sys_Info::ie31705>(),
    {&CIE_GSM_SCell_Sys_Info::rx_lev,  IE{31703}, Shifted(-110)},
    Own<&CIE_GSM_SCell_Sys_Info::ie31719>(),
    Own<&CIE_GSM_SCell_Sys_Info::ie31712>(),
    Own<&CIE_GSM_SCell_Sys_Info::ie32265>(kOptional),
});

// 360
inline constexpr auto kGsmReselectionFields = FieldTable<CIE_GSM_SCell_Resel_Sys_Info>({
    Own<&CIE_GSM_SCell_Resel_Sys_Info::ie31717>(kUnmarked),
});

// 364; the last three by the form of the block
inline constexpr auto kGsmRadioFields = FieldTable<CIE_GSM_SCell_Radio_Info>({
    Own<&CIE_GSM_SCell_Radio_Info::ie32078>(),
    Own<&CIE_GSM_SCell_Radio_Info::ie31707>(),
    Own<&CIE_GSM_SCell_Radio_Info::ie32074>(kOptional),
});
inline constexpr auto kGsmC2Fields = FieldTable<CIE_GSM_SCell_Radio_Info>({
    Own<&CIE_GSM_SCell_Radio_Info::ie32075>(kOptional),
});
inline constexpr auto kGsmC31Fields = FieldTable<CIE_GSM_SCell_Radio_Info>({
    Own<&CIE_GSM_SCell_Radio_Info::ie32244>(kOptional),
});
inline constexpr auto kGsmC32Fields = FieldTable<CIE_GSM_SCell_Radio_Info>({
    Own<&CIE_GSM_SCell_Radio_Info::ie32245>(kOptional),
});

// 368
inline constexpr auto kGsmDscFields = FieldTable<CIE_GSM_SCell_DSC>({
    Own<&CIE_GSM_SCell_DSC::ie31736>(kOptional),
});

// 372: entry i becomes IE id + i; the last three by the form of the entry
inline constexpr std::size_t kGsmNeighbours = 6;
inline constexpr auto kGsmNeighbourFields = FieldTable<GsmNeighbour>({
    {&GsmNeighbour::bcch,              IE{32091}, SelectedBy(SelectionName::kNborBcch)},
    {&GsmNeighbour::bsic,              IE{32097}, SelectedBy(SelectionName::kNborBsic)},
    {&GsmNeighbour::ci,                IE{32085}, SelectedBy(SelectionName::kGsmNcCi)},
    {&GsmNeighbour::lac,               IE{32079}, SelectedBy(SelectionName::kGsmNcLac)},
    {&GsmNeighbour::rx_lev,            IE{32103}, SelectedBy(SelectionName::kNborRxLev)},
    {&GsmNeighbour::c1,                IE{32109}, OptionalBy(SelectionName::kNborC1)},
    {&GsmNeighbour::rx_lev_access_min, IE{32258}, OptionalBy(SelectionName::kNborRxLevAccessMin)},
});
inline constexpr auto kGsmNeighbourC2Fields = FieldTable<GsmNeighbour>({
    {&GsmNeighbour::c2,  IE{32115}, OptionalBy(SelectionName::kNborC2)},
});
inline constexpr auto kGsmNeighbourC31Fields = FieldTable<GsmNeighbour>({
    {&GsmNeighbour::c31, IE{32151}, OptionalBy(SelectionName::kNborC31)},
});
inline constexpr auto kGsmNeighbourC32Fields = FieldTable<GsmNeighbour>({
    {&GsmNeighbour::c32, IE{32157}, OptionalBy(SelectionName::kNborC32)},
});
inline constexpr auto kGsmNeighbourListFields = FieldTable<CIE_GSM_NCell_Info>({
    Own<&CIE_GSM_NCell_Info::ie31721>(UnlessEqual(0x7F)),
    Own<&CIE_GSM_NCell_Info::ie31722>(),
});
inline constexpr auto kGsmOtherListFields = FieldTable<CIE_GSM_NCell_Info>({
    Own<&CIE_GSM_NCell_Info::ie31720>(),
});

// 376
inline constexpr auto kGsmMultislotFields = FieldTable<CIE_GSM_MS_Muti_Slot_Class>({
    Own<&CIE_GSM_MS_Muti_Slot_Class::ie32202>(),
});

// 380
inline constexpr auto kGsmDedicatedChannelFields = FieldTable<CIE_GSM_Ded_CH_Info>({
    {&CIE_GSM_Ded_CH_Info::channel_bits, IE{31723}, By(LowestBit).Marked(kInRange)},
    Own<&CIE_GSM_Ded_CH_Info::ie31724>(kUnlessMinusOne),
    Own<&CIE_GSM_Ded_CH_Info::ie31730>(kUnlessMinusOne),
    Own<&CIE_GSM_Ded_CH_Info::ie31731>(kUnlessMinusOne),
});
inline constexpr auto kGsmSingleFrequencyFields = FieldTable<GsmDedicatedFrequencies>({
    Own<&GsmDedicatedFrequencies::ie31727>(kUnlessMinusOne, kOptional),
});

// 384
inline constexpr auto kGsmDedicatedMeasurementFields = FieldTable<CIE_GSM_Ded_Meas_Info>({
    Own<&CIE_GSM_Ded_Meas_Info::ie31966>(By(BelowEight).Marked(kInRange)),
    Own<&CIE_GSM_Ded_Meas_Info::ie32038>(By(BelowEight).Marked(kInRange)),
    Own<&CIE_GSM_Ded_Meas_Info::ie31715>(UnlessEqual(0xFF)),
    Own<&CIE_GSM_Ded_Meas_Info::ie32076>(By(FromOneTo31).Marked(kInRange)),
    Own<&CIE_GSM_Ded_Meas_Info::ie31930>(kUnlessMinusOne),
    Own<&CIE_GSM_Ded_Meas_Info::ie32002>(kUnlessMinusOne),
    Own<&CIE_GSM_Ded_Meas_Info::ie32077>(kUnlessMinusOne),
    Own<&CIE_GSM_Ded_Meas_Info::ie32201>(kUnlessMinusOne),
});

// 388
inline constexpr auto kGsmRadioLinkFields = FieldTable<CIE_GSM_SCell_Ch_Radio_Link_Counter>({
    Own<&CIE_GSM_SCell_Ch_Radio_Link_Counter::ie31713>(),
    Own<&CIE_GSM_SCell_Ch_Radio_Link_Counter::ie31735>(),
});

// 396
inline constexpr auto kGsmRatFields = FieldTable<CIE_GSM_RAT_Indicate>({
    {&CIE_GSM_RAT_Indicate::rat, IE{31718}},
});

// 400
inline constexpr auto kGsmLlcFields = FieldTable<CIE_GSM_LLC_GPRS_Qos_Info>({
    Own<&CIE_GSM_LLC_GPRS_Qos_Info::ie32195>(By(KiloUpTo2048).Marked({.absent = -1})),
    Own<&CIE_GSM_LLC_GPRS_Qos_Info::ie32196>(By(KiloUpTo2048).Marked({.absent = -1})),
    Own<&CIE_GSM_LLC_GPRS_Qos_Info::ie32199>(kUnlessMinusOne),
});

// 408
inline constexpr auto kGsmRlcFields = FieldTable<CIE_GSM_RLC_GPRS_Qos_Info>({
    Own<&CIE_GSM_RLC_GPRS_Qos_Info::ie32193>(By(UnsignedKilo)),
    Own<&CIE_GSM_RLC_GPRS_Qos_Info::ie32194>(By(UnsignedKilo)),
    Own<&CIE_GSM_RLC_GPRS_Qos_Info::ie32189>(),
});

// 220, with the markers of TD-SCDMA blocks
inline constexpr auto kGsmTdServingCellFields = FieldTable<CIE_SCell_Para>({
    {&CIE_SCell_Para::ie142, IE{31697}},
    {&CIE_SCell_Para::ie143, IE{31698}},
    {&CIE_SCell_Para::ie144, IE{31699}},
    {&CIE_SCell_Para::lac,   IE{31700}},
    {&CIE_SCell_Para::ie158, IE{31702}},
    {&CIE_SCell_Para::ie149, IE{32168}, kOptional},
});

// 228: entry i becomes IE id + i
inline constexpr std::size_t kGsmTdNeighbours = 6;
inline constexpr auto kGsmTdNeighbourFields = FieldTable<TdNeighbour>({
    Own<&TdNeighbour::ie32246>(kAsIs.Marked({.base = Markers::Base::kNone, .invalid = -999})),
    Own<&TdNeighbour::ie32252>(kAsIs.Marked({.base = Markers::Base::kNone, .invalid = -999})),
});

// 412
inline constexpr std::int32_t kGsmSimpleInfoText = 32170;
inline constexpr auto kGsmSimpleInfoFields = FieldTable<CIE_GSM_2230E_Simple_Info>({
    Own<&CIE_GSM_2230E_Simple_Info::ie32270>(kOptional),
    Own<&CIE_GSM_2230E_Simple_Info::ie32271>(kOptional),
    Own<&CIE_GSM_2230E_Simple_Info::ie32272>(kOptional),
    Own<&CIE_GSM_2230E_Simple_Info::ie32273>(kOptional),
    Own<&CIE_GSM_2230E_Simple_Info::ie32203>(kOptional),
    Own<&CIE_GSM_2230E_Simple_Info::ie32204>(kOptional),
    Own<&CIE_GSM_2230E_Simple_Info::ie32215>(kOptional),
    Own<&CIE_GSM_2230E_Simple_Info::ie32216>(kOptional),
    Own<&CIE_GSM_2230E_Simple_Info::ie32217>(kOptional),
    Own<&CIE_GSM_2230E_Simple_Info::ie32218>(kOptional),
    Own<&CIE_GSM_2230E_Simple_Info::ie32267>(kOptional),
    Own<&CIE_GSM_2230E_Simple_Info::ie32219>(kOptional),
    Own<&CIE_GSM_2230E_Simple_Info::ie32220>(kOptional),
});
// clang-format on

}  // namespace loom
