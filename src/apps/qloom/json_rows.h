#pragma once

#include <string>

#include "components/mem_row.h"

namespace loom {

// Appends {"row":n,"time":t,"sync":n,"fields":[[id,value],...]} without a line end. Values by the catalogue's type:
// texts as JSON strings, floats by their shortest digits, NaN and infinities as strings; a row without a time has null.
// `only` restricts the fields to ids it holds; empty: all of them. `merged` is null but for rows of merged streams.
class IdSet;
void AppendRowJson(std::string& out, std::int32_t number, const CMemDataRow& row, const CMergeDataRow_2M* merged,
                   const IdSet* only);

// A JSON string of a GBK text, quotes included.
void AppendJsonText(std::string& out, std::string_view gbk);

}  // namespace loom
