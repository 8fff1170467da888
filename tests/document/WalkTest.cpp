// Handlers of the host that change the tree, or throw, while it is built, read, written, drawn,
// asked and torn down. A memory checker sees most of what these tests are about.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "document/QXSVG.h"
#include "document/XML.h"
#include "foundation/Messages.h"
#include "graphics/SVGPen.h"
#include "graphics/surface/QXGraphics.h"
#include "runtime/Exceptions.h"
#include "runtime/UpdateLock.h"
#include "shapes/QXSVG.BasicShapes.h"
#include "tests/support/LoadedDocument.h"

namespace qxsvg {
namespace {

using test::AddNew;
using test::TLoaded;

constexpr std::string_view Drawing =
    "<svg viewBox='0 0 20 20'><g id='a'><rect id='a1' width='20' height='20'/><g id='a2'>"
    "<rect id='a3' width='5' height='5'/></g></g><g id='b'><circle id='b1' cx='5' cy='5' r='5'/>"
    "</g><use xlink:href='#a' xmlns:xlink='http://www.w3.org/1999/xlink' id='u'/></svg>";

struct Boom : std::exception {};

void RemoveFromTree(TSVGElement* Element) {
  if (Element && Element->Parent()) Element->Parent()->Items().Remove(Element);
}

using TAct = const std::function<void(TSVGElement*)>&;

// One way through the tree, with the elements that its handler hears.
struct Walk {
  const char* Name;
  void (*Run)(TSVGDocument& Doc, TAct Act);
};
void ActOn(TAct Act, TPersistent* Sender) {
  Act(static_cast<TSVGElement*>(Sender));
}

void DrawOnce(TSVGDocument& Doc) {
  Doc.Draw(TQXGPBitmap(20, 20).GetCanvas(), QXRect(0, 0, 20, 20));
}

const Walk Walks[] = {
    {"OnParsingNode",
     [](TSVGDocument& Doc, TAct Act) {
       Doc.OnParsingNode = [&](TPersistent* Sender, IXMLNode&) { ActOn(Act, Sender); };
       Doc.LoadFromText(Drawing);
     }},
    {"OnParsedNode",
     [](TSVGDocument& Doc, TAct Act) {
       Doc.OnParsedNode = [&](TPersistent*, TSVGElement* Element) { Act(Element); };
       Doc.LoadFromText(Drawing);
     }},
    {"OnSavingElement",
     [](TSVGDocument& Doc, TAct Act) {
       Doc.OnSavingElement = [&](TPersistent*, TSVGElement* Element, IXMLNode&, bool&) {
         Act(Element);
       };
       Doc.SaveToXML(*CreateXMLDocument());
     }},
    {"OnSavedElement",
     [](TSVGDocument& Doc, TAct Act) {
       Doc.OnSavedElement = [&](TPersistent*, TSVGElement* Element, IXMLNode&) { Act(Element); };
       Doc.SaveToXML(*CreateXMLDocument());
     }},
    {"OnShouldDraw",
     [](TSVGDocument& Doc, TAct Act) {
       Doc.OnShouldDraw = [&](TPersistent* Sender, bool&) { ActOn(Act, Sender); };
       DrawOnce(Doc);
     }},
    {"OnDrawing",
     [](TSVGDocument& Doc, TAct Act) {
       Doc.OnDrawing = [&](TPersistent* Sender, const TMatrix&, TQXGPCanvas&, const TRectF&,
                           bool&) { ActOn(Act, Sender); };
       DrawOnce(Doc);
     }},
    {"OnDrawn",
     [](TSVGDocument& Doc, TAct Act) {
       Doc.OnDrawn = [&](TPersistent* Sender, const TMatrix&, TQXGPCanvas&, const TRectF&) {
         ActOn(Act, Sender);
       };
       DrawOnce(Doc);
     }},
    {"OnElementFound",
     [](TSVGDocument& Doc, TAct Act) {
       Doc.OnElementFound = [&](TPersistent*, TSVGElement*& Element) {
         Act(Element);
         Element = nullptr;
       };
       Doc.ElementAtPos(TQXGPBitmap(20, 20).GetCanvas(), {3, 3}, QXRect(0, 0, 20, 20), {});
     }},
    {"OnChange",
     [](TSVGDocument& Doc, TAct Act) {
       Doc.OnChange = [&](TPersistent* Sender) { ActOn(Act, Sender); };
       if (TSVGElement* A = Doc.FindElement(u"a")) A->SetEnabled(false);
       if (TSVGElement* B = Doc.FindElement(u"b")) B->AsGraphicElement()->SetColor(1);
       if (TSVGElement* A = Doc.FindElement(u"a2")) A->AsGraphicElement()->Brush().SetOpacity(0.5f);
       if (TSVGElement* B = Doc.FindElement(u"b"))
         B->Items().Add(std::make_unique<TSVGGroup>(&Doc));
     }},
    {"OnDiagnostic",
     [](TSVGDocument& Doc, TAct Act) {
       Doc.OnDiagnostic = [&](TSVGDiagnosticKind, TSVGElement* Element, StringView) {
         Act(Element);
       };
       Doc.ReadStyles(StringView(u"g, rect, circle { fill: rgb(x) } #a1 { stroke: rgb(y) }"));
       Doc.ApplyStyles();
     }},
    {"OnRemoveElement",
     [](TSVGDocument& Doc, TAct Act) {
       Doc.OnRemoveElement = [&](TPersistent* Sender, TSVGElement*) { ActOn(Act, Sender); };
       RemoveFromTree(Doc.FindElement(u"a3"));
       RemoveFromTree(Doc.FindElement(u"b1"));
     }},
};

class HandlersThat : public testing::TestWithParam<Walk> {
 protected:
  void Run(TAct Act) { GetParam().Run(Doc, Act); }
  // Acts on the first element below the root that is heard of.
  void RunOnce(const std::function<void()>& Act) {
    bool IsFirst = true;
    Run([&](TSVGElement* Element) {
      if (Element && Element->Parent() && std::exchange(IsFirst, false)) Act();
    });
    EXPECT_FALSE(IsFirst);
  }
  // What the document still does after whatever happened.
  void CheckThatItLives() {
    Doc.OnParsingNode = nullptr;
    Doc.OnParsedNode = nullptr;
    Doc.OnSavingElement = nullptr;
    Doc.OnSavedElement = nullptr;
    Doc.OnShouldDraw = nullptr;
    Doc.OnDrawing = nullptr;
    Doc.OnDrawn = nullptr;
    Doc.OnElementFound = nullptr;
    Doc.OnChange = nullptr;
    Doc.OnDiagnostic = nullptr;
    Doc.OnRemoveElement = nullptr;
    EXPECT_FALSE(Doc.IsUpdating());
    DrawOnce(Doc);
    Doc.LoadFromText(Drawing);
    EXPECT_EQ(Doc.AllItems().Count(), 7);
    DrawOnce(Doc);
  }
  TSVGDocument Doc;

  void SetUp() override { Doc.LoadFromText(Drawing); }
};

TEST_P(HandlersThat, RemoveTheElementTheyHearOf) {
  int Removed = 0;
  Run([&](TSVGElement* Element) {
    if (!Element || !Element->Parent()) return;
    if (Element->ElementState().Has(TSVGElementStateFlag::esDestroying)) return;
    ++Removed;
    // It may be gone from here on: only a walk over the tree keeps what departs to its end.
    RemoveFromTree(Element);
  });
  EXPECT_GT(Removed, 0);
  CheckThatItLives();
}

TEST_P(HandlersThat, RemoveItsParent) {
  Run([&](TSVGElement* Element) {
    if (Element && Element->Parent() && Element->Parent()->Parent())
      RemoveFromTree(Element->Parent());
  });
  CheckThatItLives();
}

TEST_P(HandlersThat, ClearTheDocument) {
  RunOnce([&] { Doc.Clear(); });
  CheckThatItLives();
}

TEST_P(HandlersThat, LoadAnotherDocument) {
  RunOnce([&] { Doc.LoadFromText("<svg><g id='a'/><g id='new'/></svg>"); });
  EXPECT_TRUE(Doc.FindElement(u"new")) << "what departed takes no keys of the new tree with it";
  CheckThatItLives();
}

TEST_P(HandlersThat, Throw) {
  EXPECT_THROW(Run([](TSVGElement*) { throw Boom(); }), Boom);
  CheckThatItLives();
}

INSTANTIATE_TEST_SUITE_P(All, HandlersThat, testing::ValuesIn(Walks),
                         [](const auto& Info) { return std::string(Info.param.Name); });

TEST(Walks, AnEndIsNotHeldUpByHandlersThatThrow) {
  struct Thrower : TSVGGroup {
    using TSVGGroup::TSVGGroup;
    void NotifyListener(TSVGElement*) override { throw Boom(); }
  };
  TSVGDocument Doc;
  auto* Group = AddNew<TSVGGroup>(Doc, Doc);
  auto* Inner = AddNew<TSVGGroup>(*Group, Doc);
  AddNew<TSVGCircle>(*Inner, Doc);
  AddNew<TSVGCircle>(*Inner, Doc);
  auto* Listener = AddNew<Thrower>(Doc, Doc);
  Inner->ChangeNotification(Listener);
  int Calls = 0;
  Doc.OnRemoveElement = [&](TPersistent*, TSVGElement*) {
    ++Calls;
    throw Boom();
  };
  EXPECT_THROW(Doc.Items().Remove(Group), Boom);
  EXPECT_EQ(Calls, 4) << "each of them is told";
  EXPECT_EQ(Doc.AllItems().Count(), 1);
  // An extraction that fails ends its element too, which may be in the middle of a drawing.
  Doc.OnDrawing = [&](TPersistent* Sender, const TMatrix&, TQXGPCanvas&, const TRectF&, bool&) {
    if (Sender != Listener) return;
    EXPECT_THROW(Doc.Items().Extract(Listener), Boom);
  };
  Doc.OnChange = [](TPersistent*) { throw Boom(); };
  DrawOnce(Doc);
  EXPECT_EQ(Doc.AllItems().Count(), 0);
}

TEST(Walks, AHandlerMayTakeBackWhatWasAdded) {
  TSVGDocument Doc;
  std::unique_ptr<TSVGElement> Taken;
  Doc.OnChange = [&](TPersistent*) {
    if (Doc.Items().Count() > 0) Taken = Doc.Items().Extract(Doc.Items()[0]);
  };
  EXPECT_EQ(Doc.Items().Add(std::make_unique<TSVGGroup>(&Doc)), -1);
  ASSERT_TRUE(Taken);
  EXPECT_EQ(Taken->ID(), u"ID#0");
  Doc.OnChange = [&](TPersistent*) { throw Boom(); };
  EXPECT_THROW(Doc.Items().Add(std::move(Taken)), Boom);
  EXPECT_FALSE(Taken) << "an accepted child belongs to the tree";
  EXPECT_EQ(Doc.Items().Count(), 1);
}

TEST(Walks, RemovalEndsThoughAHandlerAddsAgain) {
  TSVGDocument Doc;
  auto* Group = AddNew<TSVGGroup>(Doc, Doc);
  AddNew<TSVGCircle>(*Group, Doc);
  Doc.OnRemoveElement = [&](TPersistent* Sender, TSVGElement*) {
    if (Sender == Group) AddNew<TSVGCircle>(*Group, Doc);
  };
  Group->Items().Clear();
  EXPECT_EQ(Group->Items().Count(), 1);
  Doc.Items().Remove(Group);
  Doc.OnRemoveElement = nullptr;
  EXPECT_EQ(Doc.Items().Count(), 0);
  EXPECT_EQ(Doc.AllItems().Count(), 0);
}

// An element that is held by hand outlives its document, whatever the document did meanwhile.
TEST(Walks, ElementsOutliveTheirDocument) {
  std::unique_ptr<TSVGElement> Extracted, Copy, Early, Robbed;
  {
    TLoaded Doc(Drawing);
    Early = Doc.Items().Extract(Doc.FindElement(u"b"));
    Doc.Clear();
    EXPECT_EQ(Early->Document(), &Doc);
    Doc.LoadFromText(Drawing);
    Extracted = Doc.Items().Extract(Doc.FindElement(u"a"));
    Copy = Extracted->Clone(&Doc);
    // The one that came before takes the key of its namesake along.
    Robbed = Doc.Items().Extract(Doc.FindElement(u"b"));
    Early->SetID(u"other");
    EXPECT_EQ(Doc.FindElement(u"b"), nullptr);
    EXPECT_EQ(Doc.FindElement(u"other"), Early.get());
    EXPECT_TRUE(Doc.IsStray(Robbed.get()) && !Doc.IsStray(Early.get()));
  }
  for (const auto& E :
       {std::cref(Extracted), std::cref(Copy), std::cref(Early), std::cref(Robbed)}) {
    EXPECT_EQ(E.get()->Document(), nullptr);
    for (const TSVGElement* Child : E.get()->Items()) EXPECT_EQ(Child->Document(), nullptr);
    E.get()->SetTitle(u"alive");
  }
}

// Emptying and copying tell the host on the way, who may take the element out of its tree.
TEST(Walks, WhatEndsWhileItIsEmptiedOrCopiedStaysInMemory) {
  constexpr void (*Steps[])(TSVGElement&) = {
      [](TSVGElement& E) { E.Clear(); },
      [](TSVGElement& E) { E.Assign(TSVGDocument().Clone(nullptr).get()); },
      [](TSVGElement& E) { E.Clone(E.Document()); }};
  for (const auto Step : Steps) {
    TLoaded Doc(Drawing);
    TSVGElement* A = Doc.FindElement(u"a");
    Doc.OnChange = [&](TPersistent*) { RemoveFromTree(std::exchange(A, nullptr)); };
    Step(*A);
    EXPECT_FALSE(A);
  }
}

// Each change takes several steps, and the handler removes the element at the first notice.
TEST(Walks, WhatEndsWhileItChangesStaysInMemory) {
  using TChange = void (*)(TSVGElement&);
  const std::pair<const char*, TChange> Cases[] = {
      {"<svg id='x'/>", [](TSVGElement& E) { E.AsDocument()->LoadFromText(Drawing); }},
      {"<svg id='x'/>",
       [](TSVGElement& E) { E.AsDocument()->ViewBox().SetRect(QXRect(0, 0, 1, 2)); }},
      {"<svg id='x'/>",
       [](TSVGElement& E) { E.AsDocument()->ReadStyles(StringView(u"a {} b {}")); }},
      {"<circle id='x'/>", [](TSVGElement& E) { E.AsGraphicElement()->SetWidth(5); }},
      {"<rect id='x'/>",
       [](TSVGElement& E) {
         const TSVGPen Pen(nullptr, TQXGPBrushKind::bkSolid, 0xff112233);
         E.AsGraphicElement()->SetPen(&Pen);
       }},
  };
  for (const auto& [Child, Change] : Cases) {
    TLoaded Doc("<svg>" + std::string(Child) + "</svg>");
    TSVGElement* const Element = Doc.FindElement(u"x");
    Doc.OnChange = [&](TPersistent*) {
      if (Doc.Items().Count() > 0) Doc.Items().Clear();
    };
    Change(*Element);
    EXPECT_EQ(Doc.Items().Count(), 0) << Child;
  }
}

TEST(Walks, WhatIsDrawnMayGoToAnotherDocumentAndEndThere) {
  TLoaded Doc(Drawing);
  TSVGDocument Other;
  Doc.OnDrawing = [&](TPersistent* Sender, const TMatrix&, TQXGPCanvas&, const TRectF&, bool&) {
    TSVGElement* const A = Doc.FindElement(u"a");
    if (!A || Sender != Doc.FindElement(u"a3")) return;
    Other.Items().Add(Doc.Items().Extract(A));
    Other.Clear();
  };
  DrawOnce(Doc);
  EXPECT_EQ(Doc.FindElement(u"a3"), nullptr);
}

// A document that was made for no other is the root of the walks in it, wherever it stands.
TEST(Walks, DocumentsOfNoOtherEndWithTheElementsAroundThem) {
  TSVGDocument Doc;
  for (TSVGDocument* const Owner : {static_cast<TSVGDocument*>(nullptr), &Doc}) {
    TSVGGroup Group(Owner);
    auto Made = std::make_unique<TSVGDocument>();
    Made->Items().Add(std::make_unique<TSVGGroup>(Made.get()));
    Group.Items().Add(std::move(Made));
    Group.Items().Clear();
    EXPECT_EQ(Group.Items().Count(), 0);
  }
}

TEST(Walks, ListsOfPaintServersForgetWhatWasCleared) {
  TSVGDocument Doc;
  const auto Loose = std::make_unique<TSVGMarker>(&Doc);
  EXPECT_EQ(Doc.Markers().size(), 1u);
  Doc.Clear();
  EXPECT_TRUE(Doc.Markers().empty());
}

TEST(Walks, NoElementIsItsOwnAncestor) {
  TSVGDocument Doc;
  std::unique_ptr<TSVGElement> Outer = std::make_unique<TSVGGroup>(&Doc);
  auto* Raw = Outer.get();
  auto* Inner = AddNew<TSVGGroup>(*Outer, Doc);
  EXPECT_THROW(Inner->Items().Add(std::move(Outer)), EInvalidOperation);
  ASSERT_TRUE(Outer);
  EXPECT_THROW(Raw->Items().Add(std::move(Outer)), EInvalidOperation);
  ASSERT_TRUE(Outer);
  EXPECT_EQ(Inner->Items().Count(), 0);
  EXPECT_THROW(Inner->Items().Add(std::unique_ptr<TSVGElement>()), EInvalidOperation);
}

TEST(Walks, AnElementTakesWhatIsWithinIt) {
  TLoaded Doc(Drawing);
  TSVGElement* A = Doc.FindElement(u"a");
  A->Assign(Doc.FindElement(u"a2"));
  EXPECT_EQ(A->ID(), u"a2");
  ASSERT_EQ(A->Items().Count(), 1);
  EXPECT_EQ(A->Items()[0]->ID(), u"a3");
}

TEST(Walks, AHandlerMayRefuseARule) {
  TSVGDocument Doc;
  Doc.OnAddStyle = [&](TPersistent*, TSVGStyle*) { throw Boom(); };
  EXPECT_THROW(Doc.ReadStyles(StringView(u"a { fill: red }")), Boom);
  Doc.OnAddStyle = [&](TPersistent*, TSVGStyle*) { Doc.Styles().Remove(u"b"); };
  Doc.ReadStyles(StringView(u"b { fill: red }"));
  EXPECT_EQ(Doc.Styles().Count(), 1);
  Doc.OnAddStyle = nullptr;
  Doc.ReadStyles(StringView(u"a { fill: blue }"));
  Doc.ApplyStyles();
}

TEST(Walks, AHandlerMayTakeARuleOutWhileItIsApplied) {
  TLoaded Doc(Drawing);
  Doc.ReadStyles(StringView(u"rect { fill: rgb(x); stroke: blue } g, circle { opacity: .5 }"));
  int Told = 0;
  Doc.OnDiagnostic = [&](TSVGDiagnosticKind, TSVGElement*, StringView) {
    if (Told++ > 0) return;
    Doc.Styles().Remove(u"rect");
    Doc.Styles().Remove(u"circle");
  };
  Doc.ApplyStyles();
  EXPECT_EQ(Told, 1) << "the second rectangle comes after the rule went";
  EXPECT_EQ(Doc.FindElement(u"a1")->AsGraphicElement()->GetPen().Color(), 0xff0000ffu);
  EXPECT_EQ(Doc.Styles().Count(), 1);
}

// Every element listens to one source: as many uses of one symbol do.
TEST(Walks, ManyListenersStayCheap) {
  TSVGDocument Doc;
  auto* Source = AddNew<TSVGGroup>(Doc, Doc);
  constexpr int Count = 20000;
  for (int I = 0; I < Count; ++I) Source->ChangeNotification(AddNew<TSVGGroup>(Doc, Doc));
  Doc.Items().Clear();
  EXPECT_EQ(Doc.AllItems().Count(), 0);
}

}  // namespace
}  // namespace qxsvg
