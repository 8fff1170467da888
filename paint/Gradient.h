// Gradients: what the two kinds share, and their stops.
#pragma once

#include <memory>

#include "graphics/GraphicElement.h"
#include "graphics/SVGBrush.h"
#include "graphics/surface/Gradient.h"

namespace qxsvg {

// The element `stop` (SVG 1.1 chapter 13.2.4). The offset is the raw value of the length X.
class QXSVG_API TSVGGradientStop : public TSVGGraphicElement {
 public:
  explicit TSVGGradientStop(TSVGDocument* Document);
  ~TSVGGradientStop() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  TSVGElementTypes ChildSVGTypes() const override;
  void AssignProperties(const TSVGElement* Source) override;
  void Clear() override;
  void ApplyStyle(const TSVGStyle& Style) override;
  bool HasOwnText(const TSVGStylePropertyRow& Row) const override;
  String PropertyText(TSVGStyleProperty Property) override;
  void PropagateObjectPropChange(TPersistent* Sender) override;

  // A fraction of the gradient's length, not clamped.
  float Offset();
  void SetOffset(float Value);
  // The brush as it was set.
  TSVGBrush& StopBrush() { return FStopBrush; }
  const TSVGBrush& StopBrush() const { return FStopBrush; }
  void SetStopBrush(const TSVGBrush* Value);
  // The brush with its opacity in the alpha of the colour.
  TSVGBrush& GetStopBrush();

 protected:
  void DoLoadFromXML(IXMLNode& Node) override;
  void DoSaveToXML(IXMLNode& Node) override;

 private:
  void StopInherited(TPersistent* Sender, TSVGStyleProperty Property, bool& IsInherited);

  TSVGBrush FStopBrush;
  bool FColorChanged = true;
};

// A paint server that other elements name in `fill` and `stroke`; it is never drawn in place.
class QXSVG_API TSVGCustomGradient : public TSVGGraphicElement {
 public:
  explicit TSVGCustomGradient(TSVGDocument* Document);
  ~TSVGCustomGradient() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  TSVGElementTypes ChildSVGTypes() const override;
  void AssignProperties(const TSVGElement* Source) override;
  void Clear() override;
  void NotifyListener(TSVGElement* Source) override;

  // The identifier of the gradient whose stops stand in for missing ones, without "#".
  const String& Reference() const { return FReference; }
  void SetReference(StringView Value);
  TSVGGradientSpread Spread() const { return FSpread; }
  void SetSpread(TSVGGradientSpread Value);
  TSVGCoordinateSystemUnit Units() const { return FUnits; }
  void SetUnits(TSVGCoordinateSystemUnit Value);

  // Fills Points from the stops of this element or, when it has no child of any kind, of the
  // gradient that it refers to. Step is 1 from the first stop to the last, -1 the other way.
  // Repeated stops end at a limit.
  virtual void SetGradientPoints(TQXGPGradientPoints& Points, std::int32_t Step);
  // A gradient for a shape whose box is Bounds, in fractions of that box. Matrix leads from the
  // shape's user space to the canvas.
  virtual std::unique_ptr<TQXGPGradient> GetGradient(const TMatrix& Matrix, const TRectF& Bounds,
                                                     const TRectF& Viewport);
  using TSVGGraphicElement::GetBrush;
  // The element's own brush, its stops made anew when they are stale.
  TSVGBrush& GetBrush(const TMatrix& Matrix, const TRectF& Bounds, const TRectF& Viewport) override;

 protected:
  void DoLoadFromXML(IXMLNode& Node) override;
  void DoSaveToXML(IXMLNode& Node) override;
  bool DoShouldDraw() override { return false; }
  std::int32_t ReadChild(IXMLNode& Node) override;
  void ElementNotification(TSVGElement* Sender, TSVGElement* Item,
                           TCollectionNotification Action) override;
  // What differs between the kinds: the style, and the direction of the stops.
  virtual TQXGPGradientStyle GradientStyle() const = 0;

 private:
  float AddStops(TQXGPGradientPoints& Points, bool Repeating, std::int32_t Direction);

  String FReference;
  TSVGGradientSpread FSpread;
  TSVGCoordinateSystemUnit FUnits;
};

}  // namespace qxsvg
