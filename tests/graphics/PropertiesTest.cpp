// The plain properties of an element: inheritance, the rule of the setters and its departures, and
// the set that holds the marks.
#include <gtest/gtest.h>

#include <limits>

#include "runtime/Exceptions.h"
#include "tests/graphics/ElementFixture.h"
#include "tests/support/Watch.h"

namespace qxsvg {
namespace {

using test::TTree;
using enum TSVGStyleProperty;

TEST(StylePropertiesSet, TellsOfRealChangesOnly) {
  TSVGStylePropertiesSet Set;
  test::TWatch Watch(Set);
  Set.Set(ipFill, true);
  Set.Set(ipFill, true);
  Set.SetSet(64, true);
  Set.SetSet(300, true);
  Set.SetValue({ipFill});
  EXPECT_EQ(Watch.Take(), 1);
  EXPECT_FALSE(Set.GetSet(64));
  // 256 more than the ordinal of fill.
  EXPECT_FALSE(Set.GetSet(256 + static_cast<std::uint32_t>(ipFill)));
}

TEST(StylePropertiesSet, HasATextForm) {
  TSVGStylePropertiesSet Set({ipStroke, ipNone, ipFill});
  EXPECT_EQ(Set.ToString(), u"ipNone, ipFill, ipStroke");
  Set.FromString(u" ipOpacity ,ipNone,ipfill,unknown,, ipFont");
  EXPECT_EQ(Set.ToString(), u"ipFont, ipOpacity");
  Set.FromString(u"");
  EXPECT_TRUE(Set.Value().IsEmpty());
  // Each property is a published boolean.
  const TProperty* Row = FindProperty(TSVGStylePropertiesSet::Class, u"FontSize");
  ASSERT_TRUE(Row);
  Row->Write(Set, std::int64_t{1});
  EXPECT_EQ(Set.Value(), TSVGStyleProperties{ipFontSize});
  EXPECT_FALSE(FindProperty(TSVGStylePropertiesSet::Class, u"None"));
}

template <class T, class V>
V ValueOf(V (T::*)() const);

// A property of the common form, through its own getter and setter.
template <auto Get, auto Set>
void ExpectCommonForm(TSVGStyleProperty Property) {
  using V = decltype(ValueOf(Get));
  const V First = (TSVGRectangle(nullptr).*Get)();
  const V Other = First == static_cast<V>(1) ? static_cast<V>(0) : static_cast<V>(1);
  SCOPED_TRACE(ToUtf8(SVGStylePropertyRowOf(Property).Name));
  TTree Tree("<g id='above'><rect id='r'/></g>");
  TSVGGraphicElement& Above = Tree["above"];
  TSVGGraphicElement& Rect = Tree["r"];
  TSVGStyleProperties Marks = Rect.Inherits().Value();
  Marks.Include(Property);
  Rect.Inherits().SetValue(Marks);
  int Changes = 0;
  Tree.Document.OnChange = [&](TPersistent*) { ++Changes; };
  const auto Told = [&](auto Operation) {
    Changes = 0;
    Operation();
    return Changes > 0;
  };

  EXPECT_TRUE(Told([&] { (Above.*Set)(Other); }));
  EXPECT_EQ((Rect.*Get)(), Other) << "inherited";
  EXPECT_FALSE(Told([&] { (Above.*Set)(Other); }));

  // The field holds First already, but it is not in force.
  EXPECT_TRUE(Told([&] { (Rect.*Set)(First); }));
  EXPECT_EQ((Rect.*Get)(), First);
  EXPECT_FALSE(Rect.Inherits().Has(Property)) << "a write ends the inheritance";
  EXPECT_FALSE(Told([&] { (Rect.*Set)(First); }));

  // Marked again, field and value in force agree: nothing happens.
  Rect.Inherits().SetValue(Marks);
  (Above.*Set)(First);
  EXPECT_FALSE(Told([&] { (Rect.*Set)(First); }));
  EXPECT_TRUE(Rect.Inherits().Has(Property));
}

TEST(GraphicElement, SettersEndInheritance) {
  using E = TSVGGraphicElement;
  ExpectCommonForm<&E::GetAlignmentBaseline, &E::SetAlignmentBaseline>(ipAlignmentBaseline);
  ExpectCommonForm<&E::GetClipRule, &E::SetClipRule>(ipClipRule);
  ExpectCommonForm<&E::GetColor, &E::SetColor>(ipColor);
  ExpectCommonForm<&E::GetColorInterpolation, &E::SetColorInterpolation>(ipColorInterpolation);
  ExpectCommonForm<&E::GetColorRendering, &E::SetColorRendering>(ipColorRendering);
  ExpectCommonForm<&E::GetCursor, &E::SetCursor>(ipCursor);
  ExpectCommonForm<&E::GetDirection, &E::SetDirection>(ipDirection);
  ExpectCommonForm<&E::GetDominantBaseline, &E::SetDominantBaseline>(ipDominantBaseline);
  ExpectCommonForm<&E::IsEnableBackground, &E::SetEnableBackground>(ipEnableBackground);
  ExpectCommonForm<&E::IsOverflow, &E::SetOverflow>(ipOverflow);
  ExpectCommonForm<&E::GetPointerEvents, &E::SetPointerEvents>(ipPointerEvents);
  ExpectCommonForm<&E::GetShapeRendering, &E::SetShapeRendering>(ipShapeRendering);
  ExpectCommonForm<&E::GetTextAlign, &E::SetTextAlign>(ipTextAnchor);
  ExpectCommonForm<&E::GetTextRendering, &E::SetTextRendering>(ipTextRendering);
  ExpectCommonForm<&E::GetWritingMode, &E::SetWritingMode>(ipWritingMode);
}

TEST(GraphicElement, SomeSettersKeepTheMark) {
  TTree Tree("<g id='g'><rect id='r'/></g>");
  TSVGGraphicElement& Rect = Tree["r"];
  Rect.SetFillRule(TSVGFillRule::frEvenOdd);
  EXPECT_TRUE(Rect.Inherits().Has(ipFillRule));
  EXPECT_EQ(Rect.GetFillRule(), TSVGFillRule::frNonZero) << "the parent's is still in force";
  Rect.Inherits().Set(ipFillRule, false);
  EXPECT_EQ(Rect.GetFillRule(), TSVGFillRule::frEvenOdd) << "though the field has changed";

  Rect.Inherits().Set(ipVectorEffect, true);
  Rect.SetVectorEffect(TSVGVectorEffect::veNonScalingStroke);
  EXPECT_EQ(Rect.GetVectorEffect(), TSVGVectorEffect::veNone);
  Rect.Inherits().Set(ipOpacity, true);
  Rect.SetOpacity(0.25f);
  EXPECT_EQ(Rect.GetOpacity(), 1);
}

TEST(GraphicElement, OpacityIsClampedByItsSetterAlone) {
  TTree Tree("<rect id='a' opacity='2'/><rect id='b' opacity='50%'/><rect id='c' opacity='-1'/>");
  EXPECT_EQ(Tree["a"].GetOpacity(), 2);
  EXPECT_EQ(Tree["b"].GetOpacity(), 0.5f);
  EXPECT_EQ(Tree["c"].GetOpacity(), -1);
  Tree["b"].SetOpacity(2);
  EXPECT_EQ(Tree["b"].GetOpacity(), 1);
  Tree["b"].SetOpacity(-3);
  EXPECT_EQ(Tree["b"].GetOpacity(), 0);
  Tree["b"].SetOpacity(std::numeric_limits<float>::quiet_NaN());
  EXPECT_EQ(Tree["b"].GetOpacity(), 1) << "what is no number must not reach the surface";
}

TEST(GraphicElement, DisplayAndVisibilityShareOneField) {
  const std::pair<const char*, bool> Cases[] = {
      {"", true},
      {"visibility='hidden'", false},
      {"visibility='collapse'", false},
      {"display='none'", false},
      {"display='block'", true},
      // Display is read behind visibility, whatever the order of the attributes.
      {"display='inline' visibility='hidden'", true},
      {"visibility='visible' display='none'", false},
      {"visibility='hidden' style='display:inline'", true},
  };
  for (const auto& [Attributes, Visible] : Cases) {
    TTree Tree("<rect id='r' " + std::string(Attributes) + "/>");
    EXPECT_EQ(Tree["r"].GetVisible(), Visible) << Attributes;
  }
  // Only an element that marks both asks its parent.
  TTree Tree("<g visibility='hidden'><rect id='r'/><rect id='i' display='inherit'/></g>");
  EXPECT_TRUE(Tree["r"].GetVisible());
  EXPECT_FALSE(Tree["i"].GetVisible());
}

TEST(GraphicElement, ReferencesInheritTheirText) {
  TTree Tree(
      "<g id='g' clip-path='url(#c)' style='marker:url(#m)' filter='url(#f)'>"
      "<path id='p'/><path id='q' marker='url(#no)' marker-end='none'/>"
      "<path id='i' clip-path='inherit'/></g><clipPath id='c'/><rect id='notAClip'/>");
  EXPECT_EQ(Tree["p"].GetMarkerStartURI(), u"m");
  EXPECT_EQ(Tree["p"].GetMarkerMidURI(), u"m");
  EXPECT_EQ(Tree["p"].GetFilterURI(), u"") << "not inherited by itself";
  EXPECT_EQ(Tree["q"].GetMarkerStartURI(), u"m") << "the attribute of the shorthand is ignored";
  EXPECT_EQ(Tree["q"].GetMarkerEndURI(), u"none");
  EXPECT_EQ(Tree["p"].GetClipURIElement(), nullptr);
  EXPECT_EQ(Tree["i"].GetClipURIElement(), &Tree["c"]);
  Tree["g"].SetClipURI(u"notAClip");
  EXPECT_EQ(Tree["i"].GetClipURIElement(), nullptr) << "an element of another kind does not clip";

  // An equal clip text stops whatever the mark says.
  Tree["i"].SetClipURI(u"");
  EXPECT_TRUE(Tree["i"].Inherits().Has(ipClipPath));
}

TEST(GraphicElement, PercentagesFollowTheViewBox) {
  TTree Tree("<rect id='r' x='50%' y='50%' width='25%' height='1em'/>", "font-size='20'");
  EXPECT_EQ(Tree["r"].GetX(), 100);
  EXPECT_EQ(Tree["r"].GetY(), 50);
  EXPECT_EQ(Tree["r"].GetWidth(), 50);
  EXPECT_EQ(Tree["r"].GetXRaw(), 0.5f);
  EXPECT_EQ(Tree["r"].GetHeight(), 20);
  Tree.Document.ViewBox().SetRect(QXRect(0, 0, 400, 100));
  EXPECT_EQ(Tree["r"].GetX(), 200);
  Tree["r"].SetBoundsRect(QXRect(1, 2, 3, 1));
  EXPECT_EQ(Tree["r"].GetHeight(), 0) << "a negative size is lifted to 0";
}

TEST(GraphicElement, UnitsAreThoseOfTheDocument) {
  TTree Tree("<rect id='r' width='10mm' height='2em'/>", "width='10mm' font-size='7'");
  TSVGRectangle Alone(nullptr);
  Alone.WidthU().SetAsUnit(TSVGUnit::suMillimeters, 10);
  EXPECT_EQ(Alone.GetWidth(), 37.8f) << "rounded factors where there is no document";
  EXPECT_NEAR(Tree["r"].GetWidth(), 96 / 2.54, 1e-4);
  EXPECT_NEAR(Tree.Document.GetWidth(), 96 / 2.54, 1e-4);
  EXPECT_EQ(Tree["r"].GetHeight(), 14);
  Tree.Document.SetDPI(254);
  EXPECT_NEAR(Tree["r"].GetWidth(), 100, 1e-4);
  EXPECT_NEAR(Tree.Document.GetWidth(), 100, 1e-4);
}

TEST(GraphicElement, SpacingsClimb) {
  TTree Tree(
      "<g letter-spacing='2' word-spacing='1em' font-size='10'>"
      "<g><text id='t' kerning='3'/></g></g>");
  TSVGGraphicElement& Text = Tree["t"];
  EXPECT_EQ(Text.LetterSpacing().GetValue(), 2);
  EXPECT_FALSE(Text.LetterSpacing().IsAutomatic());
  EXPECT_EQ(Text.WordSpacing().GetValue(), 10);
  EXPECT_EQ(Text.Kerning().GetValue(), 3);
  Text.LetterSpacing().SetValue(5);
  EXPECT_FALSE(Text.Inherits().Has(ipLetterSpacing));
  EXPECT_EQ(Text.LetterSpacing().GetValue(), 5);
}

}  // namespace
}  // namespace qxsvg
