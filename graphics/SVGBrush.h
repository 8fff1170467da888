// The fill of an element.
#pragma once

#include "graphics/PaintEvents.h"
#include "graphics/surface/Brush.h"

namespace qxsvg {

// The surface's brush with what the format adds: an opacity apart from the colour, and the
// identifier of a paint server. What an element hands to a canvas has its inherited parts and its
// server resolved already (TSVGGraphicElement::GetBrush).
class QXSVG_API TSVGBrush : public TQXGPBrush {
 public:
  // Kind and Color become the defaults too; the opacities are 1.
  explicit TSVGBrush(TQXGPCanvas* Canvas = nullptr, TQXGPBrushKind Kind = TQXGPBrushKind::bkSolid,
                     TQXGPColor Color = 0xff000000);

  static const TClass Class;
  const TClass& ClassType() const override { return Class; }

  // From an SVG brush also opacity, default opacity and URI.
  void Assign(const TPersistent* Source) override;
  std::unique_ptr<TQXGPGraphicsObject> Clone() const override;
  // Back to opaque black, solid, without URI, at the default opacity.
  virtual void Clear();

  // Going to no paint or a solid one drops the URI.
  void SetKind(TQXGPBrushKind Value) override;
  // 0 to 1; other values are clamped.
  float Opacity() const { return FOpacity; }
  void SetOpacity(float Value);
  // What Clear restores and a stream leaves out. No change is told.
  float DefaultOpacity() const { return FDefaultOpacity; }
  void SetDefaultOpacity(float Value) { FDefaultOpacity = detail::ClampOpacity(Value); }
  // The identifier of the paint server, empty for none.
  const String& URI() const { return FURI; }
  void SetURI(StringView Value);
  // Puts the opacity into the alpha of the colour; for gradient stops, whose colour has to hold it.
  void UpdateColorOpacity();

  TSVGIsInheritedEvent OnIsInherited() const { return FOnIsInherited; }
  void SetOnIsInherited(TSVGIsInheritedEvent Handler) { FOnIsInherited = Handler; }
  bool GetIsInherited(TSVGStyleProperty Property) const;

  bool IsColorStored() const;
  bool IsOpacityStored() const;
  bool IsKindStored() const { return Kind() != DefaultKind(); }

 private:
  String FURI;
  TSVGIsInheritedEvent FOnIsInherited;
  float FOpacity = 1;
  float FDefaultOpacity = 1;
};

}  // namespace qxsvg
