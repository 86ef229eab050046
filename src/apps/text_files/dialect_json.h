#pragma once

#include "apps/json.h"
#include "text/dialect/text_dialect.h"

namespace loom {

// What was found of a text file, without the remarks.
Json FindingsJson(const dialect::Findings& found);
// What a saved dialect holds of it.
Json DialectJson(const dialect::Findings& found);
// The form of FindingsJson, of which everything may be left away. Throws what the library throws for any other.
dialect::Overrides OverridesFromJson(const Json& json);

}  // namespace loom
