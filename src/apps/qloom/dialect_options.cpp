#include "apps/qloom/dialect_options.h"

#include <algorithm>
#include <filesystem>
#include <map>

#include "apps/qloom/commands.h"
#include "apps/text_files/dialect_file.h"
#include "platform/encoding.h"

namespace loom {
namespace {

const std::map<std::string, std::string> kSeparatorNames{{"tab", "\t"},
                                                         {"\\t", "\t"},
                                                         {"comma", ","},
                                                         {"semicolon", ";"},
                                                         {"pipe", "|"},
                                                         {"none", ""},
                                                         {"blank", dialect::kBlanks}};

std::vector<std::string> CutAtCommas(const std::string& text) {
  std::vector<std::string> parts;
  std::size_t at = 0;
  while (!text.empty() && at <= text.size()) {
    const auto comma = std::min(text.find(',', at), text.size());
    parts.push_back(text.substr(at, comma - at));
    at = comma + 1;
  }
  return parts;
}

std::string OneCharacter(const char* option, const std::string& text) {
  if (text == "none") return {};
  if (text.size() > 1) throw Error(std::string(option) + ": \"" + text + "\" is more than one character");
  return text;
}

}  // namespace

bool DialectOptions::IsAnyGiven() const {
  return !dialect_file.empty() || encoding || separator || quote || comment || decimal || time || zone || latitude ||
         longitude || preamble || header || footer || !nulls.empty();
}

void AddDialectOptions(Command& command, DialectOptions& options, bool has_separator) {
  command.AddOption("--dialect", options.dialect_file, "Dialect saved in a JSON file; other options go before it");
  command.AddOption("--encoding", options.encoding, "Encoding, as iconv names it");
  if (!has_separator)
    command.AddOption("--separator", options.separator, "tab, comma, semicolon, pipe, blanks, none or one character");
  command.AddOption("--quote", options.quote, "Character that quotes cells, or none");
  command.AddOption("--comment", options.comment, "What a comment line starts with, or none");
  command.AddOption("--preamble", options.preamble, "Lines before the header").NotNegative();
  command.AddOption("--header", options.header, "Lines of the header, 0 for none").NotNegative();
  command.AddOption("--footer", options.footer, "Rows behind the table").NotNegative();
  command.AddOption("--decimal", options.decimal, "Decimal mark").OneOf(std::vector<std::string>{".", ","});
  command.AddOption("--null", options.nulls, "Words that stand for nothing");
  command.AddOption(
      "--time", options.time,
      "COLUMNS=LAYOUT, columns by name or number from 0, between commas; a layout like yyyy-MM-dd HH:mm:ss.SSS; "
      "or none");
  command.AddOption("--zone", options.zone, "Zone of times that state none: UTC, +08:00, CET ...");
  command.AddOption("--latitude", options.latitude, "Column of the latitude, and of its letter; or none");
  command.AddOption("--longitude", options.longitude, "Column of the longitude, and of its letter; or none");
}

dialect::Overrides OverridesFrom(const DialectOptions& options) {
  dialect::Overrides overrides;
  if (!options.dialect_file.empty()) overrides = ReadDialectFile(ExistingPath(options.dialect_file));
  if (options.encoding) overrides.encoding = options.encoding;
  if (options.separator) {
    const auto named = kSeparatorNames.find(*options.separator);
    overrides.separator = named != kSeparatorNames.end() ? named->second : *options.separator;
    if (overrides.separator->size() > 1 && *overrides.separator != dialect::kBlanks)
      throw Error("--separator: \"" + *options.separator + "\" is more than one character");
  }
  if (options.quote) overrides.quote = OneCharacter("--quote", *options.quote);
  if (options.comment) overrides.comment = *options.comment == "none" ? "" : *options.comment;
  if (options.preamble) overrides.preamble_rows = *options.preamble;
  if (options.header) overrides.header_rows = *options.header;
  if (options.footer) overrides.footer_rows = *options.footer;
  if (options.decimal) overrides.decimal = options.decimal->front();
  if (!options.nulls.empty()) overrides.nulls = options.nulls;
  if (options.zone) overrides.zone = options.zone;
  const auto columns = [](const std::string& text) {
    return text == "none" ? std::vector<std::string>() : CutAtCommas(text);
  };
  if (options.latitude) overrides.latitude_columns = columns(*options.latitude);
  if (options.longitude) overrides.longitude_columns = columns(*options.longitude);
  if (options.time) {
    const auto equals = options.time->find('=');
    overrides.time_columns = columns(options.time->substr(0, equals));
    overrides.time_layout.reset();
    if (equals != std::string::npos) overrides.time_layout = options.time->substr(equals + 1);
  }
  return overrides;
}

std::vector<CString> TextFilesOf(const std::vector<std::string>& names) {
  std::vector<std::string> files;
  for (const std::string& name : names) {
    if (!std::filesystem::is_directory(name)) {
      files.push_back(name);
      continue;
    }
    std::vector<std::string> below;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(name)) {
      std::string extension = entry.path().extension().native();
      std::ranges::transform(extension, extension.begin(),
                             [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
      const bool is_text = extension == ".csv" || extension == ".tsv" || extension == ".txt" || extension == ".tab";
      if (is_text && entry.is_regular_file()) below.push_back(entry.path().native());
    }
    std::ranges::sort(below);
    files.insert(files.end(), below.begin(), below.end());
    if (below.empty()) throw Error(name + ": the folder holds no text file (.csv, .tsv, .txt, .tab)");
  }
  return ExistingFiles(files);
}

}  // namespace loom
