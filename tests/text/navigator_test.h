#pragma once

#include <gtest/gtest.h>

#include "host/application.h"
#include "host/host_folders.h"
#include "platform/file.h"
#include "platform/notes.h"
#include "tests/support/places.h"
#include "tests/support/scripted_user_gtest.h"
#include "tests/support/temp_folder.h"

namespace loom::testing {

// The reference host with its own catalogue and, once written, a navigator of the test's.
class NavigatorTest : public ::testing::Test {
 protected:
  // `content` stands in a document element that is not shown itself.
  void WriteNavigator(const std::string& content) const {
    WriteRawNavigator(R"(<Navigator type="NAVIGATORSTREAM">)" + content + "</Navigator>");
  }
  void WriteRawNavigator(const std::string& bytes) const {
    WriteWholeFile(folder_.File("Navigator.xml"), bytes);
    SetChosenConfigFolder(folder_.Folder());
  }

  TempFolder folder_;
  Notes notes_;
  NotesScope notes_scope_{notes_};
  HostApplication host_{PlainHost()};
  ScriptedUser user_;
};

}  // namespace loom::testing
