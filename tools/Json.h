// Output for programs.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qxsvg::tools {

// Writes one JSON text, two blanks deeper for each level. Members of objects are a Key and then a
// value.
class JsonWriter {
 public:
  JsonWriter& BeginObject() { return Begin('{'); }
  JsonWriter& EndObject() { return End('}'); }
  JsonWriter& BeginArray() { return Begin('['); }
  JsonWriter& EndArray() { return End(']'); }
  JsonWriter& Key(std::string_view Name);
  JsonWriter& Text(std::string_view Value);
  JsonWriter& Number(std::int64_t Value) { return Raw(std::to_string(Value)); }
  // With three digits behind the point.
  JsonWriter& Milliseconds(double Value);

  const std::string& Result() const { return FResult; }

 private:
  JsonWriter& Begin(char Bracket);
  JsonWriter& End(char Bracket);
  JsonWriter& Raw(std::string_view Value);
  void Separate();
  void Quote(std::string_view Value);

  std::string FResult;
  // For each level, whether it holds something.
  std::vector<bool> FLevels;
  bool FAfterKey = false;
};

}  // namespace qxsvg::tools
