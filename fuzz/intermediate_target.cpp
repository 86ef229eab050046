// Any bytes as an intermediate file: it is refused with a message, or imported; rows that are missing have a note.
#include <cstdlib>
#include <memory>
#include <optional>
#include <vector>

#include "components/module_communicator.h"
#include "fuzz/memory_file.h"
#include "fuzz/target.h"
#include "host/application.h"
#include "importers/intermediate_file_importer.h"
#include "platform/notes.h"
#include "platform/ui/front_end.h"

namespace {

using namespace loom;

// Counts messages; nothing else is shown.
class CountingFrontEnd final : public FrontEnd {
 public:
  void ShowDialog(CDialog&) override { std::abort(); }
  MessageAnswer ShowMessage(const MessageBoxRequest&) override {
    ++messages;
    return MessageAnswer::kOk;
  }
  std::optional<std::vector<CString>> ShowFileDialog(const FileDialogRequest&) override { std::abort(); }
  std::unique_ptr<ProgressView> ShowProgress(const ProgressRequest&) override { return nullptr; }
  void SetWaitCursor(bool) override {}

  int messages = 0;
};

class Host {
 public:
  Host() : application_(IECatalogue(), HostOptions()) { SetFrontEnd(&front_end); }
  IModuleCommunicator& communicator() { return application_.communicator(); }

  CountingFrontEnd front_end;

 private:
  HostApplication application_;
};

std::uint64_t RowsIn(ILogfile& logfile) {
  std::uint64_t rows = 0;
  for (IDataStream* stream : logfile.GetStreams()) {
    rows += stream->GetRows()->size();
    if (static_cast<std::uint64_t>(stream->GetRowCount()) != stream->GetRows()->size()) std::abort();
  }
  return rows;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Host host;
  host.front_end.messages = 0;
  Notes notes;
  const NotesScope scope(notes);
  const MemoryFile file(data, size);
  ILogfile* logfile = nullptr;
  const int result = CIntermediateFileImporter(&host.communicator()).Import(file.Path(), &logfile);
  if ((result == kImportFailed) != (host.front_end.messages == 1)) std::abort();
  if (logfile != nullptr) {
    // A row has at least its index entry in the file; two entries may share one.
    if (RowsIn(*logfile) > 22 * size / 24) std::abort();
    CStreamManagerCreator::CreateStreamManager()->DropLogfile(file.Path());
  } else if (result == kImportDone && size != 0) {
    std::abort();
  }
  return 0;
}
