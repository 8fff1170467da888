// What is found out about inheritance during a drawing stays true while handlers change the tree.
#include <gtest/gtest.h>

#include <random>

#include "document/Document.h"
#include "tests/shapes/Drawing.h"

namespace qxsvg::test {
namespace {

// The element whose own value counts, looked for step by step.
TSVGGraphicElement& SourceOf(TSVGGraphicElement& Element, TSVGStyleProperty Property) {
  TSVGGraphicElement* E = &Element;
  while (E->Inherits().Has(Property) && E->GetGraphicParent()) E = E->GetGraphicParent();
  return *E;
}

double OpacityOf(TSVGGraphicElement& Element) {
  double Result = 1;
  for (TSVGGraphicElement* E = &Element; E; E = E->GetGraphicParent())
    Result *= SourceOf(*E, TSVGStyleProperty::ipOpacity).GetOpacity();
  return Result;
}

bool EnabledOf(const TSVGElement& Element) {
  return Element.Enabled() && (!Element.Parent() || EnabledOf(*Element.Parent()));
}

void ExpectTrueToTheTree(TSVGGraphicElement& E) {
  using enum TSVGStyleProperty;
  EXPECT_EQ(E.GetFillRule(), SourceOf(E, ipFillRule).GetFillRule());
  EXPECT_EQ(E.GetShapeRendering(), SourceOf(E, ipShapeRendering).GetShapeRendering());
  EXPECT_EQ(E.GetMarkerEndURI(), SourceOf(E, ipMarkerEnd).GetMarkerEndURI());
  EXPECT_NEAR(E.GetAbsoluteOpacity(), OpacityOf(E), 1e-9);
  EXPECT_EQ(E.IsEnabled(), EnabledOf(E));
}

// One change of the kinds that decide where a value comes from, to an element anywhere.
void ChangeSomething(TDrawing& D, const std::vector<String>& IDs, std::mt19937& Random) {
  using enum TSVGStyleProperty;
  const auto Pick = [&] { return IDs[Random() % IDs.size()]; };
  auto* const E = D.Document.FindElement(Pick())->AsGraphicElement();
  switch (Random() % 8) {
    case 0: E->Inherits().Set(ipFillRule, Random() % 2); break;
    case 1: E->Inherits().Set(ipShapeRendering, Random() % 2); break;
    case 2: E->SetOpacity(static_cast<float>(Random() % 4) / 4); break;
    case 3: E->SetEnabled(Random() % 2); break;
    case 4: E->SetFillRule(Random() % 2 ? TSVGFillRule::frEvenOdd : TSVGFillRule::frNonZero); break;
    case 5: E->SetShapeRendering(static_cast<TSVGShapeRendering>(Random() % 4)); break;
    case 6:
      E->Style().SetStyle(Random() % 2 ? u"stroke: red; opacity: 0.5" : u"fill-rule: evenodd");
      E->ApplyStyles();
      break;
    default: {
      TSVGElement* const To = D.Document.FindElement(Pick());
      TSVGElement* const From = E->Parent();
      if (!To->ChildSVGTypes().Has(E->GetSVGType()) || To == E || To->HasAncestor(E)) break;
      // One that a use has borrowed is in the list of another parent.
      if (From && From->Items().IndexOf(E) >= 0) To->Items().Add(From->Items().Extract(E));
    }
  }
}

TEST(Scopes, StayTrueUnderChangesInTheMiddleOfADrawing) {
  for (unsigned Seed = 1; Seed <= 40; ++Seed) {
    SCOPED_TRACE(testing::Message() << "seed " << Seed);
    std::mt19937 Random(Seed);
    TDrawing D(
        "<g id='a' stroke='blue' opacity='.5'><g id='b' fill-rule='evenodd'>"
        "<path id='p' d='M0 0h9v9z'/><use id='u' stroke='lime' xlink:href='#t'/></g>"
        "<use id='v' xlink:href='#c' shape-rendering='crispEdges'/></g>"
        "<g id='c' marker-end='url(#m)' stroke='green'><use id='w' opacity='.5' xlink:href='#t'/>"
        "<path id='q' d='M5 5h9v9z' opacity='inherit'/></g>"
        "<g id='d' stroke='red'><g id='t'><path id='r' d='M1 1h9v9z'/></g></g>");
    const std::vector<String> IDs{u"a", u"b", u"c", u"d", u"p", u"q", u"r", u"t", u"u", u"v", u"w"};
    int Asked = 0;
    const auto Check = [&](TPersistent* Sender) {
      for (auto* E = dynamic_cast<TSVGElement*>(Sender); E; E = E->Parent())
        if (TSVGGraphicElement* const Graphic = E->AsGraphicElement())
          ExpectTrueToTheTree(*Graphic), ++Asked;
    };
    D.Document.OnDrawing = [&](TPersistent* Sender, const TMatrix&, TQXGPCanvas&, const TRectF&,
                               bool&) {
      Check(Sender);
      if (Random() % 4 == 0) ChangeSomething(D, IDs, Random);
      Check(Sender);
    };
    D.Document.OnDrawn = [&](TPersistent* Sender, const TMatrix&, TQXGPCanvas&, const TRectF&) {
      Check(Sender);
    };
    D.Draw();
    D.Draw();
    EXPECT_GT(Asked, 10);
    if (testing::Test::HasFailure()) return;
  }
}

}  // namespace
}  // namespace qxsvg::test
