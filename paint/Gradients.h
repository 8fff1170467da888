// The two kinds of gradients.
#pragma once

#include "paint/Gradient.h"

namespace qxsvg {

// The element `linearGradient` (SVG 1.1 chapter 13.2.2).
class QXSVG_API TSVGLinearGradient : public TSVGCustomGradient {
 public:
  explicit TSVGLinearGradient(TSVGDocument* Document);
  ~TSVGLinearGradient() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  void AssignProperties(const TSVGElement* Source) override;
  void Clear() override;

  TSVGLength& X1() { return FX1; }
  TSVGLength& Y1() { return FY1; }
  TSVGLength& X2() { return FX2; }
  TSVGLength& Y2() { return FY2; }
  void SetX1(const TSVGLength* Value) { FX1.Assign(Value); }
  void SetY1(const TSVGLength* Value) { FY1.Assign(Value); }
  void SetX2(const TSVGLength* Value) { FX2.Assign(Value); }
  void SetY2(const TSVGLength* Value) { FY2.Assign(Value); }

  std::unique_ptr<TQXGPGradient> GetGradient(const TMatrix& Matrix, const TRectF& Bounds,
                                             const TRectF& Viewport) override;

 protected:
  void DoLoadFromXML(IXMLNode& Node) override;
  void DoSaveToXML(IXMLNode& Node) override;
  TQXGPGradientStyle GradientStyle() const override { return TQXGPGradientStyle::gsLinear; }

 private:
  TSVGLength FX2, FY2, FX1, FY1;
};

// The element `radialGradient` (SVG 1.1 chapter 13.2.3). The centre is kept in the lengths X and Y,
// the radius in Width.
class QXSVG_API TSVGRadialGradient : public TSVGCustomGradient {
 public:
  explicit TSVGRadialGradient(TSVGDocument* Document);
  ~TSVGRadialGradient() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  void AssignProperties(const TSVGElement* Source) override;
  void Clear() override;

  TSVGLength& CenterX() { return Xu(); }
  TSVGLength& CenterY() { return Yu(); }
  TSVGLength& Radius() { return WidthU(); }
  TSVGLength& FocalX() { return FFocalX; }
  TSVGLength& FocalY() { return FFocalY; }
  void SetFocalX(const TSVGLength* Value) { FFocalX.Assign(Value); }
  void SetFocalY(const TSVGLength* Value) { FFocalY.Assign(Value); }
  bool FocalXSpecified() const { return FFocalXSpecified; }
  void SetFocalXSpecified(bool Value);
  bool FocalYSpecified() const { return FFocalYSpecified; }
  void SetFocalYSpecified(bool Value);

  std::unique_ptr<TQXGPGradient> GetGradient(const TMatrix& Matrix, const TRectF& Bounds,
                                             const TRectF& Viewport) override;

 protected:
  void DoLoadFromXML(IXMLNode& Node) override;
  void DoSaveToXML(IXMLNode& Node) override;
  TQXGPGradientStyle GradientStyle() const override { return TQXGPGradientStyle::gsRadial; }

 private:
  void CenterAtMiddle();
  TPointF RadiusPosition(const TRectF& Bounds);

  TSVGLength FFocalX, FFocalY;
  bool FFocalXSpecified = false, FFocalYSpecified = false;
};

}  // namespace qxsvg
