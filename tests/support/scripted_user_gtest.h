#pragma once

#include <gtest/gtest.h>

#include <string>

#include "platform/ui/scripted_user.h"

// Including this makes whatever a ScriptedUser finds wrong a failure of the running test.
namespace loom::testing {

inline const bool kScriptedUserReportsToGoogleTest = [] {
  ScriptedUser::SetFailureHandler([](const std::string& text) { ADD_FAILURE() << text; });
  return true;
}();

}  // namespace loom::testing
