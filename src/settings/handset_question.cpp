#include "settings/handset_question.h"

namespace loom {

HandsetQuestion g_handset_question;

}  // namespace loom
