#pragma once

#include <cstdint>
#include <optional>

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

// Record position 420. The part that service_kind names is present.
struct ServiceBlock {
  std::int16_t service_kind = -1;  // 0: 0 to 3, IE 2408
  std::int32_t ie2410 = -1;        // 24
  std::optional<ServiceKind01> kind01{};
  std::optional<ServiceKind2> kind2{};
  std::optional<ServiceKind3> kind3{};
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

}  // namespace loom
