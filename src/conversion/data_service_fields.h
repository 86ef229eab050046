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
    {&ServiceBlock::ie2410, IE{2410}},
});

inline constexpr std::int32_t kServiceKind01Counter = 2411;
inline constexpr auto kServiceKind01Fields = FieldTable<ServiceKind01>({
    {&ServiceKind01::ie2412, IE{2412}},
    {&ServiceKind01::ie2413, IE{2413}},
    {&ServiceKind01::ie2414, IE{2414}, k128th},
    {&ServiceKind01::ie2415, IE{2415}, k128th},
    {&ServiceKind01::ie2416, IE{2416}, k128th},
    {&ServiceKind01::ie2417, IE{2417}, k128th},
    {&ServiceKind01::ie2418, IE{2418}},
});

inline constexpr std::int32_t kServiceKind2Counter = 2419;
inline constexpr auto kServiceKind2Fields = FieldTable<ServiceKind2>({
    {&ServiceKind2::ie2420, IE{2420}},
    {&ServiceKind2::ie2421, IE{2421}, kAsFloat},
    {&ServiceKind2::ie2422, IE{2422}, k128th},
    {&ServiceKind2::ie2423, IE{2423}, k128th},
    {&ServiceKind2::ie2424, IE{2424}, k128th},
    {&ServiceKind2::ie2425, IE{2425}, k128th},
    {&ServiceKind2::ie2426, IE{2426}},
});

inline constexpr auto kServiceKind3Fields = FieldTable<ServiceKind3>({
    {&ServiceKind3::ie2427, IE{2427}},
    {&ServiceKind3::ie2428, IE{2428}},
    {&ServiceKind3::ie2429, IE{2429}},
    {&ServiceKind3::ie2430, IE{2430}},
    {&ServiceKind3::ie2431, IE{2431}},
    {&ServiceKind3::ie2432, IE{2432}},
    {&ServiceKind3::ie2433, IE{2433}},
    {&ServiceKind3::ie2434, IE{2434}},
    {&ServiceKind3::ie2435, IE{2435}},
});

// Position 272; the doubles are byte counters.
inline constexpr auto kDataTestFirstFields = FieldTable<DataTestFirst>({
    {&DataTestFirst::ie21265, IE{21265}},
    {&DataTestFirst::ie21266, IE{21266}},
    {&DataTestFirst::ie21267, IE{21267}},
    {&DataTestFirst::ie21268, IE{21268}},
    {&DataTestFirst::ie21269, IE{21269}},
    {&DataTestFirst::ie21270, IE{21270}},
    {&DataTestFirst::ie21271, IE{21271}, kKibibytes},
    {&DataTestFirst::ie21272, IE{21272}, kKibibytes},
    {&DataTestFirst::ie21273, IE{21273}, kKibibytes},
    {&DataTestFirst::ie21274, IE{21274}, kKibibytes},
    {&DataTestFirst::ie21275, IE{21275}, kKibibytes},
    {&DataTestFirst::ie21276, IE{21276}, kKibibytes},
    {&DataTestFirst::ie21277, IE{21277}},
    {&DataTestFirst::ie21278, IE{21278}},
    {&DataTestFirst::ie21279, IE{21279}},
    {&DataTestFirst::ie21280, IE{21280}},
    {&DataTestFirst::ie21281, IE{21281}},
    {&DataTestFirst::ie21282, IE{21282}},
    {&DataTestFirst::ie21283, IE{21283}},
    {&DataTestFirst::ie21284, IE{21284}},
    {&DataTestFirst::ie21285, IE{21285}},
    {&DataTestFirst::ie21286, IE{21286}},
});

// Position 276
inline constexpr auto kDataTestSecondFields = FieldTable<DataTestSecond>({
    {&DataTestSecond::ie21287, IE{21287}},
    {&DataTestSecond::ie21288, IE{21288}},
    {&DataTestSecond::ie21289, IE{21289}},
    {&DataTestSecond::ie21290, IE{21290}},
    {&DataTestSecond::ie21291, IE{21291}},
    {&DataTestSecond::ie21292, IE{21292}},
    {&DataTestSecond::ie21293, IE{21293}},
    {&DataTestSecond::ie21294, IE{21294}},
    {&DataTestSecond::ie21295, IE{21295}},
    {&DataTestSecond::ie21296, IE{21296}},
    {&DataTestSecond::ie21297, IE{21297}},
    {&DataTestSecond::ie21298, IE{21298}},
    {&DataTestSecond::ie21299, IE{21299}},
    {&DataTestSecond::ie21300, IE{21300}},
    {&DataTestSecond::ie21301, IE{21301}},
    {&DataTestSecond::ie21302, IE{21302}},
    {&DataTestSecond::ie21303, IE{21303}},
    {&DataTestSecond::ie21304, IE{21304}},
    {&DataTestSecond::ie21305, IE{21305}},
    {&DataTestSecond::ie21306, IE{21306}},
    {&DataTestSecond::ie21307, IE{21307}},
    {&DataTestSecond::ie21308, IE{21308}},
    {&DataTestSecond::ie21309, IE{21309}},
    {&DataTestSecond::ie21310, IE{21310}},
    {&DataTestSecond::ie21311, IE{21311}},
    {&DataTestSecond::ie21312, IE{21312}},
    {&DataTestSecond::ie21313, IE{21313}},
    {&DataTestSecond::ie21314, IE{21314}},
    {&DataTestSecond::ie21315, IE{21315}},
    {&DataTestSecond::ie21316, IE{21316}},
    {&DataTestSecond::ie21317, IE{21317}},
    {&DataTestSecond::ie21318, IE{21318}},
    {&DataTestSecond::ie21319, IE{21319}},
    {&DataTestSecond::ie21320, IE{21320}},
    {&DataTestSecond::ie21321, IE{21321}},
    {&DataTestSecond::ie21322, IE{21322}},
    {&DataTestSecond::ie21323, IE{21323}},
    {&DataTestSecond::ie21324, IE{21324}},
});
// clang-format on

}  // namespace loom
