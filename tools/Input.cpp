#include "tools/Input.h"

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <iostream>

#include "document/Document.h"
#include "document/XML.h"
#include "foundation/Limits.h"
#include "runtime/Exceptions.h"
#include "runtime/Services.h"
#include "runtime/Streams.h"
#include "tools/ProgressBar.h"

namespace qxsvg::tools {

namespace {

// What cannot be gone back in: all of it, up to what a document may have.
std::unique_ptr<TStream> ReadToEnd(std::FILE& File, StringView Name) {
  TBytes Bytes;
  std::uint8_t Buffer[1 << 16];
  while (const std::size_t Count = std::fread(Buffer, 1, sizeof Buffer, &File)) {
    Bytes.insert(Bytes.end(), Buffer, Buffer + Count);
    if (Bytes.size() > Limits::DocumentBytes) throw EStreamError(u"%s is too large", {Name});
  }
  if (std::ferror(&File) != 0) throw EStreamError(u"%s cannot be read", {Name});
  return std::make_unique<TMemoryStream>(std::move(Bytes));
}

struct TClose {
  void operator()(std::FILE* File) const { std::fclose(File); }
};

}  // namespace

std::unique_ptr<TStream> OpenInput(const std::string& Name) {
  if (Name == "-") return ReadToEnd(*stdin, u"Standard input");
  // As a path, because the bytes of a name need not be text.
  const std::filesystem::path Path(Name);
  std::error_code Failure;
  const std::filesystem::file_status Status = std::filesystem::status(Path, Failure);
  // The library refuses these, for the sake of names that stand in documents; what the user names
  // may be a pipe of the shell.
  if (is_fifo(Status) || is_character_file(Status))
    if (const std::unique_ptr<std::FILE, TClose> File{std::fopen(Name.c_str(), "rb")})
      return ReadToEnd(*File, FromUtf8(Name));
  return std::make_unique<TFileStream>(Path, TFileMode::fmOpenRead);
}

void LoadDrawing(TSVGDocument& Drawing, const std::string& Name) {
  Drawing.LoadFromStream(*OpenInput(Name));
}

std::unique_ptr<IXMLDocument> LoadDrawingXML(const std::string& Name) {
  return Services().XML.Get()->LoadFromStream(*OpenInput(Name));
}

std::string CauseOf(const std::exception& Error) {
  std::string Cause = Error.what();
  for (char& C : Cause)
    if (C == '\n' || C == '\r') C = ' ';
  const auto* XML = dynamic_cast<const EXMLError*>(&Error);
  if (XML && XML->Line() > 0)
    Cause = "line " + std::to_string(XML->Line()) + ", column " + std::to_string(XML->Column()) +
            ": " + Cause;
  return Cause;
}

std::string ReportOf(const std::string& Name, const std::exception& Error) {
  const std::string Cause = CauseOf(Error), Prefix = Name + ": ";
  return Cause.starts_with(Prefix) ? Cause : Prefix + Cause;
}

int ForEachFile(const std::vector<std::string>& Files,
                const std::function<void(const std::string& Name)>& Work, Results Kind) {
  const bool WouldMix = Kind == Results::Printed && isatty(STDOUT_FILENO) != 0;
  ProgressBar Bar(WouldMix ? 0 : Files.size());
  int Status = 0;
  for (const std::string& Name : Files) {
    try {
      Work(Name);
    } catch (const std::exception& Error) {
      Bar.Hide();
      std::cerr << ReportOf(Name, Error) << std::endl;
      Status = 1;
    }
    Bar.Advance();
  }
  return Status;
}

}  // namespace qxsvg::tools
