#include "apps/qloom/json_rows.h"

#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>

#include "components/id_set.h"
#include "components/project.h"
#include "platform/encoding.h"

namespace loom {
namespace {

template <class Number>
void AppendNumber(std::string& out, Number number) {
  if constexpr (std::is_floating_point_v<Number>) {
    if (!std::isfinite(number)) {
      out += std::isnan(number) ? "\"nan\"" : number < 0 ? "\"-inf\"" : "\"inf\"";
      return;
    }
  }
  char digits[40];
  const auto [end, error] = std::to_chars(digits, digits + sizeof digits, number);
  out.append(digits, end);
}

void AppendValue(std::string& out, const CMemDataRow& row, std::int32_t id, uniFieldValue value) {
  switch (g_memDataType->GetType(id)) {
    case kFieldBool:
      out += value.bool_value != 0 ? "true" : "false";
      break;
    case kFieldText:
      AppendJsonText(out, row.GetText(value.text));
      break;
    case kFieldShort:
      AppendNumber(out, static_cast<std::int16_t>(value.short_value));
      break;
    case kFieldFloat:
      AppendNumber(out, value.float_value);
      break;
    default:
      AppendNumber(out, value.int_value);
      break;
  }
}

}  // namespace

void AppendJsonText(std::string& out, std::string_view gbk) { out += nlohmann::json(GbkToUtf8(gbk)).dump(); }

void AppendRowJson(std::string& out, std::int32_t number, const CMemDataRow& row, const CMergeDataRow_2M* merged,
                   const IdSet* only) {
  out += "{\"row\":";
  AppendNumber(out, number);
  out += ",\"time\":";
  if (row.GetRecordTime() == kInvalidDouble) {
    out += "null";
  } else {
    AppendNumber(out, row.GetRecordTime());
  }
  out += ",\"sync\":";
  AppendNumber(out, row.GetSynFieldValue());
  out += ",\"fields\":[";
  bool first = true;
  for (std::size_t at = 0; at < row.GetParamID().size(); ++at) {
    const std::int32_t id = row.GetParamID()[at];
    if (only != nullptr && !only->Contains(id)) continue;
    if (!first) out += ',';
    first = false;
    out += '[';
    AppendNumber(out, id);
    out += ',';
    AppendValue(out, row, id, row.GetParamValue()[at]);
    out += ']';
  }
  out += ']';
  if (row.GetFFTReportPoints() > 0) {
    out += ",\"spectrum\":[";
    for (std::size_t at = 0; at < row.GetFFTReportPoints(); ++at) {
      if (at > 0) out += ',';
      AppendNumber(out, row.GetFFTReport()[at]);
    }
    out += ']';
  }
  if (merged != nullptr) {
    out += ",\"merged\":[";
    AppendNumber(out, merged->td_row_number);
    out += ',';
    AppendNumber(out, merged->gsm_row_number);
    out += ']';
  }
  out += '}';
}

}  // namespace loom
