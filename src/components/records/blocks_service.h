#pragma once

#include <cstdint>
#include <optional>

#include "components/records/fields.h"
#include "components/records/lists.h"

// Blocks of data-service records. The number behind a member is its byte position in the block. Members start at their
// absent value: 32-bit -1 (-2 invalid), float and double -1.0 (-2.0 invalid).
namespace loom {

// Results of the service kinds 0 and 1.
struct ServiceKind01 {
  std::int64_t ie2411 = 0;      // 48: counts when above 0; its low 32 bits become the IE
  std::int32_t ie2412 = -1;     // 56
  float ie2413 = kAbsentFloat;  // 64
  std::int32_t ie2414 = -1;     // 68: / 128
  std::int32_t ie2415 = -1;     // 72: / 128
  std::int32_t ie2417 = -1;     // 76: / 128
  std::int32_t ie2416 = -1;     // 80: / 128
  std::int32_t ie2418 = -1;     // 88
};
template <>
struct BlockFields<ServiceKind01> {
  using B = ServiceKind01;
  using List =
      FieldList<&B::ie2411, &B::ie2412, &B::ie2413, &B::ie2414, &B::ie2415, &B::ie2417, &B::ie2416, &B::ie2418>;
};

// Results of the service kind 2.
struct ServiceKind2 {
  double ie2424 = kAbsentDouble;  // 48: / 128
  double ie2425 = kAbsentDouble;  // 56: / 128
  std::int32_t ie2426 = -1;       // 64
  std::int32_t ie2421 = -1;       // 72: becomes a float
  std::int32_t ie2420 = -1;       // 80
  std::int64_t ie2419 = 0;        // 88: counts when not 0; its low 32 bits become the IE
  double ie2422 = kAbsentDouble;  // 96: / 128
  double ie2423 = kAbsentDouble;  // 104: / 128
};
template <>
struct BlockFields<ServiceKind2> {
  using B = ServiceKind2;
  using List =
      FieldList<&B::ie2424, &B::ie2425, &B::ie2426, &B::ie2421, &B::ie2420, &B::ie2419, &B::ie2422, &B::ie2423>;
};

// Results of the service kind 3.
struct ServiceKind3 {
  RecordText ie2427{};          // 48
  RecordText ie2428{};          // 52
  std::int32_t ie2429 = -1;     // 56
  std::int32_t ie2430 = -1;     // 60
  std::int32_t ie2431 = -1;     // 64
  float ie2432 = kAbsentFloat;  // 68
  float ie2433 = kAbsentFloat;  // 72
  float ie2434 = kAbsentFloat;  // 76
  float ie2435 = kAbsentFloat;  // 80
};
template <>
struct BlockFields<ServiceKind3> {
  using B = ServiceKind3;
  using List = FieldList<&B::ie2427, &B::ie2428, &B::ie2429, &B::ie2430, &B::ie2431, &B::ie2432, &B::ie2433, &B::ie2434,
                         &B::ie2435>;
};

// Record position 420. The part that service_kind names is present.
struct ServiceBlock {
  std::int16_t service_kind = -1;  // 0: 0 to 3, IE 2408
  std::int32_t ie2410 = -1;        // 24
  std::optional<ServiceKind01> kind01{};
  std::optional<ServiceKind2> kind2{};
  std::optional<ServiceKind3> kind3{};
};
template <>
struct BlockFields<ServiceBlock> {
  using B = ServiceBlock;
  using List = FieldList<&B::service_kind, &B::ie2410, &B::kind01, &B::kind2, &B::kind3>;
};

// Record position 272: data test statistics. The doubles count bytes and become KiB (value / 1024, a float).
struct DataTestFirst {
  std::int32_t ie21265 = -1;
  std::int32_t ie21266 = -1;
  std::int32_t ie21267 = -1;
  std::int32_t ie21268 = -1;
  std::int32_t ie21269 = -1;
  std::int32_t ie21270 = -1;
  double ie21271 = kAbsentDouble;
  double ie21272 = kAbsentDouble;
  double ie21273 = kAbsentDouble;
  double ie21274 = kAbsentDouble;
  double ie21275 = kAbsentDouble;
  double ie21276 = kAbsentDouble;
  std::int32_t ie21277 = -1;
  std::int32_t ie21278 = -1;
  std::int32_t ie21279 = -1;
  std::int32_t ie21280 = -1;
  std::int32_t ie21281 = -1;
  std::int32_t ie21282 = -1;
  std::int32_t ie21283 = -1;
  std::int32_t ie21284 = -1;
  std::int32_t ie21285 = -1;
  std::int32_t ie21286 = -1;
};
template <>
struct BlockFields<DataTestFirst> {
  using B = DataTestFirst;
  using List =
      FieldList<&B::ie21265, &B::ie21266, &B::ie21267, &B::ie21268, &B::ie21269, &B::ie21270, &B::ie21271, &B::ie21272,
                &B::ie21273, &B::ie21274, &B::ie21275, &B::ie21276, &B::ie21277, &B::ie21278, &B::ie21279, &B::ie21280,
                &B::ie21281, &B::ie21282, &B::ie21283, &B::ie21284, &B::ie21285, &B::ie21286>;
};

// Record position 276: data test statistics.
struct DataTestSecond {
  std::int32_t ie21287 = -1;
  std::int32_t ie21288 = -1;
  std::int32_t ie21289 = -1;
  std::int32_t ie21290 = -1;
  std::int32_t ie21291 = -1;
  std::int32_t ie21292 = -1;
  std::int32_t ie21293 = -1;
  std::int32_t ie21294 = -1;
  std::int32_t ie21295 = -1;
  std::int32_t ie21296 = -1;
  std::int32_t ie21297 = -1;
  std::int32_t ie21298 = -1;
  std::int32_t ie21299 = -1;
  std::int32_t ie21300 = -1;
  std::int32_t ie21301 = -1;
  std::int32_t ie21302 = -1;
  std::int32_t ie21303 = -1;
  std::int32_t ie21304 = -1;
  std::int32_t ie21305 = -1;
  std::int32_t ie21306 = -1;
  std::int32_t ie21307 = -1;
  std::int32_t ie21308 = -1;
  std::int32_t ie21309 = -1;
  std::int32_t ie21310 = -1;
  std::int32_t ie21311 = -1;
  std::int32_t ie21312 = -1;
  std::int32_t ie21313 = -1;
  std::int32_t ie21314 = -1;
  std::int32_t ie21315 = -1;
  std::int32_t ie21316 = -1;
  std::int32_t ie21317 = -1;
  std::int32_t ie21318 = -1;
  std::int32_t ie21319 = -1;
  std::int32_t ie21320 = -1;
  std::int32_t ie21321 = -1;
  std::int32_t ie21322 = -1;
  std::int32_t ie21323 = -1;
  std::int32_t ie21324 = -1;
};
template <>
struct BlockFields<DataTestSecond> {
  using B = DataTestSecond;
  using List =
      FieldList<&B::ie21287, &B::ie21288, &B::ie21289, &B::ie21290, &B::ie21291, &B::ie21292, &B::ie21293, &B::ie21294,
                &B::ie21295, &B::ie21296, &B::ie21297, &B::ie21298, &B::ie21299, &B::ie21300, &B::ie21301, &B::ie21302,
                &B::ie21303, &B::ie21304, &B::ie21305, &B::ie21306, &B::ie21307, &B::ie21308, &B::ie21309, &B::ie21310,
                &B::ie21311, &B::ie21312, &B::ie21313, &B::ie21314, &B::ie21315, &B::ie21316, &B::ie21317, &B::ie21318,
                &B::ie21319, &B::ie21320, &B::ie21321, &B::ie21322, &B::ie21323, &B::ie21324>;
};

}  // namespace loom
