// Runs a program and gathers what it says.
#pragma once

#include <sys/wait.h>

#include <cstdlib>

#include "tests/support/ScratchFolder.h"

namespace qxsvg::test {

inline std::string Quoted(const std::string& Word) {
  std::string Result = "'";
  for (const char C : Word)
    if (C == '\'')
      Result += "'\\''";
    else
      Result.push_back(C);
  return Result + "'";
}

struct TRunResult {
  // The exit status; 128 and the signal's number more for a program that a signal ended.
  int Status;
  std::string Output, Errors;
};

// Line is for the shell; Input goes to the program's standard input.
inline TRunResult RunLine(const std::string& Line, std::string_view Input = {}) {
  const TScratchFolder Folder("-run");
  const std::string In = Folder.Add("in", Input);
  const std::filesystem::path Out = Folder.Path() / "out", Err = Folder.Path() / "err";
  const int Code = std::system(("{ " + Line + " ; } < " + Quoted(In) + " > " +
                                Quoted(Out.string()) + " 2> " + Quoted(Err.string()))
                                   .c_str());
  const int Status = WIFEXITED(Code) ? WEXITSTATUS(Code) : 128 + WTERMSIG(Code);
  return {Status, FileText(Out), FileText(Err)};
}

// The built command, run as a user runs it.
#ifdef QXSVG_COMMAND
inline TRunResult RunQxsvg(const std::string& Arguments, std::string_view Input = {}) {
  return RunLine(Quoted(QXSVG_COMMAND) + " " + Arguments, Input);
}
#endif

}  // namespace qxsvg::test
