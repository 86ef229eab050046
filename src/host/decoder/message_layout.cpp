#include <cctype>
#include <string_view>

#include "components/decoder.h"
#include "platform/characters.h"

namespace loom {
namespace {

// Lays a message in value notation out as lines: every brace on its own, with the comma behind it, and an empty line
// behind the close of a list of transport channels.
class MessageLayout {
 public:
  explicit MessageLayout(std::deque<CString>& lines) : lines_(lines) {}

  void AddLine(std::string_view line) {
    std::size_t start = 0;
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
      if (line[i] == '"') quoted = !quoted;
      if (quoted || (line[i] != '{' && line[i] != '}')) continue;
      AddText(line.substr(start, i - start));
      const std::size_t length = line[i] == '}' && i + 1 < line.size() && line[i + 1] == ',' ? 2 : 1;
      AddBrace(line.substr(i, length));
      start = i + length;
      i = start - 1;
    }
    AddText(line.substr(start));
  }

 private:
  void AddText(std::string_view text) {
    text = Trimmed(text);
    if (text.empty()) return;
    if (text.find("AddReconfTransChInfoList") != std::string_view::npos) list_awaits_brace_ = true;
    lines_.emplace_back(text);
  }
  void AddBrace(std::string_view brace) {
    lines_.emplace_back(brace);
    if (brace[0] == '{') {
      ++depth_;
      if (list_awaits_brace_) list_depth_ = depth_;
      list_awaits_brace_ = false;
      return;
    }
    if (depth_ == list_depth_) {
      lines_.emplace_back();
      list_depth_ = 0;
    }
    --depth_;
  }

  std::deque<CString>& lines_;
  int depth_ = 0;
  int list_depth_ = 0;  // depth inside the list of transport channels that is open; 0 = none
  bool list_awaits_brace_ = false;
};

}  // namespace

bool CDecoder::DTDetailDecode(struct_STREAMINFO*, const CTestdataBase& record, std::deque<CString>& lines) {
  lines.clear();
  std::string_view text = record.layer3_lines;
  if (text.empty()) return false;
  MessageLayout layout(lines);
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    layout.AddLine(line);
    text.remove_prefix(line.size() == text.size() ? line.size() : line.size() + 1);
  }
  return true;
}

}  // namespace loom
