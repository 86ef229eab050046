#pragma once

#include "components/records/blocks_service.h"
#include "host/logstore/record_fields.h"

// Data-service blocks.
// clang-format off
namespace loom {

template <>
struct BlockFields<ServiceKind01> {
  using B = ServiceKind01;
  static constexpr std::tuple kFields{
      Field{"ie2411", &B::ie2411}, Field{"ie2412", &B::ie2412}, Field{"ie2413", &B::ie2413},
      Field{"ie2414", &B::ie2414}, Field{"ie2415", &B::ie2415}, Field{"ie2417", &B::ie2417},
      Field{"ie2416", &B::ie2416}, Field{"ie2418", &B::ie2418},
  };
};

template <>
struct BlockFields<ServiceKind2> {
  using B = ServiceKind2;
  static constexpr std::tuple kFields{
      Field{"ie2424", &B::ie2424}, Field{"ie2425", &B::ie2425}, Field{"ie2426", &B::ie2426},
      Field{"ie2421", &B::ie2421}, Field{"ie2420", &B::ie2420}, Field{"ie2419", &B::ie2419},
      Field{"ie2422", &B::ie2422}, Field{"ie2423", &B::ie2423},
  };
};

template <>
struct BlockFields<ServiceKind3> {
  using B = ServiceKind3;
  static constexpr std::tuple kFields{
      Field{"ie2427", &B::ie2427}, Field{"ie2428", &B::ie2428}, Field{"ie2429", &B::ie2429},
      Field{"ie2430", &B::ie2430}, Field{"ie2431", &B::ie2431}, Field{"ie2432", &B::ie2432},
      Field{"ie2433", &B::ie2433}, Field{"ie2434", &B::ie2434}, Field{"ie2435", &B::ie2435},
  };
};

template <>
struct BlockFields<ServiceBlock> {
  using B = ServiceBlock;
  static constexpr std::uint16_t kTag = 420;
  static constexpr std::string_view kName = "service";
  static constexpr std::tuple kFields{
      Field{"service_kind", &B::service_kind},
      Field{"ie2410", &B::ie2410},
      Field{"kind01", &B::kind01},
      Field{"kind2", &B::kind2},
      Field{"kind3", &B::kind3},
  };
};

template <>
struct BlockFields<DataTestFirst> {
  using B = DataTestFirst;
  static constexpr std::uint16_t kTag = 272;
  static constexpr std::string_view kName = "data_test_first";
  static constexpr std::tuple kFields{
      Field{"ie21265", &B::ie21265}, Field{"ie21266", &B::ie21266}, Field{"ie21267", &B::ie21267},
      Field{"ie21268", &B::ie21268}, Field{"ie21269", &B::ie21269}, Field{"ie21270", &B::ie21270},
      Field{"ie21271", &B::ie21271}, Field{"ie21272", &B::ie21272}, Field{"ie21273", &B::ie21273},
      Field{"ie21274", &B::ie21274}, Field{"ie21275", &B::ie21275}, Field{"ie21276", &B::ie21276},
      Field{"ie21277", &B::ie21277}, Field{"ie21278", &B::ie21278}, Field{"ie21279", &B::ie21279},
      Field{"ie21280", &B::ie21280}, Field{"ie21281", &B::ie21281}, Field{"ie21282", &B::ie21282},
      Field{"ie21283", &B::ie21283}, Field{"ie21284", &B::ie21284}, Field{"ie21285", &B::ie21285},
      Field{"ie21286", &B::ie21286},
  };
};

template <>
struct BlockFields<DataTestSecond> {
  using B = DataTestSecond;
  static constexpr std::uint16_t kTag = 276;
  static constexpr std::string_view kName = "data_test_second";
  static constexpr std::tuple kFields{
      Field{"ie21287", &B::ie21287}, Field{"ie21288", &B::ie21288}, Field{"ie21289", &B::ie21289},
      Field{"ie21290", &B::ie21290}, Field{"ie21291", &B::ie21291}, Field{"ie21292", &B::ie21292},
      Field{"ie21293", &B::ie21293}, Field{"ie21294", &B::ie21294}, Field{"ie21295", &B::ie21295},
      Field{"ie21296", &B::ie21296}, Field{"ie21297", &B::ie21297}, Field{"ie21298", &B::ie21298},
      Field{"ie21299", &B::ie21299}, Field{"ie21300", &B::ie21300}, Field{"ie21301", &B::ie21301},
      Field{"ie21302", &B::ie21302}, Field{"ie21303", &B::ie21303}, Field{"ie21304", &B::ie21304},
      Field{"ie21305", &B::ie21305}, Field{"ie21306", &B::ie21306}, Field{"ie21307", &B::ie21307},
      Field{"ie21308", &B::ie21308}, Field{"ie21309", &B::ie21309}, Field{"ie21310", &B::ie21310},
      Field{"ie21311", &B::ie21311}, Field{"ie21312", &B::ie21312}, Field{"ie21313", &B::ie21313},
      Field{"ie21314", &B::ie21314}, Field{"ie21315", &B::ie21315}, Field{"ie21316", &B::ie21316},
      Field{"ie21317", &B::ie21317}, Field{"ie21318", &B::ie21318}, Field{"ie21319", &B::ie21319},
      Field{"ie21320", &B::ie21320}, Field{"ie21321", &B::ie21321}, Field{"ie21322", &B::ie21322},
      Field{"ie21323", &B::ie21323}, Field{"ie21324", &B::ie21324},
  };
};

}  // namespace loom
// clang-format on
