#include "tools/ProgressBar.h"

#include <unistd.h>

#include <cstdio>
#include <string>

namespace qxsvg::tools {

ProgressBar::ProgressBar(std::size_t Total)
    : FTotal(Total), FIsWanted(Total > 1 && isatty(STDERR_FILENO) != 0) {}

void ProgressBar::Advance() {
  ++FDone;
  if (!FIsWanted) return;
  const int Percent = static_cast<int>(FDone * 100 / FTotal);
  if (Percent == FPercent && FIsShown) return;
  FPercent = Percent;
  Show();
}

void ProgressBar::Show() {
  constexpr std::size_t Width = 40;
  const std::size_t Filled = FDone * Width / FTotal;
  std::fprintf(stderr, "\r[%s%s] %zu of %zu", std::string(Filled, '#').c_str(),
               std::string(Width - Filled, ' ').c_str(), FDone, FTotal);
  std::fflush(stderr);
  FIsShown = true;
}

void ProgressBar::Hide() {
  if (!FIsShown) return;
  // Back to the first column, and clear to the end of the line.
  std::fputs("\r\033[K", stderr);
  std::fflush(stderr);
  FIsShown = false;
}

}  // namespace qxsvg::tools
