// Style declarations, comments, string lists, text content and the breaking of lines.
#include "FuzzInput.h"
#include "foundation/ParseText.h"
#include "foundation/SplitLines.h"
#include "runtime/Exceptions.h"

namespace {

using namespace qxsvg;
using fuzz::Check;

// The rule of comments, step by step, to compare the fast way with.
String PlainRemoveComments(String Text) {
  for (;;) {
    const std::size_t Open = Text.find(u"/*");
    const std::size_t Close = Open == String::npos ? Open : Text.find(u"*/", Open + 2);
    if (Close == String::npos) return Text;
    Text.erase(Open, Close + 2 - Open);
  }
}

void Lines(StringView Text) {
  TStringList List;
  List.SetText(Text);
  String Before;
  for (const String& Line : List) Before += Line;
  try {
    SVGSplitLines(List, 12);
  } catch (const EAssertionFailed&) {
    return;
  }
  // Pieces may stand twice, but nothing gets lost.
  std::size_t After = 0;
  for (const String& Line : List) After += Line.size();
  Check(After >= Before.size(), "lines keep their text");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size) {
  const String Text = fuzz::TextOf(Data, Size);
  const String Bare = RemoveComments(Text);
  Check(Bare == PlainRemoveComments(Text), "comments go as the rule says");
  TSVGDeclarations Declarations(Bare);
  for (TSVGDeclaration D; Declarations.Next(D);) {
    Check(!D.Name.empty(), "a declaration has a name");
    Check(fuzz::IsWithin(D.Name, Bare) && fuzz::IsWithin(D.Value, Bare), "parts are in the text");
  }
  Check(CleanText(Text).size() <= Text.size() + 2, "cleaning adds two blanks at most");
  TStringList List;
  bool Inherit = false;
  ParseFontFamily(Text, List, Inherit);
  ParseRequiredStringList(List, Text, u", ");
  Check(List.Count() > 0 || !Trim(Text).empty(), "a blank text is one item");
  Lines(Text);
  return 0;
}
