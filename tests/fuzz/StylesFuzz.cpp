// Declaration lists, selectors and what an element makes of them.
#include "FuzzInput.h"
#include "document/Document.h"
#include "document/Selectors.h"
#include "document/Style.h"
#include "graphics/SVGBrush.h"
#include "graphics/SVGFont.h"
#include "graphics/SVGPen.h"
#include "runtime/Exceptions.h"
#include "shapes/QXSVG.BasicShapes.h"

namespace {

using namespace qxsvg;
using fuzz::Check;

void Selectors(StringView Text, TSVGGraphicElement& Element) {
  try {
    for (const TSVGSelectorToken& Token : TokenizeSelector(Text))
      Check(Token.Type != TSVGSelectorTokenType::sttNone, "a token is of some type");
    Check(Element.Matches(Text) >= -1, "a specificity is no less than -1");
  } catch (const ESVGException&) {
    // A malformed bracket.
  }
}

void Declarations(StringView Text, TSVGGraphicElement& Element) {
  TSVGStyle Style;
  const TSVGStyleProperties Named = Style.AddStyle(Text);
  TSVGStyleProperties Known = Named;
  Known.Exclude(TSVGStyleProperty::ipNone);
  Check(Known == Style.Present(), "what was named is there");
  std::int32_t Count = 0;
  Style.ForEach([&](StringView Name, StringView Value) {
    Check(Style.GetText(Name) == Value, "an entry is found by its name");
    ++Count;
  });
  Check(Count == Style.Count(), "every entry is seen once");

  Element.ApplyStyle(Style);
  TSVGPen& Pen = Element.GetPen();
  Check(std::isfinite(Pen.Thickness()) && std::isfinite(Pen.MiterLimit()), "numbers are finite");
  for (const float Dash : Pen.CustomDash()) Check(Dash > 0 && std::isfinite(Dash), "so are dashes");
  Check(Element.GetBrush().Opacity() >= 0 && Element.GetBrush().Opacity() <= 1, "opacity");
  Check(std::isfinite(Element.GetFont().Size()), "so are font sizes");
  Check(std::isfinite(Element.GetOpacity()), "and opacities");

  // The texts of the values are read again without complaint.
  TSVGStyle Texts;
  Texts.Assign(&Element);
  Element.ApplyStyle(Texts);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size) {
  const String Text = fuzz::TextOf(Data, Size);
  TSVGDocument Document;
  auto Made = std::make_unique<TSVGRectangle>(&Document);
  TSVGRectangle& Rect = *Made;
  Document.Items().Add(std::move(Made));
  Selectors(Text, Rect);
  Declarations(Text, Rect);
  try {
    Document.ReadStyles(Text);
    Document.ApplyStyles();
  } catch (const ESVGException&) {
    // A malformed bracket in one of the rules.
  }
  return 0;
}
