#include <string>

#include "components/records/blocks_gsm.h"
#include "components/records/blocks_scan.h"
#include "components/records/stream_and_string.h"
#include "components/records/testdata.h"
#include "platform/hexadecimal.h"

// What the measurement structures do beside holding values.
namespace loom {
namespace {

constexpr int kModeScanResults = 2;
constexpr std::int32_t kSecondListOffset = 224;

void ListScanEntries(const LteScanList& scan, std::int32_t offset, std::vector<pair_ie_id_value>& list) {
  for (std::size_t i = 0; i < scan.entries.size(); ++i) {
    const LteScanEntry& entry = scan.entries[i];
    const std::int32_t shift = offset + static_cast<std::int32_t>(i);
    list.push_back({34691 + shift, static_cast<double>(entry.ie34691)});
    list.push_back({34723 + shift, static_cast<double>(entry.ie34723)});
    list.push_back({34755 + shift, entry.ie34755});
    list.push_back({34787 + shift, entry.ie34787});
    list.push_back({34819 + shift, entry.ie34819});
    list.push_back({34851 + shift, entry.ie34851});
    list.push_back({34883 + shift, entry.ie34883});
  }
}

std::string NumberOrDash(std::int8_t value) { return value < 0 ? "-" : std::to_string(value); }

}  // namespace

void CTestdataBase::GetAllIEs(std::vector<pair_ie_id_value>& list, int mode) const {
  if (mode != kModeScanResults || !lte_scan) return;
  if (lte_scan->first) ListScanEntries(*lte_scan->first, 0, list);
  if (lte_scan->second) ListScanEntries(*lte_scan->second, kSecondListOffset, list);
}

std::string CIE_GSM_2230E_Simple_Info::ChangeValue2CSText(std::int8_t first, std::int8_t second) {
  if (first < 0 && second < 0) return {};
  return NumberOrDash(first) + "/" + NumberOrDash(second);
}

void CStreamAndString::numToString(CString& out, const std::byte* bytes, int length) {
  const bool is_empty = bytes == nullptr || length <= 0;
  out = CString(HexText({bytes, is_empty ? 0 : static_cast<std::size_t>(length)}));
}

}  // namespace loom
