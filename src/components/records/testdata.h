#pragma once

#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <span>
#include <vector>

#include "components/records/auto_buffer.h"
#include "components/records/fields.h"
#include "components/records/lists.h"
#include "components/records/sys_time.h"

namespace loom {

// Record kinds. Every other kind is skipped.
inline constexpr std::int32_t kRecordHandset = 1;       // measurements of a TD-SCDMA, GSM or LTE handset
inline constexpr std::int32_t kRecordDataService = 2;   // result of a data service
inline constexpr std::int32_t kRecordFileMark = 6;      // mark set by the tester, for every stream
inline constexpr std::int32_t kRecordEvent = 7;         // event of one device, or of the whole log (device number 0)
inline constexpr std::int32_t kRecordScanner = 8;       // carriers, spectrum and RSSI of a scanner
inline constexpr std::int32_t kRecordScannerCells = 9;  // cell list of a scanner
inline constexpr std::int32_t kRecordHeaderOnly = 10;   // GSM handset of which only the header is used
inline constexpr std::int32_t kRecordDataTest1 = 14;    // data test statistics
inline constexpr std::int32_t kRecordDataTest2 = 15;    // data test statistics
inline constexpr std::int32_t kRecordTdMessage = 16;    // raw TD-SCDMA layer-3 message

// Model codes of handset records. 0 and 1: the model is not known.
inline constexpr std::int32_t kModelRv2210 = 2;
inline constexpr std::int32_t kModel5 = 5;
inline constexpr std::int32_t kModelRv2220 = 6;
inline constexpr std::int32_t kModelRv2230 = 7;
inline constexpr std::int32_t kModelKm4430 = 8;
inline constexpr std::int32_t kModelKm2242 = 9;
inline constexpr std::int32_t kModelMarlo77 = 10;
inline constexpr std::int32_t kModelTn300Lte = 14;  // LTE measurements
inline constexpr std::int32_t kModelH500Lte = 15;   // LTE signalling
inline constexpr std::int32_t kModelOstrelLteScanner = 16;

// Network modes. 0 and 1 leave the mode in force as it is.
inline constexpr std::int32_t kNetworkModeKeep = 0;
inline constexpr std::int32_t kNetworkModeKeepToo = 1;
inline constexpr std::int32_t kNetworkModeTdScdma = 2;
inline constexpr std::int32_t kNetworkModeGsm = 3;

struct CIE_SCell_Para;
struct CIE_SCell_Meas;
struct CIE_NCell_Meas;
struct CIE_Channel_Para;
struct CIE_Meas_Res;
struct CIE_Layer12_Config_Para;
struct TdBlock252;
struct TdCellIdentities;
struct TdBlock288;
struct TdBlock292;
struct TdBlock296;
struct TdSamples;
struct TdBlock304;
struct TdBlock308;
struct TdBlock312;
struct TdBlock316;
struct TdBlock320;
struct TdBlock324;
struct TdBlock328;
struct TdBlock332;
struct TdSystemInfo;
struct TdBlock344;
struct TdBlock348;
struct TdBlockTable;
struct TdCellList;
struct CIE_GSM_SCell_Sys_Info;
struct CIE_GSM_SCell_Resel_Sys_Info;
struct CIE_GSM_SCell_Radio_Info;
struct CIE_GSM_SCell_DSC;
struct CIE_GSM_NCell_Info;
struct CIE_GSM_MS_Muti_Slot_Class;
struct CIE_GSM_Ded_CH_Info;
struct CIE_GSM_Ded_Meas_Info;
struct CIE_GSM_SCell_Ch_Radio_Link_Counter;
struct CIE_GSM_MS_Class;
struct CIE_GSM_RAT_Indicate;
struct CIE_GSM_LLC_GPRS_Qos_Info;
struct CIE_GSM_HO_Num;
struct CIE_GSM_RLC_GPRS_Qos_Info;
struct CIE_GSM_2230E_Simple_Info;
struct DataTestFirst;
struct DataTestSecond;
struct ServiceBlock;
struct ScanBlock;
struct LteMeasBlock;
struct LteSignalBlock;
struct LteScanResult;

// One IE of a record, by id.
struct pair_ie_id_value {
  std::int32_t id;
  double value;
};

// One record of a log: header, layer-3 header, event, and the blocks that the device delivered. The number behind a
// member is its byte position in the record; a block that the record lacks is a null pointer.
//
// Texts, lists and blocks are borrowed from the arena that the record was read into and live as long as that arena.
// Numbers that are not stated are the absent values of their type.
class CTestdataBase {
 public:
  CTestdataBase(bool, int) {}

  std::int32_t record_id = 0;                    // 8: IE 3
  std::int32_t kind = 0;                         // 20: kRecord..., IE 9
  RecordText text;                               // 36: IE 4
  std::uint16_t ie5 = 0;                         // 40
  std::int8_t device_number = 0;                 // 45: from 1; 0 for the whole log
  sys_time time;                                 // 56
  double latitude = -255.0;                      // 72: degrees; -1 absent in logs of version 110
  double longitude = -255.0;                     // 80: degrees; -1 absent in logs of version 110
  std::uint32_t time_stamp = 0;                  // 92: IE 2386, 32 bits as they stand
  std::int32_t message_id = -1;                  // 124: layer-3 message
  std::int32_t ie7 = -1;                         // 132: above 0 when present
  RecordText message_text;                       // 136
  RecordText layer3_name;                        // 140
  AUTOTEST::CAutoBuffer raw_message;             // 144: message of kind 16, of GSM and LTE handsets and of file marks
  std::int32_t word156 = -1;                     // 156: 40000 keeps the layer-3 header of a GSM row away
  std::int8_t direction = -1;                    // 160
  std::int8_t channel = -1;                      // 161
  std::int32_t event_id = -1;                    // 168
  std::int32_t raw_length = -1;                  // 180: as reported, whatever raw_bytes holds
  std::span<const std::byte> raw_bytes;          // 184: message of the other TD-SCDMA records
  std::uint16_t ie6 = 0;                         // 196
  std::int32_t model_code = 0;                   // 204: kModel..., IE 8 when not 0
  std::int32_t network_mode = kNetworkModeKeep;  // 212: IE 26771
  std::int32_t network_mode_changed = 0;         // 216: not 0 when the mode changed with this record

  // Values of the record itself without a position of their own.
  std::int32_t ie5247 = -1;
  std::int32_t ie5256 = -1;
  std::int32_t ie5257 = -1;
  std::int32_t ie5258 = -1;

  // The layer-3 message in text form: its structure, one element or brace per line, lines ended by '\n'.
  RecordText layer3_lines;

  const CIE_SCell_Para* serving_cell = nullptr;                                 // 220
  const CIE_SCell_Meas* timeslot_measurements = nullptr;                        // 224
  const CIE_NCell_Meas* neighbours = nullptr;                                   // 228
  const CIE_Channel_Para* channels = nullptr;                                   // 240
  const CIE_Meas_Res* codes = nullptr;                                          // 244
  const CIE_Layer12_Config_Para* physical_channels = nullptr;                   // 248
  const TdBlock252* block252 = nullptr;                                         // 252
  const DataTestFirst* data_test_first = nullptr;                               // 272
  const DataTestSecond* data_test_second = nullptr;                             // 276
  const TdCellIdentities* cell_identities = nullptr;                            // 280
  const TdBlock288* block288 = nullptr;                                         // 288
  const TdBlock292* block292 = nullptr;                                         // 292
  const TdBlock296* block296 = nullptr;                                         // 296
  const TdSamples* samples = nullptr;                                           // 300
  const TdBlock304* block304 = nullptr;                                         // 304
  const TdBlock308* block308 = nullptr;                                         // 308
  const TdBlock312* block312 = nullptr;                                         // 312
  const TdBlock316* block316 = nullptr;                                         // 316
  const TdBlock320* block320 = nullptr;                                         // 320
  const TdBlock324* block324 = nullptr;                                         // 324
  const TdBlock328* block328 = nullptr;                                         // 328
  const TdBlock332* block332 = nullptr;                                         // 332
  const TdSystemInfo* system_info = nullptr;                                    // 336
  const TdBlock344* block344 = nullptr;                                         // 344
  const TdBlock348* block348 = nullptr;                                         // 348
  const TdBlockTable* block_table = nullptr;                                    // 352
  const CIE_GSM_SCell_Sys_Info* gsm_serving_cell = nullptr;                     // 356
  const CIE_GSM_SCell_Resel_Sys_Info* gsm_reselection = nullptr;                // 360
  const CIE_GSM_SCell_Radio_Info* gsm_radio = nullptr;                          // 364
  const CIE_GSM_SCell_DSC* gsm_dsc = nullptr;                                   // 368
  const CIE_GSM_NCell_Info* gsm_neighbours = nullptr;                           // 372
  const CIE_GSM_MS_Muti_Slot_Class* gsm_multislot_class = nullptr;              // 376
  const CIE_GSM_Ded_CH_Info* gsm_dedicated_channel = nullptr;                   // 380
  const CIE_GSM_Ded_Meas_Info* gsm_dedicated_measurements = nullptr;            // 384
  const CIE_GSM_SCell_Ch_Radio_Link_Counter* gsm_radio_link_counter = nullptr;  // 388
  const CIE_GSM_MS_Class* gsm_ms_class = nullptr;                               // 392
  const CIE_GSM_RAT_Indicate* gsm_rat = nullptr;                                // 396
  const CIE_GSM_LLC_GPRS_Qos_Info* gsm_llc_qos = nullptr;                       // 400
  const CIE_GSM_HO_Num* gsm_handover_number = nullptr;                          // 404
  const CIE_GSM_RLC_GPRS_Qos_Info* gsm_rlc_qos = nullptr;                       // 408
  const CIE_GSM_2230E_Simple_Info* gsm_simple_info = nullptr;                   // 412
  const TdCellList* td_cell_list = nullptr;                                     // 416
  const ServiceBlock* service = nullptr;                                        // 420
  const ScanBlock* scan = nullptr;                                              // 424
  const LteMeasBlock* lte_measurements = nullptr;                               // 512
  const LteSignalBlock* lte_signalling = nullptr;                               // 516
  const LteScanResult* lte_scan = nullptr;                                      // 520

  // Coded blocks that the decoder has yet to turn into structures, where they stand in their file, and the arena that
  // holds them and everything else of the record.
  std::span<const std::byte> encoded_blocks;
  std::uint64_t encoded_position_bytes = 0;
  std::pmr::memory_resource* arena = nullptr;
  bool fails_to_read = false;    // marked as a record on which the reader of the log gives up
  bool fails_to_decode = false;  // marked as a record that the decoder refuses

  // Appends the IEs that the record holds. Mode 2 lists the results of an LTE scanner; the others list nothing.
  void GetAllIEs(std::vector<pair_ie_id_value>& list, int mode) const;
};

template <>
struct BlockFields<CTestdataBase> {
  using B = CTestdataBase;
  using List = FieldList<&B::record_id, &B::kind, &B::text, &B::ie5, &B::device_number, &B::time, &B::latitude,
                         &B::longitude, &B::time_stamp, &B::message_id, &B::ie7, &B::message_text, &B::layer3_name,
                         &B::raw_message, &B::word156, &B::direction, &B::channel, &B::event_id, &B::raw_length,
                         &B::raw_bytes, &B::ie6, &B::model_code, &B::network_mode, &B::network_mode_changed, &B::ie5247,
                         &B::ie5256, &B::ie5257, &B::ie5258, &B::layer3_lines>;
};

}  // namespace loom
