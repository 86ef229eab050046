#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "components/records/fields.h"
#include "components/records/lists.h"

// Blocks of handset records taken in GSM mode. The number behind a member is its byte position in the block, where it
// has one of its own. Members start at their absent value: unsigned 8-bit 0xFF (0xFE invalid), unsigned 16-bit 0xFFFF
// (0xFFFE invalid), signed 16-bit 0x7FFF, 32-bit 0xFFFFFFFF, signed 8-bit -1 (-2 invalid), float -1.0.
namespace loom {

class CTestdataBase;

// Record position 356.
struct CIE_GSM_SCell_Sys_Info {
  std::uint16_t ie31706 = kAbsent16;  // 0
  std::uint16_t ie31701 = kAbsent16;  // 2
  std::uint8_t ie31705 = kAbsent8;    // 4
  std::uint8_t rx_lev = kAbsent8;     // 5: IE 31703, -110 dBm (3GPP TS 45.008)
  std::uint8_t ie31719 = kAbsent8;    // 6
  std::uint16_t ie31712 = kAbsent16;  // 8
  std::int8_t ie32265 = -1;           // 10

  bool setinfo(const CTestdataBase& record);
};
template <>
struct BlockFields<CIE_GSM_SCell_Sys_Info> {
  using B = CIE_GSM_SCell_Sys_Info;
  using List = FieldList<&B::ie31706, &B::ie31701, &B::ie31705, &B::rx_lev, &B::ie31719, &B::ie31712, &B::ie32265>;
};

// Record position 360.
struct CIE_GSM_SCell_Resel_Sys_Info {
  std::uint8_t ie31717 = kAbsent8;  // 0: as it stands, no marker

  bool setinfo(const CTestdataBase& record);
};
template <>
struct BlockFields<CIE_GSM_SCell_Resel_Sys_Info> {
  using B = CIE_GSM_SCell_Resel_Sys_Info;
  using List = FieldList<&B::ie31717>;
};

// Record position 364.
struct CIE_GSM_SCell_Radio_Info {
  std::uint8_t form = kAbsent8;         // 0: 1 makes ie32075 valid, 2 and 3 ie32244, 4 to 7 ie32245
  std::int16_t ie32078 = kAbsentGsm16;  // 2
  std::uint8_t ie31707 = kAbsent8;      // 4
  std::int16_t ie32074 = kAbsentGsm16;  // 6
  std::int16_t ie32075 = kAbsentGsm16;  // 8
  std::int16_t ie32244 = kAbsentGsm16;  // 10
  std::int16_t ie32245 = kAbsentGsm16;  // 12

  bool setinfo(const CTestdataBase& record);
};
template <>
struct BlockFields<CIE_GSM_SCell_Radio_Info> {
  using B = CIE_GSM_SCell_Radio_Info;
  using List = FieldList<&B::form, &B::ie32078, &B::ie31707, &B::ie32074, &B::ie32075, &B::ie32244, &B::ie32245>;
};

// Record position 368.
struct CIE_GSM_SCell_DSC {
  std::uint16_t ie31736 = kAbsent16;

  bool setinfo(const CTestdataBase& record);
};
template <>
struct BlockFields<CIE_GSM_SCell_DSC> {
  using B = CIE_GSM_SCell_DSC;
  using List = FieldList<&B::ie31736>;
};

struct GsmNeighbour {                  // entry i becomes IE id + i
  std::uint16_t bcch = kAbsent16;      // 0: IE 32091
  std::int8_t rx_lev_access_min = -1;  // 2: IE 32258
  std::uint8_t bsic = kAbsent8;        // 5: IE 32097
  std::uint16_t ci = kAbsent16;        // 6: IE 32085
  std::uint16_t lac = kAbsent16;       // 12: IE 32079
  std::uint8_t form = kAbsent8;        // 14: 1 makes c2 valid, 2 and 3 c31, 4 to 7 c32
  std::int16_t c1 = kAbsentGsm16;      // 16: IE 32109
  std::int16_t rx_lev = kAbsentGsm16;  // 18: IE 32103
  std::int16_t c2 = kAbsentGsm16;      // 20: IE 32115
  std::int16_t c31 = kAbsentGsm16;     // 22: IE 32151
  std::int16_t c32 = kAbsentGsm16;     // 24: IE 32157
};
template <>
struct BlockFields<GsmNeighbour> {
  using B = GsmNeighbour;
  using List = FieldList<&B::bcch, &B::rx_lev_access_min, &B::bsic, &B::ci, &B::lac, &B::form, &B::c1, &B::rx_lev,
                         &B::c2, &B::c31, &B::c32>;
};

// Record position 372.
struct CIE_GSM_NCell_Info {
  std::uint8_t list_kind = 0;             // 0: 0 a list of neighbours; any other kind has ie31720 only
  std::uint8_t count = 0;                 // 1
  RecordList<GsmNeighbour> neighbours{};  // 4
  std::uint8_t ie31720 = kAbsent8;        // 8
  std::int8_t ie31721 = 0x7F;             // 9: 0x7F absent
  std::uint8_t ie31722 = kAbsent8;        // 10

  bool setinfo(const CTestdataBase& record);
  template <class Visitor>
  void VisitLists(Visitor&& visit) {
    visit(neighbours);
  }
};
template <>
struct BlockFields<CIE_GSM_NCell_Info> {
  using B = CIE_GSM_NCell_Info;
  using List = FieldList<&B::list_kind, &B::count, &B::neighbours, &B::ie31720, &B::ie31721, &B::ie31722>;
};

// Record position 376.
struct CIE_GSM_MS_Muti_Slot_Class {
  std::uint8_t ie32202 = kAbsent8;

  bool setinfo(const CTestdataBase& record);
};
template <>
struct BlockFields<CIE_GSM_MS_Muti_Slot_Class> {
  using B = CIE_GSM_MS_Muti_Slot_Class;
  using List = FieldList<&B::ie32202>;
};

// Frequencies of a dedicated channel.
struct GsmDedicatedFrequencies {
  std::int32_t kind = -1;  // 0: ie31727; 1: ie31732
  std::int32_t ie31727 = -1;
  RecordList<std::uint8_t> ie31732{};  // becomes a text of its numbers
};
template <>
struct BlockFields<GsmDedicatedFrequencies> {
  using B = GsmDedicatedFrequencies;
  using List = FieldList<&B::kind, &B::ie31727, &B::ie31732>;
};

// Record position 380.
struct CIE_GSM_Ded_CH_Info {
  std::uint8_t channel_bits = 0;  // IE 31723 is the position, from 1, of the lowest of the bits 1, 2, 4, 8 that is set
  std::int32_t ie31724 = -1;
  std::int32_t ie31730 = -1;
  std::int32_t ie31731 = -1;
  std::optional<GsmDedicatedFrequencies> frequencies{};

  bool setinfo(const CTestdataBase& record);
  template <class Visitor>
  void VisitLists(Visitor&& visit) {
    if (frequencies) visit(frequencies->ie31732);
  }
};
template <>
struct BlockFields<CIE_GSM_Ded_CH_Info> {
  using B = CIE_GSM_Ded_CH_Info;
  using List = FieldList<&B::channel_bits, &B::ie31724, &B::ie31730, &B::ie31731, &B::frequencies>;
};

// Record position 384.
struct CIE_GSM_Ded_Meas_Info {
  std::uint8_t ie31966 = kAbsent8;  // present below 8
  std::uint8_t ie32038 = kAbsent8;  // present below 8
  std::uint8_t ie31715 = kAbsent8;  // present below 255
  std::uint8_t ie32076 = kAbsent8;  // present from 1 to 31
  std::int32_t ie31930 = -1;
  std::int32_t ie32002 = -1;
  std::int32_t ie32077 = -1;
  float ie32201 = kAbsentFloat;

  bool setinfo(const CTestdataBase& record);
};
template <>
struct BlockFields<CIE_GSM_Ded_Meas_Info> {
  using B = CIE_GSM_Ded_Meas_Info;
  using List =
      FieldList<&B::ie31966, &B::ie32038, &B::ie31715, &B::ie32076, &B::ie31930, &B::ie32002, &B::ie32077, &B::ie32201>;
};

// Record position 388.
struct CIE_GSM_SCell_Ch_Radio_Link_Counter {
  std::uint16_t ie31713 = kAbsent16;
  std::uint16_t ie31735 = kAbsent16;

  bool setinfo(const CTestdataBase& record);
};
template <>
struct BlockFields<CIE_GSM_SCell_Ch_Radio_Link_Counter> {
  using B = CIE_GSM_SCell_Ch_Radio_Link_Counter;
  using List = FieldList<&B::ie31713, &B::ie31735>;
};

// Record position 392. Nothing of it becomes an IE.
struct CIE_GSM_MS_Class {
  bool setinfo(const CTestdataBase& record);
};
template <>
struct BlockFields<CIE_GSM_MS_Class> {
  using List = FieldList<>;
};

// Record position 396.
struct CIE_GSM_RAT_Indicate {
  std::int8_t rat = -1;  // 0: IE 26770, in GSM rows IE 31718

  bool setinfo(const CTestdataBase& record);
};
template <>
struct BlockFields<CIE_GSM_RAT_Indicate> {
  using B = CIE_GSM_RAT_Indicate;
  using List = FieldList<&B::rat>;
};

// Record position 400.
struct CIE_GSM_LLC_GPRS_Qos_Info {
  std::int32_t ie32195 = -1;  // / 1000
  std::int32_t ie32196 = -1;  // / 1000
  std::int32_t ie32199 = -1;

  bool setinfo(const CTestdataBase& record);
};
template <>
struct BlockFields<CIE_GSM_LLC_GPRS_Qos_Info> {
  using B = CIE_GSM_LLC_GPRS_Qos_Info;
  using List = FieldList<&B::ie32195, &B::ie32196, &B::ie32199>;
};

// Record position 404. Nothing of it becomes an IE.
struct CIE_GSM_HO_Num {
  bool setinfo(const CTestdataBase& record);
};
template <>
struct BlockFields<CIE_GSM_HO_Num> {
  using List = FieldList<>;
};

// Record position 408.
struct CIE_GSM_RLC_GPRS_Qos_Info {
  std::uint32_t ie32193 = kAbsent32;  // / 1000
  std::uint32_t ie32194 = kAbsent32;  // / 1000
  std::uint8_t ie32189 = kAbsent8;

  bool setinfo(const CTestdataBase& record);
};
template <>
struct BlockFields<CIE_GSM_RLC_GPRS_Qos_Info> {
  using B = CIE_GSM_RLC_GPRS_Qos_Info;
  using List = FieldList<&B::ie32193, &B::ie32194, &B::ie32189>;
};

// Record position 412. Signed bytes, -1 absent, -2 invalid.
struct CIE_GSM_2230E_Simple_Info {
  std::int8_t ie32170_first = -1;  // both become the text of IE 32170
  std::int8_t ie32170_second = -1;
  std::int8_t ie32270 = -1;
  std::int8_t ie32271 = -1;
  std::int8_t ie32272 = -1;
  std::int8_t ie32273 = -1;
  std::int8_t ie32203 = -1;
  std::int8_t ie32204 = -1;
  std::int8_t ie32215 = -1;
  std::int8_t ie32216 = -1;
  std::int8_t ie32217 = -1;
  std::int8_t ie32218 = -1;
  std::int8_t ie32267 = -1;
  std::int8_t ie32219 = -1;
  std::int8_t ie32220 = -1;

  // The two values as "first/second", an absent or invalid one (below 0) as '-'; empty when both are.
  static std::string ChangeValue2CSText(std::int8_t first, std::int8_t second);
};
template <>
struct BlockFields<CIE_GSM_2230E_Simple_Info> {
  using B = CIE_GSM_2230E_Simple_Info;
  using List =
      FieldList<&B::ie32170_first, &B::ie32170_second, &B::ie32270, &B::ie32271, &B::ie32272, &B::ie32273, &B::ie32203,
                &B::ie32204, &B::ie32215, &B::ie32216, &B::ie32217, &B::ie32218, &B::ie32267, &B::ie32219, &B::ie32220>;
};

}  // namespace loom
