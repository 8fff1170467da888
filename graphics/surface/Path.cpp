#include "graphics/surface/Path.h"

#include "graphics/surface/Font.h"
#include "graphics/surface/PathData.h"
#include "graphics/surface/PathMeasure.h"
#include "graphics/surface/StringFormat.h"
#include "graphics/surface/TextLine.h"

namespace qxsvg {
namespace {

std::unique_ptr<TPersistent> NewPath() {
  return std::make_unique<TQXGPPath>();
}

}  // namespace

const TClass TQXGPPath::Class{u"TQXGPPath", &TQXGPGraphicsObject::Class, {}, &NewPath};

TQXGPPath::TQXGPPath(TQXGPCanvas*) {}

void TQXGPPath::Assign(const TPersistent* Source) {
  if (const auto* Path = dynamic_cast<const TQXGPPath*>(Source)) {
    FFillMode = Path->FFillMode;
    Assign(Path->View());
  } else if (const auto* Data = dynamic_cast<const TQXPathData*>(Source)) {
    FFillMode = Data->FillMode();
    Assign(Data->View());
  } else {
    TPersistent::Assign(Source);
  }
}

void TQXGPPath::Assign(const TQXPathView& Other) {
  FGeometry.Assign(Other);
  Changed();
}

std::unique_ptr<TQXGPGraphicsObject> TQXGPPath::Clone() const {
  return Clone(nullptr);
}

std::unique_ptr<TQXGPPath> TQXGPPath::Clone(TQXGPCanvas* Canvas) const {
  auto Copy = std::make_unique<TQXGPPath>(Canvas);
  Copy->Assign(this);
  return Copy;
}

void TQXGPPath::Clear() {
  FGeometry.Clear();
  Changed();
}
void TQXGPPath::Release() {
  FGeometry.Release();
  Changed();
}
void TQXGPPath::MoveTo(TPointF P) {
  FGeometry.MoveTo(P);
  Changed();
}
void TQXGPPath::LineTo(TPointF P) {
  FGeometry.LineTo(P);
  Changed();
}
void TQXGPPath::CurveTo(TPointF Control1, TPointF Control2, TPointF P) {
  FGeometry.CurveTo(Control1, Control2, P);
  Changed();
}
void TQXGPPath::ClosePath() {
  FGeometry.Close();
  Changed();
}
void TQXGPPath::AddEllipse(const TRectF& Box) {
  FGeometry.AddEllipse(Box);
  Changed();
}
void TQXGPPath::AddRectangle(const TRectF& R) {
  FGeometry.AddRectangle(R);
  Changed();
}
void TQXGPPath::AddRectangle(const TRectF& R, float RX, float RY, TQXCorners Corners, bool) {
  FGeometry.AddRectangle(R, RX, RY, Corners);
  Changed();
}
void TQXGPPath::AddPolygon(std::span<const TPointF> Points, std::ptrdiff_t High) {
  const std::ptrdiff_t Last = std::min(High, static_cast<std::ptrdiff_t>(Points.size()) - 1);
  AddPolygon(Points.first(static_cast<std::size_t>(std::max<std::ptrdiff_t>(Last + 1, 0))));
}
void TQXGPPath::AddPolygon(std::span<const TPointF> Points) {
  FGeometry.AddPolygon(Points);
  Changed();
}

void TQXGPPath::AddText(TPointF Origin, StringView Text, const TQXGPFont& Font,
                        const TQXGPStringFormat* Format) {
  const TQXTextLine Line(Font, Text);
  const float Shift = Format ? QXAlignShift(Format->Align(), Line.Width()) : 0;
  Line.AppendOutlines({Origin.X + Shift, Origin.Y + Line.Ascent()}, FGeometry);
  Changed();
}

void TQXGPPath::Append(const TQXPathView& Other, bool Connect) {
  FGeometry.Append(Other, Connect);
  Changed();
}
void TQXGPPath::ApplyMatrix(const TMatrix& M) {
  FGeometry.Transform(M);
  Changed();
}
void TQXGPPath::Translate(float DX, float DY) {
  FGeometry.Translate(DX, DY);
  Changed();
}

void TQXGPPath::SetFillMode(TQXGPFillMode Mode) {
  if (FFillMode == Mode) return;
  FFillMode = Mode;
  Changed();
}

TRectF TQXGPPath::GetBounds() const {
  return QXPathBounds(View());
}

void TQXGPPath::EndUpdate() {
  if (FUpdates == 0 || --FUpdates != 0 || !FChanged) return;
  FChanged = false;
  Update();
}

void TQXGPPath::Changed() {
  if (FUpdates)
    FChanged = true;
  else
    Update();
}

}  // namespace qxsvg
