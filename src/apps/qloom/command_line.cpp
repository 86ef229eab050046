#include "apps/qloom/command_line.h"

#include <CLI/CLI.hpp>
#include <cstdint>

namespace loom {

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
