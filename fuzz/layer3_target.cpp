// Any bytes as a layer-3 message; the first one chooses the channel. Nothing is read beyond the end.
#include <cstdlib>
#include <vector>

#include "fuzz/target.h"
#include "host/recordings/gsm_messages.h"
#include "host/recordings/gsm_packets.h"
#include "host/recordings/lte_nas.h"
#include "host/recordings/lte_rrc.h"

namespace {

using namespace loom::recordings;

void ReadLteRrc(LteRrcChannel channel, std::span<const std::byte> message) {
  IdentifyLteRrc(channel, message);
  ReadMobility(message);
  ReadSystemInformation1(message);
  const auto report = ReadMeasurementReport(message);
  if (report && (report->rsrp > 127 || report->rsrq > 63 || report->neighbours.size() > 8)) std::abort();
}

void ReadGsm(std::span<const std::byte> message) {
  const GsmMessage kind = IdentifyGsm(message);
  ReadGsmIdentity(kind, message);
  ReadGsmReport(message);
  const auto list = ReadNeighbourList(message);
  if (!list) return;
  for (const std::uint16_t arfcn : *list)
    if (arfcn > 1023) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  // A copy of its own size, so that the sanitizer sees every byte that is read beyond it.
  const std::vector<std::byte> bytes(reinterpret_cast<const std::byte*>(data) + 1,
                                     reinterpret_cast<const std::byte*>(data) + size);
  if (data[0] < kLteRrcChannels)
    ReadLteRrc(static_cast<LteRrcChannel>(data[0]), bytes);
  else if (data[0] == kLteRrcChannels)
    IdentifyLteNas(bytes);
  else
    ReadGsm(bytes);
  ReadGsmRr(bytes);
  ReadGsmNas(bytes);
  ReadGsmUm(data[0], false, bytes);
  return 0;
}
