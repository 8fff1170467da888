// Transforms.
#include "foundation/ParseTransform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>

#include "runtime/Exceptions.h"

namespace qxsvg {
namespace {

TEST(ParseTransform, TheLastActsFirst) {
  const std::tuple<StringView, TPointF, TPointF> Cases[] = {
      {u"", {3, 4}, {3, 4}},
      {u"translate(10)", {1, 1}, {11, 1}},
      {u"translate(10 20)scale(2)", {1, 1}, {12, 22}},
      {u"scale(2,3) , translate(10,20)", {1, 1}, {22, 63}},
      {u"\n,rotate( 90 )", {1, 0}, {0, 1}},
      {u"rotate(90,5,5)", {5, 4}, {6, 5}},
      {u"skewX(45)", {0, 1}, {1, 1}},
      {u"skewY(45 7 x)", {1, 0}, {1, 1}},
      {u"skewX()", {3, 4}, {3, 4}},
      {u"matrix(1 2 3 4 5 6)", {1, 1}, {9, 12}},
      {u"translate(10) rotate(45,5,5) , scale(2)", {2.5f, 2.5f}, {15, 5}},
      // An unclosed one and what follows is left out, as is text without brackets.
      {u"translate(1", {3, 4}, {3, 4}},
      {u"scale(2) translate(1", {3, 4}, {6, 8}},
      {u"scale(2) nonsense", {3, 4}, {6, 8}},
  };
  for (const auto& [Text, From, To] : Cases) {
    const TPointF Got = QXMatrixTransform(ParseTransformation(Text), From);
    EXPECT_NEAR(Got.X, To.X, 1e-5) << ToUtf8(Text);
    EXPECT_NEAR(Got.Y, To.Y, 1e-5) << ToUtf8(Text);
  }
  EXPECT_EQ(ParseTransformation(u"matrix(1 2 3 4 5 6)"), TMatrix({1, 2, 0, 3, 4, 0, 5, 6, 1}));
}

TEST(ParseTransform, FailuresNameWhatIsWrong) {
  const std::pair<StringView, const char*> Cases[] = {
      {u"scale(1), foo(1)", "Invalid transformation: foo"},
      {u"Scale(1)", "Invalid transformation: Scale"},
      {u"(1)", "Invalid transformation: "},
      {u"matrix(1 2 3 4 5)", "Invalid matrix: 1 2 3 4 5"},
      {u"matrix(1 2 3 4 5 6 7)", "Invalid matrix: 1 2 3 4 5 6 7"},
      {u"translate()", "Invalid translate transformation matrix: "},
      {u"scale(1 2 3)", "Invalid scale transformation matrix: 1 2 3"},
      {u"rotate(1,2)", "Invalid rotation transformation matrix: 1,2"},
  };
  for (const auto& [Text, Message] : Cases) {
    EXPECT_THAT([Text = Text] { ParseTransformation(Text); },
                testing::ThrowsMessage<ESVGException>(testing::StrEq(Message)));
  }
  for (const StringView Bad : {u"translate(x1)", u"skewX(10deg)", u"matrix(1 2 3 4 5 1e39)"})
    EXPECT_THROW(ParseTransformation(Bad), EConvertError) << ToUtf8(Bad);
}

TEST(ParseTransform, HugeFactorsStayFinite) {
  for (const StringView Text :
       {u"scale(1e38) scale(1e38)", u"scale(-1e38) translate(1e38,1e38)", u"skewX(90)",
        u"rotate(45 3e38 -3e38)", u"scale(3e38) matrix(1e38 -1e38 1e38 1e38 1 1) scale(3e38)"})
    EXPECT_TRUE(IsFinite(ParseTransformation(Text))) << ToUtf8(Text);
}

}  // namespace
}  // namespace qxsvg
