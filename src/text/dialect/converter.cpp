#include "text/dialect/converter.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

#include "components/dt_time.h"
#include "platform/encoding.h"
#include "text/dialect/cell_value.h"
#include "text/dialect/degree_reader.h"
#include "text/dialect/instant_reader.h"
#include "text/dialect/table_output.h"

namespace loom::dialect {
namespace {

constexpr std::string_view kImportSeparators = "\t|;^~`#@\x01\x02\x03\x04\x05\x06\x0E\x0F";

struct ColumnPlan {
  std::size_t column = 0;
  std::string title;
  bool is_number = false;  // as the file has it
  bool is_bound = false;   // to an element that takes numbers
  bool is_whole = false;
  bool converts = false;
  double factor = 1;
  double offset = 0;
  const ColumnFinding* finding = nullptr;
};

bool IsNothing(std::string_view text, const ColumnPlan& plan) {
  if (text.empty()) return true;
  const auto& nulls = plan.finding->nulls;
  return std::ranges::find(nulls, text) != nulls.end();
}

void AppendNumber(std::string& out, double value) {
  char text[40];
  const auto [end, error] = std::to_chars(text, text + sizeof(text), value);
  out.append(text, end);
}

// Writes the rows of the import form.
class ImportWriter {
 public:
  ImportWriter(const Findings& found, const ElementMapping& mapping, TimeForm time_form, Converted& result)
      : found_(found), time_form_(time_form), result_(result), local_(127) {
    if (found.time) {
      const std::string zone = found.time->zone == "varies" ? "" : found.time->zone;
      const bool states_zone = found.time->layout.starts_with("epoch");
      time_.emplace(found.time->columns, found.time->layout, states_zone ? "" : zone, found.form.decimal);
    }
    const char decimal = found.form.decimal;
    const auto is_nmea = [](const PositionFinding& one) {
      return one.form == DegreeFormName(DegreeForm::kNmea, false);
    };
    if (found.latitude) latitude_.emplace(found.latitude->columns, is_nmea(*found.latitude), decimal, 90);
    if (found.longitude) longitude_.emplace(found.longitude->columns, is_nmea(*found.longitude), decimal, 180);
    PlanColumns(mapping);
  }

  void SetSeparator(char separator) { separator_ = separator; }

  void WriteHeader(std::string& out) {
    std::int32_t column = 0;
    const auto add = [&](const std::string& title, bool is_element) {
      if (column > 0) out += separator_;
      AppendText(out, title, 1, column);
      if (is_element) result_.elements[column] = Utf8ToGbk(title);
      ++column;
    };
    if (time_) add("RecordTime", true);
    if (longitude_) add("Longitude", true);
    if (latitude_) add("Latitude", true);
    for (const ColumnPlan& plan : plans_) add(plan.title, is_element_.at(plan.column));
    add("SourceLine", false);
  }

  void WriteRow(std::string& out, const Record& record) {
    const auto& cells = record.cells;
    if (time_) {
      AppendTime(out, cells);
      out += separator_;
    }
    for (auto* const reader : {longitude_ ? &*longitude_ : nullptr, latitude_ ? &*latitude_ : nullptr}) {
      if (reader == nullptr) continue;
      AppendDegrees(out, *reader, cells);
      out += separator_;
    }
    for (const ColumnPlan& plan : plans_) {
      if (plan.column < cells.size()) AppendCell(out, plan, cells[plan.column], record.line);
      out += separator_;
    }
    AppendWhole(out, record.line);
    for (std::size_t at = found_.columns.size(); at < cells.size(); ++at) {
      if (!Trimmed(cells[at]).empty())
        result_.remarks["cell behind the last column left out"_note].Add(record.line, static_cast<std::int64_t>(at),
                                                                         cells[at]);
    }
  }

 private:
  void PlanColumns(const ElementMapping& mapping) {
    std::vector<bool> is_used(found_.columns.size());
    const auto use = [&](const auto& finding) {
      if (!finding) return;
      for (const std::size_t column : finding->columns) is_used[column] = true;
    };
    use(found_.time);
    use(found_.latitude);
    use(found_.longitude);
    for (const ElementColumn& one : mapping.columns) is_used[one.column] = false;
    for (std::size_t at = 0; at < found_.columns.size(); ++at) {
      if (is_used[at]) continue;
      const ColumnFinding& finding = found_.columns[at];
      ColumnPlan plan{.column = at, .title = finding.name.empty() ? "Column" + std::to_string(at) : finding.name};
      plan.finding = &finding;
      plan.is_number = finding.kind == Kind::kInteger || finding.kind == Kind::kNumber;
      is_element_[at] = false;
      for (const ElementColumn& one : mapping.columns) {
        if (one.column != at) continue;
        plan.title = one.element;
        plan.is_bound = one.is_number;
        plan.is_whole = one.is_whole;
        plan.factor = one.factor;
        plan.offset = one.offset;
        is_element_[at] = true;
      }
      plan.converts = plan.factor != 1 || plan.offset != 0;
      plans_.push_back(plan);
    }
  }

  bool IsGivenNothing(std::size_t column, const std::vector<std::string_view>& cells) const {
    const auto& nulls = found_.columns[column].nulls;
    return column < cells.size() && std::ranges::find(nulls, Trimmed(cells[column])) != nulls.end();
  }

  void AppendDegrees(std::string& out, DegreeReader& reader, const std::vector<std::string_view>& cells) {
    const std::size_t column = reader.columns()[0];
    const std::optional<double> degrees = IsGivenNothing(column, cells) ? std::nullopt : reader.Read(cells);
    if (!degrees) return;
    if (reader.IsPlain())
      out += Trimmed(cells[column]);
    else
      AppendNumber(out, *degrees);
  }

  void AppendTime(std::string& out, const std::vector<std::string_view>& cells) {
    const std::optional<double> seconds =
        IsGivenNothing(time_->columns()[0], cells) ? std::nullopt : time_->Read(cells);
    if (!seconds) return;
    if (!time_->HasDate() || time_form_ == TimeForm::kLayout) {
      if (!time_->HasDate()) {
        const double of_day = *seconds;
        const auto whole = static_cast<int>(of_day);
        char text[32];
        const int length = std::snprintf(text, sizeof(text), "%02d:%02d:%09.6f", whole / 3600, whole / 60 % 60,
                                         of_day - whole / 60 * 60);
        out.append(text, static_cast<std::size_t>(length));
        return;
      }
      char text[DateTimeText::kRoom];
      out.append(text, local_.Put(*seconds, text));
      return;
    }
    char text[40];
    const auto [end, error] = std::to_chars(text, text + sizeof(text), *seconds, std::chars_format::fixed, 6);
    out.append(text, end);
  }

  void AppendCell(std::string& out, const ColumnPlan& plan, std::string_view cell, std::uint64_t line) {
    const std::string_view text = Trimmed(cell);
    if (!plan.is_number && !plan.is_bound) {
      if (plan.finding->kind != Kind::kText && IsNothing(text, plan)) return;
      return AppendText(out, text, line, static_cast<std::int64_t>(plan.column));
    }
    if (IsNothing(text, plan)) return;
    const std::optional<NumberForm> form = FormOfNumber(text, found_.form.decimal);
    if (!form) {
      if (!plan.is_bound) return AppendText(out, text, line, static_cast<std::int64_t>(plan.column));
      result_.remarks["no number, left out"_note].Add(line, static_cast<std::int64_t>(plan.column), text);
      return;
    }
    const bool is_kept = !plan.converts && (form->is_integer || !plan.is_whole);
    if (is_kept && form->unit.empty() && !form->has_comma) {
      out += text;
      return;
    }
    double value = ParseNumber(text, found_.form.decimal)->value * plan.factor + plan.offset;
    if (plan.is_whole && value != std::round(value)) {
      result_.remarks["rounded to a whole number, which the element takes"_note].Add(
          line, static_cast<std::int64_t>(plan.column), text);
      value = std::round(value);
    }
    AppendNumber(out, value);
  }

  void AppendText(std::string& out, std::string_view text, std::uint64_t line, std::int64_t column) {
    const std::size_t start = out.size();
    const bool is_ascii = std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    if (is_ascii) {
      out += text;
    } else {
      const CString gbk = Utf8ToGbkOr(text, '?');
      out += gbk.view();
      if (std::ranges::count(gbk.view(), '?') != std::ranges::count(text, '?'))
        result_.remarks["character without a place in GBK"_note].Add(line, column, text);
    }
    for (std::size_t at = start; at < out.size(); ++at) {
      const char c = out[at];
      if (c != separator_ && c != '\n' && c != '\r') continue;
      // No trail byte of GBK is one of these but for some separators, which are never chosen then.
      result_.remarks[c == separator_ ? "separator in a cell"_note : "line end in a cell"_note].Add(line, column, text);
      out[at] = ' ';
    }
  }

  static void AppendWhole(std::string& out, std::uint64_t value) {
    char text[24];
    const auto [end, error] = std::to_chars(text, text + sizeof(text), value);
    out.append(text, end);
  }

  const Findings& found_;
  TimeForm time_form_;
  Converted& result_;
  DateTimeText local_;
  char separator_ = '\t';
  std::optional<InstantReader> time_;
  std::optional<DegreeReader> latitude_, longitude_;
  std::vector<ColumnPlan> plans_;
  std::map<std::size_t, bool> is_element_;
};

// A separator that no cell holds; "\t" where each of them occurs.
char FreeSeparator(const InputFile& file, const Findings& found) {
  const bool has_quoted = found.form.quote != 0;
  std::string left(kImportSeparators);
  if (!has_quoted && (found.form.separator == "\t" || found.form.separator == ";" || found.form.separator == "|"))
    return found.form.separator[0];
  if (!has_quoted && found.form.separator == "," && found.form.decimal == '.') {
    return ',';
  }
  FileSource source(file, found.form.encoding);
  std::string block;
  while (!left.empty() && source.Append(block)) {
    std::erase_if(left, [&](char c) { return std::memchr(block.data(), c, block.size()) != nullptr; });
    block.clear();
  }
  // Below 0x40: never the second byte of a character.
  std::erase_if(left, [](char c) { return static_cast<unsigned char>(c) >= 0x40; });
  return left.empty() ? '\t' : left[0];
}

}  // namespace

Converted ConvertToImport(const CString& path, const Findings& found, const ElementMapping& mapping, TimeForm time_form,
                          const CString& out) {
  const InputFile file(path);
  Converted result;
  Output output(out);
  ImportWriter writer(found, mapping, time_form, result);
  const char separator = FreeSeparator(file, found);
  writer.SetSeparator(separator);
  result.separator = std::string(1, separator);
  result.has_time = found.time.has_value();
  writer.WriteHeader(output.text());
  output.EndLine("\r\n");
  TableReader table = OpenTable(file, found);
  Record record;
  while (result.rows < found.rows && table.Next(record)) {
    if (record.first_cell > 0) continue;
    writer.WriteRow(output.text(), record);
    output.EndLine("\r\n");
    ++result.rows;
  }
  output.Finish();
  file.RequireUnchanged();
  return result;
}

}  // namespace loom::dialect
