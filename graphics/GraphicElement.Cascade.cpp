// Which styles reach an element, and in which order.
//
// A selector is matched from its left end, starting at the element that gets the style, and a
// combinator's word is an identifier. That is this format's own rule and not that of CSS.
#include <algorithm>
#include <limits>
#include <utility>

#include "document/Document.h"
#include "document/ElementLock.h"
#include "document/Selectors.h"
#include "foundation/Lookups.h"
#include "graphics/GraphicElementParts.h"
#include "runtime/PriorityList.h"
#include "shapes/Reference.h"

namespace qxsvg {

using enum TSVGSelectorTokenType;

// One selector against one element.
class SelectorMatcher {
 public:
  SelectorMatcher(TSVGGraphicElement& Self, const TSVGSelectorTokens& Tokens)
      : FSelf(Self), FTokens(Tokens), FCurrent(&Self) {}

  // Whether the first token can pass: a quick way to leave out most rules of a sheet.
  static bool MayPass(const TSVGGraphicElement& Self, const TSVGSelectorTokens& Tokens) {
    if (Tokens.empty()) return false;
    const StringView Value = Tokens.front().Value;
    switch (Tokens.front().Type) {
      case sttString: return SVGElementNameIs(Self, Value);
      case sttIDHashChar: return Value == Self.ID();
      case sttClassChar: return Self.Classes().IndexOf(Value) >= 0;
      default: return true;
    }
  }

  std::int32_t Run() {
    if (FTokens.empty()) return NoMatch;
    // A selector that begins with "*" never says that it does not match.
    const bool BeginsUniversal = FTokens.front().Type == sttUniversalChar;
    for (std::size_t At = BeginsUniversal ? 1 : 0; At < FTokens.size(); ++At)
      if (!Passes(At)) return BeginsUniversal ? 0 : NoMatch;
    return Specificity();
  }

 private:
  static constexpr std::int32_t NoMatch = -1;

  bool Passes(std::size_t At);
  bool PassesAttribute(StringView Name, TSVGSelectorTokenType Type, StringView Value);
  bool HasAttribute(StringView Name) const;
  static bool SVGElementNameIs(const TSVGElement& Element, StringView Name);
  // Goes on at the element of that identifier when Test accepts it.
  template <class Relation>
  bool GoTo(StringView ID, Relation Test) {
    TSVGElement* Found = FSelf.FindByID(ID);
    if (!Found || !Test(*Found)) return false;
    FCurrent = Found;
    ++FOthers;
    return true;
  }
  static bool Count(std::int32_t& Counter, bool DoesPass) {
    Counter += DoesPass;
    return DoesPass;
  }
  std::int32_t Specificity() const;

  TSVGGraphicElement& FSelf;
  const TSVGSelectorTokens& FTokens;
  TSVGElement* FCurrent;
  std::int32_t FIDs = 0, FOthers = 0, FNames = 0;
};

// The decimal digits of the three counts, written one after the other: ten classes weigh as much as
// an identifier.
std::int32_t SelectorMatcher::Specificity() const {
  std::int64_t Result = FIDs;
  for (const std::int32_t Counter : {FOthers, FNames}) {
    std::int64_t Shift = 10;
    while (Shift <= Counter) Shift *= 10;
    Result = Result * Shift + Counter;
    if (Result > std::numeric_limits<std::int32_t>::max())
      return std::numeric_limits<std::int32_t>::max();
  }
  return static_cast<std::int32_t>(Result);
}

bool SelectorMatcher::HasAttribute(StringView Name) const {
  return Name == u"id" || Name == u"lang" || Name == u"systemLanguage" || Name == u"class" ||
         FCurrent->Attributes().Has(GetSVGStyleProperty(Name));
}

bool SelectorMatcher::Passes(std::size_t At) {
  const StringView Value = FTokens[At].Value;
  switch (const TSVGSelectorTokenType Type = FTokens[At].Type) {
    case sttNone:
    // A pseudo-class has no effect.
    case sttColonChar: return true;
    case sttString: return Count(FNames, SVGElementNameIs(*FCurrent, Value));
    case sttHasAttribute: return Count(FOthers, HasAttribute(Value));
    case sttPrefixMatch:
    case sttSuffixMatch:
    case sttSubstringMatch:
    case sttExactMatch:
    case sttDashMatch:
    case sttContainsWord:
      return Count(
          FOthers,
          PassesAttribute(At > 0 ? StringView(FTokens[At - 1].Value) : StringView(), Type, Value));
    case sttIDHashChar: return Count(FIDs, Value == FCurrent->ID());
    case sttClassChar:
      return Count(FOthers, std::as_const(*FCurrent).Classes().IndexOf(Value) >= 0);
    case sttLanguage: return Count(FOthers, FCurrent->HasLanguage(Value));
    case sttUniversalChar:
      return GoTo(Value, [&](TSVGElement& Found) { return Found.HasAncestor(FCurrent); });
    case sttHasDescendant:
      return GoTo(Value, [&](TSVGElement& Found) { return FCurrent->HasDescendant(&Found); });
    case sttHasChild:
      return GoTo(Value, [&](TSVGElement& Found) { return FCurrent->HasChild(&Found); });
    case sttHasFollower:
      return GoTo(Value, [&](TSVGElement& Found) { return FCurrent->HasFollowing(&Found); });
  }
  return false;
}

bool SelectorMatcher::SVGElementNameIs(const TSVGElement& Element, StringView Name) {
  const TSVGElementType Type = Element.GetSVGType();
  return Type == TSVGElementType::etNone ? Element.SVGTypeName() == Name
                                         : SVGElementTypeNames[Ordinal(Type)] == Name;
}

namespace {

bool PassesComparison(TSVGSelectorTokenType Type, StringView Text, StringView Value) {
  switch (Type) {
    case sttPrefixMatch:
    case sttDashMatch: return Text.starts_with(Value);
    case sttSuffixMatch: return Text.ends_with(Value);
    case sttSubstringMatch: return Text.find(Value) != StringView::npos;
    default: return Text == Value;
  }
}

}  // namespace

// The value side is always that of the element which gets the style.
bool SelectorMatcher::PassesAttribute(StringView Name, TSVGSelectorTokenType Type,
                                      StringView Value) {
  const auto DoesPass = [&](StringView Text) { return PassesComparison(Type, Text, Value); };
  const auto AnyPasses = [&](const TStrings& List) {
    return std::any_of(List.begin(), List.end(), DoesPass);
  };
  const TSVGGraphicElement& Self = FSelf;
  if (Name == u"id") return DoesPass(Self.ID());
  if (Name == u"lang") return DoesPass(Self.Language());
  if (Name == u"systemLanguage") return AnyPasses(Self.SystemLanguages());
  if (Name == u"class") return AnyPasses(Self.Classes());
  const TSVGStyleProperty Property = GetSVGStyleProperty(Name);
  const bool HasText = FSelf.HasOwnText(SVGStylePropertyRowOf(Property));
  return DoesPass(HasText ? FSelf.PropertyText(Property) : String());
}

// --- The element

std::int32_t TSVGGraphicElement::Matches(StringView Selector) {
  return Matches(TokenizeSelector(Selector));
}

std::int32_t TSVGGraphicElement::Matches(const TSVGSelectorTokens& Selector) {
  return SelectorMatcher(*this, Selector).Run();
}

void TSVGGraphicElement::ApplyCascade(TSVGDocument* Sheet) {
  // Above all rules but those of nine identifiers and more.
  constexpr std::int32_t OwnPriority = 999;
  const StylingLock Lock(*this);
  if (Sheet && Sheet->Styles().Count() > 0) {
    TPriorityList<const TSVGStyle*> Styles;
    Styles.Add(&FStyle, OwnPriority);
    // The table keeps its order of positions up to date, also while a host changes it in silence.
    for (std::int32_t I = 0; I < Sheet->Styles().Count(); ++I) {
      const TSVGStyle* const Rule = Sheet->Styles().GetItemByIndex(I);
      if (!Rule->Enabled()) continue;
      const TSVGSelectorTokens& Selector = Rule->SelectorTokens();
      if (!SelectorMatcher::MayPass(*this, Selector)) continue;
      if (const std::int32_t Priority = Matches(Selector); Priority > -1)
        Styles.Add(Rule, Priority);
    }
    for (std::size_t I = 0; I < Styles.Count(); ++I) ApplyStyle(*Styles[I]);
  } else {
    ApplyStyle(FStyle);
  }
  // The children are styled in the same pass and drop their caches themselves.
  FStale = 0;
  MarkPaintsChanged();
  Change(this);
}

void TSVGGraphicElement::ApplyStyles() {
  const TElementLock Lock(*this);
  const TSearchScope Searches;
  ApplyCascade(Document());
  TSVGElement::ApplyStyles();
}

}  // namespace qxsvg
