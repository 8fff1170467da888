// A path kept in plain segments, independent of any device.
#pragma once

#include <span>
#include <vector>

#include "graphics/surface/PathGeometry.h"
#include "runtime/Method.h"
#include "runtime/Persistent.h"

namespace qxsvg {

// Reads the path syntax of SVG 1.1 chapter 8.3 into Target, behind what it holds. Quadratic curves
// and arcs become cubic. True when the whole text was read; at an error the geometry up to the
// segment that could not be read stays, as the standard's error handling asks, and false is given.
// Raises ESVGException past Limits::PathSegments, with the geometry up to there in Target.
QXSVG_API bool QXParsePath(StringView Text, TQXPathGeometry& Target);
// The path in that syntax with absolute commands, numbers by the pattern (TFloatFormat), or, where
// that is empty, with the fewest digits that read back the same. Raises EConvertError for a pattern
// that is none.
QXSVG_API void QXAppendPathString(String& Target, const TQXPathView& Path, StringView FormatStr);

// The entries are counted as TQXPathView tells: one a move and a line, three a cubic curve, one a
// close. Coordinates are in the units of the user; what is not finite is left out, and growing past
// Limits::PathSegments raises ESVGException and leaves the path as it was.
class QXSVG_API TQXPathData : public TPersistent {
 public:
  // For each polygon of ToPolygons, the running distance at each of its vertices.
  using TDistances = std::vector<std::vector<float>>;

  static const TClass Class;
  const TClass& ClassType() const override { return Class; }

  // Takes points, fill mode and number format from another TQXPathData, or points and fill mode
  // from a TQXGPPath.
  void Assign(const TPersistent* Source) override;

  TQXPathView View() const { return FGeometry.View(); }
  const TQXPathGeometry& Geometry() const { return FGeometry; }
  std::size_t GetCount() const { return FGeometry.Count(); }
  // Raises EArgumentOutOfRange for an index that is none.
  TPointF GetPoint(std::size_t Index) const;
  TQXPathPointKind GetKind(std::size_t Index) const;
  bool IsEmpty() const { return FGeometry.IsEmpty(); }

  void Clear();
  // Replaces the data by what could be read of Text; see QXParsePath. No error is raised for text
  // that is no path; past the limit ESVGException is, and the path is empty.
  void SetPathString(StringView Text);
  // See QXAppendPathString.
  String GetPathString() const;
  const String& FormatStr() const { return FFormatStr; }
  void SetFormatStr(StringView Format) { FFormatStr = Format; }

  void MoveTo(TPointF P);
  void LineTo(TPointF P);
  void CurveTo(TPointF Control1, TPointF Control2, TPointF P);
  void QuadTo(TPointF Control, TPointF P);
  void ClosePath();
  void AddRectangle(const TRectF& R);
  // Flag reverses nothing and is kept for callers that pass it.
  void AddRectangle(const TRectF& R, float RX, float RY, TQXCorners Corners, bool Flag = false);
  void AddEllipse(const TRectF& Box);
  void AddPolygon(std::span<const TPointF> Points);
  void Append(const TQXPathView& Other, bool Connect = false);
  void Assign(const TQXPathView& Other);

  void ApplyMatrix(const TMatrix& M);
  // The exact box, computed at the first call after a change.
  TRectF GetBounds() const;
  TQXGPFillMode FillMode() const { return FFillMode; }
  void SetFillMode(TQXGPFillMode Mode);

  // Replaces curves by lines that differ by at most Tolerance.
  void Flatten(float Tolerance = 0.25f);
  // The flattened form (tolerance 0.25 for curves that are left) as one list of points a figure; a
  // closed figure ends with its first point again.
  TQXPolygons ToPolygons() const;
  // The distance from the start at every vertex of ToPolygons, running on from polygon to polygon
  // with the straight jump between them included.
  TDistances GetDistances() const;
  // The length along the figures and the jumps between them: where GetDistances ends for a flat
  // path. Curves are measured to about 1e-6 of their length.
  double GetLength() const;

  // Between the two no change notice goes out; EndUpdate gives one where something changed.
  void BeginUpdate() { ++FUpdates; }
  void EndUpdate();
  const TNotifyMethod& OnChange() const { return FOnChange; }
  void SetOnChange(TNotifyMethod Notice) { FOnChange = Notice; }

 private:
  void Changed();

  TQXPathGeometry FGeometry;
  TNotifyMethod FOnChange;
  String FFormatStr;
  std::uint32_t FUpdates = 0;
  bool FChanged = false;
  mutable bool FHasBounds = false;
  mutable TRectF FBounds;
  TQXGPFillMode FFillMode = TQXGPFillMode::fmWinding;
};

}  // namespace qxsvg
