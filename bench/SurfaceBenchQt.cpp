#include "bench/SurfaceBenchEngines.h"

#if defined(QXSVG_BENCH_QT6GUI)

#include <QBrush>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QRadialGradient>
#include <optional>

namespace qxsvg::bench {

namespace {

QPainterPath PathOf(const TQXPathView& Path) {
  QPainterPath Out;
  for (std::size_t I = 0; I < Path.Count(); ++I) {
    const TPointF* P = &Path.Points[I];
    switch (Path.Kinds[I]) {
      case TQXPathPointKind::pkMove: Out.moveTo(P->X, P->Y); break;
      case TQXPathPointKind::pkLine: Out.lineTo(P->X, P->Y); break;
      case TQXPathPointKind::pkCurve:
        Out.cubicTo(P[0].X, P[0].Y, P[1].X, P[1].Y, P[2].X, P[2].Y);
        I += 2;
        break;
      case TQXPathPointKind::pkClose: Out.closeSubpath(); break;
    }
  }
  return Out;
}

QTransform TransformOf(const TMatrix& M) {
  return {M.m11, M.m12, M.m21, M.m22, M.m31, M.m32};
}

class TQtEngine final : public IBenchEngine {
 public:
  void Begin(int Size) override {
    FPainter.reset();
    FTarget = QImage(Size, Size, QImage::Format_ARGB32_Premultiplied);
    FTarget.fill(Qt::white);
    FPainter = std::make_unique<QPainter>(&FTarget);
    FPainter->setRenderHint(QPainter::Antialiasing);
    FPainter->setRenderHint(QPainter::SmoothPixmapTransform);
  }
  void Prepare(const TBenchScene& Scene) override {
    FPaths.clear();
    for (const TBenchShape& Shape : Scene.Shapes) {
      FPaths.push_back(PathOf(Shape.Path.View()));
      FPaths.back().setFillRule(Shape.FillMode == TQXGPFillMode::fmWinding ? Qt::WindingFill
                                                                           : Qt::OddEvenFill);
    }
  }
  void Prepare(const TQXPathGeometry& Clip, const TQXGPBitmap& Image) override {
    FClip = PathOf(Clip.View());
    FClip.setFillRule(Qt::OddEvenFill);
    const TQXConstPixels P = Image.GetPixels();
    FImage = QImage(reinterpret_cast<const uchar*>(P.Data), P.Width, P.Height,
                    static_cast<int>(P.Stride * 4), QImage::Format_ARGB32_Premultiplied)
                 .copy();
  }

  void DrawScene(const TBenchScene& Scene, const TMatrix& M) override {
    FPainter->setTransform(TransformOf(M));
    for (std::size_t I = 0; I < Scene.Shapes.size(); ++I) {
      const TBenchShape& Shape = Scene.Shapes[I];
      if (Shape.Fill != 0) FPainter->fillPath(FPaths[I], QColor::fromRgba(Shape.Fill));
      if (Shape.Stroke == 0) continue;
      QPen Pen(QColor::fromRgba(Shape.Stroke), Shape.Width);
      Pen.setMiterLimit(Shape.MiterLimit);
      Pen.setJoinStyle(Shape.Join == TQXGPStrokeJoin::sjRound   ? Qt::RoundJoin
                       : Shape.Join == TQXGPStrokeJoin::sjBevel ? Qt::BevelJoin
                                                                : Qt::SvgMiterJoin);
      Pen.setCapStyle(Shape.Cap == TQXGPLineCap::lcRound    ? Qt::RoundCap
                      : Shape.Cap == TQXGPLineCap::lcSquare ? Qt::SquareCap
                                                            : Qt::FlatCap);
      if (!Shape.Dashes.empty()) {
        QList<qreal> Dashes;
        for (const float Dash : Shape.Dashes) Dashes.push_back(Dash / Shape.Width);
        if (Dashes.size() % 2) Dashes += QList<qreal>(Dashes);
        Pen.setDashPattern(Dashes);
      }
      FPainter->strokePath(FPaths[I], Pen);
    }
    FPainter->resetTransform();
  }

  void FillAll(TQXGPColor Color) override {
    FPainter->fillRect(FTarget.rect(), QColor::fromRgba(Color));
  }

  void FillGradient(TBenchGradient Kind) override {
    const qreal Size = FTarget.width();
    const auto Fill = [&](QGradient Gradient) {
      Gradient.setColorAt(0, QColor(255, 0, 0));
      Gradient.setColorAt(0.4, QColor(255, 255, 0));
      Gradient.setColorAt(1, QColor(0, 0, 255));
      FPainter->fillRect(FTarget.rect(), QBrush(Gradient));
    };
    if (Kind == TBenchGradient::Radial)
      Fill(QRadialGradient(Size / 2, Size / 2, Size / 2));
    else
      Fill(QLinearGradient(0, 0, Size, Kind == TBenchGradient::Diagonal ? Size : 0));
  }

  void FillTiled(const TMatrix& M) override {
    QBrush Brush(FImage);
    Brush.setTransform(TransformOf(M));
    FPainter->fillRect(FTarget.rect(), Brush);
  }

  void DrawImage(const TRectF& Dest) override {
    FPainter->drawImage(QRectF(Dest.Left, Dest.Top, Dest.Width(), Dest.Height()), FImage);
  }

  void BeginClip() override {
    FPainter->save();
    FPainter->setClipPath(FClip);
  }
  void EndClip() override { FPainter->restore(); }
  TQXConstPixels Pixels() const override {
    return {reinterpret_cast<const std::uint32_t*>(FTarget.constBits()), FTarget.width(),
            FTarget.height(), FTarget.bytesPerLine() / 4};
  }

 private:
  QImage FTarget, FImage;
  std::unique_ptr<QPainter> FPainter;
  std::vector<QPainterPath> FPaths;
  QPainterPath FClip;
};

}  // namespace

std::unique_ptr<IBenchEngine> CreateQtEngine() {
  return std::make_unique<TQtEngine>();
}

}  // namespace qxsvg::bench

#else

namespace qxsvg::bench {
std::unique_ptr<IBenchEngine> CreateQtEngine() {
  return nullptr;
}
}  // namespace qxsvg::bench

#endif
