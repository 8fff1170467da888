// The base of every element that opens a viewport of its own.
#pragma once

#include "shapes/AspectRatio.h"
#include "shapes/CustomGroup.h"
#include "shapes/ViewBox.h"

namespace qxsvg {

// A viewport (SVG 1.1 chapter 7): the element's x, y, width and height say where it lies, the view
// box what it shows, the aspect ratio how the one is fitted into the other. Overflow is hidden
// unless the document says otherwise.
class QXSVG_API TSVGCustomViewBox : public TSVGCustomGroup {
 public:
  explicit TSVGCustomViewBox(TSVGDocument* Document);
  ~TSVGCustomViewBox() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }

  TSVGCustomViewBox* AsCustomViewBox() override { return this; }
  void AssignProperties(const TSVGElement* Source) override;
  void Clear() override;

  TSVGViewBox& ViewBox() { return FViewBox; }
  const TSVGViewBox& ViewBox() const { return FViewBox; }
  void SetViewBox(const TSVGViewBox* Value) { FViewBox.Assign(Value); }
  bool IsViewBoxStored() const { return FViewBox.ViewBoxSpecified(); }
  TSVGPreserveAspectRatio& AspectRatio() { return FAspectRatio; }
  const TSVGPreserveAspectRatio& AspectRatio() const { return FAspectRatio; }
  void SetAspectRatio(const TSVGPreserveAspectRatio* Value) { FAspectRatio.Assign(Value); }

  // Fits the view box into Rect: what is shown is scaled by ScaleX and ScaleY, and its left top
  // corner goes to TX, TY. The origin of Rect comes in as TX, TY and stands where the alignment
  // does not move it. A view box of unit size or smaller is scaled by the inverse of its size
  // alone.
  void DefineView(const TRectF& Rect, const TSVGPreserveAspectRatio& Ratio, float& TX, float& TY,
                  float& ScaleX, float& ScaleY) const;

  using TSVGCustomGroup::GetViewMatrix;
  // From the space of the view box to the space of Rect.
  TMatrix GetViewMatrix(const TMatrix& Matrix, const TRectF& Rect) override;
  TSVGCustomViewBox* GetNearestViewBox() override;

  // The viewport in the parent's system. An element without size takes the bounds of its content as
  // its view box, which is not one that was given.
  TRectF GetBoundsRect() override;
  // As the box around the transformed rectangle.
  TRectF GetBoundsRect(const TMatrix& Matrix) override;

  using TSVGCustomGroup::Draw;
  using TSVGCustomGroup::ElementAtPos;
  void Draw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect) override;
  TSVGElement* ElementAtPos(const TMatrix& Matrix, TQXGPCanvas& Canvas, TPointF Point,
                            const TRectF& Rect, const TSVGFindOptions& Options) override;
  void DrawElementParent(TMatrix& Matrix, TQXGPCanvas& Canvas, TRectF& Rect) override;
  bool IsStored(TSVGStyleProperty Property, StringView Value) const override;

 protected:
  // For a class whose aspect ratio starts otherwise than xMidYMid.
  TSVGCustomViewBox(TSVGDocument* Document, TSVGAlign Align);

  void DoLoadFromXML(IXMLNode& Node) override;
  void DoSaveToXML(IXMLNode& Node) override;
  void DefineProperties(TFiler& Filer) override;
  // Clips to the viewport where overflow is hidden and soApplyClipping is set.
  virtual void OverflowClipping(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect);
  // The rectangle that drawing fits the view box into.
  TRectF ViewTarget();
  // The matrix of a fit by Ratio; without DoFit the view box is only moved to its place.
  TMatrix ViewMatrix(const TSVGPreserveAspectRatio& Ratio, const TRectF& Rect, bool DoFit) const;
  // Sets the view box without a notice; it then counts as given or not as told.
  void SetViewBoxQuietly(const TRectF& Rect, bool IsSpecified);

 private:
  TSVGPreserveAspectRatio FAspectRatio;
  TSVGViewBox FViewBox;
};

}  // namespace qxsvg
