#pragma once

#include "components/records/blocks_td.h"
#include "host/logstore/record_fields.h"

// TD-SCDMA blocks.
// clang-format off
namespace loom {

template <>
struct BlockFields<CIE_SCell_Para> {
  using B = CIE_SCell_Para;
  static constexpr std::uint16_t kTag = 220;
  static constexpr std::string_view kName = "serving_cell";
  static constexpr std::tuple kFields{
      Field{"ie142", &B::ie142}, Field{"ie143", &B::ie143}, Field{"ie144", &B::ie144},
      Field{"lac", &B::lac},
      Field{"cell_key", &B::cell_key},
      Field{"cell_parameter_id", &B::cell_parameter_id},
      Field{"uarfcn", &B::uarfcn},
      Field{"ura_identities", &B::ura_identities},
      Field{"ura_identity_count", &B::ura_identity_count},
      Field{"ie158", &B::ie158}, Field{"ie169", &B::ie169}, Field{"ie149", &B::ie149}, Field{"ie150", &B::ie150},
      Field{"ie151", &B::ie151}, Field{"ie152", &B::ie152}, Field{"ie153", &B::ie153}, Field{"ie154", &B::ie154},
      Field{"ie155", &B::ie155}, Field{"ie156", &B::ie156}, Field{"ie157", &B::ie157}, Field{"ie159", &B::ie159},
      Field{"ie26765", &B::ie26765}, Field{"ie5261", &B::ie5261}, Field{"ie5260", &B::ie5260},
  };
};

template <>
struct BlockFields<TimeslotValue> {
  using B = TimeslotValue;
  static constexpr std::tuple kFields{
      Field{"timeslot", &B::timeslot},
      Field{"value", &B::value},
  };
};

template <>
struct BlockFields<CIE_SCell_Meas> {
  using B = CIE_SCell_Meas;
  static constexpr std::uint16_t kTag = 224;
  static constexpr std::string_view kName = "timeslot_measurements";
  static constexpr std::tuple kFields{
      Field{"pccpch_rscp", &B::pccpch_rscp},
      Field{"ie498", &B::ie498}, Field{"ie508", &B::ie508}, Field{"ie509", &B::ie509}, Field{"ie510", &B::ie510},
      Field{"timeslot_iscp_count", &B::timeslot_iscp_count},
      Field{"timeslot_iscp", &B::timeslot_iscp},
      Field{"timeslot_rscp_count", &B::timeslot_rscp_count},
      Field{"timeslot_rscp", &B::timeslot_rscp},
      Field{"ie501", &B::ie501},
      Field{"timeslot", &B::timeslot},
      Field{"ie502", &B::ie502}, Field{"ie503", &B::ie503}, Field{"ie504", &B::ie504}, Field{"ie506", &B::ie506},
      Field{"ie175", &B::ie175}, Field{"ie505", &B::ie505},
  };
};

template <>
struct BlockFields<TdNeighbour> {
  using B = TdNeighbour;
  static constexpr std::tuple kFields{
      Field{"cell_parameter_id", &B::cell_parameter_id},
      Field{"uarfcn", &B::uarfcn},
      Field{"pccpch_rscp", &B::pccpch_rscp},
      Field{"ie1237", &B::ie1237},
      Field{"timeslot_count", &B::timeslot_count},
      Field{"timeslot_iscp", &B::timeslot_iscp},
      Field{"ie1269", &B::ie1269}, Field{"ie1109", &B::ie1109}, Field{"ie1301", &B::ie1301},
      Field{"ie32246", &B::ie32246}, Field{"ie32252", &B::ie32252},
  };
};

template <>
struct BlockFields<CIE_NCell_Meas> {
  using B = CIE_NCell_Meas;
  static constexpr std::uint16_t kTag = 228;
  static constexpr std::string_view kName = "neighbours";
  static constexpr std::tuple kFields{
      Field{"count", &B::count},
      Field{"neighbours", &B::neighbours},
  };
};

template <>
struct BlockFields<TdCodeChannel> {
  using B = TdCodeChannel;
  static constexpr std::tuple kFields{
      Field{"number", &B::number},
      Field{"timeslot", &B::timeslot},
      Field{"ie297", &B::ie297}, Field{"ie393", &B::ie393},
      Field{"direction", &B::direction},
      Field{"midamble_configuration", &B::midamble_configuration},
      Field{"midamble_shift", &B::midamble_shift},
  };
};

template <>
struct BlockFields<TdNumberedByte> {
  using B = TdNumberedByte;
  static constexpr std::tuple kFields{
      Field{"number", &B::number},
      Field{"ie264", &B::ie264},
  };
};

template <>
struct BlockFields<TdTransportChannel> {
  using B = TdTransportChannel;
  static constexpr std::tuple kFields{
      Field{"number", &B::number},
      Field{"ie935", &B::ie935}, Field{"ie1000", &B::ie1000}, Field{"ie1033", &B::ie1033},
  };
};

template <>
struct BlockFields<CIE_Channel_Para> {
  using B = CIE_Channel_Para;
  static constexpr std::uint16_t kTag = 240;
  static constexpr std::string_view kName = "channels";
  static constexpr std::tuple kFields{
      Field{"code_channel_count", &B::code_channel_count},
      Field{"code_channels", &B::code_channels},
      Field{"numbered_byte_count", &B::numbered_byte_count},
      Field{"numbered_bytes", &B::numbered_bytes},
      Field{"transport_channel_count", &B::transport_channel_count},
      Field{"transport_channels", &B::transport_channels},
      Field{"ie170", &B::ie170}, Field{"ie171", &B::ie171}, Field{"ie172", &B::ie172}, Field{"ie173", &B::ie173},
      Field{"ie174", &B::ie174},
  };
};

template <>
struct BlockFields<TdCodeEntryD> {
  using B = TdCodeEntryD;
  static constexpr std::tuple kFields{
      Field{"number", &B::number},
      Field{"ie1588", &B::ie1588}, Field{"ie1622", &B::ie1622}, Field{"ie1656", &B::ie1656},
      Field{"ie1818", &B::ie1818}, Field{"ie1850", &B::ie1850},
  };
};

template <>
struct BlockFields<TdCodeEntryE> {
  using B = TdCodeEntryE;
  static constexpr std::tuple kFields{
      Field{"number", &B::number},
      Field{"ie1942", &B::ie1942}, Field{"ie1979", &B::ie1979}, Field{"ie1953", &B::ie1953},
      Field{"ie1966", &B::ie1966},
  };
};

template <>
struct BlockFields<TdCodeEntryF> {
  using B = TdCodeEntryF;
  static constexpr std::tuple kFields{
      Field{"number", &B::number},
      Field{"ie1994", &B::ie1994},
  };
};

template <>
struct BlockFields<CIE_Meas_Res> {
  using B = CIE_Meas_Res;
  static constexpr std::uint16_t kTag = 244;
  static constexpr std::string_view kName = "codes";
  static constexpr std::tuple kFields{
      Field{"ie490", &B::ie490}, Field{"ie489", &B::ie489},
      Field{"count_d", &B::count_d},
      Field{"entries_d", &B::entries_d},
      Field{"count_e", &B::count_e},
      Field{"entries_e", &B::entries_e},
      Field{"count_f", &B::count_f},
      Field{"entries_f", &B::entries_f},
      Field{"scale_word", &B::scale_word},
  };
};

template <>
struct BlockFields<TdPhysicalEntryG> {
  using B = TdPhysicalEntryG;
  static constexpr std::tuple kFields{
      Field{"number", &B::number},
      Field{"ie3723", &B::ie3723}, Field{"ie3755", &B::ie3755}, Field{"ie3787", &B::ie3787},
  };
};

template <>
struct BlockFields<TdPhysicalEntryH> {
  using B = TdPhysicalEntryH;
  static constexpr std::tuple kFields{
      Field{"number", &B::number},
      Field{"ie3826", &B::ie3826},
  };
};

template <>
struct BlockFields<TdPhysicalEntryJ> {
  using B = TdPhysicalEntryJ;
  static constexpr std::tuple kFields{
      Field{"ie3842", &B::ie3842}, Field{"ie4098", &B::ie4098}, Field{"ie4354", &B::ie4354},
  };
};

template <>
struct BlockFields<TdPhysicalFirst> {
  using B = TdPhysicalFirst;
  static constexpr std::tuple kFields{
      Field{"ie3688", &B::ie3688}, Field{"ie3689", &B::ie3689}, Field{"ie3690", &B::ie3690},
      Field{"ie3691", &B::ie3691}, Field{"ie3692", &B::ie3692}, Field{"ie3693", &B::ie3693},
      Field{"ie3694", &B::ie3694},
  };
};

template <>
struct BlockFields<TdPhysicalSecond> {
  using B = TdPhysicalSecond;
  static constexpr std::tuple kFields{
      Field{"ie3698", &B::ie3698}, Field{"ie3699", &B::ie3699}, Field{"ie3700", &B::ie3700},
      Field{"ie3701", &B::ie3701}, Field{"ie3702", &B::ie3702}, Field{"ie3703", &B::ie3703},
      Field{"ie3704", &B::ie3704}, Field{"ie3705", &B::ie3705}, Field{"ie3706", &B::ie3706},
      Field{"ie3707", &B::ie3707}, Field{"ie3708", &B::ie3708}, Field{"ie3709", &B::ie3709},
      Field{"ie3710", &B::ie3710}, Field{"ie3711", &B::ie3711}, Field{"ie3712", &B::ie3712},
      Field{"ie3713", &B::ie3713}, Field{"ie3714", &B::ie3714}, Field{"ie3715", &B::ie3715},
      Field{"ie3716", &B::ie3716}, Field{"ie3717", &B::ie3717}, Field{"ie3718", &B::ie3718},
      Field{"ie3719", &B::ie3719}, Field{"ie3720", &B::ie3720}, Field{"ie3721", &B::ie3721},
      Field{"ie3722", &B::ie3722}, Field{"ie3723", &B::ie3723}, Field{"ie31562", &B::ie31562},
  };
};

template <>
struct BlockFields<CIE_Layer12_Config_Para> {
  using B = CIE_Layer12_Config_Para;
  static constexpr std::uint16_t kTag = 248;
  static constexpr std::string_view kName = "physical_channels";
  static constexpr std::tuple kFields{
      Field{"count_g", &B::count_g},
      Field{"entries_g", &B::entries_g},
      Field{"count_h", &B::count_h},
      Field{"entries_h", &B::entries_h},
      Field{"count_j", &B::count_j},
      Field{"entries_j", &B::entries_j},
      Field{"first", &B::first},
      Field{"second", &B::second},
  };
};

}  // namespace loom
// clang-format on
