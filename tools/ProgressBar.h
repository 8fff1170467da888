// How far a command is with its files.
#pragma once

#include <cstddef>

namespace qxsvg::tools {

// A line on standard error that is drawn over itself; silent when that is no terminal or when there
// is one file only. One thread uses it at a time.
class ProgressBar {
 public:
  explicit ProgressBar(std::size_t Total);
  ~ProgressBar() { Hide(); }
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  void Advance();
  // Takes the line away, so that something else can be written there.
  void Hide();

 private:
  void Show();

  std::size_t FTotal, FDone = 0;
  int FPercent = -1;
  bool FIsShown = false;
  bool FIsWanted;
};

}  // namespace qxsvg::tools
