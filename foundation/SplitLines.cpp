#include "foundation/SplitLines.h"

#include <algorithm>
#include <vector>

#include "runtime/Exceptions.h"
#include "runtime/UpdateLock.h"

namespace qxsvg {

namespace {

constexpr std::size_t None = StringView::npos;
// A blank and the name of the attribute.
constexpr StringView DataAttribute = u" d";

// The index behind " d" of the attribute, or None.
std::size_t FindData(StringView Line) {
  constexpr StringView Element = u"<path ";
  const std::size_t At = PosOutsideQuotes(Element, Line, 0);
  if (At == None) return None;
  std::size_t Data = PosOutsideQuotes(DataAttribute, Line, At + Element.size() - 1);
  while (Data != None) {
    Data += DataAttribute.size();
    if (Data < Line.size() && (Line[Data] == u' ' || Line[Data] == u'=')) return Data;
    Data = PosOutsideQuotes(DataAttribute, Line, Data);
  }
  return None;
}

// The index of the quote that opens the attribute's value, or None.
std::size_t FindOpeningQuote(StringView Line, std::size_t Data) {
  const auto SkipBlanks = [Line](std::size_t At) {
    return std::min(Line.find_first_not_of(u' ', At), Line.size());
  };
  std::size_t At = SkipBlanks(Data);
  if (At == Line.size() || Line[At] != u'=') return None;
  At = SkipBlanks(At + 1);
  return At < Line.size() && Line[At] == u'"' ? At : None;
}

// Appends the pieces of one long line; false where it is none of a path with data.
bool SplitLine(StringView Line, std::size_t MaxLength, std::vector<StringView>& Pieces) {
  const std::size_t Data = FindData(Line);
  if (Data == None) return false;
  const std::size_t Quote = FindOpeningQuote(Line, Data);
  if (Quote == None) return false;

  std::size_t Start = 0;
  const auto EmitUpTo = [&](std::size_t End) {
    Pieces.push_back(Line.substr(Start, End - Start));
    Start = End;
  };
  if (Data + 1 >= MaxLength) EmitUpTo(Data - DataAttribute.size());
  std::size_t Column = Quote - Start + 1;
  std::size_t At = Quote + 1;
  for (; At < Line.size() && Line[At] != u'"'; ++At, ++Column) {
    if (Column < MaxLength) continue;
    At = Line.find_first_of(u" ,\"", At);
    if (At == None) {
      At = Line.size();
      break;
    }
    // The closing quote stays with the last number of the value.
    if (Line[At] == u'"') --At;
    EmitUpTo(At);
    Column = 0;
  }
  const bool IsOpen = At >= Line.size();
  if (IsOpen && At != Start + 1) return true;
  // A line that was never cut stands once more behind itself; readers of the files know it so.
  if (Start == 0) Pieces.push_back(Line);
  Pieces.push_back(Line.substr(Start));
  return true;
}

// Whether the pieces make up the line; what of it was written twice counts once.
void CheckPieces(StringView Line, const std::vector<StringView>& Pieces) {
  String Rebuilt;
  const bool IsRepeated = Pieces.size() == 2 && Pieces[0] == Line;
  for (std::size_t I = IsRepeated ? 1 : 0; I < Pieces.size(); ++I) Rebuilt += Pieces[I];
  if (Rebuilt != Line) throw EAssertionFailed(u"SVGSplitLines Failed (QXSVGUtils)");
}

}  // namespace

std::size_t PosOutsideQuotes(StringView Part, StringView Text, std::size_t Start) {
  if (Part.empty() || Text.empty() || Start >= Text.size() - 1) return None;
  bool IsQuoted = false;
  for (std::size_t I = Start; I < Text.size(); ++I) {
    if (Text[I] == u'"')
      IsQuoted = !IsQuoted;
    else if (!IsQuoted && Text[I] == Part[0] && Text.substr(I).starts_with(Part))
      return I;
  }
  return None;
}

void SVGSplitLines(TStrings& Lines, int MaxLength) {
  const auto Longest = static_cast<std::size_t>(std::max(MaxLength, 1));
  // Inserting line by line would move the rest of the document each time.
  std::vector<StringView> Result, Pieces;
  bool IsSplit = false;
  for (const String& Line : Lines) {
    Pieces.clear();
    if (Line.size() > Longest && SplitLine(Line, Longest, Pieces)) {
      CheckPieces(Line, Pieces);
      IsSplit = true;
    } else {
      Pieces.assign(1, Line);
    }
    Result.insert(Result.end(), Pieces.begin(), Pieces.end());
  }
  if (!IsSplit) return;
  TStringList Split;
  for (const StringView Line : Result) Split.Add(Line);
  TUpdateLock Lock(Lines);
  Lines.Clear();
  Lines.AddStrings(Split);
}

}  // namespace qxsvg
