// Changes of a drawing that is looked at all the time. Two documents go through the same changes;
// one of them is drawn, asked and saved in between, and what it keeps from that must not show: in
// the end both draw the same pixels, have the same bounds and find the same elements.
#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include "FuzzInput.h"
#include "document/Document.h"
#include "document/XML.h"
#include "foundation/ElementTypes.h"
#include "graphics/SVGBrush.h"
#include "graphics/SVGFont.h"
#include "graphics/SVGPen.h"
#include "graphics/surface/Bitmap.h"
#include "graphics/surface/Canvas.h"
#include "runtime/Exceptions.h"
#include "runtime/StringList.h"
#include "shapes/QXSVG.BasicShapes.h"

namespace {

using namespace qxsvg;
using fuzz::Check;

constexpr std::string_view Drawings[] = {
    R"svg(<g id="a" fill="teal" stroke="red"><path id="b" d="M4 4H30C50 4 60 30 30 30Z"/><rect id="c"
    x="30" y="8" width="20" height="30" rx="4" class="k"/><circle id="d" cx="20" cy="44" r="9"/></g>
    <use id="e" xlink:href="#a" x="9" y="5" opacity=".5"/><use id="f" xlink:href="#a" x="20"/>
    <use id="g" xlink:href="#h" fill="navy"/><symbol id="h" viewBox="0 0 20 20"><use id="i"
    xlink:href="#d"/><line id="j" x2="20" y2="10" stroke="lime"/></symbol>)svg",
    R"svg(<defs id="a"><linearGradient id="b"><stop id="c" stop-color="red"/><stop id="d" offset="1"
    stop-color="blue"/></linearGradient><radialGradient id="e" xlink:href="#b"/><pattern id="f"
    width=".3" height=".2"><rect id="g" width="9" height="4" fill="url(#b)"/></pattern></defs><g id="h"
    fill="url(#b)" stroke-width="3"><rect id="i" width="30" height="30"/><ellipse id="j" cx="40"
    cy="40" rx="20" ry="9" stroke="url(#e)"/></g><path id="k" fill="url(#f)" d="M9 30h30v30h-30z"/>)svg",
    R"svg(<style>.k{fill:green;stroke-dasharray:4 2}#d{opacity:.5}rect{stroke:blue}</style><clipPath
    id="a"><circle id="b" cx="30" cy="30" r="25"/></clipPath><marker id="c" markerWidth="6" refX="3"
    markerHeight="6" refY="3" orient="auto"><path id="d" d="M0 0L6 3L0 6Z"/></marker><g id="e"
    clip-path="url(#a)"><rect id="f" class="k" width="40" height="40"/><polyline id="g" fill="none"
    points="5,5 30,50 60,9" stroke="black" marker-mid="url(#c)" marker-end="url(#c)"/></g><polygon
    id="h" class="k" points="40,40 60,40 50,60" marker-start="url(#c)"/>)svg",
    R"svg(<svg id="a" x="4" y="4" width="40" height="30" viewBox="0 0 10 10"><g id="b"><rect id="c"
    width="50%" height="1em"/></g><use id="d" xlink:href="#h" x="5" width="4" height="4"/></svg><switch
    id="e"><g id="f" systemLanguage="zz"><circle id="g" r="30"/></g><g id="j"><symbol id="h"
    viewBox="0 0 4 4"><circle id="i" r="3"/></symbol><use id="k" xlink:href="#h" y="30"/></g></switch>
    <image id="l" x="40" y="40" width="20" height="16" xlink:href="data:image/png;base64,iVBORw0KGgoAAA
    ANSUhEUgAAAAIAAAACCAYAAABytg0kAAAAGElEQVR42mP4z8AAQg0MDCcY/nNycjIAADmsBWCwyJp2AAAAAElFTkSuQmCC"/>
    <a id="m" transform="rotate(9)"><text id="n" x="3" y="50">text</text></a>)svg"};
constexpr StringView Names[] = {u"a", u"b", u"c", u"d", u"e", u"f", u"g",
                                u"h", u"i", u"j", u"k", u"l", u"m", u"ID#7"};
constexpr float Numbers[] = {0, 1, 9, 30, 0.5f, -3, 12.25f, 64, 1e-3f, 1e5f};
constexpr StringView Texts[] = {
    u"",       u"none",     u"red",         u"#a",          u"url(#b)", u"inherit",
    u"50%",    u"2em",      u"4 2",         u"scale(2 .5)", u"7",       u"rotate(9)",
    u"hidden", u"0 0 9 30", u"M9 9h20v30z", u"b",           u"evenodd", u"9,9 30,9 9,40"};
constexpr StringView Rules[] = {u".k{fill:red}", u"rect{stroke-width:5}", u"*{opacity:.7}",
                                u"#c{display:none}", u"g{stroke:inherit;fill-opacity:.4}"};
constexpr std::int32_t Sides[] = {64, 40, 17, 90};
constexpr TPointF Points[] = {{5, 5}, {20, 20}, {31.5f, 33}, {45, 12}, {50, 50}, {24, 44}};

// With QXSVG_FUZZ_TELL in the environment, what is done is printed: for looking into a failure.
void Tell(const char* What, StringView Which) {
  static const bool IsAsked = std::getenv("QXSVG_FUZZ_TELL") != nullptr;
  if (IsAsked) std::fprintf(stderr, "%s %s\n", What, ToUtf8(Which).c_str());
}

class TInput {
 public:
  TInput(const std::uint8_t* Data, std::size_t Size) : FAt(Data), FEnd(Data + Size) {}
  bool IsOver() const { return FAt == FEnd; }
  std::size_t Next(std::size_t Count) {
    const std::size_t Result = IsOver() || Count == 0 ? 0 : *FAt++ % Count;
    Tell("    number", FromUtf8(std::to_string(Result)));
    return Result;
  }
  template <class Table>
  const auto& Of(const Table& Items) {
    return Items[Next(std::size(Items))];
  }

 private:
  const std::uint8_t *FAt, *FEnd;
};

std::vector<TSVGElement*> AllOf(TSVGElement& Top) {
  std::vector<TSVGElement*> Result{&Top};
  for (std::size_t I = 0; I < Result.size(); ++I)
    for (TSVGElement* const Child : Result[I]->Items()) Result.push_back(Child);
  return Result;
}

// One published property, of the element or of an object that it holds.
void WriteProperty(TPersistent& Object, TInput& Input) {
  std::vector<const TProperty*> Rows;
  for (const TClass* Class = &Object.ClassType(); Class; Class = Class->Base)
    for (const TProperty& Row : Class->Properties)
      if (Row.Write) Rows.push_back(&Row);
  if (Rows.empty()) return;
  const TProperty& Row = *Input.Of(Rows);
  Tell("  property", Row.Name);
  switch (Row.Kind) {
    case TPropertyKind::Boolean:
    case TPropertyKind::Enumeration:
    case TPropertyKind::Set: return Row.Write(Object, static_cast<std::int64_t>(Input.Next(2)));
    case TPropertyKind::Integer:
      return Row.Write(Object, static_cast<std::int64_t>(0x80ff0055u >> Input.Next(9)));
    case TPropertyKind::Float: return Row.Write(Object, Input.Of(Numbers));
    case TPropertyKind::Text: return Row.Write(Object, String(Input.Of(Texts)));
    case TPropertyKind::Object: break;
  }
  auto& Held = *std::get<TPersistent*>(Row.Read(Object));
  if (auto* const List = dynamic_cast<TStrings*>(&Held))
    List->SetCommaText(Input.Of(Texts));
  else
    WriteProperty(Held, Input);
}

void Restyle(TSVGDocument& Drawing, TSVGGraphicElement& Element, TInput& Input) {
  switch (Input.Next(5)) {
    case 0: Drawing.ReadStyles(Input.Of(Rules)); break;
    case 1:
      for (const auto& [Selector, Rule] : Drawing.Styles().Pairs())
        if (Input.Next(2)) Drawing.Styles().Remove(Selector);
      break;
    case 2: Element.Classes().SetCommaText(Input.Next(2) ? u"k" : u""); break;
    case 3:
      Element.Style().SetStyle(Input.Next(2) ? u"fill:red;stroke:none;opacity:.3" : u"");
      break;
    default:
      Element.Style().SetText(Input.Of(SVGStylePropertyNames), Input.Of(Texts));
      if (Input.Next(2)) return Element.ApplyStyles();
  }
  Drawing.ApplyStyles();
}

void Move(TSVGElement& Element, TSVGElement& To) {
  if (!Element.Parent() || To.HasAncestor(&Element) || &To == &Element) return;
  TSVGElement& From = *Element.Parent();
  std::unique_ptr<TSVGElement> Held = From.Items().Extract(&Element);
  try {
    To.Items().Add(std::move(Held));
  } catch (const Exception&) {
    From.Items().Add(std::move(Held));
    throw;
  }
}

const TRectF Area = QXRect(0, 0, 64, 64);

// The pixels of a drawing.
std::vector<std::uint32_t> Draw(TSVGDocument& Drawing, std::int32_t Side) {
  TQXGPBitmap Picture(Side, Side);
  Drawing.Draw(Picture.GetCanvas(), QXRect(0, 0, Side, Side));
  const TQXConstPixels Pixels = Picture.GetPixels();
  std::vector<std::uint32_t> Result;
  for (std::int32_t Y = 0; Y < Side; ++Y)
    Result.insert(Result.end(), Pixels.Row(Y), Pixels.Row(Y) + Side);
  return Result;
}

// What Run raises, if it is one of the library's own.
template <class Action>
String FailureOf(Action Run) {
  try {
    Run();
  } catch (const Exception& E) {
    return E.Message();
  }
  return {};
}

// Whether paint servers or clip paths are about: what they made for an element is kept until that
// element itself changes or is reset.
bool HoldsPaints(TSVGDocument& Drawing) {
  using enum TSVGElementType;
  constexpr TSVGElementTypes Kinds{etLinearGradient, etRadialGradient, etPattern, etClipPath};
  const std::vector<TSVGElement*> All = AllOf(Drawing);
  return std::any_of(All.begin(), All.end(),
                     [&](TSVGElement* E) { return Kinds.Has(E->GetSVGType()); });
}

// One change. False where others may go on with what they had, as they do when an identifier or the
// marks of one above them change, of which nobody is told: then the drawing has to be reset.
bool Edit(TSVGDocument& Drawing, TInput& Input) {
  const std::vector<TSVGElement*> All = AllOf(Drawing);
  TSVGElement &Element = *Input.Of(All), &Other = *Input.Of(All);
  TSVGGraphicElement* const Graphic = Element.AsGraphicElement();
  Tell("Edit", Element.SVGTypeName() + u" " + Element.ID() + u" " + Other.ID());
  switch (Input.Next(12)) {
    default: {
      const auto Marks = [&] {
        return Graphic ? Graphic->Inherits().Value() : TSVGStyleProperties();
      };
      const TSVGStyleProperties Before = Marks();
      const String Name = Element.ID();
      WriteProperty(Element, Input);
      return Marks() == Before && Element.ID() == Name;
    }
    case 0:
      if (Graphic) Restyle(Drawing, *Graphic, Input);
      return false;
    case 1: Move(Element, Other); break;
    case 2:
      if (AllOf(Element).size() < 9) Other.Items().Add(Element.Clone(&Drawing));
      break;
    case 3:
      if (const TSVGElementClass* const Class = Input.Of(SVGClasses))
        Element.Items().Add(Class->Create(&Drawing));
      break;
    case 4:
      if (Element.Parent()) Element.Parent()->Items().Remove(&Element);
      break;
    case 5: Element.SetID(Input.Of(Names)); return false;
    case 6:
      switch (Input.Next(4)) {
        case 0: Element.SetEnabled(Input.Next(2)); break;
        case 1: Element.Clear(); break;
        case 2: Drawing.SetOptions(TSVGOptions::FromMask(Input.Next(256))); break;
        default:
          if (Graphic) Graphic->BakeTransformation(CreateTranslateQXMatrix(Input.Of(Numbers), 2));
      }
      return false;
    case 7: {
      // Changes that are held back, and one while the tree is walked.
      Element.BeginUpdate();
      WriteProperty(Element, Input);
      Element.EndUpdate();
      if (Drawing.OnDrawn) break;
      // Tiles that are there already are not drawn.
      Drawing.Reset();
      std::size_t Calls = Input.Next(8);
      Drawing.OnDrawn = [&](TPersistent*, const TMatrix&, TQXGPCanvas&, const TRectF&) {
        if (Calls-- == 0) FailureOf([&] { Edit(Drawing, Input); });
      };
      Draw(Drawing, 64);
      Drawing.OnDrawn = nullptr;
      return false;
    }
  }
  return true;
}

// What asking alone may change goes the same way in both: a viewport without size takes the box of
// what it holds when it is first asked, and an element the parts of its paints that it inherits.
void Settle(TSVGDocument& Drawing, bool IsReset) {
  const std::vector<TSVGElement*> All = AllOf(Drawing);
  for (TSVGElement* const Element : All)
    if (TSVGCustomViewBox* const View = Element->AsCustomViewBox())
      if (View->TSVGGraphicElement::GetBoundsRect().IsEmpty())
        for (TSVGLength* const Length : {&View->WidthU(), &View->HeightU()})
          Length->SetAsUnit(TSVGUnit::suNone, 20);
  if (!IsReset) return;
  for (TSVGElement* const Element : All)
    if (TSVGGraphicElement* const Graphic = Element->AsGraphicElement()) {
      Graphic->GetBrush();
      Graphic->GetPen();
      Graphic->GetFont();
    }
  Drawing.Reset();
}

// What must leave no trace.
void LookAt(TSVGDocument& Drawing, TInput& Input) {
  const std::vector<TSVGElement*> All = AllOf(Drawing);
  TSVGElement& Element = *Input.Of(All);
  TSVGGraphicElement* const Graphic = Element.AsGraphicElement();
  TQXGPBitmap Picture(64, 64);
  Tell("Look at", Element.SVGTypeName() + u" " + Element.ID());
  switch (Input.Next(8)) {
    case 0: Element.GetBoundsRect(); break;
    case 1: Element.GetBoundsRect(CreateTranslateQXMatrix(3, 4)); break;
    case 2: Drawing.ElementAtPos(Picture.GetCanvas(), Input.Of(Points), Area, {}); break;
    case 3: Element.ToString(); break;
    case 4: Element.Clone(nullptr); break;
    case 5:
      if (Graphic) Drawing.DrawElement(*Graphic, Picture.GetCanvas(), Area);
      break;
    case 6:
      if (Graphic) Graphic->GetShape();
      break;
    default:
      for (std::size_t Times = Input.Next(4); Times > 0; --Times) Draw(Drawing, Input.Of(Sides));
  }
}

void Compare(TSVGDocument& Watched, TSVGDocument& Fresh, std::int32_t Side) {
  const std::vector<std::uint32_t> Expected = Draw(Fresh, Side);
  for (int Times = 0; Times < 3; ++Times)
    Check(Draw(Watched, Side) == Expected, "both draw the same");
  Check(Draw(Fresh, Side) == Expected, "a drawing comes out as the time before");
  const std::vector<TSVGElement*> Mine = AllOf(Watched), Others = AllOf(Fresh);
  Check(Mine.size() == Others.size(), "both have the same elements");
  for (std::size_t I = 0; I < Mine.size(); ++I) {
    Check(Mine[I]->ID() == Others[I]->ID(), "both have the same identifiers");
    Check(Mine[I]->GetBoundsRect() == Others[I]->GetBoundsRect(), "both have the same bounds");
  }
  TQXGPBitmap Picture(64, 64);
  const auto Hit = [&](TSVGDocument& Drawing, TPointF At) {
    const TSVGElement* const Found = Drawing.ElementAtPos(Picture.GetCanvas(), At, Area, {});
    return Found ? Found->ID() : String();
  };
  for (const TPointF At : Points)
    Check(Hit(Watched, At) == Hit(Fresh, At), "both have the same under a point");
  const auto Saved = [](TSVGDocument& Drawing) {
    String Result;
    const String Failure = FailureOf([&] { Result = Drawing.ToString(); });
    return Result + Failure;
  };
  Check(Saved(Watched) == Saved(Fresh), "both are saved alike");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size) {
  TInput Input(Data, Size);
  const std::string Text =
      R"(<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" )"
      R"(width="64" height="64">)" +
      std::string(Input.Of(Drawings)) + "</svg>";
  TSVGDocument Watched, Fresh;
  for (TSVGDocument* const Drawing : {&Watched, &Fresh}) {
    Drawing->LoadFromText(Text);
    Settle(*Drawing, true);
  }
  for (int Edits = 0; Edits < 24 && !Input.IsOver(); ++Edits) {
    if (Input.Next(2)) FailureOf([&] { LookAt(Watched, Input); });
    TInput Again = Input;
    const bool HeldPaints = HoldsPaints(Fresh);
    bool IsSeen = false;
    const String Failure = FailureOf([&] { IsSeen = Edit(Watched, Input); });
    Check(Failure == FailureOf([&] { Edit(Fresh, Again); }), "both fail alike");
    const bool IsReset = !IsSeen || HeldPaints || HoldsPaints(Fresh);
    for (TSVGDocument* const Drawing : {&Watched, &Fresh}) Settle(*Drawing, IsReset);
  }
  Compare(Watched, Fresh, Input.Of(Sides));
  return 0;
}
