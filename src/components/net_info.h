#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <variant>
#include <vector>

#include "components/stream_info.h"
#include "platform/cstring.h"
#include "platform/number.h"

namespace loom {

using ProtocolTypeEnum = ProtocolCode;

enum NetDataType : std::int32_t {
  kNetNone = 0,
  kNetRnc = 1,
  kNetNodeB = 2,
  kNetCell = 3,
  kNetTdNeighbour = 4,
  kNetGsmNeighbour = 5,
  kNetCustomCpiGroup = 6,
};

// A number that the worksheet shows as a date.
struct NetDate {
  double number = 0;  // the cell's own: what counts where a number is wanted
  double days = 0;    // since 1899-12-30, times of day below 1: what a text shows
};
// One worksheet value of a network element row; monostate where the cell is empty.
using NetValue = std::variant<std::monostate, bool, double, NetDate, CString>;

struct NetInfoRow {
  std::uint32_t sheet_row = 0;   // from 1
  std::vector<NetValue> values;  // in the order of the source columns
};

// The automation's conversion to an integer: true is -1, halves go to the even neighbour, a text is read as a number;
// nothing for an empty value, another text, and what a 32-bit integer cannot hold.
inline std::optional<std::int32_t> IntegerOf(const NetValue& value) {
  std::optional<double> number;
  if (const auto* const flag = std::get_if<bool>(&value)) number = *flag ? -1 : 0;
  if (const auto* const real = std::get_if<double>(&value)) number = *real;
  if (const auto* const date = std::get_if<NetDate>(&value)) number = date->number;
  if (const auto* const text = std::get_if<CString>(&value)) number = ParseDouble(CString(*text).Trim());
  if (!number) return std::nullopt;
  const double rounded = std::nearbyint(*number);
  using Limits = std::numeric_limits<std::int32_t>;
  if (!(rounded >= Limits::min() && rounded <= Limits::max())) return std::nullopt;
  return static_cast<std::int32_t>(rounded);
}

}  // namespace loom
