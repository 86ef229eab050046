#pragma once

#include "components/records/blocks_lte.h"
#include "host/logstore/record_fields.h"

// LTE blocks.
// clang-format off
namespace loom {

template <>
struct BlockFields<LteServingCell> {
  using B = LteServingCell;
  static constexpr std::tuple kFields{
      Field{"identity", &B::identity},
      Field{"ie33355", &B::ie33355}, Field{"ie33356", &B::ie33356}, Field{"ie33357", &B::ie33357},
      Field{"ie33359", &B::ie33359}, Field{"ie33360", &B::ie33360},
      Field{"earfcn", &B::earfcn},
      Field{"physical_cell_id", &B::physical_cell_id},
      Field{"ie33366", &B::ie33366}, Field{"ie33346", &B::ie33346}, Field{"ie33354", &B::ie33354},
      Field{"ie33358", &B::ie33358}, Field{"ie33364", &B::ie33364}, Field{"ie33365", &B::ie33365},
      Field{"ie33367", &B::ie33367}, Field{"ie33368", &B::ie33368}, Field{"ie33369", &B::ie33369},
      Field{"ie33370", &B::ie33370}, Field{"ie33371", &B::ie33371}, Field{"ie33372", &B::ie33372},
      Field{"ie33373", &B::ie33373}, Field{"ie33345", &B::ie33345}, Field{"ie33348", &B::ie33348},
      Field{"ie33349", &B::ie33349}, Field{"ie33415", &B::ie33415}, Field{"ie33416", &B::ie33416},
      Field{"ie33417", &B::ie33417}, Field{"ie33418", &B::ie33418}, Field{"ie33419", &B::ie33419},
      Field{"ie33420", &B::ie33420},
  };
};

template <>
struct BlockFields<LteMeas24> {
  using B = LteMeas24;
  static constexpr std::tuple kFields{
      Field{"ie33650", &B::ie33650}, Field{"ie33652", &B::ie33652}, Field{"ie33653", &B::ie33653},
      Field{"ie33654", &B::ie33654}, Field{"ie33655", &B::ie33655}, Field{"ie33656", &B::ie33656},
      Field{"ie33657", &B::ie33657},
  };
};

template <>
struct BlockFields<LteMeas32> {
  using B = LteMeas32;
  static constexpr std::tuple kFields{
      Field{"ie33658", &B::ie33658}, Field{"ie33659", &B::ie33659}, Field{"ie33660", &B::ie33660},
      Field{"ie33661", &B::ie33661}, Field{"ie33662", &B::ie33662}, Field{"ie33663", &B::ie33663},
      Field{"ie33664", &B::ie33664},
  };
};

template <>
struct BlockFields<LteMeas36> {
  using B = LteMeas36;
  static constexpr std::tuple kFields{
      Field{"ie33669", &B::ie33669}, Field{"ie33670", &B::ie33670},
  };
};

template <>
struct BlockFields<LteCellMeasurements> {
  using B = LteCellMeasurements;
  static constexpr std::tuple kFields{
      Field{"ie33371", &B::ie33371},
      Field{"earfcn_33374", &B::earfcn_33374},
      Field{"ie33375", &B::ie33375}, Field{"ie33376", &B::ie33376}, Field{"ie33377", &B::ie33377},
      Field{"ie33378", &B::ie33378}, Field{"ie33379", &B::ie33379},
      Field{"earfcn_33381", &B::earfcn_33381},
      Field{"ie33382", &B::ie33382}, Field{"ie33383", &B::ie33383}, Field{"ie33384", &B::ie33384},
      Field{"ie33385", &B::ie33385}, Field{"ie33414", &B::ie33414},
  };
};

template <>
struct BlockFields<LteNeighbour> {
  using B = LteNeighbour;
  static constexpr std::tuple kFields{
      Field{"earfcn", &B::earfcn},
      Field{"physical_cell_id", &B::physical_cell_id},
      Field{"ie33899", &B::ie33899}, Field{"ie33963", &B::ie33963}, Field{"ie34027", &B::ie34027},
      Field{"ie34091", &B::ie34091},
  };
};

template <>
struct BlockFields<LteNeighbourList> {
  using B = LteNeighbourList;
  static constexpr std::tuple kFields{
      Field{"count_plus_one", &B::count_plus_one},
      Field{"neighbours", &B::neighbours},
  };
};

template <>
struct BlockFields<LtePhysicalConfig> {
  using B = LtePhysicalConfig;
  static constexpr std::tuple kFields{
      Field{"ie33439", &B::ie33439}, Field{"ie33440", &B::ie33440}, Field{"ie33441", &B::ie33441},
      Field{"ie33671", &B::ie33671}, Field{"ie33672", &B::ie33672}, Field{"ie33681", &B::ie33681},
      Field{"ie33682", &B::ie33682}, Field{"ie33683", &B::ie33683}, Field{"ie33684", &B::ie33684},
      Field{"ie33685", &B::ie33685}, Field{"ie33686", &B::ie33686}, Field{"ie33687", &B::ie33687},
      Field{"ie33690", &B::ie33690}, Field{"ie33691", &B::ie33691}, Field{"ie33692", &B::ie33692},
      Field{"ie33693", &B::ie33693}, Field{"ie33694", &B::ie33694}, Field{"ie33695", &B::ie33695},
      Field{"ie33696", &B::ie33696}, Field{"ie33697", &B::ie33697},
  };
};

template <>
struct BlockFields<LteChannelStatistics> {
  using B = LteChannelStatistics;
  static constexpr std::tuple kFields{
      Field{"ie33423", &B::ie33423}, Field{"ie33436", &B::ie33436}, Field{"ie33437", &B::ie33437},
      Field{"ie33675", &B::ie33675}, Field{"ie33676", &B::ie33676}, Field{"ie33677", &B::ie33677},
      Field{"ie33678", &B::ie33678}, Field{"ie33679", &B::ie33679}, Field{"ie33680", &B::ie33680},
      Field{"ie34570", &B::ie34570}, Field{"ie34571", &B::ie34571}, Field{"ie34572", &B::ie34572},
      Field{"ie34573", &B::ie34573}, Field{"ie34574", &B::ie34574}, Field{"ie34575", &B::ie34575},
      Field{"ie34576", &B::ie34576}, Field{"ie34577", &B::ie34577}, Field{"ie34578", &B::ie34578},
      Field{"ie34579", &B::ie34579}, Field{"ie34580", &B::ie34580}, Field{"ie34581", &B::ie34581},
      Field{"ie34582", &B::ie34582}, Field{"ie34583", &B::ie34583}, Field{"ie34584", &B::ie34584},
      Field{"ie34585", &B::ie34585}, Field{"ie34586", &B::ie34586}, Field{"ie34587", &B::ie34587},
      Field{"ie34588", &B::ie34588}, Field{"ie34685", &B::ie34685}, Field{"ie34686", &B::ie34686},
      Field{"ie34687", &B::ie34687}, Field{"ie34688", &B::ie34688}, Field{"ie34689", &B::ie34689},
      Field{"ie34690", &B::ie34690},
  };
};

template <>
struct BlockFields<LteHeaderFirst> {
  using B = LteHeaderFirst;
  static constexpr std::tuple kFields{
      Field{"ie34160", &B::ie34160}, Field{"ie34161", &B::ie34161}, Field{"ie34162", &B::ie34162},
      Field{"ie34163", &B::ie34163}, Field{"ie34164", &B::ie34164}, Field{"ie34166", &B::ie34166},
      Field{"ie34169", &B::ie34169},
  };
};

template <>
struct BlockFields<LteHeaderSecond> {
  using B = LteHeaderSecond;
  static constexpr std::tuple kFields{
      Field{"ie34165", &B::ie34165}, Field{"ie34167", &B::ie34167}, Field{"ie34168", &B::ie34168},
  };
};

template <>
struct BlockFields<LteEntry> {
  using B = LteEntry;
  static constexpr std::tuple kFields{
      Field{"ie34170", &B::ie34170}, Field{"ie34220", &B::ie34220}, Field{"ie34320", &B::ie34320},
      Field{"ie34370", &B::ie34370}, Field{"ie34420", &B::ie34420}, Field{"ie34470", &B::ie34470},
  };
};

template <>
struct BlockFields<LteMeasBlock> {
  using B = LteMeasBlock;
  static constexpr std::uint16_t kTag = 512;
  static constexpr std::string_view kName = "lte_measurements";
  static constexpr std::tuple kFields{
      Field{"serving", &B::serving},
      Field{"meas24", &B::meas24},
      Field{"meas32", &B::meas32},
      Field{"meas36", &B::meas36},
      Field{"cells", &B::cells},
      Field{"neighbours", &B::neighbours},
      Field{"physical", &B::physical},
      Field{"statistics", &B::statistics},
      Field{"header_first", &B::header_first},
      Field{"header_second", &B::header_second},
      Field{"entry_count", &B::entry_count},
      Field{"entries", &B::entries},
  };
};

template <>
struct BlockFields<LteSignalFields> {
  using B = LteSignalFields;
  static constexpr std::tuple kFields{
      Field{"ie33365", &B::ie33365}, Field{"ie33366", &B::ie33366}, Field{"ie33367", &B::ie33367},
      Field{"ie33421", &B::ie33421}, Field{"ie33422", &B::ie33422}, Field{"ie33423", &B::ie33423},
      Field{"ie33424", &B::ie33424}, Field{"ie33425", &B::ie33425}, Field{"ie33426", &B::ie33426},
      Field{"ie33428", &B::ie33428}, Field{"ie33436", &B::ie33436}, Field{"ie33437", &B::ie33437},
      Field{"ie33438", &B::ie33438}, Field{"ie33439", &B::ie33439}, Field{"ie33440", &B::ie33440},
      Field{"ie33441", &B::ie33441}, Field{"ie33458", &B::ie33458}, Field{"ie33474", &B::ie33474},
      Field{"ie33506", &B::ie33506}, Field{"ie33522", &B::ie33522}, Field{"ie33650", &B::ie33650},
      Field{"ie33652", &B::ie33652}, Field{"ie33657", &B::ie33657}, Field{"ie33658", &B::ie33658},
      Field{"ie33659", &B::ie33659}, Field{"ie33663", &B::ie33663}, Field{"ie33667", &B::ie33667},
      Field{"ie33668", &B::ie33668}, Field{"ie33693", &B::ie33693}, Field{"ie33694", &B::ie33694},
      Field{"ie33695", &B::ie33695}, Field{"ie33696", &B::ie33696}, Field{"ie33697", &B::ie33697},
      Field{"ie34574", &B::ie34574}, Field{"ie34575", &B::ie34575}, Field{"ie34581", &B::ie34581},
  };
};

template <>
struct BlockFields<LteSignalBlock> {
  using B = LteSignalBlock;
  static constexpr std::uint16_t kTag = 516;
  static constexpr std::string_view kName = "lte_signalling";
  static constexpr std::tuple kFields{
      Field{"serving", &B::serving},
      Field{"fields", &B::fields},
  };
};

}  // namespace loom
// clang-format on
