#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/workbook/sheet_body_writer.h"
#include "platform/cstring.h"

namespace loom {

// One worksheet of a workbook that is being written.
struct WrittenSheet {
  CString name;
  bool is_named = false;                       // false: the name was found for it and may give way
  std::uint32_t style = 0;                     // number of the cells' style; it and the next one are this sheet's alone
  std::optional<SheetBody> body;               // none: the sheet is empty
  std::optional<std::int32_t> vertical_align;  // of its cells, in the object model's numbers
  bool fits_columns = false;                   // columns as wide as their texts
  CellAddress selection;
  bool frozen = false;  // rows above and columns left of the selection stay in view
};

// A workbook (.xlsx). Cells are compressed into a scratch file in the folder of the target as they come, so that
// memory does not grow with them; Save() makes the file, complete or not at all.
class WorkbookWriter {
 public:
  explicit WorkbookWriter(const CString& target) : target_(target) {}

  const CString& target() const { return target_; }
  // Adds an empty sheet, "Sheet1" or another number that is free, at a position from 0.
  WrittenSheet& AddSheet(std::size_t position);
  std::size_t SheetCount() const { return sheets_.size(); }
  WrittenSheet& Sheet(std::size_t position) { return *sheets_.at(position); }
  void SetActiveSheet(std::size_t position) { active_ = position; }
  std::size_t ActiveSheet() const { return active_; }

  // Gives the sheet the name, mended where a workbook would refuse it: characters of :\/?*[] and apostrophes at its
  // ends become '_', a name that is too long is cut (a piece number at its end stays), a name that another sheet has
  // gets a number. What was mended is noted.
  void Rename(WrittenSheet& sheet, const CString& name);
  // Once a sheet; throws AutomationError when it is filled already or the values do not fit on a sheet, FileError when
  // they cannot be set aside.
  void Fill(WrittenSheet& sheet, const COleSafeArray& values, CellAddress first);
  // Once.
  void Save();

 private:
  class Saving;
  // Whether a sheet other than `except` has been given the name; case does not count.
  bool IsTaken(const CString& name, const WrittenSheet* except) const;
  CString FreeName(const CString& besides) const;

  ScratchFile& Scratch();

  CString target_;
  std::vector<std::unique_ptr<WrittenSheet>> sheets_;
  std::unique_ptr<ScratchFile> scratch_;
  std::uint32_t next_style_ = 1;
  std::size_t active_ = 0;
};

}  // namespace loom
