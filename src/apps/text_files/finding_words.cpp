#include "apps/text_files/finding_words.h"

#include <array>
#include <cmath>
#include <cstdio>

#include "platform/clock.h"

namespace loom {
namespace {

using dialect::Findings;
using dialect::Subject;

struct Words {
  const char* chinese;
  const char* english;
};

// Puts `values` into the places %1 to %9 of a text.
std::string Filled(const char* text, std::initializer_list<std::string> values) {
  std::string out;
  for (const char* at = text; *at != '\0'; ++at) {
    const bool is_place = *at == '%' && at[1] >= '1' && at[1] <= '9';
    if (!is_place)
      out += *at;
    else
      out += *(values.begin() + (*++at - '1'));
  }
  return out;
}

// clang-format off
constexpr Words kSize       {"%1 行，%2 列，把握 %3%", "%1 rows of %2 columns, %3 % sure"};
constexpr Words kForm       {"编码 %1，分隔符 %2，引号 %3，小数点 %4", "encoding %1, separator %2, quote %3, decimal mark %4"};
constexpr Words kComments   {"注释行以 %1 开头", "comment lines start with %1"};
constexpr Words kLines      {"表头之前 %1 行，表头 %2 行，表后 %3 行", "%1 lines before the header, %2 of the header, %3 behind the table"};
constexpr Words kTime       {"时间：%1，格式 %2，时区 %3", "time: %1, layout %2, zone %3"};
constexpr Words kSpan       {"时间范围 %1 至 %2", "times from %1 to %2"};
constexpr Words kNoZone     {"未说明", "not stated"};
constexpr Words kNoTime     {"没有找到时间", "no time was found"};
constexpr Words kAmbiguous  {"无法区分日和月：也可能是 %1", "day and month cannot be told apart: it could be %1"};
constexpr Words kLatitude   {"纬度：%1，形式 %2，%3 至 %4", "latitude: %1, %2, %3 to %4"};
constexpr Words kLongitude  {"经度：%1，形式 %2，%3 至 %4", "longitude: %1, %2, %3 to %4"};
constexpr Words kNoPosition {"没有找到经纬度", "no position was found"};
constexpr Words kColumn     {"第 %1 列", "column %1"};
constexpr Words kCounted    {"%1：%2 处", "%1: %2"};
constexpr Words kNone       {"无", "none"};
constexpr Words kTab        {"制表符", "tab"};
constexpr Words kBlankRuns  {"连续空格", "runs of blanks"};
constexpr Words kOneColumn  {"无，只有一列", "none, one column"};

constexpr struct {
  Subject subject;
  Words words;
} kDoubts[] = {
    {Subject::kEncoding,  {"编码不确定，请检查非英文字符", "the encoding is not sure: check letters beyond English"}},
    {Subject::kSeparator, {"分隔符不确定，请检查各列", "the separator is not sure: check the columns"}},
    {Subject::kHeader,    {"表头位置不确定，请检查列名和第一行", "where the header stands is not sure: check the names and the first row"}},
    {Subject::kTime,      {"时间不确定，请检查列和格式", "the time is not sure: check its columns and layout"}},
    {Subject::kLatitude,  {"纬度不确定，请检查列", "the latitude is not sure: check its column"}},
    {Subject::kLongitude, {"经度不确定，请检查列", "the longitude is not sure: check its column"}},
    {Subject::kColumns,   {"部分列的内容混杂", "some columns hold cells of several kinds"}},
    {Subject::kRows,      {"部分行与表格不一致", "some rows are not like the others"}},
};
// clang-format on

class Speaker {
 public:
  Speaker(const Findings& found, WordsLanguage language) : found_(found), language_(language) {}

  std::vector<FindingSentence> Speak() {
    const dialect::Form& form = found_.form;
    Say(kSize, {Number(found_.rows), Number(found_.columns.size()), Number(std::lround(found_.confidence * 100))});
    Say(kForm, {form.encoding + (form.has_bom ? " (BOM)" : ""), SeparatorWords(form.separator, language_),
                form.quote != 0 ? std::string(1, form.quote) : Of(kNone), std::string(1, form.decimal)});
    if (!form.comment.empty()) Say(kComments, {form.comment});
    Say(kLines, {Number(form.preamble_rows), Number(form.header_rows), Number(form.footer_rows)});
    SpeakOfTime();
    if (!found_.latitude && !found_.longitude) Say(kNoPosition, {});
    SpeakOfPosition(kLatitude, found_.latitude);
    SpeakOfPosition(kLongitude, found_.longitude);
    for (const dialect::Doubt& doubt : found_.doubts) {
      for (const auto& [subject, words] : kDoubts) {
        if (subject == doubt.subject) Say(words, {}, true);
      }
    }
    for (const dialect::Remark& remark : found_.remarks.all()) {
      const auto name = language_ == WordsLanguage::kChinese ? remark.kind->chinese_name : remark.kind->name;
      Say(kCounted, {std::string(name), Number(remark.count)}, remark.kind->severity == NoteSeverity::kLost);
    }
    return std::move(sentences_);
  }

 private:
  const char* Of(const Words& words) const {
    return language_ == WordsLanguage::kChinese ? words.chinese : words.english;
  }
  void Say(const Words& words, std::initializer_list<std::string> values, bool is_doubt = false) {
    sentences_.push_back({Filled(Of(words), values), is_doubt});
  }
  template <class Value>
  static std::string Number(Value value) {
    return std::to_string(value);
  }
  static std::string Degrees(double value) {
    char text[32];
    std::snprintf(text, sizeof(text), "%.6f", value);
    return text;
  }
  std::string Columns(const std::vector<std::size_t>& columns) const {
    std::string text;
    for (const std::size_t column : columns) {
      text += (text.empty() ? "" : " + ") + Filled(Of(kColumn), {Number(column)});
      if (!found_.columns.at(column).name.empty()) text += " \"" + found_.columns[column].name + '"';
    }
    return text;
  }
  void SpeakOfTime() {
    if (!found_.time) return Say(kNoTime, {});
    const dialect::TimeFinding& time = *found_.time;
    Say(kTime, {Columns(time.columns), time.layout, time.zone.empty() ? Of(kNoZone) : time.zone});
    if (time.earliest)
      Say(kSpan, {InstantText(*time.earliest, time.has_date), InstantText(*time.latest, time.has_date)});
    for (const std::string& other : time.ambiguous) Say(kAmbiguous, {other}, true);
  }
  void SpeakOfPosition(const Words& words, const std::optional<dialect::PositionFinding>& position) {
    if (!position) return;
    Say(words, {Columns(position->columns), position->form, position->min ? Degrees(*position->min) : "-",
                position->max ? Degrees(*position->max) : "-"});
  }

  const Findings& found_;
  WordsLanguage language_;
  std::vector<FindingSentence> sentences_;
};

}  // namespace

std::vector<FindingSentence> FindingSentences(const Findings& found, WordsLanguage language) {
  return Speaker(found, language).Speak();
}

std::string SeparatorWords(const std::string& separator, WordsLanguage language) {
  const auto of = [&](const Words& words) {
    return language == WordsLanguage::kChinese ? words.chinese : words.english;
  };
  if (separator.empty()) return of(kOneColumn);
  if (separator == "\t") return of(kTab);
  return separator == dialect::kBlanks ? of(kBlankRuns) : "'" + separator + "'";
}

std::string InstantText(double seconds, bool has_date) {
  const double whole = std::floor(seconds);
  char fraction[16] = "";
  const double rest = std::round((seconds - whole) * 1e6);
  const auto second = static_cast<std::int64_t>(whole) + (rest >= 1e6 ? 1 : 0);
  if (rest > 0 && rest < 1e6) {
    std::snprintf(fraction, sizeof(fraction), ".%06d", static_cast<int>(rest));
    std::string_view digits(fraction);
    while (digits.ends_with('0')) digits.remove_suffix(1);
    fraction[digits.size()] = '\0';
  }
  const LocalTime at = ClockTimeOf(second);
  char text[64];
  if (!has_date) {
    std::snprintf(text, sizeof(text), "%02d:%02d:%02d%s", at.hour, at.minute, at.second, fraction);
    return text;
  }
  std::snprintf(text, sizeof(text), "%04d-%02d-%02dT%02d:%02d:%02d%sZ", at.day.year, at.day.month, at.day.day, at.hour,
                at.minute, at.second, fraction);
  return text;
}

}  // namespace loom
