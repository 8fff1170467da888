// Whole documents: loaded, drawn small, asked what lies under points, saved and destroyed. The
// mutator knows what SVG is made of: tags, attribute values, numbers and identifiers.
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "FuzzInput.h"
#include "document/Document.h"
#include "document/XML.h"
#include "graphics/surface/Bitmap.h"
#include "graphics/surface/Canvas.h"
#include "runtime/Exceptions.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* Data, std::size_t Size, std::size_t MaxSize);

namespace {

using namespace qxsvg;

struct Span {
  std::size_t Begin, End;
};

// Each stretch from one of First to the next of Last, both included.
std::vector<Span> Stretches(const std::string& Text, const char* First, const char* Last) {
  std::vector<Span> Result;
  for (std::size_t At = 0; (At = Text.find_first_of(First, At)) != std::string::npos;) {
    const std::size_t End = Text.find_first_of(Last, At + 1);
    if (End == std::string::npos) break;
    Result.push_back({At, End + 1});
    At = End + 1;
  }
  return Result;
}

std::vector<Span> Numbers(const std::string& Text) {
  constexpr const char* Digits = "0123456789";
  std::vector<Span> Result;
  for (std::size_t At = 0; (At = Text.find_first_of(Digits, At)) != std::string::npos;) {
    const std::size_t End = std::min(Text.find_first_not_of("0123456789.", At), Text.size());
    Result.push_back({At, End});
    At = End;
  }
  return Result;
}

// Values that say something, a blank between them.
constexpr std::string_view Values =
    " 0 -1 1e9 1e-9 NaN 50% 1em inherit none url(#a) #a reflect repeat hidden userSpaceOnUse"
    " objectBoundingBox auto 100000 0.001 evenodd nonzero 1e38 ";

std::string AnyValue(std::mt19937& Random) {
  const std::size_t At = Values.find(' ', Random() % (Values.size() - 1));
  const std::size_t Begin = At + 1 == Values.size() ? 1 : At + 1;
  return std::string(Values.substr(Begin, Values.find(' ', Begin) - Begin));
}

void MutateText(std::string& Text, std::mt19937& Random) {
  const auto Pick = [&Random](const auto& From) -> const auto& {
    return From[Random() % std::size(From)];
  };
  switch (Random() % 4) {
    case 0: {  // a tag, with or without what follows it, once more or not at all
      const auto Tags = Stretches(Text, "<", ">");
      if (Tags.empty()) return;
      const Span One = Pick(Tags), Other = Pick(Tags);
      const std::string Copied = Text.substr(One.Begin, One.End - One.Begin);
      if (Random() % 3 == 0)
        Text.erase(One.Begin, One.End - One.Begin);
      else
        Text.insert(Other.End, Copied);
      return;
    }
    case 1: {  // the value of another attribute, or a value that says something
      const auto Quoted = Stretches(Text, "\"", "\"");
      if (Quoted.empty()) return;
      const Span One = Pick(Quoted), Other = Pick(Quoted);
      const std::string Value = Random() % 2 ? Text.substr(Other.Begin, Other.End - Other.Begin)
                                             : "\"" + AnyValue(Random) + "\"";
      Text.replace(One.Begin, One.End - One.Begin, Value);
      return;
    }
    default: {  // another number
      const auto Found = Numbers(Text);
      if (Found.empty()) return;
      const Span One = Pick(Found);
      Text.replace(One.Begin, One.End - One.Begin, AnyValue(Random));
    }
  }
}

void Use(TSVGDocument& Drawing) {
  constexpr std::int32_t Side = 64;
  const TRectF Area = QXRect(0, 0, Side, Side);
  TQXGPBitmap Picture(Side, Side);
  for (int Times = 0; Times < 2; ++Times) Drawing.Draw(Picture.GetCanvas(), Area);
  for (const float At : {1.0f, 31.5f, 60.0f})
    Drawing.ElementAtPos(Picture.GetCanvas(), {At, At}, Area, {});
  (void)Drawing.GetBoundsRect(QXIdentityMatrix);
  const auto XML = CreateXMLDocument();
  Drawing.SaveToXML(*XML);
  (void)XML->ToUtf8();
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* Data, std::size_t Size,
                                               std::size_t MaxSize, unsigned Seed) {
  std::mt19937 Random(Seed);
  if (Random() % 4 == 0) return LLVMFuzzerMutate(Data, Size, MaxSize);
  std::string Text(reinterpret_cast<const char*>(Data), Size);
  for (unsigned Times = 1 + Random() % 4; Times > 0; --Times) MutateText(Text, Random);
  if (Text.size() > MaxSize) Text.resize(MaxSize);
  std::memcpy(Data, Text.data(), Text.size());
  return Text.size();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size) {
  TSVGDocument Drawing;
  try {
    Drawing.LoadFromText(std::string_view(reinterpret_cast<const char*>(Data), Size));
  } catch (const Exception&) {
    // What was read up to the fault is drawn all the same.
  }
  try {
    Use(Drawing);
  } catch (const Exception&) {
    // A kept text that is no XML, or a limit.
  }
  return 0;
}
