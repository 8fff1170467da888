// The font's families, weight, copies and stored tests.
#include "graphics/SVGFont.h"

#include <array>

namespace qxsvg {

namespace {

// The generic families that end the search for a name.
constexpr std::array<TSVGGenericFontFamily, 3> LastFamilies{TSVGGenericFontFamily::gffSerif,
                                                            TSVGGenericFontFamily::gffSansSerif,
                                                            TSVGGenericFontFamily::gffMonospace};

// Styles that are applied over and over to a font whose name nobody asks for must not pile up.
constexpr std::size_t MostCandidates = 64;

bool EndsSearch(StringView Family) {
  return std::any_of(LastFamilies.begin(), LastFamilies.end(), [&](TSVGGenericFontFamily Generic) {
    return SameText(Family, SVGGenericFontFamily[Ordinal(Generic)]);
  });
}

constexpr TProperty Properties[] = {
    // Before Name, which it may change.
    StringListProperty<TSVGFont, &TSVGFont::Families, &TSVGFont::Families>(u"Families"),
    Property<&TSVGFont::Name, &TSVGFont::SetName>(u"Name", StoredIf<&TSVGFont::IsNameStored>),
    Property<&TSVGFont::Size, &TSVGFont::SetSize>(u"Size", StoredIf<&TSVGFont::IsSizeStored>),
    Property<&TSVGFont::SizePreferredUnit, &TSVGFont::SetSizePreferredUnit>(
        u"SizePreferredUnit", StoredUnless<&TSVGFont::SizePreferredUnit, TSVGUnit::suNone>),
    Property<&TSVGFont::Weight, &TSVGFont::SetWeight>(u"Weight",
                                                      StoredIf<&TSVGFont::IsWeightStored>),
    Property<&TSVGFont::FontVariant, &TSVGFont::SetFontVariant>(
        u"FontVariant", StoredIf<&TSVGFont::IsFontVariantStored>),
    // Behind Weight, which turns bold on and off.
    Property<&TSVGFont::Style, &TSVGFont::SetStyle>(u"Style", StoredIf<&TSVGFont::IsStyleStored>),
    Property<&TSVGFont::ExtendStyles, &TSVGFont::SetExtendStyles>(
        u"ExtendStyles",
        [](const TPersistent& Self) {
          return !static_cast<const TSVGFont&>(Self).ExtendStyles().IsEmpty();
        }),
};

}  // namespace

constinit const TClass TSVGFont::Class{
    u"TSVGFont", &TQXGPFont::Class, Properties,
    [] { return std::unique_ptr<TPersistent>(std::make_unique<TSVGFont>()); }};

TSVGFont::TSVGFont(TQXGPCanvas* Canvas) : TQXGPFont(Canvas) {
  FFamilies.SetOnChange(TNotifyMethod::Bind<&TSVGFont::FamiliesChanged>(this));
}

void TSVGFont::Assign(const TPersistent* Source) {
  if (Source == this) return;
  if (const auto* Other = dynamic_cast<const TSVGFont*>(Source)) {
    FExtendStyles = Other->FExtendStyles;
    FFontVariant = Other->FFontVariant;
    FWeight = Other->FWeight;
    FSizePreferredUnit = Other->FSizePreferredUnit;
    FFamilies.Assign(&Other->FFamilies);
    InheritName(*Other);
  } else {
    FCandidates.reset();
    // A platform's font has no weight but this.
    if (const auto* Plain = dynamic_cast<const TQXGPFont*>(Source))
      FWeight = Plain->Style().Has(TFontStyle::fsBold) ? TSVGFontWeight::fwBold
                                                       : TSVGFontWeight::fwNormal;
  }
  TQXGPFont::Assign(Source);
}

std::unique_ptr<TQXGPGraphicsObject> TSVGFont::Clone() const {
  auto Result = std::make_unique<TSVGFont>();
  Result->Assign(this);
  return Result;
}

// --- Name

void TSVGFont::FamiliesChanged(TPersistent*) {
  if (FFamilies.IsEmpty()) return;
  if (FCandidates && FCandidates->size() > MostCandidates) ResolveName();
  if (!FCandidates) FCandidates = std::make_unique<std::vector<String>>();
  // What an earlier list offers stays behind it: it stands where this one has no available family.
  for (const String& Family : FFamilies) {
    FCandidates->push_back(Family);
    if (EndsSearch(Family)) break;
  }
  Update();
}

void TSVGFont::ResolveName() const {
  if (!FCandidates) return;
  // The name is settled where it is first seen; to those who look it was so before.
  auto& Self = const_cast<TSVGFont&>(*this);
  const auto Candidates = std::move(Self.FCandidates);
  for (auto Family = Candidates->rbegin(); Family != Candidates->rend(); ++Family)
    if (IsFontFamilyAvailable(*Family)) return Self.SetNameQuietly(*Family);
}

void TSVGFont::SetNameQuietly(StringView Value) {
  const TQXSilence Silence(*this);
  TQXGPFont::SetName(Value);
}

void TSVGFont::SetName(StringView Value) {
  FCandidates.reset();
  TQXGPFont::SetName(Value);
}

void TSVGFont::InheritName(const TSVGFont& Parent) {
  FCandidates =
      Parent.FCandidates ? std::make_unique<std::vector<String>>(*Parent.FCandidates) : nullptr;
  TQXGPFont::SetName(Parent.TQXGPFont::Name());
}

void TSVGFont::Clear() {
  FExtendStyles = {};
  SetStyle({});
  SetSize(DefaultSize);
  FFontVariant = TSVGFontVariant::fvNormal;
  FSizePreferredUnit = TSVGUnit::suNone;
  const TQXSilence Silence(FFamilies);
  FFamilies.Clear();
}

String TSVGFont::FamiliesToString() const {
  String Result;
  for (const String& Family : FFamilies) {
    if (!Result.empty()) Result += u", ";
    const bool NeedsQuotes = Family.find(u' ') != String::npos;
    Result += NeedsQuotes ? u"'" + Family + u"'" : Family;
  }
  return Result;
}

void TSVGFont::SetExtendStyles(TExtendedFontStyles Value) {
  if (Value == FExtendStyles) return;
  FExtendStyles = Value;
  Update();
}

void TSVGFont::SetFontVariant(TSVGFontVariant Value) {
  if (Value == FFontVariant) return;
  FFontVariant = Value;
  Update();
}

void TSVGFont::SetWeight(TSVGFontWeight Value) {
  if (Value == FWeight) return;
  FWeight = Value;
  const bool IsBold = Value == TSVGFontWeight::fwBold || Value == TSVGFontWeight::fwBolder ||
                      Value >= TSVGFontWeight::fw600;
  if (Value != TSVGFontWeight::fwNone) {
    TFontStyles Styles = Style();
    Styles.Set(TFontStyle::fsBold, IsBold);
    SetStyle(Styles);
  }
  Update();
}

bool TSVGFont::IsDecorated() const {
  return Style().Has(TFontStyle::fsUnderline) || Style().Has(TFontStyle::fsStrikeOut) ||
         FExtendStyles.Has(TExtendedFontStyle::fsOverline);
}

// --- Stored tests

bool TSVGFont::GetIsInherited(TSVGStyleProperty Property) const {
  bool IsInherited = false;
  if (FOnIsInherited) FOnIsInherited(const_cast<TSVGFont*>(this), Property, IsInherited);
  return IsInherited;
}

bool TSVGFont::IsNameStored() const {
  return Name() != DefaultName && !GetIsInherited(TSVGStyleProperty::ipFontFamily);
}
bool TSVGFont::IsSizeStored() const {
  return Size() != DefaultSize && !GetIsInherited(TSVGStyleProperty::ipFontSize);
}
bool TSVGFont::IsWeightStored() const {
  return FWeight != TSVGFontWeight::fwNormal && !GetIsInherited(TSVGStyleProperty::ipFontWeight);
}
bool TSVGFont::IsFontVariantStored() const {
  return FFontVariant != TSVGFontVariant::fvNormal &&
         !GetIsInherited(TSVGStyleProperty::ipFontVariant);
}
bool TSVGFont::IsStyleStored() const {
  return !(GetIsInherited(TSVGStyleProperty::ipFontStyle) &&
           GetIsInherited(TSVGStyleProperty::ipTextDecoration));
}

}  // namespace qxsvg
