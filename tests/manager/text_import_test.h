#pragma once

#include "components/project.h"
#include "manager/io_manager.h"
#include "resources/parameter_picker_templates.h"
#include "resources/text_import_templates.h"
#include "tests/text/navigator_test.h"

namespace loom::testing {

inline constexpr const char* kTextFile =
    "RecordTime(s),Longitude,Foo\n2010-03-05 08:15:30.250,116.5,1\n2010-03-05 08:15:31.000,116.6,2\n";

// Long enough for the progress to be seen.
inline std::string LongText() {
  std::string text = kTextFile;
  for (int row = 0; row < 2000; ++row) text += "2010-03-05 08:15:32.000,116.6,2\n";
  return text;
}

// A person in front of the text import wizard.
class TextImportTest : public NavigatorTest {
 protected:
  CString WriteText(const CString& name, const std::string& bytes = kTextFile) const {
    WriteWholeFile(folder_.File(name), bytes);
    return folder_.File(name);
  }
  ScriptedUser& OpenWizard(const CString& path) {
    return user_.Expect(kDialogTextImport1).Press(kButtonBrowseText).PickFiles({path});
  }
  ScriptedUser& ToSecondPage(const CString& path) { return OpenWizard(path).Next().SeePage(kDialogTextImport2); }
  // With comma and the layout of kTextFile.
  ScriptedUser& ToThirdPage(const CString& path) {
    return ToSecondPage(path)
        .Type(kEditStreamName, "UE1")
        .Choose(kComboTimeFormat, "yyyy-mm-dd hh:nn:ss.ms")
        .Press(kRadioComma)
        .Next();
  }
  // Double click on a row of the mapping list, and the choice there.
  ScriptedUser& Map(int row, const CString& path) {
    return user_.DoubleClick(kListColumnMap, row).Expect(kDialogParam).SelectItems(kTreeParams, {path}).Ok();
  }

  CIOManager manager_;
};

}  // namespace loom::testing
