// The smallest program that draws a file into a PNG with Qt SVG: compare_qt_render IN OUT SIDE. The
// picture fits into a square of that side.
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cstdlib>

int main(int Count, char** Arguments) {
  if (Count != 4) return 2;
  const int Side = std::atoi(Arguments[3]);
  QSvgRenderer Renderer(QString::fromLocal8Bit(Arguments[1]));
  if (!Renderer.isValid()) return 1;
  Renderer.setAspectRatioMode(Qt::KeepAspectRatio);
  QImage Target(Renderer.defaultSize().scaled(Side, Side, Qt::KeepAspectRatio),
                QImage::Format_ARGB32_Premultiplied);
  Target.fill(Qt::transparent);
  QPainter Painter(&Target);
  Painter.setRenderHint(QPainter::Antialiasing);
  Painter.setRenderHint(QPainter::SmoothPixmapTransform);
  Renderer.render(&Painter);
  Painter.end();
  return Target.save(QString::fromLocal8Bit(Arguments[2]), "PNG") ? 0 : 1;
}
