#include "netinfo/net_tables.h"

#include <algorithm>
#include <array>

#include "platform/encoding.h"

namespace loom {
namespace {

constexpr ProtocolTypeEnum kAny = kProtocolNone;
constexpr const char* kTdCellTable = "tbl_Cell";
constexpr const char* kGsmCellTable = "tbl_Cell_GSM";

// clang-format off
struct ProtocolRow {
  ProtocolTypeEnum protocol;
  std::string_view name;
};
constexpr auto kProtocols = std::to_array<ProtocolRow>({
    {kProtocolTdScdma, "TD-SCDMA"},
    {kProtocolGsm,     "GSM"},
    {kProtocolLte,     "LTE"},
});

struct DataTypeRow {
  NetDataType data_type;
  std::string_view name;
  std::string_view mapping_heading;
  std::string_view browse_title;
};
constexpr auto kDataTypes = std::to_array<DataTypeRow>({
    {kNetRnc,            "RNC",          "RNC参数",          "选择RNC数据文件"},
    {kNetNodeB,          "NodeB",        "NodeB参数",        "选择NodeB数据文件"},
    {kNetCell,           "小区",         "小区参数",         "选择小区数据文件"},
    {kNetTdNeighbour,    "TD邻区",       "邻区参数",         "选择邻区数据文件"},
    {kNetGsmNeighbour,   "GSM邻区",      "网元参数",         ""},
    {kNetCustomCpiGroup, "自定义扰码组", "自定义扰码组参数", "选择自定义扰码组数据文件"},
});

// What the first page offers.
struct OfferRow {
  ProtocolTypeEnum protocol;
  NetDataType data_type;
};
constexpr auto kOffers = std::to_array<OfferRow>({
    {kProtocolTdScdma, kNetCell},
    {kProtocolTdScdma, kNetTdNeighbour},
    {kProtocolTdScdma, kNetGsmNeighbour},
    {kProtocolTdScdma, kNetCustomCpiGroup},
    {kProtocolGsm,     kNetCell},
    {kProtocolGsm,     kNetGsmNeighbour},
    {kProtocolLte,     kNetCell},
});

struct MandatoryRow {
  NetDataType data_type;
  ProtocolTypeEnum protocol;
  const char* name;
  std::string_view message;
};
constexpr auto kMandatory = std::to_array<MandatoryRow>({
    {kNetRnc,            kAny,             "MCC",              "请选择MCC映射参数!"},
    {kNetRnc,            kAny,             "MNC",              "请选择MNC映射参数!"},
    {kNetRnc,            kAny,             "RNCID",            "请选择RNCID映射参数!"},
    {kNetNodeB,          kAny,             "MCC",              "请选择MCC映射参数!"},
    {kNetNodeB,          kAny,             "MNC",              "请选择MNC映射参数!"},
    {kNetNodeB,          kAny,             "NodeBID",          "请选择NodeBID映射参数!"},
    {kNetNodeB,          kAny,             "RNCID",            "请选择RNCID映射参数!"},
    {kNetCell,           kAny,             "MCC",              "请选择MCC映射参数!"},
    {kNetCell,           kAny,             "MNC",              "请选择MNC映射参数!"},
    {kNetCell,           kAny,             "Longitude",        "请选择经度映射参数!"},
    {kNetCell,           kAny,             "Latitude",         "请选择纬度映射参数!"},
    {kNetCell,           kProtocolTdScdma, "CI",               "请选择CI映射参数！"},
    {kNetCell,           kProtocolTdScdma, "CellName",         "请选择CellName映射参数！"},
    {kNetCell,           kProtocolTdScdma, "SiteName",         "请选择SiteName映射参数！"},
    {kNetCell,           kProtocolTdScdma, "UARFCN",           "请选择UARFCN映射参数！"},
    {kNetCell,           kProtocolTdScdma, "CellParameterID",  "请选择CellParameterID映射参数！"},
    {kNetCell,           kProtocolGsm,     "CI",               "请选择CI映射参数！"},
    {kNetCell,           kProtocolGsm,     "CellName",         "请选择CellName映射参数！"},
    {kNetCell,           kProtocolGsm,     "SiteName",         "请选择SiteName映射参数！"},
    {kNetCell,           kProtocolGsm,     "LAC",              "请选择LAC映射参数！"},
    {kNetCell,           kProtocolGsm,     "BCCH",             "请选择BCCH映射参数！"},
    {kNetCell,           kProtocolGsm,     "BSIC",             "请选择BSIC映射参数！"},
    {kNetTdNeighbour,    kAny,             "ServCellMCC",      "请选择服务小区MCC映射参数!"},
    {kNetTdNeighbour,    kAny,             "ServCellMNC",      "请选择服务小区MNC映射参数!"},
    {kNetTdNeighbour,    kAny,             "ServCellCI",       "请选择服务小区CI映射参数!"},
    {kNetTdNeighbour,    kAny,             "NborCellMCC",      "请选择邻区MCC映射参数!"},
    {kNetTdNeighbour,    kAny,             "NborCellMNC",      "请选择邻区MNC映射参数!"},
    {kNetTdNeighbour,    kAny,             "NborCellCI",       "请选择邻区CI映射参数!"},
    {kNetGsmNeighbour,   kAny,             "ServCellMCC",      "请选择服务小区MCC映射参数!"},
    {kNetGsmNeighbour,   kAny,             "ServCellMNC",      "请选择服务小区MNC映射参数!"},
    {kNetGsmNeighbour,   kAny,             "ServCellCI",       "请选择服务小区CI映射参数!"},
    {kNetGsmNeighbour,   kProtocolGsm,     "ServCellLAC",      "请选择服务小区LAC映射参数!"},
    {kNetGsmNeighbour,   kAny,             "NborCellMCC",      "请选择邻区MCC映射参数!"},
    {kNetGsmNeighbour,   kAny,             "NborCellMNC",      "请选择邻区MNC映射参数!"},
    {kNetGsmNeighbour,   kAny,             "NborCellCI",       "请选择邻区CI映射参数!"},
    {kNetGsmNeighbour,   kAny,             "NborCellLAC",      "请选择邻区LAC映射参数!"},
    {kNetCustomCpiGroup, kAny,             "CustomCPIGroupID", "请选择CustomCPIGroupID映射参数!"},
    {kNetCustomCpiGroup, kAny,             "CellParameterID",  "请选择CellParameterID映射参数!"},
});

struct RequiredRow {
  NetDataType data_type;
  ProtocolTypeEnum protocol;  // any: with every protocol that has no rows of its own
  const char* table;
  std::string_view message;
};
constexpr auto kRequired = std::to_array<RequiredRow>({
    {kNetTdNeighbour,  kProtocolTdScdma, kTdCellTable,  "在导入TD邻区数据前,请先导入TD小区数据!"},
    {kNetGsmNeighbour, kProtocolGsm,     kGsmCellTable, "在导入GSM邻区数据前,请先导入GSM小区数据!"},
    {kNetTdNeighbour,  kAny,             kTdCellTable,  "在导入邻区数据前,请先导入TD小区数据!"},
    {kNetTdNeighbour,  kAny,             kGsmCellTable, "在导入邻区数据前,请先导入GSM小区数据!"},
    {kNetGsmNeighbour, kAny,             kTdCellTable,  "在导入邻区数据前,请先导入TD小区数据!"},
    {kNetGsmNeighbour, kAny,             kGsmCellTable, "在导入邻区数据前,请先导入GSM小区数据!"},
});
// clang-format on

const DataTypeRow* FindDataType(NetDataType data_type) {
  const auto found = std::find_if(kDataTypes.begin(), kDataTypes.end(),
                                  [=](const DataTypeRow& row) { return row.data_type == data_type; });
  return found == kDataTypes.end() ? nullptr : &*found;
}

}  // namespace

SourceFileType SourceFileTypeOf(const CString& path) {
  const int dot = path.ReverseFind('.');
  const CString extension = dot < 0 ? CString() : path.Mid(dot + 1);
  if (extension == "xls" || extension == "xlsx") return kSourceWorkbook;
  return extension == "txt" ? kSourceText : kSourceOther;
}

const std::vector<CString>& NetProtocolNames() {
  static const std::vector<CString> names = [] {
    std::vector<CString> made;
    for (const ProtocolRow& row : kProtocols) made.push_back(Utf8ToGbk(row.name));
    return made;
  }();
  return names;
}

std::vector<CString> NetDataTypeNames(const CString& protocol) {
  ProtocolTypeEnum number = kProtocolNone;
  TakeNetProtocol(protocol, number);
  std::vector<CString> names;
  for (const OfferRow& offer : kOffers) {
    if (offer.protocol == number) names.push_back(NetDataTypeName(offer.data_type));
  }
  return names;
}

void TakeNetProtocol(const CString& name, ProtocolTypeEnum& protocol) {
  for (const ProtocolRow& row : kProtocols) {
    if (name.view() == row.name) protocol = row.protocol;
  }
}

void TakeNetDataType(const CString& name, NetDataType& data_type) {
  for (const DataTypeRow& row : kDataTypes) {
    const bool is_offered = row.data_type != kNetRnc && row.data_type != kNetNodeB;
    if (is_offered && name == Utf8ToGbk(row.name)) data_type = row.data_type;
  }
}

CString NetProtocolName(ProtocolTypeEnum protocol) {
  for (const ProtocolRow& row : kProtocols) {
    if (row.protocol == protocol) return Utf8ToGbk(row.name);
  }
  return {};
}

CString NetDataTypeName(NetDataType data_type) {
  const DataTypeRow* const row = FindDataType(data_type);
  return row == nullptr ? CString() : Utf8ToGbk(row->name);
}

CString NetMappingHeading(NetDataType data_type) {
  const DataTypeRow* const row = FindDataType(data_type);
  return row == nullptr ? "网元参数"_gbk : Utf8ToGbk(row->mapping_heading);
}

CString NetBrowseTitle(NetDataType data_type) {
  const DataTypeRow* const row = FindDataType(data_type);
  return row == nullptr ? CString() : Utf8ToGbk(row->browse_title);
}

std::vector<MandatoryParameter> MandatoryParameters(NetDataType data_type, ProtocolTypeEnum protocol) {
  std::vector<MandatoryParameter> parameters;
  for (const MandatoryRow& row : kMandatory) {
    if (row.data_type == data_type && (row.protocol == kAny || row.protocol == protocol))
      parameters.push_back({row.name, Utf8ToGbk(row.message)});
  }
  return parameters;
}

std::vector<RequiredTable> RequiredTables(NetDataType data_type, ProtocolTypeEnum protocol) {
  const auto rows_of = [&](ProtocolTypeEnum wanted) {
    std::vector<RequiredTable> tables;
    for (const RequiredRow& row : kRequired) {
      if (row.data_type == data_type && row.protocol == wanted) tables.push_back({row.table, Utf8ToGbk(row.message)});
    }
    return tables;
  };
  auto tables = protocol == kAny ? std::vector<RequiredTable>() : rows_of(protocol);
  return tables.empty() ? rows_of(kAny) : tables;
}

}  // namespace loom
