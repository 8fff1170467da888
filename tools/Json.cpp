#include "tools/Json.h"

#include <cstdio>

namespace qxsvg::tools {

void JsonWriter::Separate() {
  if (FAfterKey) {
    FAfterKey = false;
    return;
  }
  if (FLevels.empty()) return;
  FResult.append(FLevels.back() ? ",\n" : "\n").append(FLevels.size() * 2, ' ');
  FLevels.back() = true;
}

void JsonWriter::Quote(std::string_view Value) {
  FResult.push_back('"');
  for (const char C : Value) {
    if (C == '"' || C == '\\') {
      FResult.push_back('\\');
      FResult.push_back(C);
    } else if (static_cast<unsigned char>(C) < 0x20) {
      char Escape[7];
      std::snprintf(Escape, sizeof Escape, "\\u%04x", static_cast<unsigned>(C));
      FResult.append(Escape);
    } else {
      FResult.push_back(C);
    }
  }
  FResult.push_back('"');
}

JsonWriter& JsonWriter::Begin(char Bracket) {
  Separate();
  FResult.push_back(Bracket);
  FLevels.push_back(false);
  return *this;
}

JsonWriter& JsonWriter::End(char Bracket) {
  const bool HasContent = FLevels.back();
  FLevels.pop_back();
  if (HasContent) FResult.append("\n").append(FLevels.size() * 2, ' ');
  FResult.push_back(Bracket);
  return *this;
}

JsonWriter& JsonWriter::Key(std::string_view Name) {
  Separate();
  Quote(Name);
  FResult.append(": ");
  FAfterKey = true;
  return *this;
}

JsonWriter& JsonWriter::Text(std::string_view Value) {
  Separate();
  Quote(Value);
  return *this;
}

JsonWriter& JsonWriter::Raw(std::string_view Value) {
  Separate();
  FResult.append(Value);
  return *this;
}

JsonWriter& JsonWriter::Milliseconds(double Value) {
  char Digits[64];
  std::snprintf(Digits, sizeof Digits, "%.3f", Value);
  return Raw(Digits);
}

}  // namespace qxsvg::tools
