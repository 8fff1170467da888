// The reader of path data. Much of a drawing's load time is spent here, so that numbers are read in
// place, points go to a buffer on the stack first, and the current point is kept in double
// precision to spare relative commands the sum of their rounding errors.
#include <array>
#include <cfloat>

#include "foundation/Limits.h"
#include "graphics/surface/PathArc.h"
#include "graphics/surface/PathData.h"
#include "runtime/Numbers.h"

namespace qxsvg {
namespace {

constexpr std::array<double, 16> PowersOfTen{1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                             1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

constexpr bool IsBlank(char16_t C) {
  return C == u' ' || (C >= 9 && C <= 13 && C != 11);
}
constexpr unsigned DigitOf(char16_t C) {
  return static_cast<unsigned>(C) - u'0';
}
constexpr bool BeginsNumber(char16_t C) {
  return DigitOf(C) < 10 || C == u'-' || C == u'.' || C == u'+';
}

}  // namespace

class TQXPathParser {
 public:
  TQXPathParser(StringView Text, TQXPathGeometry& Target)
      : FFirst(Text.data()), FAt(Text.data()), FLast(Text.data() + Text.size()), FTarget(Target) {}

  bool Run() {
    try {
      const bool IsWhole = ReadAll();
      Flush();
      return IsWhole;
    } catch (...) {
      // The figure that was open may be among the entries that found no room.
      FTarget.FindFigure();
      throw;
    }
  }

 private:
  using enum TQXPathPointKind;
  enum class TCurve : std::uint8_t { None, Cubic, Quadratic };

  // An arc is the largest segment: twelve entries, and the move that may come before it.
  static constexpr std::size_t BufferSize = 256, Spare = 14;

  bool ReadAll() {
    SkipBlanks();
    if (FAt == FLast) return true;
    if (*FAt != u'M' && *FAt != u'm') return false;
    while (FAt != FLast) {
      const char16_t Letter = *FAt++;
      const bool IsRelative = Letter >= u'a';
      SkipBlanks();
      if (!ReadCommand(AsciiLower(Letter), IsRelative)) return false;
    }
    return true;
  }

  bool ReadCommand(char16_t Letter, bool IsRelative) {
    switch (Letter) {
      case u'm': return ReadMove(IsRelative);
      case u'z': Close(); return true;
      case u'l': return Repeat<2>([&](const double* V) { return Line(IsRelative, V[0], V[1]); });
      case u'h':
        return Repeat<1>(
            [&](const double* V) { return LineTo(V[0] + (IsRelative ? FNow.X : 0), FNow.Y); });
      case u'v':
        return Repeat<1>(
            [&](const double* V) { return LineTo(FNow.X, V[0] + (IsRelative ? FNow.Y : 0)); });
      case u'c':
        return Repeat<6>([&](const double* V) {
          const TQXPointD O = Origin(IsRelative);
          return Cubic({O.X + V[0], O.Y + V[1]}, {O.X + V[2], O.Y + V[3]},
                       {O.X + V[4], O.Y + V[5]});
        });
      case u's':
        return Repeat<4>([&](const double* V) {
          const TQXPointD O = Origin(IsRelative);
          return Cubic(Reflected(TCurve::Cubic), {O.X + V[0], O.Y + V[1]},
                       {O.X + V[2], O.Y + V[3]});
        });
      case u'q':
        return Repeat<4>([&](const double* V) {
          const TQXPointD O = Origin(IsRelative);
          return Quadratic({O.X + V[0], O.Y + V[1]}, {O.X + V[2], O.Y + V[3]});
        });
      case u't':
        return Repeat<2>([&](const double* V) {
          const TQXPointD O = Origin(IsRelative);
          return Quadratic(Reflected(TCurve::Quadratic), {O.X + V[0], O.Y + V[1]});
        });
      case u'a': return ReadArcs(IsRelative);
      default: return false;
    }
  }

  bool ReadMove(bool IsRelative) {
    double V[2];
    if (!ReadNumbers<2>(V)) return false;
    const TQXPointD O = Origin(IsRelative);
    const TQXPointD To{O.X + V[0], O.Y + V[1]};
    if (!IsInRange(To)) return false;
    FNow = FStart = To;
    FNeedsMove = true;
    FCurve = TCurve::None;
    // A move always has its entry, also where no segment follows.
    MakeRoom();
    OpenFigure();
    bool IsNext;
    if (!ToNext(IsNext)) return false;
    return !IsNext || Repeat<2>([&](const double* W) { return Line(IsRelative, W[0], W[1]); });
  }

  bool ReadArcs(bool IsRelative) {
    for (bool IsNext = true; IsNext;) {
      double V[3], End[2];
      bool LargeArc, Sweep;
      if (!ReadNumbers<3>(V) || !SkipComma() || !ReadFlag(LargeArc) || !SkipComma() ||
          !ReadFlag(Sweep) || !SkipComma() || !ReadNumbers<2>(End))
        return false;
      const TQXPointD O = Origin(IsRelative);
      const TQXPointD To{O.X + End[0], O.Y + End[1]};
      if (!IsInRange(To)) return false;
      const TQXArc Arc(FNow, V[0], V[1], V[2], LargeArc, Sweep, To);
      if (Arc.IsLine()) {
        if (!LineTo(To.X, To.Y)) return false;
      } else {
        MakeRoom();
        OpenFigure();
        Arc.ForEachCurve([this](TPointF C1, TPointF C2, TPointF P) {
          Put(C1, pkCurve);
          Put(C2, pkCurve);
          Put(P, pkCurve);
        });
        FNow = To;
        FCurve = TCurve::None;
      }
      if (!ToNext(IsNext)) return false;
    }
    return true;
  }

  // One command with as many rounds of N numbers as there are.
  template <int N, class Segment>
  bool Repeat(Segment Take) {
    for (bool IsNext = true; IsNext;) {
      double V[N];
      if (!ReadNumbers<N>(V) || !Take(V) || !ToNext(IsNext)) return false;
    }
    return true;
  }

  // Behind a round: whether another follows. False after a comma that no number follows.
  bool ToNext(bool& IsNext) {
    SkipBlanks();
    IsNext = false;
    if (FAt == FLast) return true;
    if (*FAt == u',') {
      ++FAt;
      SkipBlanks();
      IsNext = FAt != FLast && BeginsNumber(*FAt);
      return IsNext;
    }
    IsNext = BeginsNumber(*FAt);
    return true;
  }

  void SkipBlanks() {
    while (FAt != FLast && IsBlank(*FAt)) ++FAt;
  }
  // Blanks with at most one comma; the end of the text is an error here.
  bool SkipComma() {
    SkipBlanks();
    if (FAt != FLast && *FAt == u',') {
      ++FAt;
      SkipBlanks();
    }
    return FAt != FLast;
  }

  template <int N>
  bool ReadNumbers(double* V) {
    if (!ReadNumber(V[0])) return false;
    for (int I = 1; I < N; ++I)
      if (!SkipComma() || !ReadNumber(V[I])) return false;
    return true;
  }

  bool ReadNumber(double& Value) {
    const char16_t* At = FAt;
    const bool IsNegative = At != FLast && *At == u'-';
    if (At != FLast && (*At == u'-' || *At == u'+')) ++At;
    std::uint64_t Digits = 0;
    const char16_t* const First = At;
    for (unsigned D; At != FLast && (D = DigitOf(*At)) < 10; ++At) Digits = Digits * 10 + D;
    std::ptrdiff_t Count = At - First, Places = 0;
    if (At != FLast && *At == u'.') {
      const char16_t* const Fraction = ++At;
      for (unsigned D; At != FLast && (D = DigitOf(*At)) < 10; ++At) Digits = Digits * 10 + D;
      Places = At - Fraction;
      Count += Places;
    }
    if (Count == 0) return false;
    // Up to fifteen digits and their power of ten are exact doubles, so one division rounds
    // rightly.
    if (Count > 15 || (At != FLast && (*At | 32) == u'e')) [[unlikely]]
      return ReadLongNumber(Value);
    double Magnitude = static_cast<double>(Digits);
    if (Places) Magnitude /= PowersOfTen[static_cast<std::size_t>(Places)];
    Value = IsNegative ? -Magnitude : Magnitude;
    FAt = At;
    return true;
  }

  bool ReadLongNumber(double& Value) {
    const char16_t* const End = ParseFloatPrefix(FAt, FLast, Value);
    if (End == FAt) return false;
    FAt = End;
    return true;
  }

  bool ReadFlag(bool& Flag) {
    if (FAt == FLast || (*FAt != u'0' && *FAt != u'1')) return false;
    Flag = *FAt++ == u'1';
    return true;
  }

  static bool IsInRange(TQXPointD P) {
    // As one comparison each that is false for what is no number too.
    return std::abs(P.X) <= FLT_MAX && std::abs(P.Y) <= FLT_MAX;
  }
  static TPointF ToPoint(TQXPointD P) { return {static_cast<float>(P.X), static_cast<float>(P.Y)}; }
  TQXPointD Origin(bool IsRelative) const { return IsRelative ? FNow : TQXPointD{}; }
  // The mirrored control of the last segment where that was such a curve.
  TQXPointD Reflected(TCurve Kind) const {
    if (FCurve != Kind) return FNow;
    return {2 * FNow.X - FControl.X, 2 * FNow.Y - FControl.Y};
  }

  bool Line(bool IsRelative, double X, double Y) {
    const TQXPointD O = Origin(IsRelative);
    return LineTo(O.X + X, O.Y + Y);
  }
  bool LineTo(double X, double Y) {
    if (!IsInRange({X, Y})) return false;
    MakeRoom();
    OpenFigure();
    FNow = {X, Y};
    Put(ToPoint(FNow), pkLine);
    FCurve = TCurve::None;
    return true;
  }
  bool Cubic(TQXPointD C1, TQXPointD C2, TQXPointD To) {
    if (!PutCurve(C1, C2, To)) return false;
    FControl = C2;
    FCurve = TCurve::Cubic;
    return true;
  }
  bool Quadratic(TQXPointD C, TQXPointD To) {
    const auto Toward = [&C](TQXPointD P) {
      return TQXPointD{P.X + (C.X - P.X) * (2.0 / 3), P.Y + (C.Y - P.Y) * (2.0 / 3)};
    };
    if (!PutCurve(Toward(FNow), Toward(To), To)) return false;
    FControl = C;
    FCurve = TCurve::Quadratic;
    return true;
  }
  bool PutCurve(TQXPointD C1, TQXPointD C2, TQXPointD To) {
    if (!IsInRange(C1) || !IsInRange(C2) || !IsInRange(To)) return false;
    MakeRoom();
    OpenFigure();
    Put(ToPoint(C1), pkCurve);
    Put(ToPoint(C2), pkCurve);
    Put(ToPoint(To), pkCurve);
    FNow = To;
    return true;
  }
  void Close() {
    if (!FNeedsMove) {
      MakeRoom();
      Put(ToPoint(FStart), pkClose);
    }
    FNow = FStart;
    FNeedsMove = true;
    FCurve = TCurve::None;
    SkipBlanks();
  }

  void OpenFigure() {
    if (!FNeedsMove) return;
    FTarget.FFigure = FTarget.FPoints.size() + FCount;
    Put(ToPoint(FStart), pkMove);
    FNeedsMove = false;
  }
  void MakeRoom() {
    if (FCount > BufferSize - Spare) [[unlikely]]
      Flush();
  }
  void Put(TPointF P, TQXPathPointKind Kind) {
    FPoints[FCount] = P;
    FKinds[FCount] = Kind;
    ++FCount;
  }
  void Flush() {
    // The first buffer tells how dense the text is. Growing by doubling would copy all points and
    // touch twice the memory.
    if (!FIsReserved && FAt != FLast && FCount != 0) {
      FIsReserved = true;
      const double Share = static_cast<double>(FLast - FFirst) / static_cast<double>(FAt - FFirst);
      const double Expected = static_cast<double>(FCount) * Share * 1.05;
      FTarget.Reserve(FTarget.Count() +
                      static_cast<std::size_t>(std::min(Expected, 3.0 * Limits::PathSegments)));
    }
    FTarget.AppendRaw({{FPoints.data(), FCount}, {FKinds.data(), FCount}});
    FCount = 0;
  }

  const char16_t* const FFirst;
  const char16_t* FAt;
  const char16_t* const FLast;
  TQXPathGeometry& FTarget;
  TQXPointD FNow, FStart, FControl;
  TCurve FCurve = TCurve::None;
  // The open figure has no entry yet: after a close, and at the start.
  bool FNeedsMove = true;
  bool FIsReserved = false;
  std::size_t FCount = 0;
  std::array<TPointF, BufferSize> FPoints;
  std::array<TQXPathPointKind, BufferSize> FKinds;
};

bool QXParsePath(StringView Text, TQXPathGeometry& Target) {
  return TQXPathParser(Text, Target).Run();
}

}  // namespace qxsvg
