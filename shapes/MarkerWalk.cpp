#include "shapes/MarkerWalk.h"

#include "document/Document.h"
#include "graphics/SVGPen.h"
#include "graphics/surface/Canvas.h"
#include "graphics/surface/PathData.h"
#include "shapes/Marker.h"

namespace qxsvg {

namespace {

// The vertices of a path, with the kinds of its points; looked at anew each time, because a handler
// of the host may change the path between two markers.
class TPathVertices {
 public:
  explicit TPathVertices(const TQXPathData& Path) : FPath(Path) {}
  std::size_t Count() const { return FPath.GetCount(); }
  TPointF operator[](std::size_t I) const { return FPath.View().Points[I]; }
  bool IsMove(std::size_t I) const { return Is(I, TQXPathPointKind::pkMove); }
  bool IsCurve(std::size_t I) const { return Is(I, TQXPathPointKind::pkCurve); }
  bool IsClose(std::size_t I) const { return Is(I, TQXPathPointKind::pkClose); }

 private:
  bool Is(std::size_t I, TQXPathPointKind Kind) const { return FPath.View().Kinds[I] == Kind; }

  const TQXPathData& FPath;
};

// Those of a polyline, in which every point is like any other.
template <class List>
class TPlainVertices {
 public:
  explicit TPlainVertices(const List& Points) : FPoints(Points) {}
  std::size_t Count() const { return std::size(FPoints); }
  TPointF operator[](std::size_t I) const { return FPoints[I]; }
  bool IsMove(std::size_t) const { return false; }
  bool IsCurve(std::size_t) const { return false; }
  bool IsClose(std::size_t) const { return false; }

 private:
  const List& FPoints;
};

// Widens the segment from point A to point B until its ends differ, first forwards and then
// backwards, within the figure; false where they cannot.
template <class Vertices>
bool FindSegment(const Vertices& Points, std::size_t A, std::size_t B, TPointF& P, TPointF& Q) {
  P = Points[A];
  Q = Points[B];
  while (P == Q && B + 1 < Points.Count() && !Points.IsClose(B)) Q = Points[++B];
  while (P == Q && A >= 1 && !Points.IsMove(A)) P = Points[--A];
  return P != Q;
}

// Calls Visit(I) for each vertex between the first and the last, until it says to stop. A curve
// counts as one step, whose vertex is its end.
template <class Vertices, class Visitor>
void WalkMidVertices(const Vertices& Points, Visitor Visit) {
  const std::size_t Last = Points.Count() - 1;
  std::size_t I = Last > 1 && Points.IsMove(0) && Points.IsCurve(1) ? 3 : 1;
  while (I < Last) {
    if (Visit(I)) return;
    ++I;
    if (I < Last && Points.IsCurve(I)) I += 2;
  }
}

TSVGMarker* FindMarker(const TSVGGraphicElement& Element, const String& URI) {
  // A handler may have taken the element out of its document.
  if (URI.empty() || !Element.Document()) return nullptr;
  TSVGElement* const Found = Element.Document()->FindElement(URI);
  return Found && Found->ClassType().InheritsFrom(TSVGMarker::Class)
             ? static_cast<TSVGMarker*>(Found)
             : nullptr;
}

// The width of the element's stroke in its user space, never 0.
float StrokeWidth(TSVGGraphicElement& Element) {
  constexpr float Least = 1e-12f;
  const TSVGPen& Pen = Element.GetPen();
  double Width = Pen.Thickness();
  if (Pen.ThicknessIsPercent())
    if (TSVGCustomViewBox* const Nearest = Element.GetNearestViewBox()) {
      const TSVGViewBox& Box = Nearest->ViewBox();
      Width *= std::hypot(Box.Width().GetValue(), Box.Height().GetValue()) / std::sqrt(2.0);
    }
  return Width >= Least ? static_cast<float>(Width) : Least;
}

bool HasMarkers(const TSVGGraphicElement& Element, std::size_t Count) {
  return Count >= 2 && Element.Document() &&
         !(Element.GetMarkerStartURI().empty() && Element.GetMarkerMidURI().empty() &&
           Element.GetMarkerEndURI().empty());
}

// Calls one of Start, Mid and End for each marker of the element, until one of them says to stop,
// or has the number of vertices changed.
template <class Vertices, class TActions>
void WalkMarkers(TSVGGraphicElement& Element, const Vertices& Points, TQXGPCanvas& Canvas,
                 const TActions& Actions) {
  const std::size_t Count = Points.Count();
  if (!HasMarkers(Element, Count)) return;
  const float Width = StrokeWidth(Element);
  // Markers take the width from the canvas, and leave the pen of their own content there.
  const auto SetWidth = [&] { Canvas.Pen().SetThickness(Width); };
  TPointF P, Q;
  if (TSVGMarker* const Marker = FindMarker(Element, Element.GetMarkerStartURI()))
    if (FindSegment(Points, 0, 1, P, Q)) {
      SetWidth();
      if (Actions.Start(*Marker, P, Q) || Points.Count() != Count) return;
    }
  bool IsDone = false;
  if (TSVGMarker* const Marker =
          Count > 2 ? FindMarker(Element, Element.GetMarkerMidURI()) : nullptr)
    WalkMidVertices(Points, [&](std::size_t I) {
      SetWidth();
      IsDone = Actions.Mid(*Marker, Points[I - 1], Points[I], Points[I + 1]);
      return IsDone = IsDone || Points.Count() != Count;
    });
  if (IsDone) return;
  if (TSVGMarker* const Marker = FindMarker(Element, Element.GetMarkerEndURI()))
    if (FindSegment(Points, Count - 2, Count - 1, P, Q)) {
      SetWidth();
      Actions.End(*Marker, P, Q);
    }
}

struct TDrawing {
  TSVGGraphicElement& Element;
  const TMatrix& Matrix;
  TQXGPCanvas& Canvas;
  const TRectF& Rect;

  bool Start(TSVGMarker& Marker, TPointF P, TPointF Q) const {
    Marker.DrawStartMarker(Element, P, Q, Matrix, Canvas, Rect);
    return false;
  }
  bool Mid(TSVGMarker& Marker, TPointF Previous, TPointF Vertex, TPointF Next) const {
    Marker.DrawMidMarker(Element, Previous, Vertex, Next, Matrix, Canvas, Rect);
    return false;
  }
  bool End(TSVGMarker& Marker, TPointF P, TPointF Q) const {
    Marker.DrawEndMarker(Element, P, Q, Matrix, Canvas, Rect);
    return false;
  }
};

struct TSearch {
  TSVGGraphicElement& Element;
  const TMatrix& Matrix;
  TQXGPCanvas& Canvas;
  TPointF Point;
  const TRectF& Rect;
  const TSVGFindOptions& Options;
  TSVGElement*& Found;

  bool Start(TSVGMarker& Marker, TPointF P, TPointF Q) const {
    return (Found = Marker.StartMarkerAtPos(Element, P, Q, Matrix, Canvas, Point, Rect, Options));
  }
  bool Mid(TSVGMarker& Marker, TPointF Previous, TPointF Vertex, TPointF Next) const {
    return (Found = Marker.MidMarkerAtPos(Element, Previous, Vertex, Next, Matrix, Canvas, Point,
                                          Rect, Options));
  }
  bool End(TSVGMarker& Marker, TPointF P, TPointF Q) const {
    return (Found = Marker.EndMarkerAtPos(Element, P, Q, Matrix, Canvas, Point, Rect, Options));
  }
};

}  // namespace

void DrawMarkers(TSVGGraphicElement& Element, const TQXPathData& Path, const TMatrix& Matrix,
                 TQXGPCanvas& Canvas, const TRectF& Rect) {
  WalkMarkers(Element, TPathVertices(Path), Canvas, TDrawing{Element, Matrix, Canvas, Rect});
}

void DrawMarkers(TSVGGraphicElement& Element, const TQXPoints& Points, const TMatrix& Matrix,
                 TQXGPCanvas& Canvas, const TRectF& Rect) {
  WalkMarkers(Element, TPlainVertices(Points), Canvas, TDrawing{Element, Matrix, Canvas, Rect});
}

void DrawMarkers(TSVGGraphicElement& Element, const TPointF (&Ends)[2], const TMatrix& Matrix,
                 TQXGPCanvas& Canvas, const TRectF& Rect) {
  WalkMarkers(Element, TPlainVertices(Ends), Canvas, TDrawing{Element, Matrix, Canvas, Rect});
}

TSVGElement* MarkersAtPos(TSVGGraphicElement& Element, const TQXPathData& Path,
                          const TMatrix& Matrix, TQXGPCanvas& Canvas, TPointF Point,
                          const TRectF& Rect, const TSVGFindOptions& Options) {
  TSVGElement* Found = nullptr;
  WalkMarkers(Element, TPathVertices(Path), Canvas,
              TSearch{Element, Matrix, Canvas, Point, Rect, Options, Found});
  return Found;
}

TSVGElement* MarkersAtPos(TSVGGraphicElement& Element, const TQXPoints& Points,
                          const TMatrix& Matrix, TQXGPCanvas& Canvas, TPointF Point,
                          const TRectF& Rect, const TSVGFindOptions& Options) {
  TSVGElement* Found = nullptr;
  WalkMarkers(Element, TPlainVertices(Points), Canvas,
              TSearch{Element, Matrix, Canvas, Point, Rect, Options, Found});
  return Found;
}

}  // namespace qxsvg
