#include "tools/Input.h"

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <iostream>
#include <iterator>

#include "document/Document.h"
#include "document/XML.h"
#include "foundation/Limits.h"
#include "runtime/Exceptions.h"
#include "runtime/Services.h"
#include "runtime/Streams.h"
#include "tools/ProgressBar.h"

namespace qxsvg::tools {

namespace {

std::string ReadStandardInput() {
  std::string Bytes;
  char Buffer[1 << 16];
  std::size_t Count;
  while ((Count = std::fread(Buffer, 1, sizeof Buffer, stdin)) > 0) {
    Bytes.append(Buffer, Count);
    if (Bytes.size() > Limits::DocumentBytes) throw EStreamError(u"Standard input is too large");
  }
  return Bytes;
}

}  // namespace

void LoadDrawing(TSVGDocument& Drawing, const std::string& Name) {
  if (Name == "-") return Drawing.LoadFromText(std::string_view(ReadStandardInput()));
  // As a path, because the bytes of a name need not be text.
  TFileStream File{std::filesystem::path(Name), TFileMode::fmOpenRead};
  Drawing.LoadFromStream(File);
}

std::unique_ptr<IXMLDocument> LoadDrawingXML(const std::string& Name) {
  const auto Vendor = Services().XML.Get();
  if (Name == "-") return Vendor->LoadFromBytes(ReadStandardInput());
  TFileStream File{std::filesystem::path(Name), TFileMode::fmOpenRead};
  return Vendor->LoadFromStream(File);
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
