// The document's birth and death, its settings, and what it answers about languages and features.
#include "document/Document.h"

#include "document/ElementLock.h"
#include "document/Style.h"
#include "document/TreeWalk.h"
#include "foundation/Lookups.h"
#include "foundation/Parsers.h"
#include "graphics/Repeats.h"
#include "graphics/SVGFont.h"
#include "runtime/Languages.h"
#include "runtime/Numbers.h"

namespace qxsvg {

namespace {

constexpr std::int32_t MinimumDPI = 10;

}  // namespace

TSVGDocument::TSVGDocument(TSVGDocument* Outer)
    : TSVGCustomViewBox(Outer),
      FOptions(DefaultSVGOptions),
      FDefaultAspectRatio(TSVGAlign::saXMidYMid, false, false),
      FUnitFactors(CalcUnitFactors()),
      FFormatStr(DefaultSVGFormatStr) {
  FAllItems.OnValueNotify =
      TSVGElementTable::ValueNotifyMethod::Bind<&TSVGDocument::AllItemsNotify>(this);
  FStyles.OnValueNotify = TSVGStyleTable::ValueNotifyMethod::Bind<&TSVGDocument::StyleNotify>(this);
  CopyRenderingDefaults();
  const auto Notice = TNotifyMethod::Bind<&TSVGDocument::ObjectPropChange>(this);
  FDefaultAspectRatio.OnChange = Notice;
  SetHeight(100);
  SetWidth(100);
  ViewBox().SetRect(QXRect(0, 0, 100, 100));
  for (const String& Tag : PreferredUILanguages()) FPrefLanguages.Add(Tag);
  FPrefLanguages.SetOnChange(Notice);
}

TSVGDocument::~TSVGDocument() {
  // Before the bases go: what dies now still finds the tables, and no event leaves any more.
  Depart(true);
  DestroyStyles();
  // What was taken out of the tree lives on with whoever took it.
  FAllItems.ForEach([](const auto& Entry) { Entry.FValue->FOwner = nullptr; });
  for (TSVGElement* Stray : FStrays) Stray->FOwner = nullptr;
}

TSVGRepeats& TSVGDocument::Repeats() {
  if (Document()) return Document()->Repeats();
  if (!FRepeats) FRepeats = std::make_unique<TSVGRepeats>();
  return *FRepeats;
}

void TSVGDocument::DropRepeats(TSVGElement& Element) {
  const TSVGDocument* Root = Element.Document() ? Element.Document() : Element.AsDocument();
  while (Root && Root->Document()) Root = Root->Document();
  if (Root && Root->FRepeats) Root->FRepeats->Drop();
}

void TSVGDocument::CopyRenderingDefaults() {
  InitRendering(FDefaultColorInterpolation);
  InitRendering(FDefaultColorRendering);
  InitRendering(FDefaultShapeRendering);
  InitRendering(FDefaultTextRendering);
}

void TSVGDocument::Clear() {
  const TElementLock Lock(*this);
  TSVGCustomViewBox::Clear();
  FAllItems.ForEach([this](const auto& Entry) { FStrays.insert(Entry.FValue); });
  FAllItems.Clear();
  // The table's own lock keeps it silent about this.
  FAllItemsModified = true;
  DestroyStyles();
  CopyRenderingDefaults();
}

void TSVGDocument::DestroyStyles() {
  const std::vector<TSVGStyle*> Styles = FStyles.Elements();
  // The table's own lock keeps this silent, so each style is destroyed once and nobody is told.
  FStyles.Clear();
  const TTreeWalk Walk(*this);
  for (TSVGStyle* Style : Styles) Walk.Bury(std::unique_ptr<TSVGStyle>(Style));
  FStyleCopies = 0;
}

// --- Settings

TSVGOptions TSVGDocument::GetOptions() const {
  return Document() ? Document()->GetOptions() : FOptions;
}

void TSVGDocument::SetOptions(const TSVGOptions& Value) {
  if (Value == GetOptions()) return;
  FOptions = Value;
  Reset();
  Change(this);
}

void TSVGDocument::SetDPI(std::int32_t Value) {
  if (Value == FDPI) return;
  FDPI = std::max(Value, MinimumDPI);
  FUnitFactors = CalcUnitFactors();
  DropRepeats(*this);
}

void TSVGDocument::SetFormatStr(StringView Value) {
  if (Value == FFormatStr) return;
  FormatFloat(Value, 123.45);
  FFormatStr = Value;
}

template <class Rendering>
void TSVGDocument::SetDefault(Rendering& Held, Rendering Value) {
  if (Value == Held) return;
  Held = Value;
  InitRendering(Value);
  Change(this);
}

void TSVGDocument::SetDefaultColorInterpolation(TSVGColorInterpolation Value) {
  SetDefault(FDefaultColorInterpolation, Value);
}

void TSVGDocument::SetDefaultColorRendering(TSVGColorRendering Value) {
  SetDefault(FDefaultColorRendering, Value);
}

void TSVGDocument::SetDefaultShapeRendering(TSVGShapeRendering Value) {
  SetDefault(FDefaultShapeRendering, Value);
}

void TSVGDocument::SetDefaultTextRendering(TSVGTextRendering Value) {
  SetDefault(FDefaultTextRendering, Value);
}

void TSVGDocument::SetDefaultAspectRatio(const TSVGPreserveAspectRatio* Value) {
  FDefaultAspectRatio.Assign(Value);
}

String TSVGDocument::PreferredLanguage() const {
  return FPrefLanguages.CommaText();
}

void TSVGDocument::SetPreferredLanguage(StringView Value) {
  FPrefLanguages.SetCommaText(Value);
}

void TSVGDocument::SetIgnoreTransformMatrix(StringView) {}

TSVGUnitFactors TSVGDocument::CalcUnitFactors() const {
  TSVGUnitFactors Factors;
  Factors.fill(1);
  const double Inch = FDPI;
  const auto Set = [&Factors](TSVGUnit Unit, double Pixels) {
    Factors[static_cast<std::size_t>(Unit)] = static_cast<float>(Pixels);
  };
  Set(TSVGUnit::suPoints, Inch / 72);
  Set(TSVGUnit::suPicas, Inch / 72 * 12);
  Set(TSVGUnit::suMillimeters, Inch / 25.4);
  Set(TSVGUnit::suCentimeters, Inch / 2.54);
  Set(TSVGUnit::suInches, Inch);
  return Factors;
}

TSVGUnitFactors TSVGDocument::GetUnitFactors() {
  TSVGUnitFactors Factors = FUnitFactors;
  const double Size = GetFont().Size();
  auto& Em = Factors[static_cast<std::size_t>(TSVGUnit::suFontSize)];
  auto& Ex = Factors[static_cast<std::size_t>(TSVGUnit::suFontXHeight)];
  Em = static_cast<float>(Em * Size);
  Ex = static_cast<float>(Ex * Size * 0.5);
  return Factors;
}

// --- Conditional processing

bool TSVGDocument::SupportsFeature(StringView Feature) const {
  return GetSVGFeatureSupport(Feature);
}

bool TSVGDocument::SupportsLanguage(StringView Language) const {
  const std::vector<StringView> Parts = SplitClean(Language, u", ");
  const auto Accepts = [&Parts](StringView Candidate) {
    for (const StringView Part : Parts)
      if (StartsText(Part, Candidate)) return true;
    return false;
  };
  if (GetOptions().Has(TSVGOption::soUseLocaleForLanguage)) {
    for (const String& Candidate : PreferredUILanguages())
      if (Accepts(Candidate)) return true;
    return false;
  }
  for (std::int32_t I = 0; I < FPrefLanguages.Count(); ++I)
    if (Accepts(FPrefLanguages[I])) return true;
  return false;
}

}  // namespace qxsvg
