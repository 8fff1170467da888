// Pictures read and written: every kind, whole and broken.
#include "graphics/surface/ImageCodecs.h"

#include <gtest/gtest.h>

#include <random>
#include <tuple>

#include "foundation/Limits.h"
#include "graphics/surface/DataURI.h"
#include "runtime/Base64.h"
#include "runtime/Exceptions.h"
#include "runtime/FileResolver.h"
#include "runtime/Services.h"
#include "tests/support/Golden.h"

namespace qxsvg {
namespace {

using test::Compare;

// A file of those that the fuzzers begin with.
TBytes Seed(const std::string& Name) {
  return ReadFile(FromUtf8(QXSVG_TEST_ROOT "/tests/fuzz/seeds/" + Name), 1 << 20);
}

const IImageCodecs& Codecs() {
  static const auto Made = Services().Images.Get();
  return *Made;
}

TBytes Encode(const TQXGPBitmap& Bitmap, StringView Codec, std::int32_t Quality = -1) {
  TMemoryStream Stream;
  Bitmap.SaveToStream(Stream, Codec, Quality);
  return Stream.Detach();
}

using TPainter = std::function<TQXGPColor(std::int32_t X, std::int32_t Y)>;

void Paint(TQXGPBitmap& Bitmap, const TPainter& Color) {
  const TQXPixels Pixels = Bitmap.Pixels();
  for (std::int32_t Y = 0; Y < Pixels.Height; ++Y)
    for (std::int32_t X = 0; X < Pixels.Width; ++X) Pixels.Row(Y)[X] = QXPremultiply(Color(X, Y));
}

// The first Count colours of a sequence without repetition, spread over the picture.
TPainter Colors(std::uint32_t Count, std::uint32_t Opacity) {
  return [=](std::int32_t X, std::int32_t Y) {
    const auto I = static_cast<std::uint32_t>(X * 7 + Y * 31) % Count;
    return Opacity << 24 | (I * 0x010305u & 0xFFFFFF);
  };
}

TEST(PngWriter, KeepsEveryPixelInTheSmallestKindOfFile) {
  const auto Noise = [](std::int32_t X, std::int32_t Y) {
    std::minstd_rand Random(static_cast<unsigned>(X + Y * 1000 + 1));
    Random.discard(3);
    return static_cast<std::uint32_t>(Random()) << 1;
  };
  // Depth and type as the file's header has them.
  const std::tuple<const char*, TPainter, int, int> Cases[] = {
      {"empty", Colors(1, 0), 1, 3},
      {"two colours", Colors(2, 255), 1, 3},
      {"four colours", Colors(4, 255), 2, 3},
      {"sixteen colours", Colors(16, 255), 4, 3},
      {"seventeen colours", Colors(17, 255), 8, 3},
      {"256 colours, half clear", Colors(256, 128), 8, 3},
      {"257 colours", Colors(257, 255), 8, 2},
      {"many translucent colours", Noise, 8, 6},
      {"grey", [](auto X, auto Y) { return 0xFF000000u | ((X * 3 + Y * 5) & 255) * 0x10101u; }, 8,
       0},
      {"gradient", [](auto X, auto Y) { return 0xFF000000u + X * 0x10000u + Y * 0x101u; }, 8, 2},
      {"runs of three colours",
       [](auto X, auto Y) { return 0xFF000000u + (X / 13 + Y / 9) % 3 * 0x4000u; }, 2, 3},
      {"repeated rows",
       [](auto X, auto Y) { return 0xFF000000u + X * 0x010305u + Y / 10 * 0x1000u; }, 8, 2},
      {"one clear corner",
       [](auto X, auto Y) { return X + Y == 0 ? 0 : 0xFF000000u | (X * 771 + Y * 17); }, 8, 2},
      {"every grey and a clear corner",
       [](auto X, auto Y) {
         const auto I = static_cast<std::uint32_t>(X + Y * 77);
         return I == 0 ? 0 : 0xFF000000u | (I % 2 ? I / 2 % 256 * 0x10101 : I * 771);
       },
       8, 6},
  };
  // Beyond those where a palette may take more than it saves.
  constexpr std::int32_t Sizes[][2] = {{200, 300}, {177, 190}};
  for (const auto& [Name, Color, Depth, Type] : Cases)
    for (const auto& Size : Sizes) {
      SCOPED_TRACE(Name);
      TQXGPBitmap Bitmap(Size[0], Size[1]), Read;
      Paint(Bitmap, Color);
      for (const std::int32_t Quality : {-1, 0, 100}) {
        const TBytes File = Encode(Bitmap, u"png", Quality);
        EXPECT_EQ(File[24], Depth);
        EXPECT_EQ(File[25], Type);
        Codecs().Decode(File, Read);
        EXPECT_TRUE(Compare(Read, Bitmap).IsNone()) << Compare(Read, Bitmap).Text();
      }
    }
}

TEST(PngWriter, OddSizesAndEveryPixelValueSurvive) {
  TQXGPBitmap Bitmap, Read;
  for (const auto& [Width, Height] :
       {std::pair{1, 1}, {1, 300}, {3, 5}, {15, 16}, {4097, 1}, {9, 260}}) {
    Bitmap.SetSize(Width, Height);
    Paint(Bitmap, [](auto X, auto Y) { return (X * 0x9E3779B1u) ^ (Y * 0x85EBCA6Bu); });
    Codecs().Decode(Encode(Bitmap, u"png"), Read);
    EXPECT_TRUE(Compare(Read, Bitmap).IsNone()) << Width << " by " << Height;
  }
  // Every alpha with every premultiplied value.
  Bitmap.SetSize(256, 256);
  for (std::uint32_t A = 0; A < 256; ++A)
    for (std::uint32_t C = 0; C < 256; ++C)
      Bitmap.Pixels().Row(static_cast<std::int32_t>(A))[C] =
          C <= A ? A << 24 | C << 16 | (A - C) << 8 | C / 2 : 0;
  Codecs().Decode(Encode(Bitmap, u"png"), Read);
  EXPECT_TRUE(Compare(Read, Bitmap).IsNone()) << Compare(Read, Bitmap).Text();
}

TEST(Images, FilesHaveTheirPixels) {
  struct TPixel {
    std::int32_t X, Y;
    std::uint32_t Pixel;
    std::int32_t Tolerance = 0;
  };
  // PNGs of the kinds that our own writer does not make: one bit of grey; grey with alpha; 16 bits
  // a channel, of which one colour is transparent; a palette with alphas; interlaced grey. A frame
  // of 2 by 2 within a GIF, and an interlaced one. JPEGs of inks and progressive.
  const std::tuple<const char*, std::int32_t, std::int32_t, std::vector<TPixel>> Cases[] = {
      {"png/gray1", 3, 2, {{0, 0, 0xFF000000}, {1, 0, 0xFFFFFFFF}, {2, 1, 0xFFFFFFFF}}},
      {"png/grayalpha", 2, 1, {{0, 0, 0xFFC8C8C8}, {1, 0, 0x33141414}}},
      {"png/deep", 2, 1, {{0, 0, 0xFF12569A, 1}, {1, 0, 0}}},
      {"png/palette", 3, 1, {{0, 0, 0xFFFF0000}, {1, 0, 0x80008000}, {2, 0, 0xFF0000FF}}},
      {"png/interlaced", 5, 6, {{0, 0, 0xFF000000}, {3, 2, 0xFF686868}, {4, 5, 0xFFE8E8E8}}},
      {"gif/frame",
       4,
       3,
       {{0, 0, 0}, {1, 1, 0xFFFF0000}, {2, 1, 0xFF00FF00}, {1, 2, 0xFF0000FF}, {2, 2, 0}}},
      {"gif/interlaced", 1, 10, {{0, 5, 0xFF00FF00}, {0, 6, 0xFF0000FF}, {0, 7, 0xFFFFFFFF}}},
      {"jpeg/inks", 8, 8, {{0, 0, 0xFFC86432, 6}, {7, 7, 0xFFC86432, 6}}},
      {"jpeg/progressive", 16, 16, {{0, 0, 0xFFC86432, 3}, {15, 15, 0xFFC86432, 3}}},
  };
  for (const auto& [Name, Width, Height, Pixels] : Cases) {
    SCOPED_TRACE(Name);
    TQXGPBitmap Bitmap;
    Codecs().Decode(Seed(Name), Bitmap);
    ASSERT_EQ(Bitmap.GetWidth(), Width);
    ASSERT_EQ(Bitmap.GetHeight(), Height);
    for (const TPixel& Pixel : Pixels) {
      TQXGPBitmap Actual(1, 1), Expected(1, 1);
      Actual.Pixels().Data[0] = Bitmap.Pixels().Row(Pixel.Y)[Pixel.X];
      Expected.Pixels().Data[0] = Pixel.Pixel;
      EXPECT_TRUE(Compare(Actual, Expected, Pixel.Tolerance).IsNone())
          << Pixel.X << ", " << Pixel.Y << ": " << std::hex << Actual.Pixels().Data[0];
    }
  }
}

TEST(Images, LossyFormatsStayNearAndKnowTheirLimits) {
  TQXGPBitmap Bitmap(64, 48), Read;
  Paint(Bitmap, [](auto X, auto Y) { return 0xFF404000u + X * 0x20001u + Y * 0x200u; });
  Codecs().Decode(Encode(Bitmap, u"jpeg", 95), Read);
  EXPECT_TRUE(Compare(Read, Bitmap, 8).IsNone()) << Compare(Read, Bitmap, 8).Text();
  Codecs().Decode(Encode(Bitmap, u"webp", 95), Read);
  EXPECT_TRUE(Compare(Read, Bitmap, 16).IsNone()) << Compare(Read, Bitmap, 16).Text();
  EXPECT_LT(Encode(Bitmap, u"jpeg", 10).size(), Encode(Bitmap, u"jpeg").size());
  // More bytes than a writer has room for at first.
  TQXGPBitmap Large(400, 400);
  Paint(Large, [](auto X, auto Y) { return 0xFF000000u | ((X * 37 ^ Y * 91) & 255) * 0x10101u; });
  const TBytes File = Encode(Large, u"jpeg", 100);
  EXPECT_GT(File.size(), 100000u);
  Codecs().Decode(File, Read);
  EXPECT_TRUE(Compare(Read, Large, 4).IsNone()) << Compare(Read, Large, 4).Text();
  // JPEG has no transparency: what is clear becomes paper.
  Bitmap.Clear(0x80000000);
  Codecs().Decode(Encode(Bitmap, u"jpg"), Read);
  EXPECT_NEAR(Read.Pixels().Data[0] & 255, 127, 2);
  EXPECT_THROW(Encode(TQXGPBitmap(17'000, 1), u"webp"), EInvalidGraphicOperation);
  EXPECT_THROW(Encode(TQXGPBitmap(), u"png"), EInvalidGraphicOperation);
  EXPECT_THROW(Encode(Bitmap, u"gif"), EInvalidGraphicOperation);
  EXPECT_THROW(Encode(Bitmap, u"tiff"), EInvalidGraphicOperation);
}

TBytes LosslessWebP(std::int32_t Width, std::int32_t Height, TQXGPBitmap& Bitmap) {
  Bitmap.SetSize(Width, Height);
  Paint(Bitmap, [](auto X, auto Y) { return (X * 0x9E3779B1u) ^ (Y * 0x85EBCA6Bu); });
  return Encode(Bitmap, u"webp", 100);
}

TEST(Images, AnAnimatedWebPGivesItsFirstFrameInPlace) {
  TQXGPBitmap Frame, Read;
  Codecs().Decode(LosslessWebP(33, 20, Frame), Read);
  EXPECT_TRUE(Compare(Read, Frame).IsNone()) << Compare(Read, Frame).Text();
  const TBytes Still = LosslessWebP(3, 2, Frame);
  const auto Chunk = [](const char* Name, const TBytes& Content) {
    TBytes Result(Name, Name + 4);
    for (int I = 0; I < 4; ++I)
      Result.push_back(static_cast<std::uint8_t>(Content.size() >> (8 * I)));
    Result.insert(Result.end(), Content.begin(), Content.end());
    if (Content.size() % 2) Result.push_back(0);
    return Result;
  };
  const auto Append = [](TBytes& Target, const TBytes& Source) {
    Target.insert(Target.end(), Source.begin(), Source.end());
  };
  // Sizes count from 0, places count pairs of pixels: a canvas of 9 by 8, the frame at 4, 2.
  TBytes FrameContent{2, 0, 0, 1, 0, 0, 2, 0, 0, 1, 0, 0, 100, 0, 0, 0};
  Append(FrameContent, TBytes(Still.begin() + 12, Still.end()));
  TBytes File{'W', 'E', 'B', 'P'};
  Append(File, Chunk("VP8X", {0x12, 0, 0, 0, 8, 0, 0, 7, 0, 0}));
  Append(File, Chunk("ANIM", {0, 0, 0, 0, 0, 0}));
  Append(File, Chunk("ANMF", FrameContent));
  File = Chunk("RIFF", File);
  Codecs().Decode(File, Read);
  ASSERT_EQ(Read.GetWidth(), 9);
  ASSERT_EQ(Read.GetHeight(), 8);
  EXPECT_EQ(Read.Pixels().Row(0)[0], 0u);
  EXPECT_EQ(Read.Pixels().Row(2)[4], Frame.Pixels().Row(0)[0]);
  EXPECT_EQ(Read.Pixels().Row(3)[6], Frame.Pixels().Row(1)[2]);
}

// A picture of each format, large enough to break off in the middle.
std::vector<TBytes> WholePictures() {
  std::vector<TBytes> Result;
  for (const char* Name : {"png/gray1", "png/deep", "png/palette", "png/interlaced", "gif/frame",
                           "gif/interlaced", "jpeg/inks", "jpeg/progressive"})
    Result.push_back(Seed(Name));
  TQXGPBitmap Bitmap(24, 40);
  Paint(Bitmap, [](auto X, auto Y) { return 0x80000000u + X * 0x70301u + Y * 0x20507u; });
  for (const StringView Codec : {u"png", u"jpeg", u"webp"}) Result.push_back(Encode(Bitmap, Codec));
  Result.push_back(Encode(Bitmap, u"webp", 100));
  return Result;
}

void DecodeAnything(const TBytes& Bytes) {
  TQXGPBitmap Bitmap;
  try {
    Codecs().Decode(Bytes, Bitmap);
    EXPECT_GT(Bitmap.GetWidth(), 0);
  } catch (const EInvalidGraphicOperation&) {
    EXPECT_EQ(Bitmap.GetWidth(), 0);
  }
}

TEST(BrokenImages, EveryPrefixGivesAPartOrAnError) {
  for (const TBytes& Whole : WholePictures())
    for (std::size_t Size = 0; Size < Whole.size(); ++Size)
      DecodeAnything(TBytes(Whole.begin(), Whole.begin() + static_cast<std::ptrdiff_t>(Size)));
}

TEST(BrokenImages, ChangedBytesGiveAPictureOrAnError) {
  std::mt19937 Random(20240617);
  for (const TBytes& Whole : WholePictures())
    for (int Round = 0; Round < 150; ++Round) {
      TBytes Bytes = Whole;
      for (unsigned I = 1 + Random() % 3; I > 0; --I)
        Bytes[Random() % Bytes.size()] = static_cast<std::uint8_t>(Random());
      DecodeAnything(Bytes);
    }
}

TEST(BrokenImages, WhatCameBeforeTheBreakIsKept) {
  TQXGPBitmap Bitmap(300, 300), Read;
  std::mt19937 Random(20240618);
  Paint(Bitmap, [&Random](auto, auto) { return 0xFF000000u | Random(); });
  for (const StringView Codec : {u"png", u"jpeg", u"webp"}) {
    SCOPED_TRACE(ToUtf8(Codec));
    TBytes File = Encode(Bitmap, Codec, 90);
    File.resize(File.size() / 2);
    Codecs().Decode(File, Read);
    ASSERT_EQ(Read.GetHeight(), 300);
    EXPECT_EQ(Read.Pixels().Row(50)[50] >> 24, 255u);
    EXPECT_EQ(Read.Pixels().Row(299)[299], 0u);
  }
}

TEST(BrokenImages, DeclaredSizesOverTheLimitAreRefused) {
  const auto Number = [](std::uint32_t Value, int Count, bool BigEndian) {
    TBytes Result;
    for (int I = 0; I < Count; ++I)
      Result.push_back(static_cast<std::uint8_t>(Value >> 8 * (BigEndian ? Count - 1 - I : I)));
    return Result;
  };
  // Where the sizes stand in a whole picture of each format.
  TQXGPBitmap Bitmap(8, 8);
  Paint(Bitmap, Colors(3, 255));
  const TBytes Jpeg = Encode(Bitmap, u"jpeg");
  const TBytes FrameMarker{0xFF, 0xC0};
  const auto Frame = static_cast<std::size_t>(
      std::search(Jpeg.begin(), Jpeg.end(), FrameMarker.begin(), FrameMarker.end()) - Jpeg.begin());
  const std::tuple<TBytes, std::size_t, std::size_t, int, bool> Cases[] = {
      {Encode(Bitmap, u"png"), 16, 20, 4, true},
      {Jpeg, Frame + 7, Frame + 5, 2, true},
      {Seed("gif/frame"), 6, 8, 2, false},
  };
  for (const auto& [Whole, WidthAt, HeightAt, Size, BigEndian] : Cases)
    for (const auto& [Width, Height] : {std::pair{0x7FFFFFFFu, 0x7FFFFFFFu},
                                        {60'000u, 60'000u},
                                        {32'768u, 1u},
                                        {1u, 40'000u},
                                        {20'000u, 20'000u},
                                        {0u, 5u}}) {
      TBytes File = Whole;
      std::ranges::copy(Number(Width, Size, BigEndian), File.data() + WidthAt);
      std::ranges::copy(Number(Height, Size, BigEndian), File.data() + HeightAt);
      EXPECT_THROW(Codecs().Decode(File, Bitmap), EInvalidGraphicOperation)
          << Width << " " << Height;
      EXPECT_EQ(Bitmap.GetWidth(), 0);
    }
}

TEST(Images, CodecsAreFoundByNameExtensionAndMediaType) {
  for (const StringView Key : {u"jpeg", u"JPG", u".jpg", u"image/jpeg"})
    EXPECT_EQ(Codecs().Find(Key)->Name, u"jpeg") << ToUtf8(Key);
  for (const StringView Key : {u"", u".", u"svg+xml", u"image/", u"png "})
    EXPECT_EQ(Codecs().Find(Key), nullptr) << ToUtf8(Key);
  EXPECT_EQ(TQXGPImage::GetCodec(0), u"png");
  EXPECT_EQ(TQXGPImage::GetCodec(3), u"");
}

TEST(DataURI, OnlyPicturesInBase64AreLoaded) {
  const String Png = Base64Encode(Seed("png/palette"));
  const std::pair<String, int> Cases[] = {
      {u"data:image/png;base64," + Png, 3},
      {u"DATA:image/png;charset=utf-8;BASE64," + Png, 3},
      {u"data:image/gif;base64," + Png, 3},  // the content decides
      {u"data:image/png;base64,\n  " + Png.substr(0, 20) + u"\r\n" + Png.substr(20), 3},
      {u"data:image/png;base64," + Png.substr(0, 20) + u"%0D%0a" + Png.substr(20), 3},
      {u"data:image/png," + Png, 7},
      {u"data:text/plain;base64," + Png, 7},
      {u"picture.png", 7},
      {u"", 7},
  };
  for (const auto& [Text, Width] : Cases) {
    auto Bitmap = std::make_unique<TQXGPBitmap>(7, 1);
    LoadBitmapFromDataURI(Text, Bitmap);
    EXPECT_EQ(Bitmap->GetWidth(), Width) << ToUtf8(Text);
  }
  std::unique_ptr<TQXGPBitmap> Made;
  LoadBitmapFromDataURI(u"none", Made);
  ASSERT_NE(Made, nullptr);
  EXPECT_EQ(Made->GetWidth(), 0);
  for (const StringView Text : {u"data:image/png;base64,", u"data:image/png;base64,AAAA",
                                u"data:image/svg+xml;base64,PHN2Zy8+PHN2Zy8+PHN2Zy8+"})
    EXPECT_THROW(LoadBitmapFromDataURI(Text, Made), EInvalidGraphicOperation) << ToUtf8(Text);
}

TEST(ImageFiles, AreOpenedThroughTheResolver) {
  class TOneFile : public IFileResolver {
   public:
    std::unique_ptr<TStream> Open(StringView Name) override {
      if (Name != u"a.b/only") return nullptr;
      return std::make_unique<TMemoryStream>(Seed("png/palette"));
    }
  };
  Services().Files.Install([] { return std::make_shared<TOneFile>(); });
  TQXGPBitmap Bitmap;
  EXPECT_TRUE(LoadBitmapFromFile(u"a.b/only", Bitmap));
  EXPECT_EQ(Bitmap.GetWidth(), 3);
  EXPECT_FALSE(LoadBitmapFromFile(u"other.png", Bitmap));
  EXPECT_EQ(Bitmap.GetWidth(), 3);
  Services().Files.Install([] { return std::make_shared<TFileResolver>(); });
}

}  // namespace
}  // namespace qxsvg
