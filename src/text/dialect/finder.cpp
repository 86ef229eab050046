#include "text/dialect/finder.h"

#include <algorithm>
#include <span>

#include "platform/error.h"
#include "text/dialect/cell_value.h"
#include "text/dialect/encoding_finder.h"
#include "text/dialect/known_names.h"
#include "text/dialect/proof.h"
#include "text/dialect/shape_finder.h"

namespace loom::dialect {
namespace {

constexpr std::size_t kSampleBytes = std::size_t{1} << 20;
constexpr std::size_t kFirstCells = 400;        // of a column
constexpr std::size_t kFirstCellsAll = 400000;  // of all columns
constexpr double kAmbiguous = 0.5;
constexpr std::size_t kLongDigits = 9;

// Everything that is known while a file is looked at.
struct Inspection {
  const InputFile& file;
  const Overrides& overrides;
  EncodingFound encoding;
  Shape shape;
  Roles roles;
  Findings found;
  std::vector<bool> has_long_number = {};  // of columns: whole numbers of more digits than a count of seconds has
};

std::string Sample(const InputFile& file, const std::string& encoding) {
  FileSource source(file, encoding, kSampleBytes);
  std::string sample;
  while (source.Append(sample)) {
  }
  if (file.Size() > kSampleBytes) {
    const auto end = sample.find_last_of("\r\n");
    if (end != std::string::npos) sample.resize(end + 1);
  }
  return sample;
}

EncodingFound EncodingOf(const InputFile& file, const Overrides& overrides, std::uint64_t from = 0) {
  std::string bytes(static_cast<std::size_t>(std::min<std::uint64_t>(file.Size() - from, kSampleBytes)), '\0');
  file.ReadAt(from, std::as_writable_bytes(std::span(bytes)));
  EncodingFound found = FindEncoding(bytes, from + bytes.size() == file.Size());
  if (overrides.encoding) {
    if (*overrides.encoding != "ASCII" && !Transcoder::Knows(*overrides.encoding))
      throw Error("this system does not know the encoding \"" + *overrides.encoding + "\"");
    found = {*overrides.encoding, found.has_bom, 1};
  }
  return found;
}

struct FirstRows {
  std::vector<ColumnProfile> profiles;
  FirstCells cells;
};

FirstRows ReadFirstRows(const std::string& sample, const Form& form, std::size_t width, char decimal,
                        const std::vector<std::string>* nulls) {
  FirstRows first{std::vector<ColumnProfile>(width, ColumnProfile(nulls)), FirstCells(width)};
  TableReader table(std::make_unique<MemorySource>(sample), form, width);
  const std::size_t kept = std::clamp(kFirstCellsAll / std::max<std::size_t>(width, 1), std::size_t{20}, kFirstCells);
  Record record;
  while (table.Next(record)) {
    if (record.first_cell > 0) continue;
    for (std::size_t column = 0; column < std::min(width, record.cells.size()); ++column) {
      first.profiles[column].Add(record.cells[column], decimal, record.line);
      if (first.cells[column].size() < kept && !record.cells[column].empty())
        first.cells[column].emplace_back(record.cells[column].substr(0, 200));
    }
  }
  return first;
}

// A comma where at least one column writes it so, and points are rarer.
char DecimalOf(const FirstRows& first, const Form& form, const Overrides& overrides) {
  if (overrides.decimal) return *overrides.decimal;
  std::uint64_t commas = 0;
  std::uint64_t points = 0;
  bool has_column = false;
  for (std::size_t column = 0; column < first.profiles.size(); ++column) {
    const ColumnProfile& one = first.profiles[column];
    commas += one.Commas();
    points += one.Points();
    // In quotes between commas they could be thousands.
    const bool may_be_decimal = form.separator != "," || one.OtherThanThousands() * 2 > one.Commas();
    has_column = has_column || (one.Commas() > 0 && may_be_decimal && one.FitsMostly(one.Numbers()));
    for (const std::string& cell : first.cells[column]) {
      // 1°14,04'
      if (one.Texts() > 0 && cell.find(',') != std::string::npos && ParseDegrees(cell, ',', false))
        has_column = true, ++commas;
    }
  }
  return has_column && commas > points ? ',' : '.';
}

void SetForm(Inspection& work, const RecordReader& records, const Proof& proof) {
  Form& form = work.found.form;
  form.line_end =
      records.CrLfCount() >= std::max<std::uint64_t>(records.LfCount(), 1) && records.CrLfCount() >= records.CrCount()
          ? LineEnd::kCrLf
      : records.CrCount() > records.LfCount() ? LineEnd::kCr
                                              : LineEnd::kLf;
  form.looked_for_quote = form.quote;
  if (!work.overrides.quote && proof.quoted() == 0 && !work.shape.has_quoted_head) form.quote = 0;
  form.ends_open = proof.open_ended() * 2 > proof.rows();
  form.footer_rows = static_cast<std::int64_t>(proof.footer_rows());
}

double SetTime(Inspection& work, const Proof& proof) {
  if (!work.roles.time || proof.instants().empty()) return 1;
  const auto& tracks = proof.instants();
  const auto best = std::ranges::max_element(tracks, std::less(), &InstantTrack::valid);
  if (best->valid == 0) {
    if (!work.overrides.time_columns) return 0.7;
  }
  TimeFinding time;
  time.columns = work.roles.time->columns;
  time.layout = best->layout;
  time.has_date = best->reader.HasDate();
  time.first = best->first;
  time.last = best->last;
  time.earliest = best->earliest;
  time.latest = best->latest;
  time.valid = best->valid;
  const auto& offsets = best->reader.Offsets();
  if (time.layout.starts_with("epoch"))
    time.zone = "UTC";
  else if (offsets.empty())
    time.zone = work.roles.time->zone;
  else if (offsets.size() == 1)
    time.zone = OffsetText(offsets.begin()->first);
  else
    time.zone = "varies";
  double confidence = work.roles.time->confidence;
  for (const InstantTrack& track : tracks) {
    if (&track == &*best || track.valid != best->valid || track.layout == best->layout) continue;
    if (track.earliest == best->earliest && track.latest == best->latest && track.first == best->first) continue;
    time.ambiguous.push_back(track.layout);
  }
  if (!time.ambiguous.empty()) confidence = std::min(confidence, kAmbiguous);
  for (const std::size_t column : time.columns) {
    if (work.found.columns.size() <= column) continue;
    ColumnFinding& one = work.found.columns[column];
    one.kind = Kind::kTime;
    if (time.columns.size() == 1)
      one.layout = time.layout;
    else
      one.layout = work.roles.layouts[column];
    one.zone = time.zone;
    const std::uint64_t filled = proof.profiles()[column].Filled();
    one.bad = filled - std::min(filled, time.valid);
    if (one.bad * 50 > filled) confidence = std::min(confidence, 0.8);
  }
  if (best->valid * 2 < proof.rows()) confidence = std::min(confidence, 0.85);
  work.found.time = time;
  return confidence;
}

double SetPosition(Inspection& work, const Proof& proof, const std::optional<PositionRole>& role,
                   const std::optional<DegreeTrack>& track, Kind kind, std::optional<PositionFinding>& finding) {
  if (!role || !track) return 1;
  finding = PositionFinding{role->columns, track->reader.FormName(), track->min, track->max, track->valid};
  ColumnFinding& column = work.found.columns[role->columns[0]];
  column.kind = kind;
  const std::uint64_t filled = proof.profiles()[role->columns[0]].Filled();
  column.bad = filled - std::min(filled, track->valid);
  if (role->columns.size() > 1) work.found.columns[role->columns[1]].kind = Kind::kText;
  return column.bad * 20 > filled ? 0.8 : role->confidence;
}

void SetColumns(Inspection& work, const Proof& proof) {
  for (std::size_t at = 0; at < proof.profiles().size(); ++at) {
    const ColumnProfile& profile = proof.profiles()[at];
    ColumnFinding& column = work.found.columns.emplace_back();
    if (at < work.shape.names.size()) column.name = work.shape.names[at];
    column.kind = profile.PlainKind();
    if (!work.roles.layouts[at].empty() && column.kind != Kind::kText) column.kind = Kind::kTime;
    if (column.kind == Kind::kTime) column.layout = work.roles.layouts[at];
    if (work.roles.is_latitude[at]) column.kind = Kind::kLatitude;
    if (work.roles.is_longitude[at]) column.kind = Kind::kLongitude;
    column.unit = profile.Unit().empty() ? UnitOfName(column.name) : profile.Unit();
    column.empty = profile.Empty();
    column.confidence = 0.97;
    if (column.kind != Kind::kText) {
      column.nulls = profile.NullWords();
      column.empty += profile.Nulls();
      column.bad = column.kind == Kind::kTime ? profile.Filled() - profile.Times() - profile.Numbers()
                                              : profile.Texts() + profile.Times();
      if (column.kind == Kind::kLatitude || column.kind == Kind::kLongitude) column.bad = 0;
      if (column.bad > 0) column.confidence = 0.85;
      for (const Place& place : profile.TextPlaces()) {
        if (column.kind == Kind::kInteger || column.kind == Kind::kNumber)
          work.found.remarks["no number"_note].Add(place.line, static_cast<std::int64_t>(at), place.text);
      }
    } else if (profile.Texts() * 10 < profile.Filled() * 6) {
      column.confidence = 0.8;  // mixed
    }
  }
}

void ApplyNulls(const Overrides& overrides, Findings& found) {
  if (!overrides.nulls) return;
  for (ColumnFinding& column : found.columns) column.nulls = *overrides.nulls;
}

double ColumnsConfidence(const Findings& found) {
  double confidence = 1;
  for (const ColumnFinding& column : found.columns) confidence = std::min(confidence, std::max(column.confidence, 0.6));
  return confidence;
}

double RowsConfidence(const Proof& proof) {
  const double rows = static_cast<double>(std::max<std::uint64_t>(proof.rows(), 1));
  const double ragged = static_cast<double>(proof.ragged()) / rows;
  if (proof.rows() < 3) return 0.8;
  return ragged > 0.02 || proof.stray() > 0 || proof.footer_rows() > 0 ? 0.85 : 1;
}

// Less sure where a name tells of a time or position, and nothing was read from its cells.
double UnlessUnread(const Inspection& work, const Proof& proof, double confidence, bool was_found,
                    int (*rank_of)(std::string_view)) {
  constexpr int kTellingRank = 75;
  for (std::size_t at = 0; !was_found && at < work.shape.names.size(); ++at) {
    const bool is_unread = proof.profiles()[at].PlainKind() == Kind::kText || work.has_long_number[at];
    if (is_unread && rank_of(work.shape.names[at]) >= kTellingRank) return std::min(confidence, 0.8);
  }
  return confidence;
}

// An answer is as sure as its weakest part.
void SetConfidence(Inspection& work, const Proof& proof, double time, double latitude, double longitude) {
  const Overrides& given = work.overrides;
  if (!given.time_columns) time = UnlessUnread(work, proof, time, work.found.time.has_value(), &TimeRank);
  if (!given.latitude_columns)
    latitude = UnlessUnread(work, proof, latitude, work.found.latitude.has_value(), &LatitudeRank);
  if (!given.longitude_columns)
    longitude = UnlessUnread(work, proof, longitude, work.found.longitude.has_value(), &LongitudeRank);
  const Doubt answers[] = {{Subject::kEncoding, work.encoding.confidence},
                           {Subject::kSeparator, work.shape.separator_confidence},
                           {Subject::kHeader, work.shape.header_confidence},
                           {Subject::kTime, time},
                           {Subject::kLatitude, latitude},
                           {Subject::kLongitude, longitude},
                           {Subject::kColumns, ColumnsConfidence(work.found)},
                           {Subject::kRows, RowsConfidence(proof)}};
  work.found.confidence = std::ranges::min_element(answers, std::less(), &Doubt::confidence)->confidence;
  std::ranges::copy_if(answers, std::back_inserter(work.found.doubts),
                       [](const Doubt& answer) { return answer.confidence < kSure; });
  std::ranges::stable_sort(work.found.doubts, std::less(), &Doubt::confidence);
}

void NoteSource(const FileSource& source, const TableReader& table, Findings& found) {
  const auto count = [&](const NoteKind& kind, std::uint64_t number) {
    if (number > 0) found.remarks[kind].count = number;
  };
  count("byte that is none of the encoding"_note, source.BadCount());
  count("zero byte passed over"_note, source.ZeroBytes());
  count("comment line"_note, table.Comments());
}

Findings InspectAs(const InputFile& file, const Overrides& overrides, const EncodingFound& encoding,
                   std::uint64_t& odd_byte) {
  Inspection work{file, overrides, encoding, {}, {}, {}, {}};
  const std::string sample = Sample(file, encoding.name);
  Form known;
  known.encoding = encoding.name;
  known.has_bom = encoding.has_bom;
  work.shape = FindShape(sample, known, overrides);
  Form& form = work.shape.form;
  if (overrides.footer_rows) form.footer_rows = *overrides.footer_rows;
  const bool may_be_comma = overrides.decimal ? *overrides.decimal == ',' : form.separator != "," || form.quote != 0;
  const std::vector<std::string>* const nulls = overrides.nulls ? &*overrides.nulls : nullptr;
  FirstRows first = ReadFirstRows(sample, form, work.shape.width, may_be_comma ? ',' : '.', nulls);
  form.decimal = DecimalOf(first, form, overrides);
  if (may_be_comma && form.decimal == '.') first = ReadFirstRows(sample, form, work.shape.width, '.', nulls);
  for (const ColumnProfile& profile : first.profiles) {
    const bool is_integer = profile.LongestDigits() >= kLongDigits && profile.PlainKind() == Kind::kInteger;
    work.has_long_number.push_back(is_integer);
  }
  work.roles = FindRoles(work.shape.names, first.profiles, first.cells, form.decimal, overrides);
  work.found.form = form;
  work.found.alternatives = work.shape.alternatives;

  Proof proof(work.shape.width, form.decimal, work.roles, !overrides.footer_rows, nulls);
  auto source = std::make_unique<FileSource>(file, encoding.name);
  const FileSource& bytes = *source;
  TableReader table(std::move(source), form, work.shape.width);
  proof.Read(table, work.found.remarks);
  odd_byte = bytes.BadCount() > 0 ? bytes.FirstHighByte() : UINT64_MAX;
  if (encoding.name == "ASCII" && bytes.FirstHighByte() != UINT64_MAX)
    work.encoding.name = work.found.form.encoding = "UTF-8";
  NoteSource(bytes, table, work.found);
  SetForm(work, table.records(), proof);
  work.found.rows = proof.rows();
  if (overrides.footer_rows) {
    work.found.rows -= std::min<std::uint64_t>(work.found.rows, static_cast<std::uint64_t>(*overrides.footer_rows));
    work.found.form.footer_rows = *overrides.footer_rows;
  }
  work.found.first_rows = proof.first_rows();
  SetColumns(work, proof);
  const double time = SetTime(work, proof);
  const double latitude =
      SetPosition(work, proof, work.roles.latitude, proof.latitude(), Kind::kLatitude, work.found.latitude);
  const double longitude =
      SetPosition(work, proof, work.roles.longitude, proof.longitude(), Kind::kLongitude, work.found.longitude);
  ApplyNulls(overrides, work.found);
  SetConfidence(work, proof, time, latitude, longitude);
  return work.found;
}

}  // namespace

Findings Inspect(const CString& path, const Overrides& overrides) {
  const InputFile file(path);
  const EncodingFound encoding = EncodingOf(file, overrides);
  std::uint64_t odd_byte = UINT64_MAX;
  Findings found = InspectAs(file, overrides, encoding, odd_byte);
  // Nothing but ASCII at first, and no UTF-8 later: what is there decides.
  if (encoding.name == "ASCII" && !overrides.encoding && odd_byte != UINT64_MAX) {
    EncodingFound later = EncodingOf(file, overrides, odd_byte);
    later.has_bom = false;
    if (later.name != "UTF-8" && later.name != "ASCII") found = InspectAs(file, overrides, later, odd_byte);
  }
  file.RequireUnchanged();
  return found;
}

}  // namespace loom::dialect
