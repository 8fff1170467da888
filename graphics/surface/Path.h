// The device path: figures with a fill mode and tests of points.
#pragma once

#include <span>

#include "graphics/surface/GraphicsObject.h"
#include "graphics/surface/PathGeometry.h"

namespace qxsvg {

class TQXGPFont;
class TQXGPPen;
class TQXGPStringFormat;
class TQXPathData;

// Coordinates are those of the canvas that draws it. As for TQXPathGeometry, what is not finite is
// left out, and growing past Limits::PathSegments raises ESVGException and leaves the path as it
// was.
class QXSVG_API TQXGPPath : public TQXGPGraphicsObject {
 public:
  static const TClass Class;
  const TClass& ClassType() const override { return Class; }

  // The canvas is of no weight: a path serves every canvas.
  explicit TQXGPPath(TQXGPCanvas* Canvas = nullptr);

  // Takes the geometry and fill mode of a TQXGPPath or a TQXPathData.
  void Assign(const TPersistent* Source) override;
  std::unique_ptr<TQXGPGraphicsObject> Clone() const override;
  std::unique_ptr<TQXGPPath> Clone(TQXGPCanvas* Canvas) const;

  TQXPathView View() const { return FGeometry.View(); }
  const TQXPathGeometry& Geometry() const { return FGeometry; }
  std::size_t Count() const { return FGeometry.Count(); }
  bool IsEmpty() const { return FGeometry.IsEmpty(); }

  // Keeps the memory; Release gives it back.
  void Clear();
  void Release();
  void MoveTo(TPointF P);
  void LineTo(TPointF P);
  void CurveTo(TPointF Control1, TPointF Control2, TPointF P);
  void ClosePath();
  void AddEllipse(const TRectF& Box);
  void AddRectangle(const TRectF& R);
  void AddRectangle(const TRectF& R, float RX, float RY, TQXCorners Corners, bool Flag = false);
  // A closed figure of Points[0] to Points[High].
  void AddPolygon(std::span<const TPointF> Points, std::ptrdiff_t High);
  void AddPolygon(std::span<const TPointF> Points);
  // The outlines of one line of text, the line's left top at Origin (so that the baseline lies the
  // font's ascent below), through the font engine; nothing where none is supplied. Format may be
  // null.
  void AddText(TPointF Origin, StringView Text, const TQXGPFont& Font,
               const TQXGPStringFormat* Format = nullptr);
  void Append(const TQXPathView& Other, bool Connect = false);
  void Append(const TQXGPPath& Other, bool Connect) { Append(Other.View(), Connect); }
  void Assign(const TQXPathView& Other);

  void ApplyMatrix(const TMatrix& M);
  void Translate(float DX, float DY);
  // Replaces the path by the outline of its stroke with a solid pen of that width, to be filled
  // non-zero; a width that is not above 0 leaves nothing.
  void Widen(float Width);
  void Widen(const TQXGPPen& Pen);

  TQXGPFillMode FillMode() const { return FFillMode; }
  void SetFillMode(TQXGPFillMode Mode);
  // The exact box; the zero rectangle for an empty path.
  TRectF GetBounds() const;

  // Whether P is inside by the fill mode. With a canvas, P is a point of the device: the path
  // passes through the canvas's matrix, and P must lie in its clip.
  bool IsVisiblePathPoint(TPointF P, const TQXGPCanvas* Canvas = nullptr) const;
  // Whether P is on the stroke of that pen, whatever the pen's kind; the canvas as above.
  bool IsOutlineVisiblePathPoint(TPointF P, const TQXGPPen& Pen,
                                 const TQXGPCanvas* Canvas = nullptr) const;

  // As for TQXPathData.
  void BeginUpdate() { ++FUpdates; }
  void EndUpdate();

 private:
  void Changed();

  TQXPathGeometry FGeometry;
  std::uint32_t FUpdates = 0;
  bool FChanged = false;
  TQXGPFillMode FFillMode = TQXGPFillMode::fmAlternate;
};

}  // namespace qxsvg
