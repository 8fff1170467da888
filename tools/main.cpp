// The qxsvg command.
#include <CLI/CLI.hpp>

#include <cmath>
#include <cstdio>
#if defined(__GLIBC__)
#include <malloc.h>
#endif

#include "tools/Commands.h"

namespace qxsvg::tools {

std::map<std::string, AddCommand>& Commands() {
  static std::map<std::string, AddCommand> Known;
  return Known;
}

// The library's own tells the greatest number there is in the message.
CLI::Validator PositiveNumber() {
  const auto Check = [](const std::string& Text) {
    double Value = 0;
    const bool IsNumber = CLI::detail::lexical_cast(Text, Value);
    return IsNumber && Value > 0 && std::isfinite(Value) ? "" : Text + " is no number above 0";
  };
  return CLI::Validator(Check, "POSITIVE");
}

}  // namespace qxsvg::tools

// What is wrong with the call itself; 1 is kept for what is wrong with a file.
constexpr int UsageStatus = 2;

// What one drawing has freed serves the next. Given back to the system in between, the memory of
// middle-sized pictures would be cleared again for each, which takes longer than drawing in it.
static void KeepFreedMemory() {
#if defined(__GLIBC__)
  mallopt(M_TRIM_THRESHOLD, 64 << 20);
  mallopt(M_MMAP_THRESHOLD, 16 << 20);
#endif
}

int main(int Count, char** Arguments) {
  KeepFreedMemory();
  CLI::App App("Reads, checks, draws and asks SVG drawings.", "qxsvg");
  // The subcommands take it over, but for those in which -h is the height.
  App.set_help_flag("-h,-?,--help", "Prints this help and exits");
  App.set_version_flag("--version", "qxsvg " QXSVG_VERSION, "Prints the version and exits");
  App.require_subcommand(1);
  int Status = 0;
  try {
    for (const auto& [Name, Add] : qxsvg::tools::Commands()) Add(App, Status);
    App.parse(Count, Arguments);
  } catch (const CLI::ParseError& Error) {
    // Help ends the reading of the call as an error does.
    Status = App.exit(Error) == 0 ? 0 : UsageStatus;
  } catch (const std::exception& Error) {
    std::fprintf(stderr, "qxsvg: %s\n", Error.what());
    return 1;
  }
  // What was printed may still wait here, and a full disk shows only when it goes.
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
    std::fputs("qxsvg: Standard output cannot be written\n", stderr);
    return 1;
  }
  return Status;
}
