#include "bench/DrawBenchEngines.h"

#if defined(QXSVG_BENCH_LIBRSVG_2_0) && defined(QXSVG_BENCH_CAIRO)

#include <cairo.h>
#include <librsvg/rsvg.h>

namespace qxsvg::bench {

namespace {

class TRsvgDrawEngine final : public IDrawEngine {
 public:
  ~TRsvgDrawEngine() override {
    Unload();
    Release();
  }
  bool Load(const std::string& File) override {
    Unload();
    FHandle = rsvg_handle_new_from_data(reinterpret_cast<const guint8*>(File.data()), File.size(),
                                        nullptr);
    return FHandle != nullptr;
  }
  void Unload() override { g_clear_object(&FHandle); }
  void Prepare(int Side) override {
    if (FSide != Side) {
      Release();
      FSide = Side;
      FSurface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, Side, Side);
      FContext = cairo_create(FSurface);
    }
    cairo_set_operator(FContext, CAIRO_OPERATOR_CLEAR);
    cairo_paint(FContext);
    cairo_set_operator(FContext, CAIRO_OPERATOR_OVER);
  }
  void Draw() override {
    const RsvgRectangle Whole{0, 0, double(FSide), double(FSide)};
    rsvg_handle_render_document(FHandle, FContext, &Whole, nullptr);
    cairo_surface_flush(FSurface);
  }

 private:
  void Release() {
    cairo_destroy(FContext);
    cairo_surface_destroy(FSurface);
  }

  RsvgHandle* FHandle = nullptr;
  cairo_surface_t* FSurface = nullptr;
  cairo_t* FContext = nullptr;
  int FSide = 0;
};

}  // namespace

std::unique_ptr<IDrawEngine> CreateRsvgDrawEngine() {
  return std::make_unique<TRsvgDrawEngine>();
}

}  // namespace qxsvg::bench

#else

namespace qxsvg::bench {
std::unique_ptr<IDrawEngine> CreateRsvgDrawEngine() {
  return nullptr;
}
}  // namespace qxsvg::bench

#endif
