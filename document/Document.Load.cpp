// The way from bytes to a finished tree, and the test whether there is one.
#include <optional>
#include <typeinfo>
#include <utility>

#include "document/Document.h"
#include "document/TreeWalk.h"
#include "document/XML.h"
#include "foundation/Messages.h"
#include "runtime/Exceptions.h"
#include "runtime/Services.h"
#include "runtime/Streams.h"
#include "runtime/UpdateLock.h"
#include "shapes/Image.h"

namespace qxsvg {

namespace {

constexpr StringView RootName = u"svg";

// The innermost document that this thread loads, or null.
thread_local const TSVGDocument* Loaded = nullptr;

class TLoadedLock {
 public:
  explicit TLoadedLock(const TSVGDocument& Document) : FOuter(std::exchange(Loaded, &Document)) {}
  TLoadedLock(const TLoadedLock&) = delete;
  TLoadedLock& operator=(const TLoadedLock&) = delete;
  ~TLoadedLock() { Loaded = FOuter; }

 private:
  const TSVGDocument* FOuter;
};

// A text that is in memory has no encoding any more, whatever its declaration says: the name of one
// is left out of the bytes that the XML parser gets.
std::string BytesOfText(StringView Text) {
  if (Text.starts_with(u'\uFEFF')) Text.remove_prefix(1);
  if (!Text.starts_with(u"<?xml")) return ToUtf8(Text);
  const std::size_t End = Text.find(u"?>");
  const std::size_t Name = Text.substr(0, End).find(u"encoding");
  if (End == StringView::npos || Name == StringView::npos) return ToUtf8(Text);
  const std::size_t Open = Text.substr(0, End).find_first_of(u"\"'", Name);
  const std::size_t Close =
      Open == StringView::npos ? Open : Text.substr(0, End).find(Text[Open], Open + 1);
  if (Close == StringView::npos) return ToUtf8(Text);
  return ToUtf8(Text.substr(0, Name)).append(ToUtf8(Text.substr(Close + 1)));
}

std::unique_ptr<IXMLDocument> ReadXML(TStream& Stream) {
  return Services().XML.Get()->LoadFromStream(Stream);
}

// The answer of Test, with every failure taken as a no.
template <class Test>
bool Succeeds(Test Try) noexcept {
  try {
    return Try();
  } catch (...) {
    return false;
  }
}

}  // namespace

void TSVGDocument::LoadFromFile(StringView FileName) {
  TFileStream Stream(FileName, TFileMode::fmOpenRead);
  LoadFromStream(Stream);
}

void TSVGDocument::LoadFromFile(std::string_view FileNameUtf8) {
  LoadFromFile(FromUtf8(FileNameUtf8));
}

void TSVGDocument::LoadFromText(StringView Text) {
  const std::string Bytes = BytesOfText(Text);
  TBytesViewStream Stream(Bytes);
  LoadFromStream(Stream);
}

void TSVGDocument::LoadFromText(std::string_view TextUtf8) {
  TBytesViewStream Stream(TextUtf8);
  LoadFromStream(Stream);
}

void TSVGDocument::LoadFromStream(TStream& Stream) {
  LoadFromXML(*ReadXML(Stream));
}

void TSVGDocument::LoadFromXML(IXMLDocument& XMLDocument) {
  IXMLNode* Root = XMLDocument.DocumentElement();
  if (!Root) throw ESVGException(SDocEmpty);
  if (Root->LocalName() != RootName) throw ESVGException(SDocNotSVG);
  LoadFromXML(*Root);
}

void TSVGDocument::LoadFromXML(IXMLNode& Node) {
  if (Node.LocalName() != RootName) return;
  // The document around a nested one styles all that is in it. To style that on each level would
  // multiply the time by the levels, so it is done only where somebody looks at it: a handler, or a
  // class that the host made from this one.
  const bool IsStyledLater =
      Document() && Document() == Loaded && typeid(*this) == typeid(TSVGDocument);
  const TLoadedLock Loading(*this);
  const TPictureScope Pictures;
  // One that is nested may be removed by a handler of the document around it. What a root lets go
  // is freed before the new tree is made.
  std::optional<TTreeWalk> Walk;
  if (Document()) Walk.emplace(*this);
  const TUpdateLock Lock(*this);
  Clear();
  DoLoading();
  try {
    TSVGCustomViewBox::LoadFromXML(Node);
    if (!IsStyledLater || OnLoaded) ApplyStyles();
  } catch (...) {
    DoLoaded();
    throw;
  }
  DoLoaded();
}

bool TSVGDocument::IsValidSVG(StringView FileName, bool Deep) {
  return Succeeds([&] {
    TFileStream Stream(FileName, TFileMode::fmOpenRead);
    return IsValidSVG(Stream, Deep);
  });
}

bool TSVGDocument::IsValidSVG(TStream& Stream, bool Deep) {
  return Succeeds([&] { return IsValidSVG(*ReadXML(Stream), Deep); });
}

bool TSVGDocument::IsValidSVG(IXMLDocument& XMLDocument, bool Deep) {
  return Succeeds([&] {
    if (Deep) {
      TSVGDocument Trial;
      Trial.LoadFromXML(XMLDocument);
      return true;
    }
    const IXMLNode* Root = XMLDocument.DocumentElement();
    return Root && Root->LocalName() == RootName;
  });
}

bool TSVGDocument::IsValidSVG(bool Deep, StringView Text) {
  return Succeeds([&] {
    const std::string Bytes = BytesOfText(Text);
    TBytesViewStream Stream(Bytes);
    return IsValidSVG(Stream, Deep);
  });
}

}  // namespace qxsvg
