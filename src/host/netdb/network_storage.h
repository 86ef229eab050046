#pragma once

#include <string>
#include <vector>

#include "components/net_info.h"
#include "host/netdb/network_database.h"

namespace loom {

// The table that rows of a kind of data go into; throws Error when there is none.
CString TableOf(NetDataType data_type, ProtocolTypeEnum protocol);

// A worksheet's value as it is stored under a parameter's attribute (parameter_catalogue.h). `mended` is set to what
// was done to a value that is not of that kind, in UTF-8.
NetworkValue StoredValue(const NetValue& value, const CString& attribute, std::string& mended);

}  // namespace loom
