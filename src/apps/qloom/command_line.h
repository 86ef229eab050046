#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/error.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

// The command line in terms of its commands and options. Only command_line.cpp knows the parser, whose headers take
// longer to compile than any command.
namespace loom {

// Options that every command takes.
struct CommonOptions {
  bool json = false;
  bool no = false;  // answer to questions
  bool trace_ui = false;
  std::optional<int> cancel_at;
  std::string project;       // empty: a temporary project
  std::int32_t wait_s = 30;  // for a project that another process holds
  std::string config;        // empty: ../Config from the program's folder
};

// What a parsed command line has chosen: the command's work, and the options that every command takes.
struct CommandLine {
  CommonOptions common;
  std::function<int()> run;  // gives the exit code
};

// Options that do not go together.
struct UsageError : Error {
  UsageError(std::string option_, const std::string& what) : Error(what), option(std::move(option_)) {}
  std::string option;
};

// An option or an argument by its position.
class Option {
 public:
  explicit Option(CLI::Option& option) : option_(&option) {}

  Option& Required();
  Option& Takes(int count);         // values; an option of a list takes any number of them otherwise
  Option& TakesAtLeast(int count);  // values
  Option& Excludes(Option& other);
  Option& Positive();
  Option& NotNegative();
  Option& Between(int first, int last);
  Option& OneOf(const std::vector<std::string>& names);
  template <typename Value>
  Option& OneOf(const std::map<std::string, Value>& values) {
    std::vector<std::string> names;
    for (const auto& value : values) names.push_back(value.first);
    return OneOf(names);
  }
  // `objection` says what is wrong with a text, and nothing when it is right; `form` describes right ones in the help.
  Option& Check(std::function<std::string(const std::string&)> objection, const std::string& form = "");

 private:
  CLI::Option* option_;
};

class Command {
 public:
  Command(CLI::App& app, CommandLine& line) : app_(&app), line_(&line) {}

  // A word before commands, one of which has to follow.
  Command AddGroup(const std::string& name, const std::string& description);
  Command Group(const std::string& name);  // that was added
  // Takes the common options.
  Command AddCommand(const std::string& name, const std::string& description);

  // The value is a text, a number, one of these that is optional, or a list of texts.
  template <typename Value>
  Option AddOption(const std::string& name, Value& value, const std::string& description);
  // bool, or optional when "--name,!--no-name" can also be left out.
  template <typename Value>
  Option AddFlag(const std::string& name, Value& value, const std::string& description);

  // What the command does once it is chosen; gives the exit code. `check` throws UsageError before.
  void Runs(std::function<int()> work, std::function<void()> check = {});

 private:
  CLI::App* app_;
  CommandLine* line_;
};

class Program {
 public:
  Program(const std::string& description, const std::string& name, const std::string& version);
  ~Program();

  CommandLine& line() { return line_; }
  Command commands() { return {*app_, line_}; }
  // Nothing when a command is ready to run; otherwise the exit code, after a help or what is wrong was printed.
  std::optional<int> Parse(int argc, char** argv);
  // What Parse has found wrong; empty when nothing.
  const std::string& WrongUsage() const { return wrong_usage_; }

 private:
  CommandLine line_;
  std::unique_ptr<CLI::App> app_;
  std::string wrong_usage_;
};

}  // namespace loom
