// What a drawing that breaks off leaves behind.
#include "raster/Rasterizer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <vector>

#include "graphics/surface/PathGeometry.h"

namespace qxsvg {
namespace {

struct TFailingSink final : ISpanSink {
  void Row(std::int32_t, std::span<const TCoverSpan>, const std::uint8_t*) override {
    throw std::runtime_error("full");
  }
};

struct TMostCover final : ISpanSink {
  std::uint32_t Most = 0;
  void Row(std::int32_t, std::span<const TCoverSpan> Spans, const std::uint8_t* C) override {
    for (const TCoverSpan& Span : Spans)
      for (std::int32_t I = 0; I < Span.Length; ++I)
        Most = std::max<std::uint32_t>(Most, Span.IsEven() ? Span.Cover : Span.Covers(C)[I]);
  }
};

TEST(RasterizerTest, ADrawingThatFailsLeavesNothingToTheNext) {
  TRasterizer Rasterizer;
  TQXPathGeometry Large;
  Large.AddEllipse({0, 0, 100, 100});
  const TRect Clip{0, 0, 100, 100};
  TFailingSink Failing;
  EXPECT_THROW(Rasterizer.Fill(Large.View(), {}, Clip, {}, Failing), std::runtime_error);
  EXPECT_THROW(Rasterizer.Stroke(Large.View(), {}, {}, {}, Clip, false, Failing),
               std::runtime_error);
  // A figure without area that crosses the whole grid finds nothing there.
  TQXPathGeometry Thin;
  Thin.AddPolygon(std::vector<TPointF>{{0, 0}, {100, 100}, {0, 0}});
  TMostCover Most;
  Rasterizer.Fill(Thin.View(), {}, Clip, {}, Most);
  EXPECT_EQ(Most.Most, 0u);
}

}  // namespace
}  // namespace qxsvg
