// The subcommands of qxsvg. Each is a source of its own that registers itself:
//   const Registration Info("info", [](CLI::App& App, int& Status) { ... });
#pragma once

#include <functional>
#include <map>
#include <string>

namespace CLI {
class App;
class Validator;
}  // namespace CLI

namespace qxsvg::tools {

// Adds the subcommand to App. When it has run, Status holds the exit status: 0, or 1 when any file
// failed.
using AddCommand = std::function<void(CLI::App& App, int& Status)>;

// All subcommands by name, which is the order that help lists them in.
std::map<std::string, AddCommand>& Commands();

struct Registration {
  Registration(const std::string& Name, AddCommand Add) { Commands()[Name] = std::move(Add); }
};

// Accepts numbers above 0.
CLI::Validator PositiveNumber();

}  // namespace qxsvg::tools
