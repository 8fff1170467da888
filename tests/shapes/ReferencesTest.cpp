// Elements that show others: use and markers, and what ends their loops.
#include <tuple>

#include "runtime/Exceptions.h"
#include "shapes/Reference.h"
#include "tests/shapes/Drawing.h"

namespace qxsvg::test {
namespace {

TEST(Use, ReturnsTheTargetAlsoWhenDrawingFails) {
  TDrawing D("<defs id='d'><rect id='r' width='5' height='5'/></defs><use xlink:href='#r'/>");
  TSVGElement* const Defs = D.Document.FindElement(u"d");
  D.Draw();
  EXPECT_EQ(D.Get(u"r").Parent(), Defs);
  D.Document.OnDrawing = [&](TPersistent* Sender, const TMatrix&, TQXGPCanvas&, const TRectF&,
                             bool&) {
    if (Sender == D.Document.FindElement(u"r")) throw EAbort(u"");
  };
  EXPECT_THROW(D.Draw(), EAbort);
  EXPECT_EQ(D.Get(u"r").Parent(), Defs);
}

TEST(Use, ForgetsATargetThatDies) {
  TDrawing D(
      "<g id='g'><rect id='r' width='5' height='5'/></g><use id='u'/>"
      "<use id='read' xlink:href='#r'/>");
  auto& Use = D.Get<TSVGUse>(u"u");
  Use.SetReference(u"r");
  int Changes = 0;
  D.Document.OnChange = [&](TPersistent*) { ++Changes; };
  D.Get(u"r").NotifyListeners();
  EXPECT_GT(Changes, 0);
  D.Document.FindElement(u"g")->Items().Clear();
  EXPECT_EQ(Use.Reference(), u"");
  // One that was read never listened, and finds nothing any more.
  EXPECT_EQ(D.Get<TSVGUse>(u"read").Reference(), u"r");
  EXPECT_THAT(D.Draw(), IsEmpty());
}

TEST(Use, ATargetDestroyedWhileItIsDrawnBringsNothingDown) {
  TDrawing D(
      "<defs id='d'><g id='g'><rect width='5' height='5'/></g></defs>"
      "<use xlink:href='#g'/><rect id='last' width='2' height='2'/>");
  D.Document.OnDrawn = [&](TPersistent* Sender, const TMatrix&, TQXGPCanvas&, const TRectF&) {
    if (Sender != D.Document.FindElement(u"g")) return;
    // Out of the tree, but alive until the walk is over.
    D.Document.FindElement(u"d")->Items().Extract(D.Document.FindElement(u"g")).release();
  };
  TSVGElement* const Group = D.Document.FindElement(u"g");
  EXPECT_THAT(D.Draw(), SizeIs(2));
  EXPECT_EQ(Group->Parent(), nullptr);
  const std::unique_ptr<TSVGElement> Owner(Group);
}

TEST(Use, GivesBackATargetThatLivesOutsideTheTree) {
  TDrawing D("<defs id='d'><rect id='r' width='5' height='5'/></defs><use xlink:href='#r'/>");
  const auto Kept = D.Get(u"d").Items().Extract(&D.Get(u"r"));
  D.Document.OnDrawing = [&](TPersistent* Sender, const TMatrix&, TQXGPCanvas&, const TRectF&,
                             bool&) {
    if (Sender == Kept.get()) D.Document.Clear();
  };
  D.Draw();
  EXPECT_EQ(Kept->Parent(), nullptr) << "the use that showed it is gone";
}

TEST(Use, ATargetThatComesToStandAboveWhileDrawnIsLeftOut) {
  TDrawing D(
      "<g id='a'><use xlink:href='#b'/></g><g id='b'><rect id='r' width='5' height='5'/></g>");
  D.Document.OnDrawing = [&](TPersistent* Sender, const TMatrix&, TQXGPCanvas&, const TRectF&,
                             bool&) {
    TSVGElement* const Moved = &D.Get(u"a");
    if (Sender == Moved && Moved->Parent() == &D.Document)
      D.Get(u"b").Items().Add(D.Document.Items().Extract(Moved));
  };
  EXPECT_THAT(D.Draw(), IsEmpty());
  EXPECT_EQ(D.Get(u"b").Parent(), &D.Document);
  EXPECT_THAT(D.Draw(), SizeIs(1));
}

TEST(Use, WhatHoldsTheTargetDoesNotGoIntoItWhileItIsLent) {
  TDrawing Drawing("<g id='s'><g id='x'><rect/></g></g><use id='u' xlink:href='#x'/>");
  auto &Outer = Drawing.Get(u"s"), &Target = Drawing.Get(u"x");
  std::unique_ptr<TSVGElement> Taken;
  Drawing.Document.OnDrawn = [&](TPersistent*, const TMatrix&, TQXGPCanvas&, const TRectF&) {
    if (Taken || Target.Parent() == &Outer) return;
    Taken = Drawing.Document.Items().Extract(&Outer);
    EXPECT_THROW(Target.Items().Add(std::move(Taken)), EInvalidOperation);
  };
  Drawing.Draw();
  EXPECT_EQ(Taken.get(), &Outer);
  EXPECT_EQ(Target.Parent(), &Outer);
}

TEST(Use, HasWhatItShows) {
  TDrawing D(
      "<defs id='d'><g id='g'><rect id='r'/></g></defs><g id='o'><use id='u' xlink:href='#g'/>"
      "<use id='v' xlink:href='#u'/></g><use id='x' xlink:href='#y'/><use id='y' "
      "xlink:href='#x'/>");
  const std::tuple<StringView, StringView, bool, bool> Cases[] = {
      {u"u", u"g", true, true},   {u"u", u"r", true, true},   {u"v", u"u", true, true},
      {u"v", u"r", true, true},   {u"o", u"r", false, true},  {u"o", u"g", false, true},
      {u"d", u"r", false, true},  {u"g", u"u", false, false}, {u"x", u"x", true, true},
      {u"x", u"r", false, false},
  };
  for (const auto& [Top, Below, HasChild, HasDescendant] : Cases) {
    const std::string Name = ToUtf8(Top) + " " + ToUtf8(Below);
    EXPECT_EQ(D.Get(Top).HasChild(D.Document.FindElement(Below)), HasChild) << Name;
    EXPECT_EQ(D.Document.FindElement(Top)->HasDescendant(&D.Get(Below)), HasDescendant) << Name;
  }
  EXPECT_EQ(D.Get(u"u").GetShape(), D.Get(u"g").GetShape());
  EXPECT_EQ(D.Get(u"o").Matches(u"g r"), 11);
  EXPECT_EQ(D.Get(u"u").Matches(u"use > g"), 11);
}

TEST(Use, LendingAShapeDoesNotMakeItAnew) {
  TDrawing D("<defs><path id='p' d='M0 0H5V5Z'/></defs><use xlink:href='#p'/>");
  D.Draw();
  const TQXGPPath* const Shape = D.Get(u"p").GetShape();
  int Changes = 0;
  auto Count = [&](TPersistent*) { ++Changes; };
  const_cast<TQXGPPath*>(Shape)->SetOnChange(TNotifyMethod::To(Count));
  D.Draw();
  D.Draw();
  EXPECT_EQ(Changes, 0);
}

TEST(Use, OneThatNamesItselfIsRefusedAloneAndLeftOutOfAPicture) {
  TDrawing D("<use id='u' xlink:href='#u'/><rect width='5' height='5'/>");
  EXPECT_THAT(D.Draw(), SizeIs(1));
  TRecordingCanvas Canvas;
  EXPECT_THROW(D.Get(u"u").Draw(QXIdentityMatrix, Canvas, QXRect(0, 0, 9, 9)), EInvalidOperation);
}

TEST(Use, LoopsAndChainsEndAndTheRestIsDrawn) {
  std::string Chain = "<g id='c0'><rect width='1' height='1'/></g>";
  for (int I = 1; I < 4000; ++I)
    Chain += "<use id='c" + std::to_string(I) + "' xlink:href='#c" + std::to_string(I - 1) + "'/>";
  std::string Fan = "<g id='f0'><rect width='1' height='1'/></g>";
  for (int I = 1; I < 9; ++I) {
    Fan += "<g id='f" + std::to_string(I) + "'>";
    for (int J = 0; J < 10; ++J) Fan += "<use xlink:href='#f" + std::to_string(I - 1) + "'/>";
    Fan += "</g>";
  }
  // Few elements, of many points.
  std::string Long = "<path id='l' d='M0 0", Uses, Clipped;
  for (int I = 0; I < 4000; ++I) Long += "l1 1";
  Long += "'/>";
  for (int I = 0; I < 20; ++I) {
    Uses += "<use xlink:href='#l'/>";
    Clipped += "<use xlink:href='#r'/>";
  }
  const std::string Bodies[] = {
      Long + Uses,
      "<clipPath id='c'>" + Long + "</clipPath><rect id='r' width='9' height='9' " +
          "clip-path='url(#c)'/>" + Clipped,
      "<g id='g'><rect width='2' height='2'/><use xlink:href='#g' x='5'/></g>",
      "<g id='a'><use xlink:href='#b'/></g><g id='b'><use xlink:href='#a'/></g>",
      "<use id='a' xlink:href='#b'/><use id='b' xlink:href='#a'/>",
      "<symbol id='a'><use xlink:href='#a'/></symbol><use xlink:href='#a'/>",
      "<defs>" + Chain + "</defs><use xlink:href='#c3999'/>",
      "<defs>" + Fan + "</defs><use xlink:href='#f8'/>",
  };
  for (const std::string& Body : Bodies) {
    // A small budget, so that the fan is cut soon.
    const TReferenceScope Budget(2000);
    TDrawing D(Body + "<rect id='last' x='60' y='60' width='30' height='30'/>");
    int Told = 0;
    D.Document.OnDiagnostic = [&](TSVGDiagnosticKind, TSVGElement*, StringView) { ++Told; };
    EXPECT_EQ(D.Draw().back(), "fill M 60,60 L 90,60 L 90,90 L 60,90 Z") << Body.substr(0, 60);
    EXPECT_GT(Told, 0) << Body.substr(0, 60);
    EXPECT_EQ(D.At(75, 75), "last");
    D.Document.Items()[0]->GetBoundsRect(CreateScaleQXMatrix(2, 2));
  }
}

// --- Markers

// A marker whose content is a unit square at its reference point.
std::string MarkerOf(const char* Attributes) {
  return std::string("<marker id='m' overflow='visible' ") + Attributes +
         "><rect width='1' height='1'/></marker>";
}

// Where the unit squares of the markers stand.
Lines MarkersOf(const std::string& Body) {
  Lines Result;
  for (const std::string& Line : TDrawing(Body).Draw())
    if (Line.starts_with("fill ")) Result.push_back(Line.substr(5));
  return Result;
}

TEST(Markers, StandOnTheVerticesOfTheirKind) {
  const std::string Marker = MarkerOf("");
  const std::pair<const char*, std::size_t> Cases[] = {
      {"<line x2='9' stroke='red' fill='none' marker-mid='url(#m)'/>", 0},
      {"<line x2='9' stroke='red' fill='none' marker-start='url(#m)' marker-end='url(#m)'/>", 2},
      {"<polyline points='0 0 9 0 9 9 0 9' fill='none' marker-mid='url(#m)'/>", 2},
      {"<path d='M0 0C1 1 2 2 3 3L4 4' fill='none' marker-mid='url(#m)'/>", 1},
      {"<path d='M0 0L1 0C1 1 2 2 3 3L4 4' fill='none' marker-mid='url(#m)'/>", 2},
      // Moves and ends of figures are vertices too.
      {"<path d='M0 0L9 0M9 9L0 9' fill='none' marker-mid='url(#m)'/>", 2},
      {"<path d='M0 0L9 0L9 9ZM20 20L30 20' fill='none' marker-mid='url(#m)'/>", 4},
      {"<path d='M0 0C1 1 2 2 3 3M5 5C6 6 7 7 8 8L9 9' fill='none' marker-mid='url(#m)'/>", 3},
      // The side that closes a polygon adds none.
      {"<polygon points='0 0 9 0 9 9' fill='none' marker-mid='url(#m)'/>", 1},
      // A segment of no length has no direction to stand in.
      {"<path d='M5 5L5 5' fill='none' marker-start='url(#m)' marker-end='url(#m)'/>", 0},
      {"<path d='M0 0L0 0L9 0' fill='none' marker-start='url(#m)'/>", 1},
      {"<rect width='9' height='9' fill='none' marker-start='url(#m)'/>", 0},
      {"<line x2='9' fill='none' marker-start='url(#nothing)'/>", 0},
  };
  for (const auto& [Shape, Count] : Cases)
    EXPECT_THAT(MarkersOf(Marker + Shape), SizeIs(Count)) << Shape;
}

TEST(Markers, TurnOnlyWhenTheyTurnByThemselves) {
  constexpr char Path[] = "<path d='M0 0L10 0L10 10' fill='none' marker-mid='url(#m)'/>";
  // The bisector of right and down.
  EXPECT_THAT(MarkersOf(MarkerOf("orient='auto'") + Path),
              ElementsAre("M 10,0 L 10.707,0.707 L 10,1.414 L 9.293,0.707 Z"));
  EXPECT_THAT(MarkersOf(MarkerOf("orient='45'") + Path),
              ElementsAre("M 10,0 L 11,0 L 11,1 L 10,1 Z"));
}

TEST(Markers, ScaleWithTheStrokeAndStandOnTheirReferencePoint) {
  constexpr char Line[] =
      "<line x1='20' y1='20' x2='50' y2='20' fill='none' stroke='red' stroke-width='2' "
      "marker-start='url(#m)'/>";
  // Without a view box the width of the stroke scales nothing.
  EXPECT_THAT(MarkersOf(MarkerOf("") + Line), ElementsAre("M 20,20 L 21,20 L 21,21 L 20,21 Z"));
  // A share of the view box is a width like any other.
  EXPECT_THAT(MarkersOf(MarkerOf("viewBox='0 0 10 10'") +
                        "<line x1='20' y1='20' x2='50' y2='20' fill='none' stroke='red' "
                        "stroke-width='10%' marker-start='url(#m)'/>"),
              ElementsAre("M 20,20 L 23,20 L 23,23 L 20,23 Z"));
  // Ten units in three widths of two: 0.6.
  EXPECT_THAT(MarkersOf(MarkerOf("viewBox='0 0 10 10'") + Line),
              ElementsAre("M 20,20 L 20.6,20 L 20.6,20.6 L 20,20.6 Z"));
  EXPECT_THAT(MarkersOf(MarkerOf("viewBox='0 0 10 10' refX='5' refY='5'") + Line),
              ElementsAre("M 17,17 L 17.6,17 L 17.6,17.6 L 17,17.6 Z"));
  EXPECT_THAT(MarkersOf(MarkerOf("viewBox='0 0 10 10' markerUnits='userSpaceOnUse' "
                                 "markerWidth='20' markerHeight='20'") +
                        Line),
              ElementsAre("M 20,20 L 22,20 L 22,22 L 20,22 Z"));
}

TEST(Markers, EveryOneSeesTheWidthOfItsOwnShape) {
  const Lines Placed = MarkersOf(
      "<marker id='m' overflow='visible' viewBox='0 0 10 10'><rect width='10' height='10' "
      "stroke='red' stroke-width='7'/></marker><polyline points='20 20 50 20 80 20' fill='none' "
      "stroke='red' stroke-width='2' marker-start='url(#m)' marker-mid='url(#m)' "
      "marker-end='url(#m)'/>");
  EXPECT_THAT(Placed,
              ElementsAre("M 20,20 L 26,20 L 26,26 L 20,26 Z", "M 50,20 L 56,20 L 56,26 L 50,26 Z",
                          "M 80,20 L 86,20 L 86,26 L 80,26 Z"));
}

TEST(Markers, EndWithTheShapeThatAHandlerTakesAway) {
  for (int Case = 0; Case < 4; ++Case) {
    const bool IsPath = Case % 2 == 0, IsRemoved = Case < 2;
    const StringView ID = IsPath ? u"p" : u"l";
    TDrawing D(MarkerOf("") +
               "<g fill='none' marker-start='url(#m)' marker-mid='url(#m)' marker-end='url(#m)'>"
               "<path id='p' d='M0 0h5v5h5'/><polyline id='l' points='0 0 5 0 5 5 9 9'/></g>");
    D.Get(IsPath ? u"l" : u"p").SetVisible(false);
    int Drawn = 0;
    D.Document.OnDrawn = [&](TPersistent* Sender, const TMatrix&, TQXGPCanvas&, const TRectF&) {
      if (static_cast<TSVGElement*>(Sender)->GetSVGType() != TSVGElementType::etMarker) return;
      if (++Drawn != 2) return;
      if (IsRemoved)
        D.Get(ID).Parent()->Items().Remove(&D.Get(ID));
      else if (IsPath)
        D.Get<TSVGPath>(ID).Data().Clear();
      else
        D.Get<TSVGPolyline>(ID).SetPoints({});
    };
    D.Draw();
    EXPECT_EQ(Drawn, IsRemoved ? 3 : 2) << ToUtf8(ID);
  }
}

TEST(Markers, ReadAndWriteTheirValues) {
  TDrawing D(
      "<marker id='a' orient='auto' refX='2' markerWidth='4'/><marker id='n' orient='45'/>"
      "<marker id='u' orient='45deg'/>");
  EXPECT_TRUE(D.Get<TSVGMarker>(u"a").AutomaticOrientation());
  EXPECT_EQ(D.Get<TSVGMarker>(u"a").AspectRatio().Align(), TSVGAlign::saNone);
  EXPECT_THAT(D.Saved(u"a"), HasSubstr("refX=\"2\" markerWidth=\"4\" "
                                       "markerUnits=\"strokeWidth\" orient=\"auto\""));
  EXPECT_THAT(D.Saved(u"n"), HasSubstr("orient=\"45\""));
  // The unit must stand apart, so this is no number.
  EXPECT_EQ(D.Get<TSVGMarker>(u"u").Orientation(), 0);
}

}  // namespace
}  // namespace qxsvg::test
