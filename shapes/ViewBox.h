// The rectangle of user space that a viewport shows.
#pragma once

#include <memory>

#include "foundation/Geometry.h"
#include "foundation/Length.h"

namespace qxsvg {

// The value of viewBox (SVG 1.1 chapter 7.7): four lengths, and whether the box was given at all. A
// box that was not given still holds numbers, those of the element it belongs to.
class QXSVG_API TSVGViewBox : public TPersistent {
 public:
  TSVGViewBox();
  explicit TSVGViewBox(const TRectF& Rect);
  TSVGViewBox(float Left, float Top, float Right, float Bottom);
  ~TSVGViewBox() override;

  static const TClass Class;
  const TClass& ClassType() const override { return Class; }

  void Assign(const TPersistent* Source) override;
  // All lengths become 0. The box counts as given afterwards, because this is a change of it.
  virtual void Clear();
  // "x y width height", numbers in Format, percentages within Minimum to Maximum.
  virtual String ToString(const TSVGNumberFormat& Format, float Minimum, float Maximum) const;

  TSVGLength& X() { return FX; }
  const TSVGLength& X() const { return FX; }
  TSVGLength& Y() { return FY; }
  const TSVGLength& Y() const { return FY; }
  TSVGLength& Width() { return FWidth; }
  const TSVGLength& Width() const { return FWidth; }
  TSVGLength& Height() { return FHeight; }
  const TSVGLength& Height() const { return FHeight; }
  void SetX(const TSVGLength& Value) { FX.Assign(&Value); }
  void SetY(const TSVGLength& Value) { FY.Assign(&Value); }
  void SetWidth(const TSVGLength& Value) { FWidth.Assign(&Value); }
  void SetHeight(const TSVGLength& Value) { FHeight.Assign(&Value); }

  // In user units of the space that the box lies in.
  TRectF GetRect() const;
  void SetRect(const TRectF& Value);
  float Left() const { return GetRect().Left; }
  float Top() const { return GetRect().Top; }
  float Right() const { return GetRect().Right; }
  float Bottom() const { return GetRect().Bottom; }
  void SetLeft(float Value) { FX.SetValue(Value); }
  void SetTop(float Value) { FY.SetValue(Value); }
  // These keep the left and top side and change the size.
  void SetRight(float Value);
  void SetBottom(float Value);

  // Any change makes a box one that was given.
  bool ViewBoxSpecified() const { return FViewBoxSpecified; }
  void SetViewBoxSpecified(bool Value) { FViewBoxSpecified = Value; }

  void BeginUpdate() { ++FUpdateCount; }
  void EndUpdate();

  TSVGUnitFactors GetUnitFactors() const { return FX.GetUnitFactors(); }
  // What supplies the factors of the four lengths; without it they are SVGUnitFactors.
  const TSVGUnitFactorsEvent& OnUnitFactors() const { return FOnUnitFactors; }
  void SetOnUnitFactors(const TSVGUnitFactorsEvent& Value) { FOnUnitFactors = Value; }

  TNotifyMethod OnChange;

 protected:
  void Change();
  // What each of the lengths calls.
  void Changed(TPersistent* Sender);

 private:
  void LengthUnitFactors(TPersistent* Sender, TSVGUnitFactors& Factors);
  float LengthUnitFactor(TSVGUnit Unit);
  static const TSVGLengthEventsOf<TSVGViewBox> LengthEvents;

  TSVGLength FWidth, FHeight, FY, FX;
  TSVGUnitFactorsEvent FOnUnitFactors;
  bool FViewBoxSpecified = false;
  std::int32_t FUpdateCount = 0;
};

// Takes up to four numbers from the attribute's text; those that are missing keep what they were,
// and a blank text clears the box.
QXSVG_API void ParseRect(StringView Text, TSVGViewBox& ViewBox);

}  // namespace qxsvg
