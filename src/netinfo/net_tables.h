#pragma once

#include <cstdint>
#include <vector>

#include "components/net_info.h"
#include "platform/cstring.h"

// What is a table in the import of network elements.
namespace loom {

enum SourceFileType : std::int32_t { kSourceOther = 0, kSourceText = 1, kSourceWorkbook = 2 };
// By what stands behind the last dot, with case.
SourceFileType SourceFileTypeOf(const CString& path);

const std::vector<CString>& NetProtocolNames();
// The kinds of data that the first page offers under a protocol's name; none under an unknown one.
std::vector<CString> NetDataTypeNames(const CString& protocol);
// Names to numbers; an unknown one leaves the number as it is.
void TakeNetProtocol(const CString& name, ProtocolTypeEnum& protocol);
void TakeNetDataType(const CString& name, NetDataType& data_type);

CString NetProtocolName(ProtocolTypeEnum protocol);  // empty for an unknown one
CString NetDataTypeName(NetDataType data_type);      // "RNC", "NodeB" and those of the first page
CString NetMappingHeading(NetDataType data_type);    // of the mapping list's second column
CString NetBrowseTitle(NetDataType data_type);       // of the file dialog; may be empty

// A parameter that has to be mapped, and what is said when it is not; in the order of checking.
struct MandatoryParameter {
  const char* name;
  CString message;
};
std::vector<MandatoryParameter> MandatoryParameters(NetDataType data_type, ProtocolTypeEnum protocol);

// A table that has to hold rows before neighbour relations come in, and what is said when it does not.
struct RequiredTable {
  const char* name;
  CString message;
};
std::vector<RequiredTable> RequiredTables(NetDataType data_type, ProtocolTypeEnum protocol);

}  // namespace loom
