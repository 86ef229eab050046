#pragma once

#include <optional>
#include <vector>

#include "text/dialect/column_profile.h"
#include "text/dialect/degree_reader.h"
#include "text/dialect/instant_reader.h"
#include "text/dialect/role_finder.h"
#include "text/dialect/table_reader.h"

namespace loom::dialect {

// Instants of one layout over all rows.
struct InstantTrack {
  InstantReader reader;
  std::string layout;
  std::optional<double> first, last, earliest, latest;
  std::uint64_t valid = 0;

  bool Add(const std::vector<std::string_view>& cells);
};

struct DegreeTrack {
  DegreeReader reader;
  std::optional<double> min, max;
  std::uint64_t valid = 0;

  bool Add(const std::vector<std::string_view>& cells);
};

// Goes over all rows and keeps what they show.
class Proof {
 public:
  // `nulls`: the words that stand for nothing where a person has said them, else null.
  Proof(std::size_t width, char decimal, const Roles& roles, bool finds_footer,
        const std::vector<std::string>* nulls = nullptr);

  void Read(TableReader& table, Remarks& remarks);

  std::uint64_t rows() const { return rows_; }
  std::uint64_t footer_rows() const { return footer_rows_; }
  std::uint64_t open_ended() const { return open_ended_; }  // rows with nothing behind a last separator
  std::uint64_t ragged() const { return ragged_; }
  std::uint64_t quoted() const { return quoted_; }
  std::uint64_t stray() const { return stray_; }
  const std::vector<ColumnProfile>& profiles() const { return profiles_; }
  const std::vector<InstantTrack>& instants() const { return instants_; }
  const std::optional<DegreeTrack>& latitude() const { return latitude_; }
  const std::optional<DegreeTrack>& longitude() const { return longitude_; }
  const std::vector<std::vector<std::string>>& first_rows() const { return first_rows_; }

 private:
  struct Held {  // a row that may belong to a footer
    Record record;
    std::vector<std::string> cells;
  };
  bool MayBeFooter(const Record& record) const;
  bool IsNothing(std::string_view cell) const;
  void AddCells(const Record& record, std::size_t cells);
  void CheckWidth(const Record& record, Remarks& remarks);
  void ReadPosition(std::optional<DegreeTrack>& track, const Record& record, const NoteKind& kind, Remarks& remarks);
  void ReadTime(const Record& record, Remarks& remarks);
  void Take(const Record& record, Remarks& remarks);
  void TakeHeld(Remarks& remarks);
  void NoteUnread(const Record& record, const std::vector<std::size_t>& columns, const NoteKind& kind,
                  Remarks& remarks) const;

  std::size_t width_;
  char decimal_;
  bool finds_footer_;
  bool has_time_ = false;
  const std::vector<std::string>* nulls_;
  std::vector<ColumnProfile> profiles_;
  std::vector<std::optional<LayoutReader>> layouts_;  // of columns that hold times
  std::vector<char> is_known_;                        // columns whose cell of the newest row is counted already
  std::vector<InstantTrack> instants_;
  std::optional<DegreeTrack> latitude_, longitude_;
  std::vector<Held> held_;
  std::vector<std::vector<std::string>> first_rows_;
  std::uint64_t rows_ = 0, footer_rows_ = 0, ragged_ = 0, open_ended_ = 0, quoted_ = 0, stray_ = 0;
};

}  // namespace loom::dialect
