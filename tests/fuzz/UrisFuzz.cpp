// References and data URIs.
#include "FuzzInput.h"
#include "foundation/ParseURI.h"
#include "runtime/Base64.h"

using namespace qxsvg;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size) {
  const String Text = fuzz::TextOf(Data, Size);
  fuzz::Check(fuzz::IsWithin(ParseURI(Text), Text), "a reference is part of its text");
  fuzz::Check(fuzz::IsWithin(ParseLocalURI(Text), Text), "a fragment is part of its text");
  bool Inherit = false;
  const StringView Default = u"default";
  const StringView Local = ParseLocalURI(Text, Default, Inherit);
  fuzz::Check(!Local.empty(), "nothing gives the default");

  TDataURI Parts;
  if (!ParseDataURI(Text, Parts)) return 0;
  fuzz::Check(fuzz::IsWithin(Parts.Data, Text), "data are part of their text");
  if (Parts.IsImage()) {
    const TBytes Bytes = Base64Decode(Parts.Data);
    fuzz::Check(Bytes.size() <= Parts.Data.size(), "decoding makes nothing longer");
    fuzz::Check(Base64Decode(Base64Encode(Bytes)) == Bytes, "bytes round trip");
  }
  return 0;
}
