#include "bench/DrawBenchEngines.h"

#if defined(QXSVG_BENCH_QT6SVG) && defined(QXSVG_BENCH_QT6GUI)

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

namespace qxsvg::bench {

namespace {

// Text needs the application and its fonts; a window system it does not.
void NeedApplication() {
  static int Count = 1;
  static char Name[] = "bench";
  static char* Arguments[] = {Name, nullptr};
  qputenv("QT_QPA_PLATFORM", "offscreen");
  static const QGuiApplication* const Application = new QGuiApplication(Count, Arguments);
  static_cast<void>(Application);
}

class TQtDrawEngine final : public IDrawEngine {
 public:
  TQtDrawEngine() { NeedApplication(); }
  bool Load(const std::string& File) override {
    FRenderer = std::make_unique<QSvgRenderer>(
        QByteArray::fromRawData(File.data(), static_cast<qsizetype>(File.size())));
    FRenderer->setAspectRatioMode(Qt::KeepAspectRatio);
    return FRenderer->isValid();
  }
  void Unload() override { FRenderer.reset(); }
  void Prepare(int Side) override {
    if (FTarget.width() != Side) FTarget = QImage(Side, Side, QImage::Format_ARGB32_Premultiplied);
    FTarget.fill(Qt::transparent);
  }
  void Draw() override {
    QPainter Painter(&FTarget);
    Painter.setRenderHint(QPainter::Antialiasing);
    Painter.setRenderHint(QPainter::SmoothPixmapTransform);
    FRenderer->render(&Painter);
  }

 private:
  std::unique_ptr<QSvgRenderer> FRenderer;
  QImage FTarget;
};

}  // namespace

std::unique_ptr<IDrawEngine> CreateQtDrawEngine() {
  return std::make_unique<TQtDrawEngine>();
}

}  // namespace qxsvg::bench

#else

namespace qxsvg::bench {
std::unique_ptr<IDrawEngine> CreateQtDrawEngine() {
  return nullptr;
}
}  // namespace qxsvg::bench

#endif
