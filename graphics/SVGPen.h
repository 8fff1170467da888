// The stroke of an element.
#pragma once

#include <vector>

#include "foundation/Length.h"
#include "foundation/Units.h"
#include "graphics/PaintEvents.h"
#include "graphics/surface/Pen.h"

namespace qxsvg {

// The surface's pen with what the format adds: an opacity apart from the colour, the identifier of
// a paint server, a width and dashes that may be percentages, a dash offset with a unit.
class QXSVG_API TSVGPen : public TQXGPPen {
 public:
  // Kind and Color become the defaults too. Thickness 1, miter limit 4, opacities 1.
  explicit TSVGPen(TQXGPCanvas* Canvas = nullptr, TQXGPBrushKind Kind = TQXGPBrushKind::bkNone,
                   TQXGPColor Color = 0xff000000);
  ~TSVGPen() override;

  static const TClass Class;
  const TClass& ClassType() const override { return Class; }

  // From an SVG pen also opacities, URI, dash offset, units and percent flags.
  void Assign(const TPersistent* Source) override;
  std::unique_ptr<TQXGPGraphicsObject> Clone() const override;
  virtual void Clear();
  // The present dash as text, for the kinds that are no custom one in numbers of the thickness.
  virtual String GetDashArray() const;

  // Going to no paint or a solid one drops the URI.
  void SetKind(TQXGPBrushKind Value) override;
  // 0 to 1; other values are clamped.
  float Opacity() const { return FOpacity; }
  void SetOpacity(float Value);
  float DefaultOpacity() const { return FDefaultOpacity; }
  void SetDefaultOpacity(float Value) { FDefaultOpacity = detail::ClampOpacity(Value); }
  const String& URI() const { return FURI; }
  void SetURI(StringView Value);
  void UpdateColorOpacity();

  // The width was a percentage: the thickness holds its fraction.
  bool ThicknessIsPercent() const { return FThicknessIsPercent; }
  void SetThicknessIsPercent(bool Value);
  // The unit that the width is written back in.
  TSVGUnit ThicknessPreferredUnit() const { return FThicknessPreferredUnit; }
  void SetThicknessPreferredUnit(TSVGUnit Value) { FThicknessPreferredUnit = Value; }

  TSVGLength& SVGDashOffset();
  const TSVGLength& SVGDashOffset() const;
  void SetSVGDashOffset(const TSVGLength* Value) { SVGDashOffset().Assign(Value); }
  // Takes the offset of another pen.
  void InheritDashOffset(const TSVGPen& Parent);
  // Pixels.
  float GetDashOffsetValue() const;
  // Dashes that are set are the pen's own.
  void SetDash(TQXGPStrokeDash Value);
  void SetCustomDash(std::span<const float> Values, std::ptrdiff_t High, float Offset);
  void SetCustomDash(std::span<const float> Values, float Offset);
  bool HasOwnDashes() const { return Dash() != TQXGPStrokeDash::sdSolid && !FHasTakenDashes; }
  // Takes the dashes of another pen, custom ones with Offset; with none, the line is solid again
  // where it has taken dashes, and keeps its own otherwise.
  void TakeDashes(const TSVGPen* From, float Offset);
  // One entry for each number that was written; a list that was repeated has more dashes.
  const std::vector<bool>& DashArrayIsPercent() const { return FDashArrayIsPercent; }
  void SetDashArrayIsPercent(const std::vector<bool>& Value) { FDashArrayIsPercent = Value; }
  const TSVGUnits& DashArrayPreferredUnits() const { return FDashArrayPreferredUnits; }
  void SetDashArrayPreferredUnits(const TSVGUnits& Value) { FDashArrayPreferredUnits = Value; }
  // The custom dashes as text, "none" unless the dash is custom.
  String CustomDashArray() const;
  // "none" and a text without numbers make the line solid. A list with a dash of 0 or below changes
  // nothing.
  void SetCustomDashArray(StringView Text);

  TSVGUnitFactors GetUnitFactors() const;
  TSVGUnitFactorsEvent OnUnitFactors() const { return FOnUnitFactors; }
  void SetOnUnitFactors(TSVGUnitFactorsEvent Handler) { FOnUnitFactors = Handler; }
  TSVGIsInheritedEvent OnIsInherited() const { return FOnIsInherited; }
  void SetOnIsInherited(TSVGIsInheritedEvent Handler) { FOnIsInherited = Handler; }
  bool GetIsInherited(TSVGStyleProperty Property) const;

  bool IsColorStored() const;
  bool IsOpacityStored() const;
  bool IsKindStored() const { return Kind() != DefaultKind(); }
  bool IsThicknessStored() const;
  bool IsMiterLimitStored() const;
  bool IsJoinStored() const;
  bool IsStartCapStored() const;
  bool IsEndCapStored() const;
  bool IsDashCapStored() const;
  bool IsDashStored() const;
  bool IsSVGDashOffsetStored() const;
  bool IsCustomDashArrayStored() const { return Dash() == TQXGPStrokeDash::sdCustom; }

 private:
  void OffsetChange(TPersistent* Sender);
  void OffsetUnitFactors(TPersistent* Sender, TSVGUnitFactors& Factors);
  static const TSVGLengthEventsOf<TSVGPen> OffsetEvents;
  bool IsCapStored(bool IsDefault) const;

  String FURI;
  // Made when it is first asked for: nearly no line has an offset.
  std::unique_ptr<TSVGLength> FSVGDashOffset;
  std::vector<bool> FDashArrayIsPercent;
  TSVGUnits FDashArrayPreferredUnits;
  TSVGUnitFactorsEvent FOnUnitFactors;
  TSVGIsInheritedEvent FOnIsInherited;
  float FOpacity = 1;
  float FDefaultOpacity = 1;
  TSVGUnit FThicknessPreferredUnit = TSVGUnit::suNone;
  bool FThicknessIsPercent = false;
  bool FHasTakenDashes = false;
};

}  // namespace qxsvg
