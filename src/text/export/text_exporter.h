#pragma once

#include "importers/exporter.h"

namespace loom {

// Exports one stream to a delimited text file that the person describes in a wizard. Keeps nothing between exports.
class CTextExporter final : public CExporter {
 public:
  CTextExporter() { exporter_type_ = kExporterText; }

  // Not for text files: 0.
  int Export(CString, std::vector<COleSafeArray>&, std::vector<CString>&) override { return 0; }
  int Export(CString, std::vector<ISubject*>, std::vector<CString>&, std::vector<std::vector<CString>>&) override {
    return 0;
  }
  int Export(CString, ISubject*, std::vector<CString>&) override { return 0; }
  int Export(CString, ISubject*) override { return 0; }

  // 1 when the file was written, 0 when it could not be or the wizard was cancelled.
  int Export() override;
};

}  // namespace loom
