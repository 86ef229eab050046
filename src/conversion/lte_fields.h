#pragma once

#include "components/records/blocks_lte.h"
#include "conversion/field_table.h"
#include "conversion/lte_frequency.h"

// Tables of the LTE blocks. Most fields are written whatever the selection.
// clang-format off
namespace loom {

constexpr std::int32_t AsSigned16(std::int32_t word) { return static_cast<std::int16_t>(word); }
constexpr std::int32_t AsFrequency(std::int32_t earfcn) { return EarfcnToMHz(static_cast<std::uint16_t>(earfcn)); }
constexpr std::int32_t AsRsrq(std::int32_t reported) { return reported / 2 - 20; }

inline constexpr Rule kSigned16 = By(AsSigned16);
inline constexpr Rule kSigned16OrInvalid = kSigned16.Marked({.invalid = 0xFFFF});  // absent is written as invalid
inline constexpr Rule kFrequency = By(AsFrequency);
inline constexpr Rule kCellFrequency = kFrequency.Marked(kNoMarkers);  // 0 without a channel number, as in cell keys
inline constexpr Rule kReportedLevel = Shifted(-141).Marked(kNoMarkers);

// Serving cell of both blocks.
inline constexpr auto kLteServingFields = FieldTable<LteServingCell>({
    {&LteServingCell::ie33355, IE{33355}, kAsIs,             kUnselected},
    {&LteServingCell::ie33356, IE{33356}, kAsIs,             kUnselected},
    {&LteServingCell::ie33357, IE{33357}, kAsIs,             kUnselected},
    {&LteServingCell::ie33359, IE{33359}, kAsIs,             kUnselected},
    {&LteServingCell::ie33360, IE{33360}, kAsIs,             kUnselected},
    {&LteServingCell::ie33366, IE{33366}, kAsIs,             kUnselected},
    {&LteServingCell::physical_cell_id, IE{33362}, kAsIs,    kUnselected},
    {&LteServingCell::earfcn,  IE{33361}, kCellFrequency,    kUnselected},
});

// Serving cell, only while its cell key is above 0.
inline constexpr auto kLteKnownCellFields = FieldTable<LteServingCell>({
    {&LteServingCell::ie33346, IE{33346}, kSigned16,         kUnselected},
    {&LteServingCell::ie33354, IE{33354}, kSigned16,         kUnselected},
    {&LteServingCell::ie33358, IE{33358}, kSigned16,         kUnselected},
    {&LteServingCell::ie33364, IE{33364}, kSigned16,         kUnselected},
    {&LteServingCell::ie33365, IE{33365}, kSigned16,         kUnselected},
    {&LteServingCell::ie33367, IE{33367}, kSigned16,         kUnselected},
    {&LteServingCell::ie33368, IE{33368}, kSigned16,         kUnselected},
    {&LteServingCell::ie33369, IE{33369}, kSigned16,         kUnselected},
    {&LteServingCell::ie33370, IE{33370}, kSigned16,         kUnselected},
    {&LteServingCell::ie33371, IE{33371}, kSigned16,         kUnselected},
    {&LteServingCell::ie33372, IE{33372}, kSigned16,         kUnselected},
    {&LteServingCell::ie33373, IE{33373}, kSigned16,         kUnselected},
    {&LteServingCell::ie33345, IE{33345}, kAsIs,             kUnselected},
    {&LteServingCell::ie33348, IE{33348}, kAsIs,             kUnselected},
    {&LteServingCell::ie33349, IE{33349}, kAsIs,             kUnselected},
    {&LteServingCell::ie33415, IE{33415}, kAsIs,             kUnselected},
    {&LteServingCell::ie33416, IE{33416}, kAsIs,             kUnselected},
    {&LteServingCell::ie33417, IE{33417}, kAsIs,             kUnselected},
    {&LteServingCell::ie33418, IE{33418}, kAsIs,             kUnselected},
    {&LteServingCell::ie33419, IE{33419}, kAsIs,             kUnselected},
    {&LteServingCell::ie33420, IE{33420}, kAsIs,             kUnselected},
});

// Positions 24, 32 and 36 of the measurement block.
inline constexpr auto kLteMeas24Fields = FieldTable<LteMeas24>({
    {&LteMeas24::ie33650, IE{33650}, kSigned16,         kUnselected},
    {&LteMeas24::ie33652, IE{33652}, kSigned16,         kUnselected},
    {&LteMeas24::ie33653, IE{33653}, kSigned16,         kUnselected},
    {&LteMeas24::ie33654, IE{33654}, kSigned16,         kUnselected},
    {&LteMeas24::ie33655, IE{33655}, kSigned16,         kUnselected},
    {&LteMeas24::ie33656, IE{33656}, kSigned16,         kUnselected},
    {&LteMeas24::ie33657, IE{33657}, kSigned16,         kUnselected},
});

inline constexpr auto kLteMeas32Fields = FieldTable<LteMeas32>({
    {&LteMeas32::ie33658, IE{33658}, kSigned16,         kUnselected},
    {&LteMeas32::ie33659, IE{33659}, kSigned16,         kUnselected},
    {&LteMeas32::ie33660, IE{33660}, kSigned16,         kUnselected},
    {&LteMeas32::ie33661, IE{33661}, kSigned16,         kUnselected},
    {&LteMeas32::ie33662, IE{33662}, kSigned16,         kUnselected},
    {&LteMeas32::ie33663, IE{33663}, kSigned16,         kUnselected},
    {&LteMeas32::ie33664, IE{33664}, kSigned16,         kUnselected},
});

inline constexpr auto kLteMeas36Fields = FieldTable<LteMeas36>({
    {&LteMeas36::ie33669, IE{33669}, kSigned16,         kUnselected},
    {&LteMeas36::ie33670, IE{33670}, kSigned16,         kUnselected},
});

// Cell measurements.
inline constexpr auto kLteCellMeasurementFields = FieldTable<LteCellMeasurements>({
    {&LteCellMeasurements::ie33371,      IE{33371}, kSigned16,         kUnselected},
    {&LteCellMeasurements::earfcn_33374, IE{33374}, kFrequency,        kUnselected},
    {&LteCellMeasurements::ie33375,      IE{33375}, kSigned16,         kUnselected},
    {&LteCellMeasurements::ie33376,      IE{33376}, kSigned16,         kUnselected},
    {&LteCellMeasurements::ie33377,      IE{33377}, kSigned16,         kUnselected},
    {&LteCellMeasurements::ie33378,      IE{33378}, kSigned16,         kUnselected},
    {&LteCellMeasurements::ie33379,      IE{33379}, kSigned16,         kUnselected},
    {&LteCellMeasurements::earfcn_33381, IE{33381}, kFrequency,        kUnselected},
    {&LteCellMeasurements::ie33382,      IE{33382}, kSigned16,         kUnselected},
    {&LteCellMeasurements::ie33383,      IE{33383}, kSigned16,         kUnselected},
    {&LteCellMeasurements::ie33384,      IE{33384}, kSigned16,         kUnselected},
    {&LteCellMeasurements::ie33385,      IE{33385}, kSigned16,         kUnselected},
    {&LteCellMeasurements::ie33414,      IE{33414}, kSigned16OrInvalid, kUnselected},
});

// Neighbours. Entry k becomes IE id + k. The cell key, IE 33835 + k, is made of two fields.
inline constexpr std::int32_t kLteNeighbourKey = 33835;
inline constexpr std::int32_t kLteNeighbourKeySelection = 33834;
inline constexpr std::size_t kLteNeighbours = 63;  // the number 0 of an array stands for its selection
inline constexpr auto kLteNeighbourFields = FieldTable<LteNeighbour>({
    {&LteNeighbour::earfcn,           IE{33707}, kCellFrequency,                       SelectedBy(33706)},
    {&LteNeighbour::physical_cell_id, IE{33771}, kSigned16,                            SelectedBy(33770)},
    {&LteNeighbour::ie33899,          IE{33899}, kReportedLevel.Marked(OnlyAbsent(0)), SelectedBy(33898)},
    {&LteNeighbour::ie33963,          IE{33963}, By(AsRsrq).Marked(kNoMarkers),        SelectedBy(33962)},
    {&LteNeighbour::ie34027,          IE{34027}, kReportedLevel,                       SelectedBy(34026)},
    {&LteNeighbour::ie34091,          IE{34091}, kAsIs.Marked(OnlyAbsent(0xFF)),       SelectedBy(34090)},
});

// Physical configuration. From IE 33671 on, a value that the block lacks is written as invalid.
inline constexpr auto kLtePhysicalFields = FieldTable<LtePhysicalConfig>({
    {&LtePhysicalConfig::ie33439, IE{33439}, kSigned16,         kUnselected},
    {&LtePhysicalConfig::ie33440, IE{33440}, kSigned16,         kUnselected},
    {&LtePhysicalConfig::ie33441, IE{33441}, kSigned16,         kUnselected},
    {&LtePhysicalConfig::ie33671, IE{33671}, kSigned16OrInvalid, kUnselected},
    {&LtePhysicalConfig::ie33672, IE{33672}, kSigned16OrInvalid, kUnselected},
    {&LtePhysicalConfig::ie33681, IE{33681}, kSigned16OrInvalid, kUnselected},
    {&LtePhysicalConfig::ie33682, IE{33682}, kSigned16OrInvalid, kUnselected},
    {&LtePhysicalConfig::ie33683, IE{33683}, kSigned16OrInvalid, kUnselected},
    {&LtePhysicalConfig::ie33684, IE{33684}, kSigned16OrInvalid, kUnselected},
    {&LtePhysicalConfig::ie33685, IE{33685}, kSigned16OrInvalid, kUnselected},
    {&LtePhysicalConfig::ie33686, IE{33686}, kSigned16OrInvalid, kUnselected},
    {&LtePhysicalConfig::ie33687, IE{33687}, kSigned16OrInvalid, kUnselected},
    {&LtePhysicalConfig::ie33690, IE{33690}, kSigned16OrInvalid, kUnselected},
    {&LtePhysicalConfig::ie33691, IE{33691}, kSigned16OrInvalid, kUnselected},
    {&LtePhysicalConfig::ie33692, IE{33692}, kSigned16OrInvalid, kUnselected},
    {&LtePhysicalConfig::ie33693, IE{33693}, kSigned16OrInvalid, kUnselected},
    {&LtePhysicalConfig::ie33694, IE{33694}, kSigned16OrInvalid, kUnselected},
    {&LtePhysicalConfig::ie33695, IE{33695}, kSigned16OrInvalid, kUnselected},
    {&LtePhysicalConfig::ie33696, IE{33696}, kSigned16OrInvalid, kUnselected},
    {&LtePhysicalConfig::ie33697, IE{33697}, kSigned16OrInvalid, kUnselected},
});

// Channel statistics.
inline constexpr auto kLteStatisticsFields = FieldTable<LteChannelStatistics>({
    {&LteChannelStatistics::ie33423, IE{33423}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie33436, IE{33436}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie33437, IE{33437}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie33675, IE{33675}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie33676, IE{33676}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie33677, IE{33677}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie33678, IE{33678}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie33679, IE{33679}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie33680, IE{33680}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie34570, IE{34570}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie34571, IE{34571}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie34572, IE{34572}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie34573, IE{34573}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie34574, IE{34574}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie34575, IE{34575}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie34576, IE{34576}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie34577, IE{34577}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie34578, IE{34578}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie34579, IE{34579}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie34580, IE{34580}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie34581, IE{34581}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie34582, IE{34582}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie34583, IE{34583}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie34584, IE{34584}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie34585, IE{34585}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie34586, IE{34586}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie34587, IE{34587}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie34588, IE{34588}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie34685, IE{34685}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie34686, IE{34686}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie34687, IE{34687}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie34688, IE{34688}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie34689, IE{34689}, kAsIs,             kUnselected},
    {&LteChannelStatistics::ie34690, IE{34690}, kAsIs,             kUnselected},
});

// First bytes of the measurement block.
inline constexpr auto kLteHeaderFirstFields = FieldTable<LteHeaderFirst>({
    {&LteHeaderFirst::ie34160, IE{34160}, kAsIs,             kAlways},
    {&LteHeaderFirst::ie34161, IE{34161}, kAsIs,             kAlways},
    {&LteHeaderFirst::ie34162, IE{34162}, kAsIs,             kAlways},
    {&LteHeaderFirst::ie34163, IE{34163}, kAsIs,             kAlways},
    {&LteHeaderFirst::ie34164, IE{34164}, kAsIs,             kAlways},
    {&LteHeaderFirst::ie34166, IE{34166}, kAsIs,             kAlways},
    {&LteHeaderFirst::ie34169, IE{34169}, kAsIs,             kAlways},
});

inline constexpr auto kLteHeaderSecondFields = FieldTable<LteHeaderSecond>({
    {&LteHeaderSecond::ie34165, IE{34165}, kAsIs,             kAlways},
    {&LteHeaderSecond::ie34167, IE{34167}, kAsIs,             kAlways},
    {&LteHeaderSecond::ie34168, IE{34168}, kAsIs,             kAlways},
});

// Entries of the measurement block. Entry i becomes IE id + i.
inline constexpr std::size_t kLteEntries = 50;
inline constexpr auto kLteEntryFields = FieldTable<LteEntry>({
    {&LteEntry::ie34170, IE{34170}, kAsIs,             kUnselected},
    {&LteEntry::ie34220, IE{34220}, kAsIs,             kUnselected},
    {&LteEntry::ie34320, IE{34320}, kAsIs,             kUnselected},
    {&LteEntry::ie34370, IE{34370}, kAsIs,             kUnselected},
    {&LteEntry::ie34420, IE{34420}, kAsIs,             kUnselected},
    {&LteEntry::ie34470, IE{34470}, kAsIs,             kUnselected},
});

// Signalling block.
inline constexpr auto kLteSignalFields = FieldTable<LteSignalFields>({
    {&LteSignalFields::ie33365, IE{33365}, kSigned16,         kUnselected},
    {&LteSignalFields::ie33366, IE{33366}, kSigned16,         kUnselected},
    {&LteSignalFields::ie33367, IE{33367}, kSigned16,         kUnselected},
    {&LteSignalFields::ie33421, IE{33421}, kAsIs,             kUnselected},
    {&LteSignalFields::ie33422, IE{33422}, kAsIs,             kUnselected},
    {&LteSignalFields::ie33423, IE{33423}, kAsIs,             kUnselected},
    {&LteSignalFields::ie33424, IE{33424}, kAsIs,             kUnselected},
    {&LteSignalFields::ie33425, IE{33425}, kAsIs,             kUnselected},
    {&LteSignalFields::ie33426, IE{33426}, kAsIs,             kUnselected},
    {&LteSignalFields::ie33428, IE{33428}, kAsIs,             kUnselected},
    {&LteSignalFields::ie33436, IE{33436}, kAsIs,             kUnselected},
    {&LteSignalFields::ie33437, IE{33437}, kAsIs,             kUnselected},
    {&LteSignalFields::ie33438, IE{33438}, kSigned16,         kUnselected},
    {&LteSignalFields::ie33439, IE{33439}, kSigned16,         kUnselected},
    {&LteSignalFields::ie33440, IE{33440}, kSigned16,         kUnselected},
    {&LteSignalFields::ie33441, IE{33441}, kSigned16,         kUnselected},
    {&LteSignalFields::ie33458, IE{33458}, kAsIs,             kUnselected},
    {&LteSignalFields::ie33474, IE{33474}, kAsIs,             kUnselected},
    {&LteSignalFields::ie33506, IE{33506}, kAsIs,             kUnselected},
    {&LteSignalFields::ie33522, IE{33522}, kAsIs,             kUnselected},
    {&LteSignalFields::ie33650, IE{33650}, kSigned16,         kUnselected},
    {&LteSignalFields::ie33652, IE{33652}, kSigned16,         kUnselected},
    {&LteSignalFields::ie33657, IE{33657}, kSigned16,         kUnselected},
    {&LteSignalFields::ie33658, IE{33658}, kSigned16,         kUnselected},
    {&LteSignalFields::ie33659, IE{33659}, kSigned16,         kUnselected},
    {&LteSignalFields::ie33663, IE{33663}, kSigned16,         kUnselected},
    {&LteSignalFields::ie33667, IE{33667}, kSigned16,         kUnselected},
    {&LteSignalFields::ie33668, IE{33668}, kSigned16,         kUnselected},
    {&LteSignalFields::ie33693, IE{33693}, kSigned16,         kUnselected},
    {&LteSignalFields::ie33694, IE{33694}, kSigned16,         kUnselected},
    {&LteSignalFields::ie33695, IE{33695}, kSigned16,         kUnselected},
    {&LteSignalFields::ie33696, IE{33696}, kSigned16,         kUnselected},
    {&LteSignalFields::ie33697, IE{33697}, kSigned16,         kUnselected},
    {&LteSignalFields::ie34574, IE{34574}, kAsIs,             kUnselected},
    {&LteSignalFields::ie34575, IE{34575}, kAsIs,             kUnselected},
    {&LteSignalFields::ie34581, IE{34581}, kAsIs,             kUnselected},
});

}  // namespace loom
