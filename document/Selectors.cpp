// The selector scanner.
#include "document/Selectors.h"

#include "foundation/Lookups.h"
#include "foundation/Messages.h"
#include "runtime/Exceptions.h"

namespace qxsvg {

namespace {

using enum TSVGSelectorTokenType;

class TSelectorScanner {
 public:
  explicit TSelectorScanner(StringView Selector) : FText(Trim(Selector)) {}

  TSVGSelectorTokens Run() {
    while (FAt < FText.size()) Step(FText[FAt]);
    Flush();
    return std::move(FTokens);
  }

 private:
  void Step(char16_t C) {
    switch (C) {
      case u' ':
        Begin(sttNone);
        SkipBlanks();
        break;
      case u'(':
        Begin(sttLanguage);
        ++FAt;
        TakeUpTo(u")");
        ++FAt;
        Begin(sttNone);
        break;
      case u'[':
        ++FAt;
        TakeBracket();
        break;
      case u'*':
        Begin(sttUniversalChar);
        ++FAt;
        break;
      case u'#':
      case u'+':
      case u'>':
      case u':':
      case u'.':
        Begin(GetSVGSelectorTokenType(FText.substr(FAt, 1)));
        ++FAt;
        SkipBlanks();
        break;
      default:
        if (FPending == sttNone) FPending = sttString;
        FWord += C;
        ++FAt;
    }
  }

  void TakeBracket() {
    Begin(sttHasAttribute);
    SkipBlanks();
    // "!" is no operator, and is told like one.
    TakeUpTo(u"^$*|~=!]");
    Begin(sttNone);
    if (FAt >= FText.size()) return;
    const char16_t Stop = FText[FAt];
    if (Stop == u'=') {
      TakeValue(sttExactMatch, 1);
    } else if (FAt + 2 < FText.size() && FText[FAt + 1] == u'=') {
      TakeValue(GetSVGSelectorTokenType(FText.substr(FAt, 2)), 2);
    } else if (Stop != u']') {
      throw ESVGException(SInvalidSelector, {FText});
    }
    ++FAt;
  }

  void TakeValue(TSVGSelectorTokenType Type, std::size_t OperatorLength) {
    Begin(Type);
    FAt += OperatorLength;
    TakeUpTo(u"]");
    Begin(sttNone);
  }

  // The stop stays to be read; without one the rest is taken.
  void TakeUpTo(StringView Stops) {
    const std::size_t End = std::min(FText.find_first_of(Stops, FAt), FText.size());
    FWord = FText.substr(FAt, End - FAt);
    FAt = End;
  }

  void SkipBlanks() {
    while (FAt < FText.size() && FText[FAt] == u' ') ++FAt;
  }

  void Begin(TSVGSelectorTokenType Type) {
    Flush();
    FPending = Type;
  }

  void Flush() {
    if (FPending != sttNone) FTokens.push_back({TypeOfPending(), String(Unquoted(Trim(FWord)))});
    FPending = sttNone;
    FWord.clear();
  }

  TSVGSelectorTokenType TypeOfPending() const {
    if (FPending != sttString || FTokens.empty()) return FPending;
    switch (FTokens.back().Type) {
      case sttString:
      case sttHasDescendant:
      case sttHasChild:
      case sttHasFollower: return sttHasDescendant;
      default: return FPending;
    }
  }

  static StringView Unquoted(StringView Word) {
    const auto IsQuote = [](char16_t C) { return C == u'"' || C == u'\''; };
    if (!Word.empty() && IsQuote(Word.front())) Word.remove_prefix(1);
    if (!Word.empty() && IsQuote(Word.back())) Word.remove_suffix(1);
    return Word;
  }

  StringView FText;
  std::size_t FAt = 0;
  String FWord;
  TSVGSelectorTokenType FPending = sttNone;
  TSVGSelectorTokens FTokens;
};

}  // namespace

TSVGSelectorTokens TokenizeSelector(StringView Selector) {
  return TSelectorScanner(Selector).Run();
}

}  // namespace qxsvg
