// The walk that draws: order, matrices, events, pens, disabled elements, and what a redraw keeps.
#include <tuple>

#include "graphics/surface/CoverageCache.h"
#include "runtime/Exceptions.h"
#include "runtime/Services.h"
#include "tests/shapes/Drawing.h"
#include "tests/support/Golden.h"

namespace qxsvg {
namespace {

using namespace test;

constexpr TRectF Area{0, 0, 100, 100};

TEST(Draw, AsksTheCanvasFor) {
  const std::pair<const char*, Lines> Cases[] = {
      // Transformations go from the child upwards.
      {"<g transform='translate(10,0)'><g transform='scale(2)'><path d='M1 1L2 3' fill='none' "
       "stroke='#000' transform='translate(0,5)'/></g></g>",
       {"draw #FF000000 1 width 2: M 12,12 L 14,16"}},
      // The root of the area counts where a scale is uneven.
      {"<path transform='scale(4,9)' d='M0 0H9' stroke='#000' fill='none'/>",
       {"draw #FF000000 1 width 6: M 0,0 L 36,0"}},
      // Fills come before strokes, parents before children; opacities multiply.
      {"<path d='M0 0H1V1' stroke='#f00'/><g fill='#0f0' opacity='.5'>"
       "<path d='M0 0H2V2' fill-opacity='.5'/></g>",
       {"fill #FF000000 1: M 0,0 L 1,0 L 1,1", "draw #FFFF0000 1 width 1: M 0,0 L 1,0 L 1,1",
        "fill #FF00FF00 0.25: M 0,0 L 2,0 L 2,2"}},
      {"<path fill-rule='evenodd' d='M0 0H1V1'/><g fill-rule='evenodd'><path d='M0 0H1V1'/></g>",
       {"fill #FF000000 1 evenodd: M 0,0 L 1,0 L 1,1",
        "fill #FF000000 1 evenodd: M 0,0 L 1,0 L 1,1"}},
      {"<linearGradient id='l'><stop offset='0' stop-color='#f00'/><stop offset='1' "
       "stop-color='#00f'/></linearGradient><path d='M0 0H1V1' fill='url(#l)' stroke='url(#l)'/>",
       {"fill linear(0#FFFF0000 1#FF0000FF) 1: M 0,0 L 1,0 L 1,1",
        "draw linear(0#FFFF0000 1#FF0000FF) 1 width 1: M 0,0 L 1,0 L 1,1"}},
  };
  for (const auto& [Body, Asked] : Cases) EXPECT_EQ(TDrawing(Body).DrawInFull(), Asked) << Body;
}

TEST(Draw, StrokesFollowTheMatrix) {
  const std::pair<const char*, const char*> Cases[] = {
      {"stroke-width='2'", "width 6"},
      {"stroke-width='2' vector-effect='non-scaling-stroke'", "width 2"},
      {"stroke-width='0'", "width hair"},
      {"stroke-width='2' stroke-dasharray='4 2'", "width 6 dash 2 1 from 0"},
      {"stroke-width='2' stroke-dasharray='4 2' stroke-dashoffset='1'",
       "width 6 dash 2 1 from 0.5"},
      {"stroke-width='2' stroke-dasharray='5,0'", "width 6"},
      {"stroke-width='1' stroke-dasharray='4'", "width 3 dash 4 4 from 0"},
      // Widths that do not scale leave the dashes as the numbers that were written.
      {"stroke-width='2' stroke-dasharray='4 2' vector-effect='non-scaling-stroke'",
       "width 2 dash 4 2 from 0"},
      // A share of the view box's normalized diagonal.
      {"stroke-width='10%'", "width 30"},
  };
  for (const auto& [Attributes, Pen] : Cases) {
    TDrawing D("<g transform='scale(3)'><path d='M0 0H9' stroke='#000' fill='none' " +
               std::string(Attributes) + "/></g>");
    EXPECT_EQ(D.DrawInFull(), Lines{std::string("draw #FF000000 1 ") + Pen + ": M 0,0 L 27,0"})
        << Attributes;
  }
}

TEST(Draw, ADashWithoutLengthShortensTheListFromItsEnd) {
  TDrawing D("<path id='p' d='M0 0H9' stroke='#000' fill='none' stroke-width='2'/>");
  D.Get(u"p").Pen().SetCustomDash(std::vector<float>{8, 0, 6}, 0);
  EXPECT_EQ(D.DrawInFull(), (Lines{"draw #FF000000 1 width 2 dash 4 0 from 0: M 0,0 L 9,0"}));
}

TEST(Draw, RenderingPropertiesBecomeQualities) {
  const std::tuple<const char*, int, int, int> Cases[] = {
      // What is automatic is as the document has it, whose shapes start out precise.
      {"", 3, 5, 0},
      {"color-rendering='optimizeSpeed' shape-rendering='optimizeSpeed' "
       "text-rendering='optimizeSpeed'",
       1, 1, 2},
      {"color-rendering='optimizeQuality' shape-rendering='crispEdges' "
       "text-rendering='optimizeLegibility'",
       2, 2, 4},
      {"color-interpolation='linearRGB' shape-rendering='geometricPrecision' "
       "text-rendering='geometricPrecision'",
       4, 5, 3},
      {"color-rendering='auto' color-interpolation='auto' shape-rendering='auto'", 3, 5, 0},
  };
  for (const auto& [Attributes, Compositing, Smoothing, TextHint] : Cases) {
    TDrawing D("<g " + std::string(Attributes) + "><path d='M0 0H1V1z'/></g>");
    std::vector<std::tuple<int, int, int>> Seen;
    D.Document.OnDrawing = [&](TPersistent* Sender, const TMatrix&, TQXGPCanvas& Canvas,
                               const TRectF&, bool&) {
      if (Sender == &D.Document) return;
      const TQXCanvasQuality& Q = Canvas.Quality();
      Seen.emplace_back(int(Q.Compositing), int(Q.Smoothing), int(Q.TextHint));
    };
    D.Draw();
    EXPECT_EQ(Seen, std::vector(2, std::tuple(Compositing, Smoothing, TextHint))) << Attributes;
  }
}

// --- Events

// What a drawing asks and tells its host, a word each.
struct TEvents {
  explicit TEvents(TSVGDocument& Document) {
    const auto Note = [this](const char* What, TPersistent* Sender) {
      Text += std::string(What) + ToUtf8(static_cast<TSVGElement*>(Sender)->ID()) + " ";
    };
    Document.OnShouldDraw = [=, this](TPersistent* Sender, bool& DoDraw) {
      Note("?", Sender);
      if (static_cast<TSVGElement*>(Sender)->ID() == Hidden) DoDraw = false;
    };
    Document.OnDrawing = [=, this](TPersistent* Sender, const TMatrix&, TQXGPCanvas&, const TRectF&,
                                   bool& DoDraw) {
      Note("<", Sender);
      if (static_cast<TSVGElement*>(Sender)->ID() == Unpainted) DoDraw = false;
    };
    Document.OnDrawn = [=](TPersistent* Sender, const TMatrix&, TQXGPCanvas&, const TRectF&) {
      Note(">", Sender);
    };
  }
  String Hidden, Unpainted;
  std::string Text;
};

TEST(DrawEvents, ARefusalStopsThePaintButNotTheChildren) {
  TDrawing D(
      "<g id='g'><rect id='r' width='1' height='1'/></g><rect id='s' width='2' height='1'/>");
  D.Document.SetID(u"d");
  TEvents Events(D.Document);
  Events.Unpainted = u"s";
  EXPECT_EQ(D.Draw(), (Lines{"fill M 0,0 L 1,0 L 1,1 L 0,1 Z"}));
  EXPECT_THAT(std::exchange(Events.Text, {}), HasSubstr("<g ?r <r >r >g ?s <s >s "));
  Events.Unpainted = u"g";
  EXPECT_THAT(D.Draw(), SizeIs(2));
  EXPECT_THAT(std::exchange(Events.Text, {}), HasSubstr("<g ?r <r >r >g"));
  Events.Hidden = u"g";
  EXPECT_THAT(D.Draw(), SizeIs(1));
  EXPECT_THAT(Events.Text, AllOf(Not(HasSubstr("r")), Not(HasSubstr("<g"))));
}

TEST(DrawEvents, AHandlerSeesTheElementsPaints) {
  TDrawing D(
      "<g fill='#f00' stroke='#0f0' stroke-width='3' font-size='7'><rect width='1' "
      "height='1'/></g>",
      "viewBox='0 0 100 100' fill='#00f' stroke='#000' stroke-width='5' font-size='9'");
  Lines Seen;
  D.Document.OnDrawing = [&](TPersistent*, const TMatrix&, TQXGPCanvas& Canvas, const TRectF&,
                             bool&) {
    Seen.push_back(ToUtf8(CanvasColorToString(Canvas.Brush().Color())) + " " +
                   test::Brief(Canvas.Pen().Thickness()) + " " + test::Brief(Canvas.Font().Size()));
  };
  D.Draw();
  EXPECT_EQ(Seen, (Lines{"#FF0000FF 5 9", "#FFFF0000 3 7", "#FFFF0000 3 7"}));
}

TEST(DrawEvents, DisabledElementsAreGrey) {
  TDrawing D(
      "<linearGradient id='l'><stop offset='0' stop-color='#f00'/></linearGradient>"
      "<g id='g'><rect width='1' height='1' fill='#f00' stroke='url(#l)'/></g>");
  D.Get(u"g").SetEnabled(false);
  const Lines Grey = D.DrawInFull();
  ASSERT_EQ(Grey.size(), 2u);
  EXPECT_TRUE(Grey[0].starts_with("fill #FF4C4C4C 1: ")) << Grey[0];
  EXPECT_TRUE(Grey[1].starts_with("draw linear(0#FF4C4C4C) 1 ")) << Grey[1];
  D.Document.OnDisableAppearance = [](TPersistent*, TMatrix&, TQXGPCanvas&, TRectF&,
                                      bool& DoDefault) { DoDefault = false; };
  EXPECT_TRUE(D.DrawInFull()[0].starts_with("fill #FFFF0000 1: "));
  // What the handler makes of the matrix holds for the clip and the handlers after it.
  D.Document.OnDisableAppearance = [](TPersistent*, TMatrix& Matrix, TQXGPCanvas&, TRectF&, bool&) {
    Matrix = CreateTranslateQXMatrix(7, 0);
  };
  float Moved = 0;
  D.Document.OnDrawing = [&](TPersistent*, const TMatrix& Matrix, TQXGPCanvas&, const TRectF&,
                             bool&) { Moved = Matrix.m31; };
  D.Draw();
  EXPECT_EQ(Moved, 7);
  D.Document.OnDrawing = nullptr;
  // The element's own paints are as they were.
  D.Document.OnDisableAppearance = nullptr;
  D.Get(u"g").SetEnabled(true);
  EXPECT_TRUE(D.DrawInFull()[1].starts_with("draw linear(0#FFFF0000) 1 "));
}

// --- Parts of a tree

struct TPartsOfATree : testing::Test {
  TDrawing D{
      "<g transform='translate(10,0)'><rect id='a' width='1' height='1'/>"
      "<rect id='b' width='2' height='1'/></g><rect id='c' width='3' height='1'/>"};
  TRecordingCanvas Canvas;
  TSVGElement& Element(StringView ID) { return *D.Document.FindElement(ID); }
  // The right edges of what was painted.
  std::string Painted() {
    std::string Text;
    for (const std::string& Line : Canvas.Take()) {
      const std::size_t At = Line.find(" L ") + 3;
      Text += Line.substr(At, Line.find(',', At) - At) + " ";
    }
    return Text;
  }
  bool DrawBefore(StringView ID, bool Include) {
    try {
      D.Document.DrawBeforeElement(Element(ID), Canvas, Area, Include);
      return false;
    } catch (const EAbort&) {
      return true;
    }
  }
};

TEST_F(TPartsOfATree, OneElementInItsPlace) {
  // Of a viewport the view counts, not the transformation that it has of its own.
  D.Document.SetMatrix(CreateTranslateQXMatrix(100, 0));
  D.Document.DrawElement(D.Get(u"b"), Canvas, Area);
  EXPECT_EQ(Painted(), "12 ");
  D.Document.SetMatrix(QXIdentityMatrix);
  D.Get(u"b").SetVisible(false);
  D.Document.DrawElement(D.Get(u"b"), Canvas, Area);
  EXPECT_EQ(Painted(), "");
}

TEST_F(TPartsOfATree, UpToAnElement) {
  EXPECT_TRUE(DrawBefore(u"b", false));
  EXPECT_EQ(Painted(), "11 ");
  EXPECT_TRUE(DrawBefore(u"b", true));
  EXPECT_EQ(Painted(), "11 12 ");
  EXPECT_FALSE(D.Document.OnDrawing || D.Document.OnShouldDraw);
  D.Document.DrawBeforeElement(D.Document, Canvas, Area, false);
  EXPECT_EQ(Painted(), "");
  // One that is hidden ends the drawing as well.
  D.Get(u"b").SetVisible(false);
  EXPECT_TRUE(DrawBefore(u"b", true));
  EXPECT_EQ(Painted(), "11 ");
}

TEST_F(TPartsOfATree, FromAnElementOn) {
  D.Document.DrawAfterElement(Element(u"b"), Canvas, Area, false);
  EXPECT_EQ(Painted(), "3 ");
  D.Document.DrawAfterElement(Element(u"b"), Canvas, Area, true);
  EXPECT_EQ(Painted(), "12 3 ");
}

// --- Clips

TEST(DrawClips, GoThroughTheElementsMatrixAndHoldForChildren) {
  TDrawing D(
      "<clipPath id='c'><path clip-rule='evenodd' d='M0 0H10V10H0z'/><rect x='20' width='1' "
      "height='1'/></clipPath>"
      "<g clip-path='url(#c)' transform='translate(5,0)'><path d='M0 0H9V9z'/></g>");
  const std::string Text = D.DrawWithStates();
  const auto Clip = Text.find(
      "clip region | M 5,0 L 15,0 L 15,10 L 5,10 Z evenodd | M 25,0 L 26,0 L 26,1 L 25,1 Z\n");
  const auto Fill = Text.find("fill #FF000000 1: M 5,0");
  EXPECT_TRUE(Clip < Fill && Fill < Text.find("restore", Clip)) << Text;
}

TEST(DrawClips, AnEmptyClipOrTheOptionOffDoesNotClip) {
  for (const char* Clip : {"", "<rect width='0' height='5'/>", "<path d='M0 0L9 9'/>",
                           "<rect display='none' width='5' height='5'/>", "off"}) {
    const bool IsOff = Clip == std::string("off");
    TDrawing D("<clipPath id='c'>" + std::string(IsOff ? "<rect width='5' height='5'/>" : Clip) +
               "</clipPath><rect clip-path='url(#c)' width='9' height='9'/>");
    if (IsOff) D.Exclude(TSVGOption::soApplyClipping);
    EXPECT_THAT(D.DrawWithStates(), AllOf(Not(HasSubstr("clip region")), HasSubstr("fill")))
        << Clip;
  }
}

// --- What a redraw keeps

struct TRedraw : testing::Test {
  TDrawing D{
      "<g id='g'><path id='p' d='M10 10C90 0 90 90 10 90z' fill='#f00' stroke='#00f' "
      "stroke-width='5' stroke-linejoin='miter' fill-rule='nonzero'/></g><circle cx='50' cy='50' "
      "r='30' fill='#080' opacity='.5'/>"};
  TQXGPBitmap First{100, 100}, Next{100, 100};

  void Draw(TQXGPBitmap& Target, const TRectF& Rect = Area) {
    Target.Clear(0xffffffff);
    D.Document.Draw(Target.GetCanvas(), Rect);
  }
  static std::size_t Kept() { return QXSharedCoverageBudget().Used(); }
  void SetUp() override {
    if (!Services().Canvas.IsSupplied()) GTEST_SKIP() << "no surface";
  }
};

TEST_F(TRedraw, KeepsCoverageAndGivesItBackByReset) {
  const std::size_t Before = Kept();
  Draw(First);
  EXPECT_EQ(Kept(), Before) << "what is drawn once keeps nothing";
  for (int I = 0; I < 4; ++I) {
    Draw(Next);
    EXPECT_TRUE(Compare(First, Next).IsNone()) << "drawing " << I;
    EXPECT_GT(Kept(), Before) << "the second drawing keeps what the third replays";
  }
  D.Document.Reset();
  EXPECT_EQ(Kept(), Before);
}

TEST_F(TRedraw, SeesEveryChange) {
  const std::size_t Before = Kept();
  const std::pair<const char*, std::function<void()>> Changes[] = {
      {"geometry", [&] { D.Get<TSVGPath>(u"p").Data().SetPathString(u"M0 0H50V50z"); }},
      {"pen", [&] { D.Get(u"p").Pen().SetThickness(15); }},
      {"join", [&] { D.Get(u"p").Pen().SetJoin(TQXGPStrokeJoin::sjRound); }},
      {"matrix", [&] { D.Get(u"g").SetMatrix(CreateScaleQXMatrix(0.5f, 0.5f)); }},
      {"rule", [&] { D.Get<TSVGPath>(u"p").Data().SetPathString(u"M0 0H90V90H0zM9 9H50V50H9z"); }},
      {"rule set", [&] { D.Get(u"p").SetFillRule(TSVGFillRule::frEvenOdd); }},
      {"rendering", [&] { D.Get(u"p").SetShapeRendering(TSVGShapeRendering::srnOptimizeSpeed); }},
  };
  for (const auto& [What, Change] : Changes) {
    for (int I = 0; I < 4; ++I) Draw(First);
    Change();
    Draw(Next);
    EXPECT_FALSE(Compare(First, Next).IsNone()) << What;
    // A tree that keeps nothing draws the same.
    D.Document.Reset();
    Draw(First);
    EXPECT_TRUE(Compare(First, Next).IsNone()) << What;
    for (int I = 0; I < 4; ++I) Draw(Next);
    EXPECT_TRUE(Compare(First, Next).IsNone()) << What;
  }
  D.Document.LoadFromText(test::Wrapped("", ""));
  EXPECT_EQ(Kept(), Before);
}

// Small shapes below uses are drawn by stamps.
TEST_F(TRedraw, WhatReferencesShowLooksTheSameHoweverOftenItWasDrawn) {
  const std::size_t Before = Kept();
  TDrawing Uses(
      "<defs><circle id='c' cx='6' cy='6' r='5' stroke='#00f'/>"
      "<path id='q' d='M1 1h9L3 8z' fill='#080'/></defs><g fill='#f00'>"
      "<use xlink:href='#c' x='10.3' y='5.2'/><use xlink:href='#c' x='50.3' y='5.2'/>"
      "<use xlink:href='#c' x='-4.6' y='33.3'/><use xlink:href='#c' x='45.7' y='-3.1'/>"
      "<use xlink:href='#c' y='60' transform='rotate(9) scale(1.5)'/>"
      "<use xlink:href='#q' x='3.3' y='5.2'/><use xlink:href='#q' transform='scale(9)'/>"
      "<use xlink:href='#q' x='50' y='50' transform='scale(.9)'/></g>");
  const auto Show = [&](TQXGPBitmap& Target) {
    Target.Clear(0xffffffff);
    Uses.Document.Draw(Target.GetCanvas(), Area);
  };
  const std::pair<const char*, std::function<void()>> Changes[] = {
      {"none", [] {}},
      {"geometry", [&] { Uses.Get<TSVGCircle>(u"c").SetWidth(3); }},
      {"outline", [&] { Uses.Get<TSVGPath>(u"q").Data().SetPathString(u"M0 9h9V4z"); }},
      {"pen", [&] { Uses.Get(u"c").Pen().SetThickness(2.5f); }},
      {"rendering",
       [&] { Uses.Get(u"q").SetShapeRendering(TSVGShapeRendering::srnOptimizeSpeed); }},
  };
  for (const auto& [What, Change] : Changes) {
    for (int I = 0; I < 3; ++I) Show(First);
    EXPECT_GT(Kept(), Before);
    Change();
    Show(Next);
    Uses.Document.Reset();
    EXPECT_EQ(Kept(), Before);
    Show(First);
    EXPECT_TRUE(Compare(First, Next).IsNone()) << What;
    // The edge cuts stamps off.
    TQXGPBitmap Part(55, 100);
    Show(Part);
    for (int Y = 0; Y < 100; ++Y) {
      const std::uint32_t* const Row = First.GetPixels().Row(Y);
      EXPECT_TRUE(std::equal(Row, Row + 55, Part.GetPixels().Row(Y))) << What << " " << Y;
      EXPECT_TRUE(Y < 9 || Y >= 20 || std::equal(Row + 15, Row + 24, Row + 55))
          << "whole pixels apart, " << What << " " << Y;
    }
  }
}

// Styles, clips, gradients and loops, each shown in several places through references.
constexpr const char* Shown =
    "<clipPath id='clip'><rect width='3' height='30'/></clipPath>"
    "<linearGradient id='l'><stop stop-color='#0f0'/><stop offset='1'/></linearGradient>"
    "<defs><g id='a'><rect id='r' width='6' height='6' rx='1'/>"
    "<path id='p' d='M1 1l5 2-3 4z' stroke='#00f' stroke-dasharray='1 .5'/></g>"
    "<g id='b'><use xlink:href='#a' id='u' x='.3'/><use xlink:href='#a' x='10.6' opacity='.5'/>"
    "<use xlink:href='#a' transform='translate(3.1,9) rotate(20)' fill='#f80'/></g>"
    "<g id='e'><rect width='1em' height='9'/></g>"
    "<g id='i'><rect width='9' height='9' clip-path='inherit' fill='url(#l)'/></g>"
    "<g id='t'><path d='M0 0h5v4z'/><use xlink:href='#x' visibility='hidden'/></g></defs>"
    "<g id='g' fill='#f00'><use xlink:href='#b' id='o'/><use xlink:href='#b' x='30.2'/>"
    "<use xlink:href='#b' x='60.7' fill='#08f'/><use xlink:href='#b' y='25' display='none'/>"
    "<use xlink:href='#a' y='30' visibility='hidden'/><use xlink:href='#a' y='30' x='9'/></g>"
    "<g font-size='5'><use xlink:href='#e' y='40'/></g><use xlink:href='#e' y='40' x='20'/>"
    "<use xlink:href='#e' y='40' x='40'/><use xlink:href='#e' font-size='5' y='40' x='60'/>"
    "<use xlink:href='#i' y='55'/><use xlink:href='#i' y='55' x='20' clip-path='url(#clip)'/>"
    "<use xlink:href='#i' y='55' x='40'/><use xlink:href='#t' y='70'/>"
    "<use xlink:href='#t' y='70' x='10'/><g id='x' transform='translate(20,70)'>"
    "<rect width='4' height='9' visibility='visible'/><use xlink:href='#t' x='5'/></g>";

// From the third time on they are played from a recording, and by the walk where a handler listens.
TEST_F(TRedraw, WhatReferencesShowFollowsEveryChange) {
  TDrawing D(Shown);
  const auto Show = [&](TQXGPBitmap& Target) {
    Target.Clear(0xffffffff);
    D.Document.Draw(Target.GetCanvas(), {1.5f, 0.25f, 99, 98});
  };
  const auto Other = [&] {
    D.Document.OnDrawn = [](TPersistent*, const TMatrix&, TQXGPCanvas&, const TRectF&) {};
    Show(Next);
    D.Document.OnDrawn = nullptr;
  };
  TSVGGroup* Stranger = nullptr;
  const std::pair<const char*, std::function<void()>> Changes[] = {
      {"nothing", [] {}},
      {"paint of a shape", [&] { D.Get(u"p").Pen().SetColor(0xff123456); }},
      {"paint above", [&] { D.Get(u"g").Brush().SetColor(0xff00aa00); }},
      {"width", [&] { D.Document.Pen().SetThicknessIsPercent(true); }},
      {"mark", [&] { D.Get(u"p").Inherits().SetSet(Ordinal(TSVGStyleProperty::ipStroke), true); }},
      {"opacity", [&] { D.Get(u"o").SetOpacity(0.25f); }},
      {"place", [&] { D.Get(u"u").SetX(2); }},
      {"matrix", [&] { D.Get(u"a").SetMatrix(CreateScaleQXMatrix(1.5f, 1)); }},
      {"own path",
       [&] {
         D.Get(u"p").GetShape()->AddRectangle({2, 2, 9, 9});
       }},
      {"enabled", [&] { D.Get(u"b").SetEnabled(false); }},
      {"visible", [&] { D.Get(u"r").SetVisible(false); }},
      {"default",
       [&] { D.Document.SetDefaultShapeRendering(TSVGShapeRendering::srnOptimizeSpeed); }},
      {"opacity of a brush", [&] { D.Document.Brush().SetOpacity(0.5f); }},
      {"brush that is cleared", [&] { D.Document.Brush().Clear(); }},
      // While the table is silent.
      {"name",
       [&] {
         D.Document.AllItems().BeginUpdate();
         D.Get(u"u").SetID(u"u2"), D.Get(u"a").SetID(u"a2"), D.Get(u"e").SetID(u"a");
       }},
      {"parent that belongs to no document",
       [&] {
         auto Group = std::make_unique<TSVGGroup>(nullptr);
         Stranger = Group.get();
         D.Document.Items().Add(std::move(Group));
         for (const float Y : {80, 88}) {
           auto Child = std::make_unique<TSVGUse>(&D.Document);
           Child->SetReference(u"t");
           Child->SetY(Y);
           Stranger->Items().Add(std::move(Child));
         }
       }},
      {"what it alone knows",
       [&] { Stranger->SetShapeRendering(TSVGShapeRendering::srnCrispEdges); }},
      {"new child",
       [&] {
         auto Child = std::make_unique<TSVGCircle>(&D.Document);
         Child->SetBoundsRect({0, 0, 8, 5});
         D.Get(u"b").Items().Add(std::move(Child));
       }},
      {"fewer children", [&] { D.Get(u"b").Items().Remove(&D.Get(u"u2")); }},
      {"reference", [&] { D.Get<TSVGUse>(u"o").SetReference(u"t"); }},
      {"no names", [&] { D.Document.AllItems().Clear(); }},
  };
  for (const auto& [What, Change] : Changes) {
    TQXGPBitmap Before(100, 100);
    for (int I = 0; I < 4; ++I) Show(Before);
    Change();
    for (int I = 0; I < 4; ++I) {
      Show(First);
      Other();
      EXPECT_TRUE(Compare(First, Next).IsNone()) << What << " " << I;
    }
    EXPECT_EQ(Compare(First, Before).IsNone(), What == Changes[0].first) << What;
  }
}

TEST(DrawPatterns, TilesLieInUserSpace) {
  if (!Services().Canvas.IsSupplied()) GTEST_SKIP() << "no surface";
  TDrawing D(
      "<pattern id='p' patternUnits='userSpaceOnUse' x='5' y='0' width='20' height='20'>"
      "<rect width='10' height='20' fill='#f00'/></pattern>"
      "<g transform='scale(2)'><rect width='50' height='50' fill='url(#p)'/></g>");
  TQXGPBitmap Target(100, 100);
  D.Document.Draw(Target.GetCanvas(), Area);
  // Stripes of twenty pixels from 10 on, every forty.
  for (int X = 4; X < 100; X += 10)
    EXPECT_EQ(Target.GetPixels().Row(50)[X], (X + 30) % 40 < 20 ? 0xffff0000u : 0u) << X;
}

}  // namespace
}  // namespace qxsvg
