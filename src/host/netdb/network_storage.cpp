#include "host/netdb/network_storage.h"

#include <algorithm>
#include <cmath>

#include "host/netdb/parameter_catalogue.h"
#include "platform/calendar.h"
#include "platform/encoding.h"
#include "platform/number.h"

namespace loom {
namespace {

struct TableRow {
  NetDataType data_type;
  ProtocolTypeEnum protocol;  // none: whatever it is
  const char* table;
};
// clang-format off
constexpr TableRow kStoredTables[] = {
    {kNetRnc,            kProtocolNone,    "tbl_RNC"},
    {kNetNodeB,          kProtocolNone,    "tbl_NodeB"},
    {kNetCell,           kProtocolTdScdma, "tbl_Cell"},
    {kNetCell,           kProtocolGsm,     "tbl_Cell_GSM"},
    {kNetCell,           kProtocolLte,     "tbl_Cell_LTE"},
    {kNetTdNeighbour,    kProtocolNone,    "tbl_AdjCell"},
    {kNetGsmNeighbour,   kProtocolNone,    "tbl_AdjCell_GSM"},
    {kNetCustomCpiGroup, kProtocolNone,    "tbl_CustomCPIGroup"},
};
// clang-format on

constexpr double kLargestWhole = 9007199254740992.0;  // 2^53: above, a double skips integers

std::optional<std::int64_t> WholeOf(double number) {
  if (std::trunc(number) != number || std::abs(number) > kLargestWhole) return std::nullopt;
  return static_cast<std::int64_t>(number);
}

// "2012-05-03", "2012-05-03 10:30:00" or "10:30:00". A time of day stays in its day.
CString DateText(double days) {
  std::int64_t seconds = std::llround(days * static_cast<double>(kDay_s));
  if (days < 1) seconds = std::min(seconds, kDay_s - 1);
  const std::int64_t day = seconds / kDay_s, second = seconds % kDay_s;
  const auto two = [](std::int64_t number) { return Format(number < 10 ? "0%d" : "%d", number); };
  const CString time = two(second / 3600) + ":" + two(second / 60 % 60) + ":" + two(second % 60);
  if (day == 0) return time;
  const CalendarDay date = DayAt(day - kSerialOf1970);
  const CString text = Format("%d-", date.year) + two(date.month) + "-" + two(date.day);
  return second == 0 ? text : text + " " + time;
}

NetworkValue AsItComes(const NetValue& value) {
  if (const auto* const flag = std::get_if<bool>(&value)) return std::int64_t{*flag};
  if (const auto* const date = std::get_if<NetDate>(&value)) return DateText(date->days);
  if (const auto* const text = std::get_if<CString>(&value)) return *text;
  if (const auto* const number = std::get_if<double>(&value)) {
    if (const auto whole = WholeOf(*number)) return *whole;
    return *number;
  }
  return {};
}

NetworkValue TextOf(const NetValue& value) {
  if (const auto* const flag = std::get_if<bool>(&value)) return CString(*flag ? "TRUE" : "FALSE");
  if (const auto* const number = std::get_if<double>(&value)) {
    if (const auto whole = WholeOf(*number)) return CString(std::to_string(*whole));
    return CString(NumberText(*number));
  }
  return AsItComes(value);
}

// The number of a value, that of a text too.
std::optional<double> NumberOf(const NetValue& value) {
  if (const auto* const flag = std::get_if<bool>(&value)) return *flag ? 1 : 0;
  if (const auto* const number = std::get_if<double>(&value)) return *number;
  if (const auto* const date = std::get_if<NetDate>(&value)) return date->number;
  if (const auto* const text = std::get_if<CString>(&value)) return ParseDouble(CString(*text).Trim());
  return std::nullopt;
}

}  // namespace

CString TableOf(NetDataType data_type, ProtocolTypeEnum protocol) {
  for (const TableRow& row : kStoredTables) {
    if (row.data_type == data_type && (row.protocol == kProtocolNone || row.protocol == protocol)) return row.table;
  }
  throw Error("no table holds data of the kind " + std::to_string(data_type) + " under the protocol " +
              std::to_string(protocol));
}

NetworkValue StoredValue(const NetValue& value, const CString& attribute, std::string& mended) {
  if (std::holds_alternative<std::monostate>(value)) return {};
  if (attribute == kAttributeText) return TextOf(value);
  if (attribute != kAttributeInteger && attribute != kAttributeReal) return AsItComes(value);
  const auto number = NumberOf(value);
  if (!number || !std::isfinite(*number)) {
    mended = "is no number and is stored as it stands";
    return AsItComes(value);
  }
  if (attribute == kAttributeReal) return *number;
  if (const auto whole = WholeOf(*number)) return *whole;
  const auto rounded = WholeOf(std::nearbyint(*number));
  mended =
      rounded ? "is rounded to " + std::to_string(*rounded) : "is too large for an integer and stored as it stands";
  if (rounded) return *rounded;
  return *number;
}

}  // namespace loom
