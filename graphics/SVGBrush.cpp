// The brush's setters, copies and stored tests.
#include "graphics/SVGBrush.h"

#include "foundation/ParseColor.h"

namespace qxsvg {

namespace {

constexpr TQXGPColor OpaqueBlack = 0xff000000;

constexpr TProperty Properties[] = {
    Property<&TSVGBrush::Color, &TSVGBrush::SetColor>(u"Color",
                                                      StoredIf<&TSVGBrush::IsColorStored>),
    Property<&TSVGBrush::Opacity, &TSVGBrush::SetOpacity>(u"Opacity",
                                                          StoredIf<&TSVGBrush::IsOpacityStored>),
    Property<&TSVGBrush::Kind, &TSVGBrush::SetKind>(u"Kind", StoredIf<&TSVGBrush::IsKindStored>),
    // Behind Kind, whose setter may drop it.
    Property<&TSVGBrush::URI, &TSVGBrush::SetURI>(u"URI", StoredUnlessEmpty<&TSVGBrush::URI>),
};

}  // namespace

constinit const TClass TSVGBrush::Class{
    u"TSVGBrush", &TQXGPBrush::Class, Properties,
    [] { return std::unique_ptr<TPersistent>(std::make_unique<TSVGBrush>()); }};

TSVGBrush::TSVGBrush(TQXGPCanvas* Canvas, TQXGPBrushKind Kind, TQXGPColor Color)
    : TQXGPBrush(Canvas, Kind, Color) {}

void TSVGBrush::Assign(const TPersistent* Source) {
  if (const auto* Other = dynamic_cast<const TSVGBrush*>(Source)) {
    FDefaultOpacity = Other->FDefaultOpacity;
    FOpacity = Other->FOpacity;
    FURI = Other->FURI;
  }
  TQXGPBrush::Assign(Source);
}

std::unique_ptr<TQXGPGraphicsObject> TSVGBrush::Clone() const {
  auto Result = std::make_unique<TSVGBrush>(nullptr, DefaultKind(), DefaultColor());
  Result->Assign(this);
  return Result;
}

void TSVGBrush::Clear() {
  SetColor(OpaqueBlack);
  SetURI({});
  SetOpacity(FDefaultOpacity);
  SetKind(TQXGPBrushKind::bkSolid);
}

void TSVGBrush::SetKind(TQXGPBrushKind Value) {
  if (Value == Kind()) return;
  if (Value == TQXGPBrushKind::bkNone || Value == TQXGPBrushKind::bkSolid) FURI.clear();
  TQXGPBrush::SetKind(Value);
}

void TSVGBrush::SetOpacity(float Value) {
  if (Value == FOpacity) return;
  FOpacity = detail::ClampOpacity(Value);
  Update();
}

void TSVGBrush::SetURI(StringView Value) {
  if (Value == FURI) return;
  FURI = Value;
  Update();
}

void TSVGBrush::UpdateColorOpacity() {
  SetColor(SetColorOpacity(Color(), FOpacity));
}

bool TSVGBrush::GetIsInherited(TSVGStyleProperty Property) const {
  bool IsInherited = false;
  if (FOnIsInherited) FOnIsInherited(const_cast<TSVGBrush*>(this), Property, IsInherited);
  return IsInherited;
}

bool TSVGBrush::IsColorStored() const {
  return Color() != DefaultColor() && !GetIsInherited(TSVGStyleProperty::ipFill);
}

bool TSVGBrush::IsOpacityStored() const {
  return FOpacity != FDefaultOpacity && !GetIsInherited(TSVGStyleProperty::ipFillOpacity);
}

}  // namespace qxsvg
