#pragma once

#include <sys/wait.h>

#include <cstdio>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/places.h"

namespace loom::test {

struct ProgramRun {
  int exit_code = -1;
  std::string out;
  std::string err;

  nlohmann::json Json() const { return nlohmann::json::parse(out); }
  // JSON lines.
  std::vector<nlohmann::json> Lines() const {
    std::vector<nlohmann::json> lines;
    std::istringstream text(out);
    for (std::string line; std::getline(text, line);) lines.push_back(nlohmann::json::parse(line));
    return lines;
  }
};

inline std::string ReadText(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

inline void WriteText(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

// Runs `qloom ARGS` in a folder; ARGS are words of a shell command.
inline ProgramRun RunQloom(const std::string& folder, const std::string& arguments,
                           const std::string& environment = "TZ=UTC ") {
  const std::string program = testing::ProgramPath();
  const std::string command =
      "cd '" + folder + "' && " + environment + "'" + program + "' " + arguments + " >out 2>err";
  const int status = std::system(command.c_str());
  ProgramRun run;
  run.exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  run.out = ReadText(folder + "/out");
  run.err = ReadText(folder + "/err");
  return run;
}

}  // namespace loom::test
