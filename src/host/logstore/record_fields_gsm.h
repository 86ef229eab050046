#pragma once

#include "components/records/blocks_gsm.h"
#include "host/logstore/record_fields.h"

// GSM blocks.
// clang-format off
namespace loom {

template <>
struct BlockFields<CIE_GSM_SCell_Sys_Info> {
  using B = CIE_GSM_SCell_Sys_Info;
  static constexpr std::uint16_t kTag = 356;
  static constexpr std::string_view kName = "gsm_serving_cell";
  static constexpr std::tuple kFields{
      Field{"ie31706", &B::ie31706}, Field{"ie31701", &B::ie31701}, Field{"ie31705", &B::ie31705},
      Field{"rx_lev", &B::rx_lev},
      Field{"ie31719", &B::ie31719}, Field{"ie31712", &B::ie31712}, Field{"ie32265", &B::ie32265},
  };
};

template <>
struct BlockFields<CIE_GSM_SCell_Resel_Sys_Info> {
  using B = CIE_GSM_SCell_Resel_Sys_Info;
  static constexpr std::uint16_t kTag = 360;
  static constexpr std::string_view kName = "gsm_reselection";
  static constexpr std::tuple kFields{
      Field{"ie31717", &B::ie31717},
  };
};

template <>
struct BlockFields<CIE_GSM_SCell_Radio_Info> {
  using B = CIE_GSM_SCell_Radio_Info;
  static constexpr std::uint16_t kTag = 364;
  static constexpr std::string_view kName = "gsm_radio";
  static constexpr std::tuple kFields{
      Field{"form", &B::form},
      Field{"ie32078", &B::ie32078}, Field{"ie31707", &B::ie31707}, Field{"ie32074", &B::ie32074},
      Field{"ie32075", &B::ie32075}, Field{"ie32244", &B::ie32244}, Field{"ie32245", &B::ie32245},
  };
};

template <>
struct BlockFields<CIE_GSM_SCell_DSC> {
  using B = CIE_GSM_SCell_DSC;
  static constexpr std::uint16_t kTag = 368;
  static constexpr std::string_view kName = "gsm_dsc";
  static constexpr std::tuple kFields{
      Field{"ie31736", &B::ie31736},
  };
};

template <>
struct BlockFields<GsmNeighbour> {
  using B = GsmNeighbour;
  static constexpr std::tuple kFields{
      Field{"bcch", &B::bcch},
      Field{"rx_lev_access_min", &B::rx_lev_access_min},
      Field{"bsic", &B::bsic},
      Field{"ci", &B::ci},
      Field{"lac", &B::lac},
      Field{"form", &B::form},
      Field{"c1", &B::c1},
      Field{"rx_lev", &B::rx_lev},
      Field{"c2", &B::c2},
      Field{"c31", &B::c31},
      Field{"c32", &B::c32},
  };
};

template <>
struct BlockFields<CIE_GSM_NCell_Info> {
  using B = CIE_GSM_NCell_Info;
  static constexpr std::uint16_t kTag = 372;
  static constexpr std::string_view kName = "gsm_neighbours";
  static constexpr std::tuple kFields{
      Field{"list_kind", &B::list_kind},
      Field{"count", &B::count},
      Field{"neighbours", &B::neighbours},
      Field{"ie31720", &B::ie31720}, Field{"ie31721", &B::ie31721}, Field{"ie31722", &B::ie31722},
  };
};

template <>
struct BlockFields<CIE_GSM_MS_Muti_Slot_Class> {
  using B = CIE_GSM_MS_Muti_Slot_Class;
  static constexpr std::uint16_t kTag = 376;
  static constexpr std::string_view kName = "gsm_multislot_class";
  static constexpr std::tuple kFields{
      Field{"ie32202", &B::ie32202},
  };
};

template <>
struct BlockFields<GsmDedicatedFrequencies> {
  using B = GsmDedicatedFrequencies;
  static constexpr std::tuple kFields{
      Field{"kind", &B::kind},
      Field{"ie31727", &B::ie31727},
      Field{"ie31732", &B::ie31732},
  };
};

template <>
struct BlockFields<CIE_GSM_Ded_CH_Info> {
  using B = CIE_GSM_Ded_CH_Info;
  static constexpr std::uint16_t kTag = 380;
  static constexpr std::string_view kName = "gsm_dedicated_channel";
  static constexpr std::tuple kFields{
      Field{"channel_bits", &B::channel_bits},
      Field{"ie31724", &B::ie31724}, Field{"ie31730", &B::ie31730}, Field{"ie31731", &B::ie31731},
      Field{"frequencies", &B::frequencies},
  };
};

template <>
struct BlockFields<CIE_GSM_Ded_Meas_Info> {
  using B = CIE_GSM_Ded_Meas_Info;
  static constexpr std::uint16_t kTag = 384;
  static constexpr std::string_view kName = "gsm_dedicated_measurements";
  static constexpr std::tuple kFields{
      Field{"ie31966", &B::ie31966}, Field{"ie32038", &B::ie32038}, Field{"ie31715", &B::ie31715},
      Field{"ie32076", &B::ie32076}, Field{"ie31930", &B::ie31930}, Field{"ie32002", &B::ie32002},
      Field{"ie32077", &B::ie32077}, Field{"ie32201", &B::ie32201},
  };
};

template <>
struct BlockFields<CIE_GSM_SCell_Ch_Radio_Link_Counter> {
  using B = CIE_GSM_SCell_Ch_Radio_Link_Counter;
  static constexpr std::uint16_t kTag = 388;
  static constexpr std::string_view kName = "gsm_radio_link_counter";
  static constexpr std::tuple kFields{
      Field{"ie31713", &B::ie31713}, Field{"ie31735", &B::ie31735},
  };
};

template <>
struct BlockFields<CIE_GSM_MS_Class> {
  using B = CIE_GSM_MS_Class;
  static constexpr std::uint16_t kTag = 392;
  static constexpr std::string_view kName = "gsm_ms_class";
  static constexpr std::tuple<> kFields{};
};

template <>
struct BlockFields<CIE_GSM_RAT_Indicate> {
  using B = CIE_GSM_RAT_Indicate;
  static constexpr std::uint16_t kTag = 396;
  static constexpr std::string_view kName = "gsm_rat";
  static constexpr std::tuple kFields{
      Field{"rat", &B::rat},
  };
};

template <>
struct BlockFields<CIE_GSM_LLC_GPRS_Qos_Info> {
  using B = CIE_GSM_LLC_GPRS_Qos_Info;
  static constexpr std::uint16_t kTag = 400;
  static constexpr std::string_view kName = "gsm_llc_qos";
  static constexpr std::tuple kFields{
      Field{"ie32195", &B::ie32195}, Field{"ie32196", &B::ie32196}, Field{"ie32199", &B::ie32199},
  };
};

template <>
struct BlockFields<CIE_GSM_HO_Num> {
  using B = CIE_GSM_HO_Num;
  static constexpr std::uint16_t kTag = 404;
  static constexpr std::string_view kName = "gsm_handover_number";
  static constexpr std::tuple<> kFields{};
};

template <>
struct BlockFields<CIE_GSM_RLC_GPRS_Qos_Info> {
  using B = CIE_GSM_RLC_GPRS_Qos_Info;
  static constexpr std::uint16_t kTag = 408;
  static constexpr std::string_view kName = "gsm_rlc_qos";
  static constexpr std::tuple kFields{
      Field{"ie32193", &B::ie32193}, Field{"ie32194", &B::ie32194}, Field{"ie32189", &B::ie32189},
  };
};

template <>
struct BlockFields<CIE_GSM_2230E_Simple_Info> {
  using B = CIE_GSM_2230E_Simple_Info;
  static constexpr std::uint16_t kTag = 412;
  static constexpr std::string_view kName = "gsm_simple_info";
  static constexpr std::tuple kFields{
      Field{"ie32170_first", &B::ie32170_first}, Field{"ie32170_second", &B::ie32170_second},
      Field{"ie32270", &B::ie32270}, Field{"ie32271", &B::ie32271}, Field{"ie32272", &B::ie32272},
      Field{"ie32273", &B::ie32273}, Field{"ie32203", &B::ie32203}, Field{"ie32204", &B::ie32204},
      Field{"ie32215", &B::ie32215}, Field{"ie32216", &B::ie32216}, Field{"ie32217", &B::ie32217},
      Field{"ie32218", &B::ie32218}, Field{"ie32267", &B::ie32267}, Field{"ie32219", &B::ie32219},
      Field{"ie32220", &B::ie32220},
  };
};

}  // namespace loom
// clang-format on
