#include "conversion/signalling_header.h"

#include "components/project.h"
#include "conversion/ie_ids.h"
#include "platform/cstring.h"

namespace loom {

void PutEvent(CRowIEWriter& writer, std::int32_t event_id) {
  const CString name = g_sysProject->GetEventName(event_id);
  if (name.IsEmpty()) return;
  writer.Put(ie::kEventId, event_id);
  writer.Put(ie::kEventName, uniFieldValue::Text(writer.row().AddText(name.view())));
  writer.stream().event_names.insert(name);
}

}  // namespace loom
