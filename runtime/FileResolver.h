// The one way by which files that a document names are opened.
#pragma once

#include <filesystem>
#include <memory>

#include "runtime/Streams.h"

namespace qxsvg {

// Installed as Services().Files; the default is TFileResolver. A host that loads documents from
// strangers installs TNoFileResolver or TFolderFileResolver, or a class of its own that takes names
// from an archive or a table. May be called from any thread.
class QXSVG_API IFileResolver {
 public:
  virtual ~IFileResolver();
  // The file of that name, or null where there is none or the document may not have it. Name is as
  // the document writes it. Raises EStreamError for a file that is there and cannot be opened.
  virtual std::unique_ptr<TStream> Open(StringView Name) = 0;
};

// Any regular file; relative names are taken from the process's working folder. Addresses
// ("http:...") are file names like others, and names of other machines ("//host/...") are refused:
// the network is never touched.
class QXSVG_API TFileResolver : public IFileResolver {
 public:
  ~TFileResolver() override;
  std::unique_ptr<TStream> Open(StringView Name) override;
};

// Only regular files that lie in a folder or below it, links resolved; relative names are taken
// from that folder.
class QXSVG_API TFolderFileResolver : public IFileResolver {
 public:
  explicit TFolderFileResolver(StringView Folder);
  ~TFolderFileResolver() override;
  std::unique_ptr<TStream> Open(StringView Name) override;

 private:
  std::filesystem::path FFolder;
};

// No file at all.
class QXSVG_API TNoFileResolver : public IFileResolver {
 public:
  ~TNoFileResolver() override;
  std::unique_ptr<TStream> Open(StringView Name) override;
};

}  // namespace qxsvg
