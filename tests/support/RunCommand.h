// Runs a program and gathers what it says.
#pragma once

#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

namespace qxsvg::test {

inline std::string FileText(const std::filesystem::path& Path) {
  std::ostringstream Text;
  Text << std::ifstream(Path, std::ios::binary).rdbuf();
  return Text.str();
}

// A folder of its own for each test, gone when the test is done.
class TScratchFolder {
 public:
  explicit TScratchFolder(const std::string& Suffix = {}) {
    const testing::TestInfo* Info = testing::UnitTest::GetInstance()->current_test_info();
    std::string Name =
        std::string("qxsvg-") + Info->test_suite_name() + "-" + Info->name() + Suffix;
    std::replace(Name.begin(), Name.end(), '/', '-');
    FPath = std::filesystem::path(testing::TempDir()) / Name;
    std::filesystem::remove_all(FPath);
    std::filesystem::create_directories(FPath);
  }
  TScratchFolder(const TScratchFolder&) = delete;
  TScratchFolder& operator=(const TScratchFolder&) = delete;
  ~TScratchFolder() {
    std::error_code Ignored;
    std::filesystem::remove_all(FPath, Ignored);
  }
  const std::filesystem::path& Path() const { return FPath; }
  std::string Add(const std::string& Name, std::string_view Text) const {
    std::ofstream(FPath / Name, std::ios::binary) << Text;
    return (FPath / Name).string();
  }

 private:
  std::filesystem::path FPath;
};

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
