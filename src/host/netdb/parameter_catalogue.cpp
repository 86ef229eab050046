#include "host/netdb/parameter_catalogue.h"

#include <algorithm>

#include "host/catalogue/table_file.h"
#include "platform/file.h"
#include "platform/path.h"

namespace loom {
namespace {

constexpr char kFile[] = "net_parameters.tsv";

template <class Value>
struct Name {
  std::string_view name;
  Value value;
};
// clang-format off
constexpr Name<NetDataType> kDataTypes[] = {
    {"rnc",           kNetRnc},
    {"nodeb",         kNetNodeB},
    {"cell",          kNetCell},
    {"td-neighbour",  kNetTdNeighbour},
    {"gsm-neighbour", kNetGsmNeighbour},
    {"cpi-group",     kNetCustomCpiGroup},
};
constexpr Name<ProtocolTypeEnum> kProtocols[] = {
    {"td",  kProtocolTdScdma},
    {"gsm", kProtocolGsm},
    {"lte", kProtocolLte},
};
// clang-format on

template <class Value, std::size_t kCount>
Value ValueOf(const Name<Value> (&names)[kCount], std::string_view name) {
  for (const auto& known : names) {
    if (known.name == name) return known.value;
  }
  throw std::invalid_argument("unknown name '" + std::string(name) + "'");
}

CString AttributeFrom(std::string_view text) {
  for (const char* const known : {kAttributeInteger, kAttributeReal, kAttributeText}) {
    if (text == known) return known;
  }
  throw std::invalid_argument("unknown attribute '" + std::string(text) + "'");
}

}  // namespace

ParameterCatalogue ParameterCatalogue::Load(const CString& folder) {
  const CString path = JoinPath(folder, kFile);
  const std::string text = ReadWholeText(path);
  ParameterCatalogue catalogue;
  ForEachTableLine(text, path, [&](std::string_view line, std::int32_t) {
    const TableFields fields(line, 4);
    for (const CString& protocol : CString(fields.Text(1)).Split(',')) {
      catalogue.Add({ValueOf(kDataTypes, fields.Text(0)), ValueOf(kProtocols, protocol.view()),
                     Utf8ToGbk(fields.Text(2)), AttributeFrom(fields.Text(3))});
    }
  });
  return catalogue;
}

void ParameterCatalogue::Add(const Parameter& parameter) {
  if (parameter.name.IsEmpty()) throw std::invalid_argument("the name is empty");
  for (const Parameter& known : Of(parameter.data_type, parameter.protocol)) {
    if (known.name.CompareNoCase(parameter.name) == 0) throw std::invalid_argument("the parameter is there already");
  }
  parameters_.push_back(parameter);
}

std::vector<ParameterCatalogue::Parameter> ParameterCatalogue::Of(NetDataType data_type,
                                                                  ProtocolTypeEnum protocol) const {
  std::vector<Parameter> found;
  std::copy_if(parameters_.begin(), parameters_.end(), std::back_inserter(found), [&](const Parameter& parameter) {
    return parameter.data_type == data_type && parameter.protocol == protocol;
  });
  return found;
}

bool ParameterCatalogue::Knows(const CString& name) const {
  return std::any_of(parameters_.begin(), parameters_.end(),
                     [&](const Parameter& parameter) { return parameter.name == name; });
}

}  // namespace loom
