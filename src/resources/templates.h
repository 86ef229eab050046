#pragma once

#include "resources/binning_templates.h"
#include "resources/handset_type_templates.h"
#include "resources/log_import_templates.h"
#include "resources/log_tools_templates.h"
#include "resources/net_import_templates.h"
#include "resources/parameter_picker_templates.h"
#include "resources/text_export_templates.h"
#include "resources/text_import_templates.h"

// Every dialog and page of the module; a new one takes its place here.
namespace loom {

// clang-format off
inline constexpr const DialogTemplate* kTemplates[] = {
    &kTextImport1Template, &kTextImport2Template, &kTextImport3Template,
    &kTextExport1Template, &kTextExport2Template, &kTextExport3Template, &kExportLimitsTemplate,
    &kLogFilesTemplate, &kSelImportTemplate,
    &kBinningTemplate,
    &kHandsetTypeTemplate,
    &kParamTemplate,
    &kNetImport1Template, &kNetImport2Template, &kCustomNetTemplate,
    &kCombineTemplate, &kPartitionTemplate,
};
// clang-format on

}  // namespace loom
