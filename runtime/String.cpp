#include "runtime/String.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace qxsvg {

namespace {

constexpr char32_t Replacement = 0xFFFD;

void AppendCodePoint(String& Target, char32_t C) {
  if (C < 0x10000) {
    Target.push_back(static_cast<char16_t>(C));
    return;
  }
  C -= 0x10000;
  Target.push_back(static_cast<char16_t>(0xD800 + (C >> 10)));
  Target.push_back(static_cast<char16_t>(0xDC00 + (C & 0x3FF)));
}

// Decodes one code point of two or more bytes at P, moving P behind it. A byte that cannot begin or
// go on with a sequence costs one replacement character and is then tried as a beginning itself.
char32_t DecodeMultiByte(const unsigned char*& P, const unsigned char* End) {
  const unsigned char Lead = *P++;
  int Following;
  char32_t Code, Least;
  if (Lead >= 0xC2 && Lead <= 0xDF) {
    Following = 1, Code = Lead & 0x1F, Least = 0x80;
  } else if ((Lead & 0xF0) == 0xE0) {
    Following = 2, Code = Lead & 0x0F, Least = 0x800;
  } else if (Lead >= 0xF0 && Lead <= 0xF4) {
    Following = 3, Code = Lead & 0x07, Least = 0x10000;
  } else {
    return Replacement;
  }
  for (; Following > 0; --Following) {
    if (P == End || (*P & 0xC0) != 0x80) return Replacement;
    Code = (Code << 6) | (*P++ & 0x3F);
  }
  const bool IsValid = Code >= Least && Code <= 0x10FFFF && (Code < 0xD800 || Code > 0xDFFF);
  return IsValid ? Code : Replacement;
}

}  // namespace

void AppendUtf8(String& Target, std::string_view Bytes) {
  const auto* P = reinterpret_cast<const unsigned char*>(Bytes.data());
  const auto* End = P + Bytes.size();
  while (P != End) {
    // Runs of ASCII are nearly everything in a drawing; eight bytes are tested at a time.
    const unsigned char* Run = P;
    while (End - Run >= 8) {
      std::uint64_t Eight;
      std::memcpy(&Eight, Run, 8);
      if (Eight & 0x8080808080808080u) break;
      Run += 8;
    }
    while (Run != End && *Run < 0x80) ++Run;
    if (Run != P) {
      const std::size_t Old = Target.size();
      Target.resize(Old + static_cast<std::size_t>(Run - P));
      std::copy(P, Run, Target.data() + Old);
      P = Run;
    } else {
      AppendCodePoint(Target, DecodeMultiByte(P, End));
    }
  }
}

String FromUtf8(std::string_view Bytes) {
  String Result;
  AppendUtf8(Result, Bytes);
  return Result;
}

std::string ToUtf8(StringView Text) {
  std::string Result;
  Result.reserve(Text.size());
  for (std::size_t I = 0; I < Text.size(); ++I) {
    char32_t C = Text[I];
    if (C >= 0xD800 && C <= 0xDFFF) {
      const bool IsPair = C < 0xDC00 && I + 1 < Text.size() && (Text[I + 1] & 0xFC00) == 0xDC00;
      C = IsPair ? 0x10000 + ((C - 0xD800) << 10) + (Text[++I] - 0xDC00) : Replacement;
    }
    if (C < 0x80) {
      Result.push_back(static_cast<char>(C));
      continue;
    }
    if (C < 0x800) {
      Result.push_back(static_cast<char>(0xC0 | (C >> 6)));
    } else {
      if (C < 0x10000) {
        Result.push_back(static_cast<char>(0xE0 | (C >> 12)));
      } else {
        Result.push_back(static_cast<char>(0xF0 | (C >> 18)));
        Result.push_back(static_cast<char>(0x80 | ((C >> 12) & 0x3F)));
      }
      Result.push_back(static_cast<char>(0x80 | ((C >> 6) & 0x3F)));
    }
    Result.push_back(static_cast<char>(0x80 | (C & 0x3F)));
  }
  return Result;
}

StringView Trim(StringView Text) {
  std::size_t First = 0, Last = Text.size();
  while (First < Last && Text[First] <= u' ') ++First;
  while (Last > First && Text[Last - 1] <= u' ') --Last;
  return Text.substr(First, Last - First);
}

String LowerCase(StringView Text) {
  String Result(Text);
  std::transform(Result.begin(), Result.end(), Result.begin(), AsciiLower);
  return Result;
}

bool SameText(StringView A, StringView B) {
  return A.size() == B.size() &&
         std::equal(A.begin(), A.end(), B.begin(),
                    [](char16_t X, char16_t Y) { return AsciiLower(X) == AsciiLower(Y); });
}

bool StartsText(StringView Part, StringView Text) {
  return Text.size() >= Part.size() && SameText(Part, Text.substr(0, Part.size()));
}

bool EndsText(StringView Part, StringView Text) {
  return Text.size() >= Part.size() && SameText(Part, Text.substr(Text.size() - Part.size()));
}

std::vector<StringView> SplitString(StringView Text, StringView Delimiters) {
  std::vector<StringView> Result;
  for (;;) {
    const std::size_t End = Text.find_first_of(Delimiters);
    Result.push_back(Text.substr(0, End));
    if (End == StringView::npos) return Result;
    Text.remove_prefix(End + 1);
  }
}

String Join(const std::vector<String>& Items, StringView Delimiter) {
  String Result;
  for (std::size_t I = 0; I < Items.size(); ++I) {
    if (I > 0) Result += Delimiter;
    Result += Items[I];
  }
  return Result;
}

String Format(StringView Message, std::initializer_list<StringView> Arguments) {
  String Result;
  for (const StringView Argument : Arguments) {
    const std::size_t At = Message.find(u"%s");
    if (At == StringView::npos) break;
    Result += Message.substr(0, At);
    Result += Argument;
    Message.remove_prefix(At + 2);
  }
  return Result.append(Message);
}

}  // namespace qxsvg
