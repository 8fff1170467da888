// The elliptical arc between two points as cubic curves.
#pragma once

#include "foundation/Geometry.h"

namespace qxsvg {

struct TQXPointD {
  double X = 0, Y = 0;
};

// SVG 1.1 appendix F.6: from the ends, half-axes, rotation in degrees and flags to the centre.
class TQXArc {
 public:
  TQXArc(TQXPointD Start, double RX, double RY, double Rotation, bool LargeArc, bool Sweep,
         TQXPointD End);

  // A straight line to the end, or nothing at all where both ends are the same point.
  bool IsLine() const { return FCurves == 0; }

  // Calls Take(Control1, Control2, Point) for each of the one to four curves.
  template <class Sink>
  void ForEachCurve(Sink Take) const {
    const double Step = FDelta / FCurves;
    // How far a curve's controls lie along the tangents of an arc of that angle.
    const double Reach = 4.0 / 3 * std::tan(Step / 4);
    double Sine = std::sin(FTheta), Cosine = std::cos(FTheta);
    for (int I = 1; I <= FCurves; ++I) {
      const double Angle = FTheta + I * Step;
      const double NextSine = std::sin(Angle), NextCosine = std::cos(Angle);
      const TPointF C1 = At(Cosine - Reach * Sine, Sine + Reach * Cosine);
      const TPointF C2 = At(NextCosine + Reach * NextSine, NextSine - Reach * NextCosine);
      Take(C1, C2, I == FCurves ? FEnd : At(NextCosine, NextSine));
      Sine = NextSine;
      Cosine = NextCosine;
    }
  }

 private:
  // The point of the ellipse that the unit circle's (X, Y) becomes.
  TPointF At(double X, double Y) const {
    return {static_cast<float>(FCenter.X + FXX * X + FYX * Y),
            static_cast<float>(FCenter.Y + FXY * X + FYY * Y)};
  }

  TQXPointD FCenter;
  TPointF FEnd;
  double FXX = 0, FXY = 0, FYX = 0, FYY = 0;
  double FTheta = 0, FDelta = 0;
  int FCurves = 0;
};

}  // namespace qxsvg
