#include "graphics/surface/Bitmap.h"

#include <gtest/gtest.h>

#include "foundation/Limits.h"
#include "graphics/surface/CoverageCache.h"
#include "runtime/Exceptions.h"

namespace qxsvg {
namespace {

TEST(Bitmap, RefusesSizesOverTheLimit) {
  EXPECT_THROW(TQXGPBitmap(Limits::BitmapSide + 1, 1), EInvalidGraphicOperation);
  EXPECT_THROW(TQXGPBitmap(Limits::BitmapSide, Limits::BitmapSide), EInvalidGraphicOperation);
  TQXGPBitmap Bitmap(2, 3);
  EXPECT_THROW(Bitmap.SetWidth(1 << 30), EInvalidGraphicOperation);
  EXPECT_EQ(Bitmap.GetWidth(), 2);
  Bitmap.SetSize(-5, 7);
  EXPECT_EQ(Bitmap.GetWidth(), 0);
  EXPECT_EQ(Bitmap.GetHeight(), 7);
  EXPECT_TRUE(Bitmap.GetPixels().IsEmpty());
  Bitmap.SetHeight(Limits::BitmapSide);
  Bitmap.Clear(0xffffffff);
}

TEST(Bitmap, KeepsSharedPixelsWhenItsSizeChanges) {
  TQXGPBitmap Bitmap(2, 2);
  Bitmap.Clear(0x80ff0000);
  Bitmap.SetSize(3, 1);
  EXPECT_EQ(Bitmap.GetPixels().Row(0)[1], 0x80800000u);
  EXPECT_EQ(Bitmap.GetPixels().Row(0)[2], 0u);
  TQXGPBitmap Copy;
  Copy.Assign(&Bitmap);
  EXPECT_EQ(Copy.GetWidth(), 3);
  EXPECT_EQ(Copy.GetPixels().Row(0)[1], 0x80800000u);
  // Pixels may be written at any time through what was given out once.
  TQXGPBitmap Fresh(2, 1);
  for (TQXGPBitmap* Written : {&Copy, &Fresh}) {
    const TQXPixels Held = Written->Pixels();
    for (int I = 0; I < 2; ++I) {
      Held.Row(0)[1] = 7;
      Written->Clear();
      EXPECT_EQ(Held.Row(0)[1], 0u);
    }
  }
  EXPECT_THROW(Bitmap.GetCanvas(), EInvalidOperation);
}

TEST(Bitmap, PremultipliesAndBack) {
  for (std::uint32_t A = 1; A < 256; ++A)
    for (const std::uint32_t C : {0u, 1u, 127u, 254u, 255u}) {
      const std::uint32_t Pixel = QXPremultiply(A << 24 | C << 16 | C);
      EXPECT_LE(Pixel & 255, A);
      const std::uint32_t Back = QXUnpremultiply(Pixel);
      EXPECT_EQ(Back >> 24, A);
      EXPECT_NEAR(double(Back & 255), C, 128.0 / A + 0.5);
      EXPECT_EQ(QXPremultiply(Back), Pixel);
    }
  EXPECT_EQ(QXPremultiply(0x00ffffff), 0u);
  EXPECT_EQ(QXUnpremultiply(0x00ffffff), 0u);
}

TEST(CoverageCache, KeepsWhatIsDrawnTwiceAlike) {
  using enum TQXCoverageCache::TUse;
  TQXCoverageBudget Budget(100);
  const char Bytes[80] = "spans";
  using TUses = std::vector<TQXCoverageCache::TUse>;
  const auto Answers = [](TQXCoverageCache& Cache, std::initializer_list<TQXCoverageKey> Keys) {
    TUses Result;
    for (const TQXCoverageKey& Key : Keys) Result.push_back(Cache.Ask(Key));
    return Result;
  };
  {
    TQXCoverageCache Cache(Budget), Other(Budget);
    TQXCoverageCache Late(Budget, true);
    TQXCoverageKey A, B;
    B.Mode = 1;
    EXPECT_EQ(Answers(Late, {A, B}), (TUses{Keep, Draw})) << "the caller drew it before";
    EXPECT_EQ(Answers(Cache, {A, B, A, A}), (TUses{Draw, Draw, Draw, Keep}));
    Cache.Keep(Bytes, sizeof Bytes);
    EXPECT_EQ(Cache.Ask(A), Replay);
    EXPECT_EQ(Cache.Size(), sizeof Bytes);
    EXPECT_STREQ(reinterpret_cast<const char*>(Cache.Data()), "spans");
    EXPECT_EQ(Budget.Used(), 80u);
    // No room: drawn as ever, and not tried again before the key changes.
    EXPECT_EQ(Answers(Other, {A, A}), (TUses{Draw, Keep}));
    Other.Keep(Bytes, sizeof Bytes);
    EXPECT_EQ(Other.Ask(A), Draw);
    EXPECT_FALSE(Other.IsKept());
    // Another key drops what was kept.
    EXPECT_EQ(Cache.Ask(B), Draw);
    EXPECT_EQ(Budget.Used(), 0u);
    EXPECT_EQ(Cache.Ask(B), Keep);
    Cache.Keep(Bytes, 0);
    EXPECT_EQ(Cache.Ask(B), Replay);
    Cache.Drop();
    EXPECT_EQ(Answers(Cache, {B, B}), (TUses{Draw, Keep}));
    Cache.Keep(Bytes, sizeof Bytes);
  }
  EXPECT_EQ(Budget.Used(), 0u);
}

}  // namespace
}  // namespace qxsvg
