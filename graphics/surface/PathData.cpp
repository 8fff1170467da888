#include "graphics/surface/PathData.h"

#include "graphics/surface/Path.h"
#include "graphics/surface/PathMeasure.h"
#include "graphics/surface/PathWalk.h"
#include "runtime/Exceptions.h"
#include "runtime/Numbers.h"

namespace qxsvg {
namespace {

constexpr float FlatTolerance = 0.25f;

std::unique_ptr<TPersistent> NewPathData() {
  return std::make_unique<TQXPathData>();
}

[[noreturn]] void RaiseIndex(std::size_t Index) {
  throw EArgumentOutOfRange(u"A path has no point %s",
                            {IntToStr(static_cast<std::int64_t>(Index))});
}

}  // namespace

const TClass TQXPathData::Class{u"TQXPathData", &TPersistent::Class, {}, &NewPathData};

void TQXPathData::Assign(const TPersistent* Source) {
  if (const auto* Data = dynamic_cast<const TQXPathData*>(Source)) {
    FFormatStr = Data->FFormatStr;
    FFillMode = Data->FFillMode;
    Assign(Data->View());
  } else if (const auto* Path = dynamic_cast<const TQXGPPath*>(Source)) {
    FFillMode = Path->FillMode();
    Assign(Path->View());
  } else {
    TPersistent::Assign(Source);
  }
}

void TQXPathData::Assign(const TQXPathView& Other) {
  FGeometry.Assign(Other);
  Changed();
}

TPointF TQXPathData::GetPoint(std::size_t Index) const {
  if (Index >= GetCount()) RaiseIndex(Index);
  return View().Points[Index];
}

TQXPathPointKind TQXPathData::GetKind(std::size_t Index) const {
  if (Index >= GetCount()) RaiseIndex(Index);
  return View().Kinds[Index];
}

void TQXPathData::Clear() {
  FGeometry.Clear();
  Changed();
}

void TQXPathData::SetPathString(StringView Text) {
  FGeometry.Clear();
  try {
    QXParsePath(Text, FGeometry);
  } catch (...) {
    FGeometry.Release();
    Changed();
    throw;
  }
  FGeometry.Trim();
  Changed();
}

String TQXPathData::GetPathString() const {
  String Text;
  QXAppendPathString(Text, View(), FFormatStr);
  return Text;
}

void TQXPathData::MoveTo(TPointF P) {
  FGeometry.MoveTo(P);
  Changed();
}
void TQXPathData::LineTo(TPointF P) {
  FGeometry.LineTo(P);
  Changed();
}
void TQXPathData::CurveTo(TPointF Control1, TPointF Control2, TPointF P) {
  FGeometry.CurveTo(Control1, Control2, P);
  Changed();
}
void TQXPathData::QuadTo(TPointF Control, TPointF P) {
  FGeometry.QuadTo(Control, P);
  Changed();
}
void TQXPathData::ClosePath() {
  FGeometry.Close();
  Changed();
}
void TQXPathData::AddRectangle(const TRectF& R) {
  FGeometry.AddRectangle(R);
  Changed();
}
void TQXPathData::AddRectangle(const TRectF& R, float RX, float RY, TQXCorners Corners, bool) {
  FGeometry.AddRectangle(R, RX, RY, Corners);
  Changed();
}
void TQXPathData::AddEllipse(const TRectF& Box) {
  FGeometry.AddEllipse(Box);
  Changed();
}
void TQXPathData::AddPolygon(std::span<const TPointF> Points) {
  FGeometry.AddPolygon(Points);
  Changed();
}
void TQXPathData::Append(const TQXPathView& Other, bool Connect) {
  FGeometry.Append(Other, Connect);
  Changed();
}
void TQXPathData::ApplyMatrix(const TMatrix& M) {
  FGeometry.Transform(M);
  Changed();
}
TRectF TQXPathData::GetBounds() const {
  // A hit test asks every path of a drawing.
  if (!FHasBounds) FBounds = QXPathBounds(View());
  FHasBounds = true;
  return FBounds;
}
void TQXPathData::SetFillMode(TQXGPFillMode Mode) {
  if (FFillMode == Mode) return;
  FFillMode = Mode;
  Changed();
}

void TQXPathData::Flatten(float Tolerance) {
  TQXPathGeometry Flat;
  Flat.Reserve(FGeometry.Count());
  QXFlattenPath(View(), Tolerance, Flat);
  FGeometry = std::move(Flat);
  Changed();
}

TQXPolygons TQXPathData::ToPolygons() const {
  TQXPathGeometry Flat;
  QXFlattenPath(View(), FlatTolerance, Flat);
  TQXPolygons Polygons;
  bool IsFigureNew = true;
  const auto Add = [&](TPointF From, TPointF To) {
    // A figure is listed with its first segment, so that a lone move makes none.
    if (IsFigureNew) Polygons.push_back({From});
    IsFigureNew = false;
    Polygons.back().push_back(To);
  };
  WalkPath(
      Flat.View(), [&](TPointF) { IsFigureNew = true; }, Add,
      [&](TPointF From, TPointF, TPointF, TPointF To) { Add(From, To); },
      [&](TPointF From, TPointF Start) {
        if (IsFigureNew || !(From == Start)) Add(From, Start);
      });
  return Polygons;
}

TQXPathData::TDistances TQXPathData::GetDistances() const {
  const TQXPolygons Polygons = ToPolygons();
  TDistances Distances;
  Distances.reserve(Polygons.size());
  double Sum = 0;
  const TPointF* Last = nullptr;
  for (const TQXPoints& Polygon : Polygons) {
    std::vector<float>& Row = Distances.emplace_back();
    Row.reserve(Polygon.size());
    for (const TPointF& P : Polygon) {
      if (Last) Sum += PointDistance(*Last, P);
      Last = &P;
      Row.push_back(static_cast<float>(Sum));
    }
  }
  return Distances;
}

double TQXPathData::GetLength() const {
  return QXPathLength(View(), true);
}

void TQXPathData::EndUpdate() {
  if (FUpdates == 0 || --FUpdates != 0 || !FChanged) return;
  FChanged = false;
  if (FOnChange) FOnChange(this);
}

void TQXPathData::Changed() {
  FHasBounds = false;
  if (FUpdates)
    FChanged = true;
  else if (FOnChange)
    FOnChange(this);
}

}  // namespace qxsvg
