// The writer of path data.
#include <optional>

#include "graphics/surface/PathData.h"
#include "graphics/surface/PathWalk.h"
#include "runtime/FloatFormat.h"
#include "runtime/Numbers.h"

namespace qxsvg {

void QXAppendPathString(String& Target, const TQXPathView& Path, StringView FormatStr) {
  std::optional<TFloatFormat> Pattern;
  if (!FormatStr.empty()) Pattern.emplace(FormatStr);
  const auto Number = [&](float Value) {
    if (Pattern)
      Pattern->Append(Target, Value);
    else
      AppendFloat(Target, Value);
  };
  const auto Command = [&](char16_t Letter) {
    if (!Target.empty()) Target += u' ';
    Target += Letter;
  };
  const auto Point = [&](TPointF P) {
    Number(P.X);
    Target += u',';
    Number(P.Y);
  };
  Target.reserve(Target.size() + Path.Count() * 12);
  WalkPath(
      Path,
      [&](TPointF P) {
        Command(u'M');
        Point(P);
      },
      [&](TPointF, TPointF P) {
        Command(u'L');
        Point(P);
      },
      [&](TPointF, TPointF C1, TPointF C2, TPointF P) {
        Command(u'C');
        Point(C1);
        Target += u' ';
        Point(C2);
        Target += u' ';
        Point(P);
      },
      [&](TPointF, TPointF) { Command(u'Z'); });
}

}  // namespace qxsvg
