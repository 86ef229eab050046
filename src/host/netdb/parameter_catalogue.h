#pragma once

#include <string>
#include <vector>

#include "components/net_info.h"
#include "platform/cstring.h"

namespace loom {

// Attributes of parameters: how their values are stored.
inline constexpr const char* kAttributeInteger = "integer";
inline constexpr const char* kAttributeReal = "real";
inline constexpr const char* kAttributeText = "text";
inline constexpr const char* kAttributeFree = "free";  // of a column that a person names: as it comes

// The parameters that network elements may have, from net_parameters.tsv of a configuration folder.
class ParameterCatalogue {
 public:
  struct Parameter {
    NetDataType data_type;
    ProtocolTypeEnum protocol;
    CString name;
    CString attribute;
  };

  // Throws FileError when the file cannot be read and CatalogueError when a line is malformed or comes twice.
  static ParameterCatalogue Load(const CString& folder);

  std::vector<Parameter> Of(NetDataType data_type, ProtocolTypeEnum protocol) const;  // in the order of the file
  bool Knows(const CString& name) const;                                              // of any kind of data

 private:
  void Add(const Parameter& parameter);
  std::vector<Parameter> parameters_;
};

}  // namespace loom
