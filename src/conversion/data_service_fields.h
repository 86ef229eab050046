#pragma once

#include <cstdint>

#include "components/records/blocks_service.h"
#include "conversion/field_table.h"

// Tables of the data-service blocks.
namespace loom {

inline constexpr double kPerUnit128 = 0.0078125;
inline constexpr double kKibibyte = 0.0009765625;
inline constexpr Rule k128th = Scaled(kPerUnit128);
inline constexpr Rule kKibibytes = Scaled(kKibibyte);

// clang-format off
inline constexpr auto kServiceFields = FieldTable<ServiceBlock>({
    Own<&ServiceBlock::ie2410>(),
});

inline constexpr std::int32_t kServiceKind01Counter = 2411;
inline constexpr auto kServiceKind01Fields = FieldTable<ServiceKind01>({
    Own<&ServiceKind01::ie2412>(),
    Own<&ServiceKind01::ie2413>(),
    Own<&ServiceKind01::ie2414>(k128th),
    Own<&ServiceKind01::ie2415>(k128th),
    Own<&ServiceKind01::ie2416>(k128th),
    Own<&ServiceKind01::ie2417>(k128th),
    Own<&ServiceKind01::ie2418>(),
});

inline constexpr std::int32_t kServiceKind2Counter = 2419;
inline constexpr auto kServiceKind2Fields = FieldTable<ServiceKind2>({
    Own<&ServiceKind2::ie2420>(),
    Own<&ServiceKind2::ie2421>(kAsFloat),
    Own<&ServiceKind2::ie2422>(k128th),
    Own<&ServiceKind2::ie2423>(k128th),
    Own<&ServiceKind2::ie2424>(k128th),
    Own<&ServiceKind2::ie2425>(k128th),
    Own<&ServiceKind2::ie2426>(),
});

inline constexpr auto kServiceKind3Fields = FieldTable<ServiceKind3>({
    Own<&ServiceKind3::ie2427>(),
    Own<&ServiceKind3::ie2428>(),
    Own<&ServiceKind3::ie2429>(),
    Own<&ServiceKind3::ie2430>(),
    Own<&ServiceKind3::ie2431>(),
    Own<&ServiceKind3::ie2432>(),
    Own<&ServiceKind3::ie2433>(),
    Own<&ServiceKind3::ie2434>(),
    Own<&ServiceKind3::ie2435>(),
});

// Position 272; the doubles are byte counters.
inline constexpr auto kDataTestFirstFields = FieldTable<DataTestFirst>({
    Own<&DataTestFirst::ie21265>(),
    Own<&DataTestFirst::ie21266>(),
    Own<&DataTestFirst::ie21267>(),
    Own<&DataTestFirst::ie21268>(),
    Own<&DataTestFirst::ie21269>(),
    Own<&DataTestFirst::ie21270>(),
    Own<&DataTestFirst::ie21271>(kKibibytes),
    Own<&DataTestFirst::ie21272>(kKibibytes),
    Own<&DataTestFirst::ie21273>(kKibibytes),
    Own<&DataTestFirst::ie21274>(kKibibytes),
    Own<&DataTestFirst::ie21275>(kKibibytes),
    Own<&DataTestFirst::ie21276>(kKibibytes),
    Own<&DataTestFirst::ie21277>(),
    Own<&DataTestFirst::ie21278>(),
    Own<&DataTestFirst::ie21279>(),
    Own<&DataTestFirst::ie21280>(),
    Own<&DataTestFirst::ie21281>(),
    Own<&DataTestFirst::ie21282>(),
    Own<&DataTestFirst::ie21283>(),
    Own<&DataTestFirst::ie21284>(),
    Own<&DataTestFirst::ie21285>(),
    Own<&DataTestFirst::ie21286>(),
});

// Position 276
inline constexpr auto kDataTestSecondFields = FieldTable<DataTestSecond>({
    Own<&DataTestSecond::ie21287>(),
    Own<&DataTestSecond::ie21288>(),
    Own<&DataTestSecond::ie21289>(),
    Own<&DataTestSecond::ie21290>(),
    Own<&DataTestSecond::ie21291>(),
    Own<&DataTestSecond::ie21292>(),
    Own<&DataTestSecond::ie21293>(),
    Own<&DataTestSecond::ie21294>(),
    Own<&DataTestSecond::ie21295>(),
    Own<&DataTestSecond::ie21296>(),
    Own<&DataTestSecond::ie21297>(),
    Own<&DataTestSecond::ie21298>(),
    Own<&DataTestSecond::ie21299>(),
    Own<&DataTestSecond::ie21300>(),
    Own<&DataTestSecond::ie21301>(),
    Own<&DataTestSecond::ie21302>(),
    Own<&DataTestSecond::ie21303>(),
    Own<&DataTestSecond::ie21304>(),
    Own<&DataTestSecond::ie21305>(),
    Own<&DataTestSecond::ie21306>(),
    Own<&DataTestSecond::ie21307>(),
    Own<&DataTestSecond::ie21308>(),
    Own<&DataTestSecond::ie21309>(),
    Own<&DataTestSecond::ie21310>(),
    Own<&DataTestSecond::ie21311>(),
    Own<&DataTestSecond::ie21312>(),
    Own<&DataTestSecond::ie21313>(),
    Own<&DataTestSecond::ie21314>(),
    Own<&DataTestSecond::ie21315>(),
    Own<&DataTestSecond::ie21316>(),
    Own<&DataTestSecond::ie21317>(),
    Own<&DataTestSecond::ie21318>(),
    Own<&DataTestSecond::ie21319>(),
    Own<&DataTestSecond::ie21320>(),
    Own<&DataTestSecond::ie21321>(),
    Own<&DataTestSecond::ie21322>(),
    Own<&DataTestSecond::ie21323>(),
    Own<&DataTestSecond::ie21324>(),
});
// clang-format on

}  // namespace loom
