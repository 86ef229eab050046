#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "components/records/fields.h"
#include "components/records/lists.h"

// Blocks of TD-SCDMA handset records. The number behind a member is its byte position in the block, where it has one of
// its own; "-116" and the like say by how much the reported value is shifted when it becomes an IE. Members start at
// their absent value: signed -1 (-2 is invalid), unsigned 0xFF / 0xFFFF, float -1.0, a count of -1 for a list that is
// absent.
namespace loom {

class CTestdataBase;

// Record position 220.
struct CIE_SCell_Para {
  std::int16_t ie142 = -1;                                                     // 4
  std::int16_t ie143 = -1;                                                     // 6
  std::int32_t ie144 = -1;                                                     // 8
  std::int16_t lac = -1;                                                       // 12: IE 145
  std::int32_t cell_key = -1;                                                  // 16: IE 146
  std::int8_t cell_parameter_id = -1;                                          // 24: IE 140
  std::int32_t uarfcn = -1;                                                    // 28: IE 147
  std::array<std::int32_t, 8> ura_identities{-1, -1, -1, -1, -1, -1, -1, -1};  // 32: IEs 160 to 167
  std::int8_t ura_identity_count = -1;                                         // 64: IE 168
  std::int16_t ie158 = -1;                                                     // 66
  std::int8_t ie169 = -1;                                                      // 68
  std::int8_t ie149 = -1;                                                      // 69
  std::int8_t ie150 = -1;                                                      // 70
  std::int8_t ie151 = -1;                                                      // 72
  std::int8_t ie152 = -1;                                                      // 73
  std::int8_t ie153 = -1;                                                      // 74
  std::int32_t ie154 = -1;                                                     // 76
  std::int8_t ie155 = -1;                                                      // 80
  std::int16_t ie156 = -1;                                                     // 82
  std::int8_t ie157 = -1;                                                      // 84
  std::int8_t ie159 = -1;                                                      // 85
  std::int8_t ie26765 = -1;                                                    // 96
  std::int16_t ie5261 = -1;                                                    // 98
  std::int16_t ie5260 = -1;                                                    // 100

  bool setinfo(const CTestdataBase& record);
};
template <>
struct BlockFields<CIE_SCell_Para> {
  using B = CIE_SCell_Para;
  using List = FieldList<&B::ie142, &B::ie143, &B::ie144, &B::lac, &B::cell_key, &B::cell_parameter_id, &B::uarfcn,
                         &B::ura_identities, &B::ura_identity_count, &B::ie158, &B::ie169, &B::ie149, &B::ie150,
                         &B::ie151, &B::ie152, &B::ie153, &B::ie154, &B::ie155, &B::ie156, &B::ie157, &B::ie159,
                         &B::ie26765, &B::ie5261, &B::ie5260>;
};

// A reported value of one timeslot.
struct TimeslotValue {
  std::int8_t timeslot = -1;  // 0 to 6
  std::int8_t value = -1;     // -116
};
template <>
struct BlockFields<TimeslotValue> {
  using B = TimeslotValue;
  using List = FieldList<&B::timeslot, &B::value>;
};

// Record position 224.
struct CIE_SCell_Meas {
  std::int8_t pccpch_rscp = -1;               // 4: IE 499, -116 dBm (3GPP TS 25.123)
  std::uint8_t ie498 = kAbsent8;              // 5
  std::int32_t ie508 = 255;                   // 8: 255 absent, 254 invalid
  std::int32_t ie509 = -1;                    // 12: -256
  std::int32_t ie510 = -1;                    // 16
  std::int8_t timeslot_iscp_count = -1;       // 20: IE 518
  RecordList<TimeslotValue> timeslot_iscp{};  // 24: timeslots 0 to 6
  std::int8_t timeslot_rscp_count = -1;       // 44: IE 519
  RecordList<TimeslotValue> timeslot_rscp{};  // 48: timeslots 2 to 6
  std::int16_t ie501 = -1;                    // 68: (value - 1) * 0.125 - 16
  std::int8_t timeslot = -1;                  // 70: timeslot to which ie502 belongs
  std::int8_t ie502 = -1;                     // 71: -71
  std::int8_t ie503 = -1;                     // 72: (value - 23) * 0.5
  std::int8_t ie504 = -1;                     // 73: value * 0.5 - 11
  std::int8_t ie506 = -1;                     // 74: -101
  std::int8_t ie175 = -1;                     // 75
  std::int8_t ie505 = -1;                     // 76: -120

  bool setinfo(const CTestdataBase& record);
  template <class Visitor>
  void VisitLists(Visitor&& visit) {
    visit(timeslot_iscp);
    visit(timeslot_rscp);
  }
};
template <>
struct BlockFields<CIE_SCell_Meas> {
  using B = CIE_SCell_Meas;
  using List = FieldList<&B::pccpch_rscp, &B::ie498, &B::ie508, &B::ie509, &B::ie510, &B::timeslot_iscp_count,
                         &B::timeslot_iscp, &B::timeslot_rscp_count, &B::timeslot_rscp, &B::ie501, &B::timeslot,
                         &B::ie502, &B::ie503, &B::ie504, &B::ie506, &B::ie175, &B::ie505>;
};

struct TdNeighbour {
  std::int8_t cell_parameter_id = -1;            // 0: IE 1141 + n
  std::int32_t uarfcn = -1;                      // 4: IE 1173 + n
  std::int8_t pccpch_rscp = -1;                  // 8: IE 1205 + n, -116 dBm
  std::uint8_t ie1237 = kAbsent8;                // 9
  std::int8_t timeslot_count = -1;               // 10: IE 1333 + n
  InlineList<TimeslotValue, 7> timeslot_iscp{};  // 12: IEs 1365 + 7 n + timeslot
  std::int32_t ie1269 = 255;                     // 32: 255 absent
  std::int8_t ie1109 = -1;                       // 36: -101
  std::int32_t ie1301 = 255;                     // 40: 255 absent
  std::int32_t ie32246 = -999;                   // of GSM rows; -999 invalid
  std::int32_t ie32252 = -999;                   // of GSM rows; -999 invalid
};
template <>
struct BlockFields<TdNeighbour> {
  using B = TdNeighbour;
  using List = FieldList<&B::cell_parameter_id, &B::uarfcn, &B::pccpch_rscp, &B::ie1237, &B::timeslot_count,
                         &B::timeslot_iscp, &B::ie1269, &B::ie1109, &B::ie1301, &B::ie32246, &B::ie32252>;
};

// Record position 228.
struct CIE_NCell_Meas {
  std::int8_t count = -1;  // 4: IE 1108
  RecordList<TdNeighbour> neighbours{};

  bool setinfo(const CTestdataBase& record);
  template <class Visitor>
  void VisitLists(Visitor&& visit) {
    visit(neighbours);
  }
};
template <>
struct BlockFields<CIE_NCell_Meas> {
  using B = CIE_NCell_Meas;
  using List = FieldList<&B::count, &B::neighbours>;
};

struct TdCodeChannel {
  std::int8_t number = -1;                   // 0 to 95
  std::int8_t timeslot = -1;                 // 0 to 6
  std::int32_t ie297 = -1;                   // IE 297 + number
  std::int32_t ie393 = -1;                   // IE 393 + number
  std::int32_t direction = -1;               // IE 191 + timeslot
  std::int32_t midamble_configuration = -1;  // IE 176 + timeslot
  std::int32_t midamble_shift = -1;          // IE 183 + timeslot
};
template <>
struct BlockFields<TdCodeChannel> {
  using B = TdCodeChannel;
  using List = FieldList<&B::number, &B::timeslot, &B::ie297, &B::ie393, &B::direction, &B::midamble_configuration,
                         &B::midamble_shift>;
};

struct TdNumberedByte {
  std::int8_t number = -1;  // 1 to 32
  std::int8_t ie264 = -1;   // IE 264 + number
};
template <>
struct BlockFields<TdNumberedByte> {
  using B = TdNumberedByte;
  using List = FieldList<&B::number, &B::ie264>;
};

struct TdTransportChannel {
  std::int8_t number = -1;      // transport channel identity, 1 to 32
  std::int32_t ie935 = -1;      // IE 935 + number
  std::int32_t ie1000 = -1;     // IE 1000 + number
  float ie1033 = kAbsentFloat;  // IE 1033 + number
};
template <>
struct BlockFields<TdTransportChannel> {
  using B = TdTransportChannel;
  using List = FieldList<&B::number, &B::ie935, &B::ie1000, &B::ie1033>;
};

// Record position 240.
struct CIE_Channel_Para {
  std::int8_t code_channel_count = -1;  // 4: IE 198
  RecordList<TdCodeChannel> code_channels{};
  std::int8_t numbered_byte_count = -1;  // 28: IE 199
  RecordList<TdNumberedByte> numbered_bytes{};
  std::int8_t transport_channel_count = -1;  // 52: IE 200
  RecordList<TdTransportChannel> transport_channels{};
  std::int8_t ie170 = -1;   // 76
  std::int8_t ie171 = -1;   // 77
  std::int8_t ie172 = -1;   // 78
  std::int8_t ie173 = -1;   // 79
  std::int32_t ie174 = -1;  // 80

  bool setinfo(const CTestdataBase& record);
  template <class Visitor>
  void VisitLists(Visitor&& visit) {
    visit(code_channels);
    visit(numbered_bytes);
    visit(transport_channels);
  }
};
template <>
struct BlockFields<CIE_Channel_Para> {
  using B = CIE_Channel_Para;
  using List = FieldList<&B::code_channel_count, &B::code_channels, &B::numbered_byte_count, &B::numbered_bytes,
                         &B::transport_channel_count, &B::transport_channels, &B::ie170, &B::ie171, &B::ie172,
                         &B::ie173, &B::ie174>;
};

struct TdCodeEntryD {
  std::int8_t number = -1;   // 1 to 32
  std::int32_t ie1588 = -1;  // IE 1588 + number; times 0.1 by scale_word
  std::int32_t ie1622 = -1;  // IE 1622 + number; times 0.1 by scale_word
  std::int32_t ie1656 = -1;  // IE 1656 + number
  std::int32_t ie1818 = -1;  // IE 1818 + number
  std::int32_t ie1850 = -1;  // IE 1850 + number
};
template <>
struct BlockFields<TdCodeEntryD> {
  using B = TdCodeEntryD;
  using List = FieldList<&B::number, &B::ie1588, &B::ie1622, &B::ie1656, &B::ie1818, &B::ie1850>;
};

struct TdCodeEntryE {
  std::int8_t number = -1;   // 0: 5 to 15
  std::int8_t ie1942 = -1;   // 1: IE 1942 + number
  std::int32_t ie1979 = -1;  // 4: IE 1979 + number
  std::int32_t ie1953 = -1;  // 8: IE 1953 + number, times 0.1
  std::int32_t ie1966 = -1;  // 12: IE 1966 + number, times 0.1
};
template <>
struct BlockFields<TdCodeEntryE> {
  using B = TdCodeEntryE;
  using List = FieldList<&B::number, &B::ie1942, &B::ie1979, &B::ie1953, &B::ie1966>;
};

struct TdCodeEntryF {
  std::int8_t number = -1;                                                              // 1 to 32
  std::array<std::int32_t, 12> ie1994{-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1};  // IE 1994 + 32 k + number
};
template <>
struct BlockFields<TdCodeEntryF> {
  using B = TdCodeEntryF;
  using List = FieldList<&B::number, &B::ie1994>;
};

// Record position 244.
struct CIE_Meas_Res {
  std::int8_t ie490 = -1;         // 4: -1
  std::uint8_t ie489 = kAbsent8;  // 5: -120
  std::int8_t count_d = -1;       // 6: IE 491
  RecordList<TdCodeEntryD> entries_d{};
  std::int8_t count_e = -1;  // 28: IE 492
  RecordList<TdCodeEntryE> entries_e{};
  std::int8_t count_f = -1;  // 52: IE 493
  RecordList<TdCodeEntryF> entries_f{};
  std::int32_t scale_word = -1;  // 76: -1 or above 139 makes ie1588 and ie1622 tenths

  bool setinfo(const CTestdataBase& record);
  template <class Visitor>
  void VisitLists(Visitor&& visit) {
    visit(entries_d);
    visit(entries_e);
    visit(entries_f);
  }
};
template <>
struct BlockFields<CIE_Meas_Res> {
  using B = CIE_Meas_Res;
  using List = FieldList<&B::ie490, &B::ie489, &B::count_d, &B::entries_d, &B::count_e, &B::entries_e, &B::count_f,
                         &B::entries_f, &B::scale_word>;
};

struct TdPhysicalEntryG {
  std::int8_t number = -1;   // 1 to 32
  std::int32_t ie3723 = -1;  // IE 3723 + number
  std::int32_t ie3755 = -1;  // IE 3755 + number
  std::int32_t ie3787 = -1;  // IE 3787 + number
};
template <>
struct BlockFields<TdPhysicalEntryG> {
  using B = TdPhysicalEntryG;
  using List = FieldList<&B::number, &B::ie3723, &B::ie3755, &B::ie3787>;
};

struct TdPhysicalEntryH {
  std::int8_t number = -1;  // 5 to 15; IE 3815 + number
  std::int8_t ie3826 = -1;  // IE 3826 + number
};
template <>
struct BlockFields<TdPhysicalEntryH> {
  using B = TdPhysicalEntryH;
  using List = FieldList<&B::number, &B::ie3826>;
};

struct TdPhysicalEntryJ {
  std::int32_t ie3842 = -1;  // 0: IE 3842 + position
  std::int8_t ie4098 = -1;   // 4: IE 4098 + position
  std::int32_t ie4354 = -1;  // 8: IE 4354 + position, (value - 13825) * 0.03125
};
template <>
struct BlockFields<TdPhysicalEntryJ> {
  using B = TdPhysicalEntryJ;
  using List = FieldList<&B::ie3842, &B::ie4098, &B::ie4354>;
};

struct TdPhysicalFirst {
  std::int32_t ie3688 = -1;
  RecordText ie3689{};  // up to 43 characters
  std::int32_t ie3690 = -1;
  std::int32_t ie3691 = -1;
  std::int32_t ie3692 = -1;
  std::int32_t ie3693 = -1;
  std::int32_t ie3694 = -1;
};
template <>
struct BlockFields<TdPhysicalFirst> {
  using B = TdPhysicalFirst;
  using List = FieldList<&B::ie3688, &B::ie3689, &B::ie3690, &B::ie3691, &B::ie3692, &B::ie3693, &B::ie3694>;
};

struct TdPhysicalSecond {
  RecordText ie3698{};
  std::int32_t ie3699 = -1;
  std::int32_t ie3700 = -1;
  std::int32_t ie3701 = -1;
  std::int32_t ie3702 = -1;
  std::int32_t ie3703 = -1;
  std::int32_t ie3704 = -1;
  std::int32_t ie3705 = -1;  // times 0.125
  std::int32_t ie3706 = -1;
  std::int32_t ie3707 = -1;
  std::int32_t ie3708 = -1;
  std::int32_t ie3709 = -1;
  std::int32_t ie3710 = -1;
  std::int32_t ie3711 = -1;
  std::int32_t ie3712 = -1;
  std::int32_t ie3713 = -1;
  std::int32_t ie3714 = -1;
  std::int32_t ie3715 = -1;  // times 0.125
  std::int32_t ie3716 = -1;
  std::int32_t ie3717 = -1;
  std::int32_t ie3718 = -1;
  std::int32_t ie3719 = -1;
  std::int32_t ie3720 = -1;
  std::int32_t ie3721 = -1;
  std::int32_t ie3722 = -1;
  RecordText ie3723{};
  std::int32_t ie31562 = -1;
};
template <>
struct BlockFields<TdPhysicalSecond> {
  using B = TdPhysicalSecond;
  using List = FieldList<&B::ie3698, &B::ie3699, &B::ie3700, &B::ie3701, &B::ie3702, &B::ie3703, &B::ie3704, &B::ie3705,
                         &B::ie3706, &B::ie3707, &B::ie3708, &B::ie3709, &B::ie3710, &B::ie3711, &B::ie3712, &B::ie3713,
                         &B::ie3714, &B::ie3715, &B::ie3716, &B::ie3717, &B::ie3718, &B::ie3719, &B::ie3720, &B::ie3721,
                         &B::ie3722, &B::ie3723, &B::ie31562>;
};

// Record position 248.
struct CIE_Layer12_Config_Para {
  std::int8_t count_g = -1;  // 8: IE 495
  RecordList<TdPhysicalEntryG> entries_g{};
  std::int8_t count_h = -1;  // 12: IE 496
  RecordList<TdPhysicalEntryH> entries_h{};
  std::int16_t count_j = -1;  // 16: IE 497; wider than the others, the list goes up to 256
  RecordList<TdPhysicalEntryJ> entries_j{};
  std::optional<TdPhysicalFirst> first{};
  std::optional<TdPhysicalSecond> second{};

  bool setinfo(const CTestdataBase& record);
  template <class Visitor>
  void VisitLists(Visitor&& visit) {
    visit(entries_g);
    visit(entries_h);
    visit(entries_j);
    if (first) visit(first->ie3689);
    if (second) {
      visit(second->ie3698);
      visit(second->ie3723);
    }
  }
};
template <>
struct BlockFields<CIE_Layer12_Config_Para> {
  using B = CIE_Layer12_Config_Para;
  using List = FieldList<&B::count_g, &B::entries_g, &B::count_h, &B::entries_h, &B::count_j, &B::entries_j, &B::first,
                         &B::second>;
};

}  // namespace loom
