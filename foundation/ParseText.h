// Plain text, string lists and style declarations.
#pragma once

#include "runtime/String.h"
#include "runtime/StringList.h"

namespace qxsvg {

// Adds the parts of Text between the delimiters, trimmed and without empty ones, behind what List
// holds; a blank text clears the list.
QXSVG_API void ParseStringList(TStrings& List, StringView Text, StringView Delimiters);

// Replaces what List holds by the parts of Text; a blank text gives one empty item, so that the
// attribute "" can be told from an absent one.
QXSVG_API void ParseRequiredStringList(TStrings& List, StringView Text, StringView Delimiters);

// Font families: parted by commas, a name in double quotes may hold commas. Replaces the list
// unless Text is blank. Inherit: see TakesValue.
QXSVG_API void ParseFontFamily(StringView Text, TStrings& List, bool& Inherit);

// The text of a text element with its space cleaned: blanks between words become one, and one stays
// at an end where the text has white space other than line ends there. Line ends within a word
// stay.
QXSVG_API String CleanText(StringView Text);

// Without everything between "/*" and "*/". A comment without its end stays.
QXSVG_API String RemoveComments(StringView Text);

// One declaration of a style: "fill: red".
struct TSVGDeclaration {
  StringView Name, Value;
};
// Takes the declarations of a style text one after the other, in place. Comments are removed
// already.
class QXSVG_API TSVGDeclarations {
 public:
  // The views of the declarations point into Text, which must outlive them.
  explicit TSVGDeclarations(StringView Text) : FRest(Text) {}
  // Declarations are parted by semicolons, a name from its value by the first colon; both are
  // trimmed. One without a name is passed over. False when there are no more.
  bool Next(TSVGDeclaration& Declaration);

 private:
  StringView FRest;
};

}  // namespace qxsvg
