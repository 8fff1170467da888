// The qxsvg command.
#include <CLI/CLI.hpp>

#include <cstdio>

#include "tools/Commands.h"

int main(int Count, char** Arguments) {
  CLI::App App("Reads, checks, draws and asks SVG drawings.", "qxsvg");
  App.require_subcommand(1);
  int Status = 0;
  for (const auto Add : {qxsvg::tools::AddInfoCommand, qxsvg::tools::AddValidateCommand,
                         qxsvg::tools::AddRenderCommand, qxsvg::tools::AddHitCommand,
                         qxsvg::tools::AddBoundsCommand, qxsvg::tools::AddSurfaceDemoCommand})
    Add(App, Status);
  try {
    App.parse(Count, Arguments);
  } catch (const CLI::ParseError& Error) {
    return App.exit(Error);
  } catch (const std::exception& Error) {
    std::fprintf(stderr, "qxsvg: %s\n", Error.what());
    return 1;
  }
  return Status;
}
