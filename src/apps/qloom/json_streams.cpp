#include "apps/qloom/json_streams.h"

#include <cmath>
#include <sstream>

#include "platform/characters.h"
#include "platform/encoding.h"
#include "platform/error.h"
#include "platform/file.h"

namespace loom {
namespace {

template <class Texts>
Json TextArray(const Texts& texts) {
  Json array = Json::array();
  for (const CString& text : texts) array.push_back(JsonText(text));
  return array;
}

Json RunsJson(const std::vector<STRUCT_SCANNERSCELLSTAT>& runs) {
  Json array = Json::array();
  for (const auto& run : runs) array.push_back({run.first_row, run.last_row, JsonText(run.cell_key), run.row_count});
  return array;
}

}  // namespace

Json JsonText(std::string_view gbk) { return GbkNameToUtf8(gbk); }

Json JsonName(const std::string& native) { return JsonText(NativeNameToGbk(native)); }

Json JsonNumber(double number) {
  if (std::isnan(number)) return "nan";
  if (std::isinf(number)) return number < 0 ? "-inf" : "inf";
  return number;
}

void ReadJsonLines(const std::string& path, const std::function<void(const Json&)>& take) {
  std::istringstream lines(ReadWholeText(NativeNameToGbk(path)));
  std::string text;
  for (int number = 1; std::getline(lines, text); ++number) {
    if (Trimmed(text).empty()) continue;
    try {
      take(Json::parse(text));
    } catch (const std::exception& error) {
      throw Error(path + ", line " + std::to_string(number) + ": " + error.what());
    }
  }
}

Json StreamJson(IDataStream& stream) {
  return {{"name", JsonText(stream.GetName())},
          {"device", JsonText(stream.GetDeviceName())},
          {"device_number", stream.GetDeviceNumber()},
          {"stream_type", stream.GetStreamType()},
          {"stream_class", stream.GetStreamClass()},
          {"protocol", JsonText(stream.GetProtocol())},
          {"filter_operator", JsonText(stream.GetFilterOperator())},
          {"rows", stream.GetRowCount()},
          {"time", {JsonNumber(stream.GetEarliestTime()), JsonNumber(stream.GetLatestTime())}},
          {"longitude", {JsonNumber(stream.GetLongitudeMinimum()), JsonNumber(stream.GetLongitudeMaximum())}},
          {"latitude", {JsonNumber(stream.GetLatitudeMinimum()), JsonNumber(stream.GetLatitudeMaximum())}},
          {"position_flag", stream.GetPositionFlag()},
          {"ies", TextArray(stream.GetIENames())},
          {"events", TextArray(stream.GetEventNames())},
          {"l3", TextArray(stream.GetL3Names())},
          {"pccpch_runs", RunsJson(stream.GetStatResult()->PccpchRuns())},
          {"dwpch_runs", RunsJson(stream.GetStatResult()->DwpchRuns())}};
}

}  // namespace loom
