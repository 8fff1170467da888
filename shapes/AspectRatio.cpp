#include "shapes/AspectRatio.h"

#include "foundation/ParseGeometry.h"

namespace qxsvg {

namespace {

using TRatio = TSVGPreserveAspectRatio;

constexpr TProperty Properties[] = {
    Property<&TRatio::Align, &TRatio::SetAlign>(u"Align", StoredIf<&TRatio::IsAlignStored>),
    Property<&TRatio::Defer, &TRatio::SetDefer>(u"Defer", StoredIf<&TRatio::IsDeferStored>),
    Property<&TRatio::Slice, &TRatio::SetSlice>(u"Slice", StoredIf<&TRatio::IsSliceStored>),
};

}  // namespace

constinit const TClass TSVGPreserveAspectRatio::Class{u"TSVGPreserveAspectRatio",
                                                      &TPersistent::Class, Properties, nullptr};

TSVGPreserveAspectRatio::TSVGPreserveAspectRatio(TSVGAlign Align, bool Defer, bool Slice)
    : FAlign(Align),
      FDefer(Defer),
      FSlice(Slice),
      FDefaultSlice(Slice),
      FDefaultAlign(Align),
      FDefaultDefer(Defer) {}

TSVGPreserveAspectRatio::~TSVGPreserveAspectRatio() = default;

void TSVGPreserveAspectRatio::Change() {
  if (OnChange) OnChange(this);
}

void TSVGPreserveAspectRatio::Assign(const TPersistent* Source) {
  const auto* const Other = dynamic_cast<const TSVGPreserveAspectRatio*>(Source);
  if (!Other) return TPersistent::Assign(Source);
  FAlign = Other->FAlign;
  FDefer = Other->FDefer;
  FSlice = Other->FSlice;
  FDefaultSlice = Other->FDefaultSlice;
  FDefaultAlign = Other->FDefaultAlign;
  FDefaultDefer = Other->FDefaultDefer;
  Change();
}

void TSVGPreserveAspectRatio::Clear() {
  FAlign = FDefaultAlign;
  FDefer = FDefaultDefer;
  FSlice = FDefaultSlice;
  Change();
}

String TSVGPreserveAspectRatio::ToString(bool OmitMeet) const {
  String Result = FDefer ? u"defer " : u"";
  Result += SVGAlignNames[static_cast<std::size_t>(FAlign)];
  if (FSlice)
    Result += u" slice";
  else if (!OmitMeet)
    Result += u" meet";
  return Result;
}

void TSVGPreserveAspectRatio::SetAlign(TSVGAlign Value) {
  if (Value == FAlign) return;
  FAlign = Value;
  Change();
}

void TSVGPreserveAspectRatio::SetDefer(bool Value) {
  if (Value == FDefer) return;
  FDefer = Value;
  Change();
}

void TSVGPreserveAspectRatio::SetSlice(bool Value) {
  if (Value == FSlice) return;
  FSlice = Value;
  Change();
}

void ParseAspectRatio(StringView Text, TSVGPreserveAspectRatio& Ratio) {
  const auto Value = ParseAspectRatioValue(Text);
  if (!Value) return;
  Ratio.SetDefer(Value->Defer);
  Ratio.SetAlign(Value->Align);
  Ratio.SetSlice(Value->Slice);
}

}  // namespace qxsvg
