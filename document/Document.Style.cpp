// The style sheet of a document: reading its rules, and the cascade.
#include "document/Document.h"
#include "document/ElementLock.h"
#include "document/Style.h"
#include "document/TreeWalk.h"
#include "document/XML.h"
#include "foundation/Limits.h"
#include "foundation/Messages.h"
#include "foundation/Parsers.h"
#include "runtime/Exceptions.h"
#include "shapes/Reference.h"

namespace qxsvg {

void TSVGDocument::ReadStyles(StringView Text) {
  const TTreeWalk Walk(*this);
  // One walk over the text without its comments; there are no at-rules, their words are selectors.
  const String Plain = RemoveComments(Text);
  StringView Rest = Plain;
  while (true) {
    const std::size_t Open = Rest.find(u'{');
    if (Open == StringView::npos) return;
    const std::size_t Close = Rest.find(u'}', Open);
    if (Close == StringView::npos) return;
    const StringView Body = Rest.substr(Open + 1, Close - Open - 1);
    bool IsFirst = true;
    for (const StringView Piece : SplitString(Rest.substr(0, Open), u",")) {
      const StringView Selector = Trim(Piece);
      if (Selector.empty()) continue;
      if (!IsFirst) FStyleCopies += Body.size();
      if (FStyleCopies > Limits::StyleCopies) throw ESVGException(SStyleCopyLimit);
      DoAddStyle(Selector, Body);
      IsFirst = false;
    }
    Rest.remove_prefix(Close + 1);
  }
}

void TSVGDocument::ReadStyles(IXMLNode& Node) {
  for (IXMLNode* Child = Node.FirstChild(); Child; Child = Child->NextSibling())
    if (Child->NodeType() == TXMLNodeType::ntCData) ReadStyles(Child->Text());
  if (Node.IsTextElement()) ReadStyles(Node.Text());
}

TSVGStyle* TSVGDocument::DoAddStyle(StringView Selector, StringView Style) {
  if (TSVGStyle* const* Known = FStyles.Find(Selector)) {
    (*Known)->AddStyle(Style);
    return *Known;
  }
  if (FStyles.Count() >= Limits::StyleRules) throw ESVGException(SStyleRuleLimit);
  // The table answers for the rule before a handler of the host hears of it, may throw or take it
  // out again.
  TSVGStyle* const Added = std::make_unique<TSVGStyle>(Selector, Style).release();
  FStyles.Add(String(Selector), Added);
  TSVGStyle* const* const Held = FStyles.Find(Selector);
  return Held ? *Held : nullptr;
}

namespace {

// What it takes to match one token against an element, in usual elements: long lists of classes and
// long texts are searched from end to end.
std::int64_t MatchingCost(const TSVGElement& Element) {
  constexpr std::size_t UsualClasses = 8, UsualUnits = 128;
  std::size_t Units = Element.ID().size();
  for (const String& Class : Element.Classes()) Units += Class.size();
  const auto Classes = static_cast<std::size_t>(Element.Classes().Count());
  return static_cast<std::int64_t>(1 + Classes / UsualClasses + Units / UsualUnits);
}

}  // namespace

void TSVGDocument::ApplyStyles() {
  std::int64_t Tokens = 0;
  FStyles.ForEach([&Tokens](const auto& Entry) {
    if (Entry.FValue->Enabled())
      Tokens += static_cast<std::int64_t>(Entry.FValue->SelectorTokens().size());
  });
  std::int64_t Elements = 0;
  if (Tokens > 0)
    FAllItems.ForEach([&](const auto& Entry) { Elements += MatchingCost(*Entry.FValue); });
  if (Elements > 0 && Tokens > Limits::StyleMatches / Elements)
    throw ESVGException(SStyleMatchLimit);
  const TElementLock Lock(*this);
  const TSearchScope Searches;
  // The element `svg` is styled by its own sheet first, and then, like every element, by that of
  // the document around it; a root is so styled from its own attributes twice.
  ApplyCascade(this);
  TSVGCustomViewBox::ApplyStyles();
}

}  // namespace qxsvg
