#include "manager/io_registry.h"

#include "components/autotest.h"
#include "excel/excel_exporter.h"
#include "importers/auto_test_log_importer.h"
#include "importers/indoor_log_importer.h"
#include "importers/outdoor_log_importer.h"
#include "netinfo/net_info_importer.h"
#include "platform/completes.h"
#include "platform/ui/message_box.h"
#include "text/export/text_exporter.h"
#include "text/import/text_importer.h"

namespace loom {

// An object that is made when it is asked for.
template <class Object>
class OnFirstUse {
 public:
  using Maker = std::unique_ptr<Object> (*)();
  explicit OnFirstUse(Maker make) : make_(make) {}

  Object* Get(const CString& failure_message) {
    if (!object_ && !Completes([this] { object_ = make_(); })) ShowMessageBox(failure_message, MessageIcon::kError);
    return object_.get();
  }

 private:
  Maker make_;
  std::unique_ptr<Object> object_;
};

namespace {

template <class Interface, class Object = Interface>
std::unique_ptr<Interface> Make() {
  return std::make_unique<Object>();
}

template <class Library>
std::unique_ptr<IImporter> MakeOutside() {
  return std::unique_ptr<IImporter>(Library().CreateImporter());
}

template <class Importer>
Importer* ImporterIn(OnFirstUse<Importer>& slot) {
  return slot.Get("导入操作出现错误，请重试或重启系统！"_gbk);
}

IExporter* ExporterIn(OnFirstUse<IExporter>& slot) { return slot.Get("导出操作出现错误，请重试或重启系统！"_gbk); }

}  // namespace

struct IORegistry::Made {
  OnFirstUse<CLogImporter> outdoor{&Make<CLogImporter, COutdoorLogImporter>};
  OnFirstUse<CLogImporter> indoor{&Make<CLogImporter, CIndoorLogImporter>};
  OnFirstUse<IImporter> auto_test{&MakeOutside<CCSLogImportWrap>};
  OnFirstUse<IImporter> china_mobile{&MakeOutside<CCMCCLogImportWrap>};
  OnFirstUse<CTextImporter> text{&Make<CTextImporter>};
  OnFirstUse<CNetInfoImporter> net_info{&Make<CNetInfoImporter>};
  OnFirstUse<IExporter> text_exporter{&Make<IExporter, CTextExporter>};
  OnFirstUse<IExporter> excel_exporter{&Make<IExporter, CExcelExporter>};
};

IORegistry::IORegistry() : made_(std::make_unique<Made>()) { RegisterLogImporterMaker(&MakeAutoTestLogImporter); }

IORegistry::~IORegistry() { Release(); }

// Assignment goes member by member from the first.
void IORegistry::Release() { *made_ = Made(); }

IImporter* IORegistry::GetImporterByType(ImporterTypeEnum type) {
  switch (type) {
    case kImporterOutdoorLog:
    case kImporterIndoorLog:
      return GetLogImporter(type);
    case kImporterAutoTestLog:
      return ImporterIn(made_->auto_test);
    case kImporterChinaMobileLog:
      return ImporterIn(made_->china_mobile);
    case kImporterText:
      return GetTextImporter();
    case kImporterNetInfo:
      return GetNetInfoImporter();
    default:
      return nullptr;
  }
}

// The outside library takes the module's reading loop for its importers, or brings its own.
CLogImporter* IORegistry::GetLogImporter(ImporterTypeEnum type) {
  switch (type) {
    case kImporterOutdoorLog:
      return ImporterIn(made_->outdoor);
    case kImporterIndoorLog:
      return ImporterIn(made_->indoor);
    case kImporterAutoTestLog:
    case kImporterChinaMobileLog:
      return dynamic_cast<CLogImporter*>(GetImporterByType(type));
    default:
      return nullptr;
  }
}

CTextImporter* IORegistry::GetTextImporter() { return ImporterIn(made_->text); }

CNetInfoImporter* IORegistry::GetNetInfoImporter() { return ImporterIn(made_->net_info); }

IExporter* IORegistry::GetExporterByType(ExporterTypeEnum type) {
  switch (type) {
    case kExporterText:
      return ExporterIn(made_->text_exporter);
    case kExporterExcel:
      return ExporterIn(made_->excel_exporter);
    default:
      return nullptr;
  }
}

}  // namespace loom
