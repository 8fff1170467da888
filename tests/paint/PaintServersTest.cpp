// Gradients, patterns and clip paths: what they give to the shapes that name them.
#include <tuple>

#include <sstream>

#include "foundation/Limits.h"
#include "graphics/surface/Bitmap.h"
#include "runtime/Exceptions.h"
#include "shapes/Reference.h"
#include "tests/shapes/Drawing.h"

namespace qxsvg::test {
namespace {

constexpr TRectF Box{0, 0, 100, 50};

std::unique_ptr<TQXGPGradient> GradientOf(TDrawing& D, StringView ID, const TRectF& Bounds = Box,
                                          const TMatrix& Matrix = QXIdentityMatrix) {
  return D.Get<TSVGCustomGradient>(ID).GetGradient(Matrix, Bounds, Bounds);
}

Lines OffsetsOf(const TQXGPGradient& Gradient) {
  Lines Result;
  for (const TQXGPGradientPoint& Point : Gradient.Points().Items()) {
    char Text[32];
    std::snprintf(Text, sizeof Text, "%.4f", Point.Offset());
    Result.push_back(Text);
  }
  return Result;
}

Lines ColorsOf(const TQXGPGradient& Gradient) {
  Lines Result;
  for (const TQXGPGradientPoint& Point : Gradient.Points().Items())
    Result.push_back(ToUtf8(CanvasColorToString(Point.Color())));
  return Result;
}

std::string Describe(TPointF P) {
  return Brief(P.X) + "," + Brief(P.Y);
}

// --- Gradients

TEST(Gradient, StopsAreLaidOutByTheSpread) {
  constexpr char Half[] = "<stop/><stop offset='0.5'/>";
  const std::tuple<std::string, std::string, Lines> Cases[] = {
      {"pad", "<stop offset='.25'/><stop offset='75%'/>", {"0.2500", "0.7500"}},
      // Neither sorted nor clamped.
      {"pad", "<stop offset='2'/><stop offset='-1'/>", {"2.0000", "-1.0000"}},
      {"repeat", Half, {"0.0000", "0.5000", "0.5001", "1.0001"}},
      {"reflect", Half, {"0.0000", "0.5000", "0.5001", "1.0001"}},
      {"repeat", "<stop/><title/><stop offset='0.5'/>", {"0.0000", "0.5000", "0.5001", "1.0001"}},
      {"pad", "", {}},
      {"repeat", "<title/>", {}},
  };
  for (const auto& [Spread, Stops, Offsets] : Cases) {
    TDrawing D("<linearGradient id='g' spreadMethod='" + Spread + "'>" + Stops +
               "</linearGradient>");
    EXPECT_EQ(OffsetsOf(*GradientOf(D, u"g")), Offsets) << Spread << " " << Stops;
  }
}

TEST(Gradient, ColoursOfStops) {
  TDrawing D(
      "<linearGradient id='l' spreadMethod='reflect'><stop stop-color='red'/><stop offset='0.5' "
      "stop-color='blue' stop-opacity='0.5'/></linearGradient><radialGradient id='r'><stop "
      "stop-color='red'/><stop offset='1' stop-color='blue'/></radialGradient>");
  EXPECT_THAT(ColorsOf(*GradientOf(D, u"l")),
              ElementsAre("#FFFF0000", "#800000FF", "#800000FF", "#FFFF0000"));
  // That of a radial one counts from the rim.
  EXPECT_THAT(ColorsOf(*GradientOf(D, u"r")), ElementsAre("#FF0000FF", "#FFFF0000"));
}

TEST(Gradient, AColourThatCannotBeReadLeavesTheStop) {
  TDrawing D(
      "<linearGradient id='g'><stop stop-color='lime'/><stop id='s' style='stop-color:rgb(1,x,2);"
      "stop-opacity:.5' offset='1'/></linearGradient>");
  EXPECT_EQ(GradientOf(D, u"g")->Points().GetPoint(1).Color(), 0x80000000u);
  int Told = 0;
  D.Document.OnDiagnostic = [&](TSVGDiagnosticKind, TSVGElement* Element, StringView) {
    EXPECT_EQ(Element, D.Document.FindElement(u"s"));
    ++Told;
  };
  D.Document.ApplyStyles();
  EXPECT_EQ(Told, 1);
}

TEST(Gradient, StopsAreBorrowedOnlyByOneWithoutAnyChild) {
  constexpr char Lender[] = "<linearGradient id='l' x2='0.3'><stop offset='0.4'/></linearGradient>";
  TDrawing Plain(std::string(Lender) + "<linearGradient id='g' xlink:href='#l'/>");
  const auto Gradient = GradientOf(Plain, u"g");
  EXPECT_THAT(OffsetsOf(*Gradient), ElementsAre("0.4000"));
  // The geometry is not borrowed.
  EXPECT_EQ(Gradient->StopPosition().GetPoint(), QXPoint(1, 0));
  TDrawing Titled(std::string(Lender) +
                  "<linearGradient id='g' xlink:href='#l'><metadata/></linearGradient>");
  Titled.Get<TSVGCustomGradient>(u"g").Items().Add(
      std::make_unique<TSVGMetadata>(&Titled.Document));
  EXPECT_THAT(OffsetsOf(*GradientOf(Titled, u"g")), IsEmpty());
}

TEST(Gradient, ANewStopIsSeen) {
  TDrawing D("<linearGradient id='g'><stop/></linearGradient>");
  EXPECT_THAT(OffsetsOf(*GradientOf(D, u"g")), SizeIs(1));
  auto Stop = std::make_unique<TSVGGradientStop>(&D.Document);
  Stop->SetOffset(0.75f);
  D.Get(u"g").Items().Add(std::move(Stop));
  EXPECT_THAT(OffsetsOf(*GradientOf(D, u"g")), ElementsAre("0.0000", "0.7500"));
}

TEST(Gradient, WhatHasNoEndIsCutAtALimit) {
  TDrawing D(
      "<radialGradient id='r' spreadMethod='repeat'><stop offset='0.1'/><stop offset='1'/>"
      "</radialGradient><linearGradient id='a' xlink:href='#b'/>"
      "<linearGradient id='b' xlink:href='#a'/><linearGradient id='s' xlink:href='#s'/>");
  EXPECT_LE(GradientOf(D, u"r")->Points().Count(), Limits::GradientPoints);
  EXPECT_EQ(GradientOf(D, u"a")->Points().Count(), 0u);
  EXPECT_EQ(GradientOf(D, u"s")->Points().Count(), 0u);
}

TEST(LinearGradient, PositionsAreFractionsOfTheBox) {
  const std::tuple<const char*, const char*, const char*> Cases[] = {
      {"x2='100%'", "0,0", "1,0"},
      {"x1='0.25' y1='50%' x2='1' y2='1'", "0.25,0.5", "1,1"},
      {"gradientTransform='translate(0.5 0)'", "0.5,0", "1.5,0"},
      {"gradientUnits='userSpaceOnUse' x1='25' x2='50' y2='25'", "0.25,0", "0.5,0.5"},
      {"gradientUnits='userSpaceOnUse' gradientTransform='scale(2)' x2='50'", "0,0", "1,0"},
  };
  for (const auto& [Attributes, Start, Stop] : Cases) {
    TDrawing D(std::string("<linearGradient id='g' ") + Attributes + "/>");
    const auto Gradient = GradientOf(D, u"g");
    EXPECT_EQ(Describe(Gradient->StartPosition().GetPoint()), Start) << Attributes;
    EXPECT_EQ(Describe(Gradient->StopPosition().GetPoint()), Stop) << Attributes;
  }
  // Without a box the numbers stand as they are.
  TDrawing D(
      "<linearGradient id='g' gradientUnits='userSpaceOnUse' x2='50' "
      "gradientTransform='scale(2)'/>");
  EXPECT_EQ(GradientOf(D, u"g", QXRect(0, 0, 10, 0))->StopPosition().GetPoint(), QXPoint(50, 0));
}

TEST(LinearGradient, UserSpaceGoesThroughTheShapesMatrix) {
  TDrawing D("<linearGradient id='g' gradientUnits='userSpaceOnUse' x1='100' x2='0'/>");
  // A mirrored box: what was its left side is its right one, and the fractions follow.
  const auto Gradient = GradientOf(D, u"g", Box, CreateScaleQXMatrix(-1, 1));
  EXPECT_EQ(Gradient->StartPosition().GetPoint(), QXPoint(1, 0));
  // That of fractions does not, nor does a radial one.
  TDrawing Others(
      "<linearGradient id='g'/><radialGradient id='r' gradientUnits='userSpaceOnUse' "
      "cx='25'/>");
  EXPECT_EQ(GradientOf(Others, u"g", Box, CreateScaleQXMatrix(-1, 1))->StopPosition().GetPoint(),
            QXPoint(1, 0));
  EXPECT_EQ(GradientOf(Others, u"r", Box, CreateScaleQXMatrix(-1, 1))->CenterPosition().X(), 0.25f);
}

TEST(RadialGradient, CentreFocusAndRadius) {
  const std::tuple<const char*, const char*, const char*, const char*> Cases[] = {
      {"", "0.5,0.5", "0,0", "1,1"},
      {"r='0.25'", "0.5,0.5", "0,0", "0.5,0.5"},
      // 0 is no fraction: it is a user unit, which happens to be the box's left side.
      {"cx='0' fx='0.5'", "0,0.5", "0.5,0", "1,1"},
      {"cx='0.25' fy='0.75'", "0.25,0.5", "0.25,0.25", "1,1"},
      // Above 1 a number is user units, in a box of 100 by 50.
      {"r='25'", "0.5,0.5", "0,0", "0.5,1"},
      {"gradientUnits='userSpaceOnUse' cx='50' cy='25' r='25'", "0.5,0.5", "0,0", "0.5,1"},
      {"gradientUnits='userSpaceOnUse' r='50%'", "0.5,0.5", "0,0", "1,1"},
      {"gradientUnits='userSpaceOnUse' cx='50' cy='25' r='0.5'", "0.5,0.5", "0,0", "0.01,0.02"},
  };
  for (const auto& [Attributes, Center, Focus, Radius] : Cases) {
    TDrawing D(std::string("<radialGradient id='g' ") + Attributes + "/>");
    const auto Gradient = GradientOf(D, u"g");
    EXPECT_EQ(Describe(Gradient->CenterPosition().GetPoint()), Center) << Attributes;
    EXPECT_EQ(Describe(Gradient->FocusOffsetPosition().GetPoint()), Focus) << Attributes;
    EXPECT_EQ(Describe(Gradient->RadiusPosition().GetPoint()), Radius) << Attributes;
  }
  TDrawing Empty("<radialGradient id='g'/>");
  EXPECT_EQ(GradientOf(Empty, u"g", TRectF())->CenterPosition().GetPoint(), QXPoint(1, 1));
}

TEST(Gradient, SavesWhatItRead) {
  TDrawing D(
      "<linearGradient id='g' gradientUnits='userSpaceOnUse' spreadMethod='reflect' x1='3' "
      "gradientTransform='translate(1 2)' xlink:href='#l'/>");
  const std::string Saved = D.Saved(u"g");
  EXPECT_THAT(Saved, HasSubstr("gradientUnits=\"userSpaceOnUse\" spreadMethod=\"reflect\" "
                               "gradientTransform=\"translate(1 2)\" xlink:href=\"#l\""));
  EXPECT_THAT(Saved, Not(HasSubstr(" transform=")));
  EXPECT_THAT(Saved, HasSubstr("x1=\"3\""));
}

// --- Patterns

std::string TileOf(TDrawing& D, const TRectF& Bounds) {
  // A tile is made in user units, however large it will be shown.
  const TMatrix Shown = CreateScaleQXMatrix(3, 3);
  const auto Tile = D.Get<TSVGPattern>(u"p").GetPattern(D.Get(u"r"), Shown, Bounds);
  return std::to_string(Tile->GetWidth()) + "x" + std::to_string(Tile->GetHeight());
}

TEST(Pattern, TilesHaveTheSizeToldByTheUnits) {
  const std::pair<const char*, const char*> Cases[] = {
      {"width='0.25' height='0.25'", "25x50"},
      // The position is in user units and changes no size.
      {"x='5' width='0.25' height='0.25'", "25x50"},
      {"patternUnits='userSpaceOnUse' width='10.9' height='4'", "10x4"},
      {"patternUnits='userSpaceOnUse' width='10' height='4' transform='scale(2)'", "20x8"},
      {"patternUnits='userSpaceOnUse' width='10' height='4' patternTransform='scale(2)'", "10x4"},
      {"patternUnits='userSpaceOnUse' width='0' height='4'", "0x0"},
      // Another pattern lends its content, not its size.
      {"xlink:href='#o'", "0x0"},
      {"patternUnits='userSpaceOnUse' width='1e9' height='1e9'", "0x0"},
      {"patternUnits='userSpaceOnUse' width='4' height='40000'", "0x0"},
  };
  for (const auto& [Attributes, Size] : Cases) {
    TDrawing D(std::string("<pattern id='o' width='1' height='1'/><pattern id='p' ") + Attributes +
               "/><rect id='r'/>");
    EXPECT_EQ(TileOf(D, QXRect(0, 0, 100, 200)), Size) << Attributes;
  }
  TDrawing D("<pattern id='p' width='.1' height='.1'/><rect id='r'/>");
  const TReferenceScope Budget(1000, 150);
  for (const char* const Size : {"10x10", "0x0"})
    EXPECT_EQ(TileOf(D, QXRect(0, 0, 100, 100)), Size) << "beyond the pixels of one draw";
}

TEST(Pattern, DrawsItsContentThroughItsOwnTransformation) {
  TDrawing D(
      "<pattern id='p' patternUnits='userSpaceOnUse' width='8' height='8' "
      "patternContentUnits='objectBoundingBox' patternTransform='scale(2)'><rect width='2' "
      "height='2' fill='red'/></pattern>"
      "<rect id='r' width='20' height='20' fill='url(#p)'/>");
  const auto Tile = D.Get<TSVGPattern>(u"p").GetPattern(D.Get(u"r"), QXIdentityMatrix, Box);
  EXPECT_EQ(Tile->GetPixels().Row(3)[3], 0xffff0000u);
  EXPECT_EQ(Tile->GetPixels().Row(4)[4], 0u);
  EXPECT_THAT(D.DrawInFull(), ElementsAre(HasSubstr("bitmap(8x8)")));
}

TEST(Pattern, ADisabledShapeGetsADisabledTile) {
  TDrawing D(
      "<pattern id='p' patternUnits='userSpaceOnUse' width='4' height='4'>"
      "<rect width='4' height='4' fill='red'/></pattern><rect id='r'/>");
  D.Get(u"r").SetEnabled(false);
  const auto Tile = D.Get<TSVGPattern>(u"p").GetPattern(D.Get(u"r"), QXIdentityMatrix, Box);
  const std::uint32_t Pixel = Tile->GetPixels().Row(1)[1];
  EXPECT_EQ(Pixel & 0xff, Pixel >> 8 & 0xff);
  EXPECT_TRUE(D.Get(u"p").Enabled());
}

TEST(Pattern, ShapesShareATileForOneDrawing) {
  TDrawing D(
      "<pattern id='p' patternUnits='userSpaceOnUse' width='4' height='4'>"
      "<rect id='t' width='4' height='4' fill='red'/></pattern><g fill='url(#p)'>"
      "<rect id='a' width='9' height='9'/><rect id='b' x='5' width='5' height='5'/></g>");
  const auto Tile = [&](StringView ID) {
    return dynamic_cast<const TQXGPBitmap*>(D.Get(ID).GetBrush().Bitmap());
  };
  D.Draw();
  EXPECT_EQ(Tile(u"a"), Tile(u"b"));
  // The next drawing has its own, which sees what changed.
  const auto Kept = D.Get(u"a").GetBrush().BitmapRef();
  D.Get(u"t").GetBrush().SetColor(0xff0000ff);
  D.Get(u"b").Reset();
  D.Draw();
  EXPECT_EQ(Tile(u"a"), Kept.get());
  EXPECT_EQ(Tile(u"b")->GetPixels().Row(1)[1], 0xff0000ffu);
  // One of another box or state is another one.
  D.Document.LoadFromText(
      "<svg xmlns='http://www.w3.org/2000/svg'><pattern id='p' width='.5' height='.5'>"
      "<rect width='4' height='4' fill='red'/></pattern><g fill='url(#p)'>"
      "<rect id='a' width='8' height='8'/><rect id='b' width='4' height='4'/>"
      "<rect id='c' width='8' height='8'/></g></svg>");
  D.Get(u"c").SetEnabled(false);
  D.Draw();
  EXPECT_EQ(Tile(u"a")->GetWidth(), 4);
  EXPECT_EQ(Tile(u"b")->GetWidth(), 2);
  EXPECT_NE(Tile(u"a"), Tile(u"c"));
}

TEST(Pattern, ShowsTheContentOfAnotherAboveItsOwn) {
  TDrawing D(
      "<pattern id='o' patternUnits='userSpaceOnUse' width='1' height='1'>"
      "<rect width='2' height='2' fill='blue'/></pattern>"
      "<pattern id='p' patternUnits='userSpaceOnUse' width='4' height='4' xlink:href='#o'>"
      "<rect width='4' height='4' fill='red'/></pattern><rect id='r'/>");
  const auto Tile = D.Get<TSVGPattern>(u"p").GetPattern(D.Get(u"r"), QXIdentityMatrix, Box);
  EXPECT_EQ(Tile->GetPixels().Row(1)[1], 0xff0000ffu);
  EXPECT_EQ(Tile->GetPixels().Row(3)[3], 0xffff0000u);
  EXPECT_EQ(D.Get(u"o").Parent(), &D.Document);
}

TEST(Pattern, LoopsEnd) {
  TDrawing D(
      "<pattern id='p' width='10' height='10' patternUnits='userSpaceOnUse'><rect width='8' "
      "height='8' fill='url(#p)' stroke='url(#p)'/></pattern>"
      "<pattern id='a' patternUnits='userSpaceOnUse' width='4' height='4' xlink:href='#b'/>"
      "<pattern id='b' patternUnits='userSpaceOnUse' width='4' height='4' xlink:href='#a'/>"
      "<pattern id='s' patternUnits='userSpaceOnUse' width='4' height='4' xlink:href='#s'/>"
      "<rect id='r' width='9' height='9' fill='url(#p)'/><rect width='9' height='9' "
      "fill='url(#a)'/><rect width='9' height='9' fill='url(#s)'/><circle r='3'/>");
  EXPECT_THAT(D.Draw(), SizeIs(4));
}

// --- Clip paths

std::string ClipsOf(const std::string& Body) {
  std::istringstream Asked(TDrawing(Body).DrawWithStates());
  std::string Result;
  for (std::string Line; std::getline(Asked, Line);)
    if (Line.starts_with("clip region")) Result += Line.substr(11);
  return Result;
}

TEST(ClipPath, IsTheUnionOfItsVisibleChildren) {
  const auto Clip = [](const std::string& Children) {
    return ClipsOf("<clipPath id='c'>" + Children +
                   "</clipPath><circle r='9' transform='translate(50 0)' clip-path='url(#c)'/>");
  };
  EXPECT_EQ(Clip("<rect width='2' height='2'/><rect x='1' width='2' height='2'/>"),
            " | M 50,0 L 52,0 L 52,2 L 50,2 Z | M 51,0 L 53,0 L 53,2 L 51,2 Z");
  // Without geometry nothing is clipped at all.
  EXPECT_EQ(Clip(""), "");
  EXPECT_EQ(Clip("<rect display='none' width='2' height='2'/>"), "");
  EXPECT_EQ(Clip("<polygon clip-rule='evenodd' points='0 0 2 0 2 2'/>"),
            " | M 50,0 L 52,0 L 52,2 Z evenodd");
  EXPECT_EQ(Clip("<g><rect width='2' height='2'/></g>"), "");
  EXPECT_EQ(ClipsOf("<clipPath id='c' clipPathUnits='objectBoundingBox'><polygon points='0 0 2 0 "
                    "2 2'/></clipPath><circle r='9' clip-path='url(#c)'/>"),
            " | M 0,0 L 2,0 L 2,2 Z");
  // The outline of a use is taken where its target lies.
  EXPECT_EQ(ClipsOf("<defs><polygon id='t' points='0 0 2 0 2 2'/></defs><clipPath id='c'>"
                    "<use x='7' xlink:href='#t'/></clipPath><circle r='9' clip-path='url(#c)'/>"),
            " | M 0,0 L 2,0 L 2,2 Z");
}

TEST(ClipPath, LoopsEnd) {
  TDrawing D(
      "<clipPath id='c' clip-path='url(#c)'><use xlink:href='#u'/></clipPath>"
      "<clipPath id='d'><use id='u' xlink:href='#v'/><use id='v' xlink:href='#u'/></clipPath>"
      "<rect width='9' height='9' clip-path='url(#c)'/><rect width='9' height='9' "
      "clip-path='url(#d)'/>");
  EXPECT_THAT(D.Draw(), SizeIs(2));
}

TEST(ClipPath, TheAccessorAppliesItsTransformationTwice) {
  TDrawing D("<clipPath id='c' transform='scale(2)'><rect width='1' height='1'/></clipPath>");
  TRecordingCanvas Canvas;
  EXPECT_EQ(D.Get(u"c").GetClipPath(Canvas)->GetBounds(), QXRect(0, 0, 4, 4));
}

}  // namespace
}  // namespace qxsvg::test
