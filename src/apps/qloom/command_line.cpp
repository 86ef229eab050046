#include "apps/qloom/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdint>
#include <iostream>
#include <numeric>
#include <string_view>
#include <utility>

namespace loom {

namespace {

constexpr int kUsageError = 2;
constexpr std::size_t kMostSuggestions = 4;

// Insertions, deletions and replacements between two words.
std::size_t EditDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
      diagonal = std::exchange(row[j + 1], std::min({replaced, row[j] + 1, row[j + 1] + 1}));
    }
  }
  return row.back();
}

std::vector<const CLI::App*> CommandsOf(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App*) { return true; });
}

// The commands and groups of commands below `app`, with the words in front of them.
void CollectCommands(const CLI::App& app, const std::string& words, std::vector<std::string>& names) {
  for (const CLI::App* const command : CommandsOf(app)) {
    names.push_back(words + command->get_name());
    CollectCommands(*command, names.back() + ' ', names);
  }
}

// How far a command is from what was written: 0 when one is part of the other.
std::size_t DistanceTo(const std::string& written, const std::string& command) {
  const std::string_view last = std::string_view(command).substr(command.rfind(' ') + 1);
  const bool is_part = written.size() > 1 && (command.find(written) != std::string::npos || written == last);
  return is_part ? 0 : std::min(EditDistance(written, command), EditDistance(written, last));
}

std::string NearCommands(const CLI::App& program, const std::string& written) {
  std::vector<std::string> names;
  CollectCommands(program, "", names);
  std::vector<std::pair<std::size_t, std::string>> near;
  for (const std::string& name : names) {
    const std::size_t distance = DistanceTo(written, name);
    if (distance <= std::max<std::size_t>(2, written.size() / 3)) near.emplace_back(distance, name);
  }
  std::ranges::stable_sort(near, {}, &std::pair<std::size_t, std::string>::first);
  std::string list;
  for (std::size_t at = 0; at < std::min(near.size(), kMostSuggestions); ++at)
    list += (at == 0 ? "; near it: " : ", ") + near[at].second;
  return list;
}

// Nothing when the first words name a command, or none is written.
std::string ObjectionToCommand(const CLI::App& program, int argc, char** argv) {
  const CLI::App* group = &program;
  std::string words;
  for (int at = 1; at < argc && argv[at][0] != '-'; ++at) {
    words += (words.empty() ? "" : " ") + std::string(argv[at]);
    const auto below = CommandsOf(*group);
    const auto command = std::ranges::find(below, std::string_view(argv[at]), &CLI::App::get_name);
    if (command == below.end()) return "there is no command \"" + words + "\"" + NearCommands(program, words);
    group = *command;
    if (CommandsOf(*group).empty()) return {};
  }
  return {};
}

}  // namespace

Option& Option::Required() {
  option_->required();
  return *this;
}

Option& Option::Takes(int count) {
  option_->expected(count);
  return *this;
}

Option& Option::TakesAtLeast(int count) {
  option_->expected(count, -1);
  return *this;
}

Option& Option::Excludes(Option& other) {
  option_->excludes(other.option_);
  return *this;
}

Option& Option::Positive() {
  option_->check(CLI::PositiveNumber);
  return *this;
}

Option& Option::NotNegative() {
  option_->check(CLI::NonNegativeNumber);
  return *this;
}

Option& Option::Between(int first, int last) {
  option_->check(CLI::Range(first, last));
  return *this;
}

Option& Option::OneOf(const std::vector<std::string>& names) {
  option_->check(CLI::IsMember(names));
  return *this;
}

Option& Option::Check(std::function<std::string(const std::string&)> objection, const std::string& form) {
  option_->check(
      CLI::Validator([objection = std::move(objection)](std::string& text) { return objection(text); }, form));
  return *this;
}

Command Command::AddGroup(const std::string& name, const std::string& description) {
  CLI::App* const group = app_->add_subcommand(name, description);
  group->require_subcommand(1);
  return {*group, *line_};
}

Command Command::Group(const std::string& name) { return {*app_->get_subcommand(name), *line_}; }

Command Command::AddCommand(const std::string& name, const std::string& description) {
  Command command(*app_->add_subcommand(name, description), *line_);
  CommonOptions& common = line_->common;
  command.AddFlag("--json", common.json, "One JSON document on standard output");
  command.AddFlag("--no,!--yes", common.no, "Answer to questions (default --yes)");
  command.AddFlag("--trace-ui", common.trace_ui, "Windows, progress and messages as JSON lines on standard error");
  command.AddOption("--cancel-at", common.cancel_at, "Press cancel when the progress reaches this percentage")
      .Between(0, 100);
  command.AddOption("--project", common.project, "Project to work in, created when missing");
  command.AddOption("--wait", common.wait_s, "Seconds to wait for a project that another process holds (default 30)")
      .Between(0, 86400);
  command.AddOption("--config", common.config,
                    "Folder of the catalogue (default: ../Config from the program's folder)");
  return command;
}

template <typename Value>
Option Command::AddOption(const std::string& name, Value& value, const std::string& description) {
  return Option(*app_->add_option(name, value, description));
}

template <typename Value>
Option Command::AddFlag(const std::string& name, Value& value, const std::string& description) {
  // The parser by itself gives an optional one a value when it is left out, too.
  if constexpr (std::is_same_v<Value, std::optional<bool>>)
    return Option(*app_->add_flag_function(
        name, [&value](std::int64_t count) { value = count > 0; }, description));
  else
    return Option(*app_->add_flag(name, value, description));
}

template Option Command::AddOption(const std::string&, std::string&, const std::string&);
template Option Command::AddOption(const std::string&, std::optional<std::string>&, const std::string&);
template Option Command::AddOption(const std::string&, std::vector<std::string>&, const std::string&);
template Option Command::AddOption(const std::string&, double&, const std::string&);
template Option Command::AddOption(const std::string&, std::int32_t&, const std::string&);
template Option Command::AddOption(const std::string&, std::optional<std::int32_t>&, const std::string&);
template Option Command::AddOption(const std::string&, std::uint64_t&, const std::string&);
template Option Command::AddFlag(const std::string&, bool&, const std::string&);
template Option Command::AddFlag(const std::string&, std::optional<bool>&, const std::string&);

void Command::Runs(std::function<int()> work, std::function<void()> check) {
  app_->callback([line = line_, work = std::move(work), check = std::move(check)] {
    try {
      if (check) check();
    } catch (const UsageError& error) {
      throw CLI::ValidationError(error.option, error.what());
    }
    line->run = work;
  });
}

Program::Program(const std::string& description, const std::string& name, const std::string& version)
    : app_(std::make_unique<CLI::App>(description, name)) {
  app_->set_version_flag("--version", version);
  app_->require_subcommand(1);
}

Program::~Program() = default;

std::optional<int> Program::Parse(int argc, char** argv) {
  wrong_usage_ = ObjectionToCommand(*app_, argc, argv);
  if (!wrong_usage_.empty()) {
    std::cerr << "qloom: " << wrong_usage_ << "\nRun with --help for more information.\n";
    return kUsageError;
  }
  try {
    app_->parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    const int exit_code = app_->exit(error);
    if (exit_code != 0) wrong_usage_ = error.what();
    return exit_code;
  }
  return std::nullopt;
}

}  // namespace loom
