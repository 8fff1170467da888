// The style sheet of a document: reading its rules, and the cascade.
#include "document/Document.h"
#include "document/Style.h"
#include "document/XML.h"
#include "foundation/Parsers.h"
#include "runtime/UpdateLock.h"

namespace qxsvg {

void TSVGDocument::ReadStyles(StringView Text) {
  // One walk over the text without its comments; there are no at-rules, their words are selectors.
  const String Plain = RemoveComments(Text);
  StringView Rest = Plain;
  while (true) {
    const std::size_t Open = Rest.find(u'{');
    if (Open == StringView::npos) return;
    const std::size_t Close = Rest.find(u'}', Open);
    if (Close == StringView::npos) return;
    const StringView Body = Rest.substr(Open + 1, Close - Open - 1);
    for (const StringView Piece : SplitString(Rest.substr(0, Open), u","))
      if (const StringView Selector = Trim(Piece); !Selector.empty()) DoAddStyle(Selector, Body);
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
  // The table answers for the rule before a handler of the host hears of it, may throw or take it
  // out again.
  TSVGStyle* const Added = std::make_unique<TSVGStyle>(Selector, Style).release();
  FStyles.Add(String(Selector), Added);
  TSVGStyle* const* const Held = FStyles.Find(Selector);
  return Held ? *Held : nullptr;
}

void TSVGDocument::ApplyStyles() {
  const TUpdateLock Lock(*this);
  // The element `svg` is styled by its own sheet first, and then, like every element, by that of
  // the document around it; a root is so styled from its own attributes twice.
  ApplyCascade(this);
  TSVGCustomViewBox::ApplyStyles();
}

}  // namespace qxsvg
