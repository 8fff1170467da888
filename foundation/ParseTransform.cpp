#include "foundation/ParseTransform.h"

#include <array>
#include <cmath>
#include <numbers>

#include "foundation/Messages.h"
#include "foundation/ParseNumbers.h"
#include "foundation/ParseTokens.h"
#include "runtime/Exceptions.h"
#include "runtime/Numbers.h"

namespace qxsvg {

namespace {

// The tokens of a transform's arguments: how many there are, and the first of them.
class TArguments {
 public:
  explicit TArguments(StringView Text) {
    TNumberTokens Tokens(Trim(Text));
    for (StringView Token; Tokens.NextClean(Token); ++FCount)
      if (FCount < FTokens.size()) FTokens[FCount] = Token;
  }
  std::size_t Count() const { return FCount; }
  float operator[](std::size_t Index) const { return StrToFloat(FTokens[Index]); }

 private:
  std::array<StringView, 6> FTokens;
  std::size_t FCount = 0;
};

[[noreturn]] void RaiseCount(StringView Name, StringView Text) {
  throw ESVGException(SInvalidTransformationMatrix, {Name, Trim(Text)});
}

float ToRadians(float Degrees) {
  return static_cast<float>(Degrees * (std::numbers::pi / 180));
}

// The tangent of the first argument, in degrees.
float Slant(StringView Text) {
  const TArguments Arguments(Text);
  if (Arguments.Count() == 0) return 0;
  return ToFiniteFloat(std::tan(Arguments[0] * (std::numbers::pi / 180)));
}

// Products of large factors leave the range of 32 bits.
TMatrix Finite(TMatrix M) {
  for (float* const Entry :
       {&M.m11, &M.m12, &M.m13, &M.m21, &M.m22, &M.m23, &M.m31, &M.m32, &M.m33})
    *Entry = ToFiniteFloat(*Entry);
  return M;
}

struct TTransformRow {
  StringView Name;
  TMatrix (*Parse)(StringView Text);
};
constexpr std::array<TTransformRow, 6> Transforms{{{u"matrix", ParseMatrix},
                                                   {u"translate", ParseTranslateMatrix},
                                                   {u"scale", ParseScaleMatrix},
                                                   {u"rotate", ParseRotateMatrix},
                                                   {u"skewX", ParseSkewXMatrix},
                                                   {u"skewY", ParseSkewYMatrix}}};

TMatrix ParseOne(StringView Name, StringView Arguments) {
  for (const TTransformRow& Row : Transforms)
    if (Row.Name == Name) return Row.Parse(Arguments);
  throw ESVGException(SInvalidTransform, {Name});
}

// Transforms may be parted by commas, which then stand before the next one's name.
StringView TrimName(StringView Text) {
  const auto IsAround = [](char16_t C) { return C <= u' ' || C == u','; };
  while (!Text.empty() && IsAround(Text.front())) Text.remove_prefix(1);
  while (!Text.empty() && IsAround(Text.back())) Text.remove_suffix(1);
  return Text;
}

}  // namespace

TMatrix ParseMatrix(StringView Text) {
  const TArguments A(Text);
  if (A.Count() != 6) throw ESVGException(SInvalidMatrix, {Trim(Text)});
  return {A[0], A[1], 0, A[2], A[3], 0, A[4], A[5], 1};
}

TMatrix ParseTranslateMatrix(StringView Text) {
  const TArguments A(Text);
  if (A.Count() != 1 && A.Count() != 2) RaiseCount(u"translate", Text);
  return CreateTranslateQXMatrix(A[0], A.Count() == 2 ? A[1] : 0.0f);
}

TMatrix ParseScaleMatrix(StringView Text) {
  const TArguments A(Text);
  if (A.Count() != 1 && A.Count() != 2) RaiseCount(u"scale", Text);
  return CreateScaleQXMatrix(A[0], A[A.Count() - 1]);
}

TMatrix ParseRotateMatrix(StringView Text) {
  const TArguments A(Text);
  if (A.Count() != 1 && A.Count() != 3) RaiseCount(u"rotation", Text);
  const TMatrix Rotation = CreateRotationQXMatrix(ToRadians(A[0]));
  if (A.Count() == 1) return Rotation;
  const float X = A[1], Y = A[2];
  return Finite(QXMatrixMultiply(CreateTranslateQXMatrix(-X, -Y),
                                 QXMatrixMultiply(Rotation, CreateTranslateQXMatrix(X, Y))));
}

TMatrix ParseSkewXMatrix(StringView Text) {
  TMatrix Result;
  Result.m21 = Slant(Text);
  return Result;
}

TMatrix ParseSkewYMatrix(StringView Text) {
  TMatrix Result;
  Result.m12 = Slant(Text);
  return Result;
}

TMatrix ParseTransformation(StringView Text) {
  TMatrix Result;
  bool IsFirst = true;
  for (;;) {
    const std::size_t Open = Text.find(u'(');
    if (Open == StringView::npos) return Result;
    const std::size_t Close = Text.find(u')', Open);
    if (Close == StringView::npos) return Result;
    const TMatrix Matrix =
        ParseOne(TrimName(Text.substr(0, Open)), Text.substr(Open + 1, Close - Open - 1));
    Result = IsFirst ? Matrix : Finite(QXMatrixMultiply(Matrix, Result));
    IsFirst = false;
    Text.remove_prefix(Close + 1);
  }
}

}  // namespace qxsvg
