#include "runtime/FileResolver.h"

#include <algorithm>
#include <system_error>

namespace qxsvg {

namespace fs = std::filesystem;

IFileResolver::~IFileResolver() = default;
TFileResolver::~TFileResolver() = default;
TFolderFileResolver::~TFolderFileResolver() = default;
TNoFileResolver::~TNoFileResolver() = default;

std::unique_ptr<TStream> TFileResolver::Open(StringView Name) {
  const auto IsSlash = [](char16_t C) { return C == u'/' || C == u'\\'; };
  if (Name.size() >= 2 && IsSlash(Name[0]) && IsSlash(Name[1])) return nullptr;
  if (!FileExists(Name)) return nullptr;
  return std::make_unique<TFileStream>(Name, TFileMode::fmOpenRead);
}

TFolderFileResolver::TFolderFileResolver(StringView Folder)
    : FFolder(fs::weakly_canonical(fs::absolute(ToPath(Folder)))) {
  if (!FFolder.has_filename()) FFolder = FFolder.parent_path();
}

std::unique_ptr<TStream> TFolderFileResolver::Open(StringView Name) {
  if (Name.empty() || Name.find(u'\0') != StringView::npos) return nullptr;
  std::error_code Error;
  const fs::path Path = fs::canonical(FFolder / ToPath(Name), Error);
  if (Error || !fs::is_regular_file(Path, Error)) return nullptr;
  const auto Inside = std::mismatch(FFolder.begin(), FFolder.end(), Path.begin(), Path.end());
  if (Inside.first != FFolder.end()) return nullptr;
  return std::make_unique<TFileStream>(Path, TFileMode::fmOpenRead);
}

std::unique_ptr<TStream> TNoFileResolver::Open(StringView) {
  return nullptr;
}

}  // namespace qxsvg
