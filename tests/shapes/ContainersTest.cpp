// Containers: what they read, which children they take, what they draw.
#include <tuple>

#include "runtime/Exceptions.h"
#include "tests/shapes/Drawing.h"

namespace qxsvg::test {
namespace {

TEST(Group, BoundsSeeWhatChangesFarBelow) {
  TDrawing D(
      "<g id='o'><g id='i'><rect id='r' width='3' height='4' transform='translate(50,40)'/>"
      "<path d=''/></g></g>");
  auto& Outer = D.Get(u"o");
  // Without a matrix the children's own transformations play no part.
  EXPECT_EQ(Outer.GetBoundsRect(), QXRect(0, 0, 3, 4));
  EXPECT_EQ(Outer.GetBoundsRect(QXIdentityMatrix), QXRect(50, 40, 53, 44));
  // The box under a matrix is not kept for the one without.
  EXPECT_EQ(Outer.GetBoundsRect(), QXRect(0, 0, 3, 4));
  D.Get(u"r").SetWidth(7);
  EXPECT_EQ(Outer.GetBoundsRect(), QXRect(0, 0, 7, 4));
  auto Added = std::make_unique<TSVGRectangle>(&D.Document);
  Added->SetBoundsRect(QXRect(5, 5, 20, 20));
  TSVGElement* const Raw = Added.get();
  D.Get(u"i").Items().Add(std::move(Added));
  EXPECT_EQ(Outer.GetBoundsRect(), QXRect(0, 0, 20, 20));
  D.Get(u"i").Items().Remove(Raw);
  EXPECT_EQ(Outer.GetBoundsRect(), QXRect(0, 0, 7, 4));
}

TEST(Link, KeepsItsTargetWithoutFollowingIt) {
  TDrawing D("<a id='a' xlink:href='#x'/><a id='b' xlink:href='page.svg'/>");
  EXPECT_THAT(D.Saved(u"a"), HasSubstr("xlink:href=\"#x\""));
  EXPECT_THAT(D.Saved(u"b"), HasSubstr("xlink:href=\"#page.svg\""));
  TSVGALinkElement Link(nullptr);
  constexpr TCursor Hand = -21;
  EXPECT_EQ(Link.GetCursor(), Hand);
  Link.SetCursor(0);
  Link.Clear();
  EXPECT_EQ(Link.GetCursor(), Hand);
}

TEST(Reading, UnknownElementsAreDroppedOrRefused) {
  const std::tuple<const char*, std::int32_t, bool> Cases[] = {
      {"<bogus/>", 0, true},
      {"<x:namedview xmlns:x='urn:x'/><perspective/>", 0, false},
      // What is known by name only is kept by default, in whatever namespace.
      {"<filter/><x:rect xmlns:x='urn:x'/>", 2, true},
      {"<view/><metadata><x/></metadata><script/>", 3, false},
      {"<title>t</title><desc>d</desc><style>rect {}</style><!-- c -->", 0, false},
      {"<g><animate/></g>", 1, true},
      {"<rect><namedview/><perspective/></rect>", 1, false},
  };
  for (const auto& [Body, Children, IsRefused] : Cases) {
    TDrawing D(Body);
    EXPECT_EQ(D.Document.Items().Count(), Children) << Body;
    TSVGDocument Strict;
    Strict.SetOptions(Strict.GetOptions() - TSVGOptions{TSVGOption::soSkipUnknownXML});
    const auto Load = [&Strict, Body = Body] { Strict.LoadFromText(Wrapped(Body, "")); };
    if (IsRefused) {
      EXPECT_THROW(Load(), ESVGException) << Body;
    } else {
      EXPECT_NO_THROW(Load()) << Body;
    }
  }
}

TEST(Reading, AChildInTheWrongPlaceIsRefused) {
  EXPECT_THROW(TDrawing("<switch><linearGradient/></switch>"), ESVGException);
  EXPECT_THROW(TDrawing("<g><stop/></g>"), ESVGException);
  EXPECT_NO_THROW(TDrawing("<switch><filter/></switch>"));
}

TEST(Memory, ElementsAreSmall) {
  // A tree of a hundred thousand shapes is to stay within a hundred megabytes.
  EXPECT_LE(sizeof(TSVGGraphicElement), 700u);
  EXPECT_LE(sizeof(TSVGLength), 32u);
  EXPECT_LE(sizeof(TSVGStylePropertyAutoLength), 40u);
  EXPECT_LE(sizeof(TSVGRectangle), 700u);
  EXPECT_LE(sizeof(TSVGPath), 800u);
}

}  // namespace
}  // namespace qxsvg::test
