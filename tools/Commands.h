// The subcommands of qxsvg. Each function adds one to App; when it has run, Status holds the exit
// status: 0, or 1 when any file failed.
#pragma once

namespace CLI {
class App;
}

namespace qxsvg::tools {

void AddInfoCommand(CLI::App& App, int& Status);
void AddValidateCommand(CLI::App& App, int& Status);
void AddRenderCommand(CLI::App& App, int& Status);
void AddHitCommand(CLI::App& App, int& Status);
void AddBoundsCommand(CLI::App& App, int& Status);
void AddSurfaceDemoCommand(CLI::App& App, int& Status);

}  // namespace qxsvg::tools
