// What the writers write, the parsers read back as the same value.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <random>

#include "foundation/Length.h"
#include "foundation/Parsers.h"
#include "foundation/Writers.h"

namespace qxsvg {
namespace {

// Enough digits for every float: significant ones through the exponent.
constexpr StringView FullFormat = u"0.########E+0";

class RoundTrip : public testing::TestWithParam<unsigned> {
 protected:
  // The seed is the parameter, and so part of the test's name.
  std::mt19937 Random{GetParam()};

  // Any finite float, in half of the cases one of a drawing's usual size.
  float AnyFloat() {
    if (Random() % 2)
      return static_cast<float>(static_cast<int>(Random() % 200'001) - 100'000) / 64;
    for (;;) {
      const float Value = std::bit_cast<float>(static_cast<std::uint32_t>(Random()));
      if (std::isnormal(Value)) return Value;
    }
  }
};

TEST_P(RoundTrip, Numbers) {
  for (int Round = 0; Round < 2'000; ++Round) {
    std::vector<float> Values(Random() % 8);
    for (float& Value : Values) Value = AnyFloat();
    for (const StringView Delimiter : {u" ", u",", u", "}) {
      const String Text = SVGNumbersToString(Values, FullFormat, Delimiter);
      ASSERT_EQ(ParseNumbers(Text, {}), Values) << ToUtf8(Text);
    }
  }
}

TEST_P(RoundTrip, Lengths) {
  for (int Round = 0; Round < 2'000; ++Round) {
    const auto Unit = static_cast<TSVGUnit>(Random() % SVGUnitStrings.size());
    const bool IsPercent = Unit == TSVGUnit::suPercent;
    // A fraction that a percentage writes without loss.
    const float Raw = IsPercent ? static_cast<float>(Random() % 1024) / 1024 : AnyFloat();
    const TSVGLength Length(Raw, IsPercent, Unit);
    const String Text = SVGLengthToString(Length, FullFormat, 0, 100);
    TSVGLength Read;
    ParsePercent(Text, Read, 0, 1);
    ASSERT_EQ(Read.Raw(), Raw) << ToUtf8(Text);
    ASSERT_EQ(Read.IsPercent(), IsPercent) << ToUtf8(Text);
    // Pixels are written without their unit.
    ASSERT_EQ(Read.Unit(), Unit == TSVGUnit::suPixels ? TSVGUnit::suNone : Unit) << ToUtf8(Text);
  }
}

TEST_P(RoundTrip, Transforms) {
  for (int Round = 0; Round < 2'000; ++Round) {
    TMatrix M;
    const auto Kind = Random() % 3;
    if (Kind != 1) M.m11 = AnyFloat(), M.m22 = AnyFloat();
    if (Kind != 0) M.m31 = AnyFloat(), M.m32 = AnyFloat();
    if (Kind == 2) M.m12 = AnyFloat(), M.m21 = AnyFloat();
    // What is next to the identity is not written.
    if (QXMatrixEquals(M, TMatrix(), 1e-4f)) continue;
    const String Text = SVGTransformationToString(M);
    ASSERT_EQ(ParseTransformation(Text), M) << ToUtf8(Text);
  }
}

INSTANTIATE_TEST_SUITE_P(Seed, RoundTrip, testing::Values(1u, 20'011u, 77'003u));

}  // namespace
}  // namespace qxsvg
