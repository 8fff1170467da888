// A folder of its own for each test.
#pragma once

#include <algorithm>
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

}  // namespace qxsvg::test
