#pragma once

#include <string>

#include "apps/qloom/json_streams.h"
#include "platform/ui/scripted_user.h"
#include "platform/ui/window_state.h"

namespace loom {

// Hands a person's actions to the user, one JSON object per line:
//   {"press": id}  {"button": "ok|cancel|back|next|finish"}  {"type": [id, text]}  {"choose": [id, text or position]}
//   {"check": [id, state]}  {"select": [id, [rows, or tree items by position or path]]}  {"double_click": [id, row or
//   path]}
//   {"header": [id, column]}  {"tick": [id, path, on]}  {"expand": [id, path, on]}  {"page": template id}
//   {"date": [id, "YYYY-MM-DD"]}  {"time": [id, "hh:mm:ss"]}  {"files": [paths]} (none: cancelled; "overwrite": false
//   keeps a file that is there)  {"answer": "ok|cancel|yes|no"}
// Throws Error that names file and line.
void AddScript(ScriptedUser& user, const std::string& path);

// The window in front, or null for none, and the messages given. A file dialog has no template; its window says what
// can be picked, its controls are the extra button.
Json FrontStateJson(const ScriptedUser& user, Json messages);

}  // namespace loom
