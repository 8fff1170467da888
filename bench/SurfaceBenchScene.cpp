#include "bench/SurfaceBenchScene.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <sstream>

#include "graphics/surface/PathData.h"
#include "runtime/String.h"

namespace qxsvg::bench {

namespace {

using TAttributes = std::map<std::string, std::string>;

struct TInherited {
  TQXGPColor Fill = 0xff000000, Stroke = 0;
  float Width = 1;
  TMatrix Matrix;
  TBenchShape Style;
};

TQXGPColor ColorOf(const std::string& Text, TQXGPColor Current) {
  if (Text == "none") return 0;
  if (Text.size() < 4 || Text[0] != '#') return Text == "currentColor" ? 0xff000000 : Current;
  const auto Value = static_cast<std::uint32_t>(std::strtoul(Text.c_str() + 1, nullptr, 16));
  if (Text.size() >= 7) return 0xff000000 | Value;
  return 0xff000000 | (Value >> 8 & 15) * 0x110000 | (Value >> 4 & 15) * 0x1100 |
         (Value & 15) * 0x11;
}

std::vector<float> NumbersOf(std::string Text) {
  for (char& C : Text)
    if (C == ',' || C == '(' || C == ')') C = ' ';
  std::istringstream In(Text);
  std::vector<float> Numbers;
  for (float V; In >> V;) Numbers.push_back(V);
  return Numbers;
}

float NumberOf(const TAttributes& A, const char* Name, float Default = 0) {
  const auto Found = A.find(Name);
  return Found == A.end() ? Default : std::strtof(Found->second.c_str(), nullptr);
}

void Inherit(const TAttributes& A, TInherited& S) {
  for (const auto& [Name, Value] : A) {
    if (Name == "fill") S.Fill = ColorOf(Value, S.Fill);
    if (Name == "stroke") S.Stroke = ColorOf(Value, S.Stroke);
    if (Name == "stroke-width") S.Width = std::strtof(Value.c_str(), nullptr);
    if (Name == "fill-rule" && Value == "evenodd") S.Style.FillMode = TQXGPFillMode::fmAlternate;
    if (Name == "stroke-linecap")
      S.Style.Cap = Value == "round"    ? TQXGPLineCap::lcRound
                    : Value == "square" ? TQXGPLineCap::lcSquare
                                        : TQXGPLineCap::lcFlat;
    if (Name == "stroke-linejoin")
      S.Style.Join = Value == "round"   ? TQXGPStrokeJoin::sjRound
                     : Value == "bevel" ? TQXGPStrokeJoin::sjBevel
                                        : TQXGPStrokeJoin::sjMiter;
    if (Name == "stroke-dasharray") S.Style.Dashes = NumbersOf(Value);
    if (Name == "transform" && Value.rfind("matrix", 0) == 0) {
      const std::vector<float> N = NumbersOf(Value.substr(6));
      if (N.size() == 6)
        S.Matrix = QXMatrixMultiply(TMatrix{N[0], N[1], 0, N[2], N[3], 0, N[4], N[5], 1}, S.Matrix);
    }
  }
}

// One tag from its "<" on; false at the end of the text.
bool NextTag(const std::string& Text, std::size_t& At, std::string& Name, TAttributes& A,
             bool& IsClosed) {
  At = Text.find('<', At);
  if (At == std::string::npos) return false;
  const std::size_t End = Text.find('>', At);
  if (End == std::string::npos) return false;
  std::size_t I = At + 1;
  while (I < End && !std::isspace(static_cast<unsigned char>(Text[I])) &&
         (Text[I] != '/' || I == At + 1))
    ++I;
  Name = Text.substr(At + 1, I - At - 1);
  A.clear();
  while (true) {
    const std::size_t Equal = Text.find('=', I);
    if (Equal == std::string::npos || Equal > End) break;
    const std::size_t Open = Text.find_first_of("\"'", Equal);
    if (Open == std::string::npos || Open > End) break;
    const std::size_t Close = Text.find(Text[Open], Open + 1);
    if (Close == std::string::npos) break;
    std::string Key = Text.substr(I, Equal - I);
    Key.erase(
        std::remove_if(Key.begin(), Key.end(), [](unsigned char C) { return std::isspace(C); }),
        Key.end());
    A[Key] = Text.substr(Open + 1, Close - Open - 1);
    I = Close + 1;
  }
  IsClosed = Text[End - 1] == '/';
  At = End;
  return true;
}

void AddShape(TBenchScene& Scene, const TInherited& S, TQXPathGeometry Path) {
  if (Path.IsEmpty()) return;
  TBenchShape Shape = S.Style;
  Shape.Path = std::move(Path);
  Shape.Path.Transform(S.Matrix);
  Shape.Fill = S.Fill;
  Shape.Stroke = S.Stroke;
  Shape.Width = QXMatrixMultiply(S.Width, S.Matrix);
  for (float& Dash : Shape.Dashes) Dash = QXMatrixMultiply(Dash, S.Matrix);
  Scene.Shapes.push_back(std::move(Shape));
}

TQXPathGeometry GeometryOf(const std::string& Name, const TAttributes& A) {
  TQXPathGeometry Path;
  if (Name == "path" && A.count("d")) {
    QXParsePath(FromUtf8(A.at("d")), Path);
  } else if (Name == "rect") {
    const float X = NumberOf(A, "x"), Y = NumberOf(A, "y");
    Path.AddRectangle({X, Y, X + NumberOf(A, "width"), Y + NumberOf(A, "height")});
  } else if (Name == "circle") {
    const float X = NumberOf(A, "cx"), Y = NumberOf(A, "cy"), R = NumberOf(A, "r");
    Path.AddEllipse({X - R, Y - R, X + R, Y + R});
  }
  return Path;
}

}  // namespace

TMatrix TBenchScene::FitInto(float Size) const {
  const float Scale = Size / std::max(Width, Height);
  TMatrix M = CreateScaleQXMatrix(Scale, Scale);
  M.m31 = (Size - Width * Scale) / 2;
  M.m32 = (Size - Height * Scale) / 2;
  return M;
}

TBenchScene LoadScene(const std::string& Path) {
  TBenchScene Scene;
  std::ifstream In(Path, std::ios::binary);
  const std::string Text((std::istreambuf_iterator<char>(In)), std::istreambuf_iterator<char>());
  std::vector<TInherited> Stack(1);
  std::size_t At = 0;
  std::string Name;
  TAttributes A;
  for (bool IsClosed = false; NextTag(Text, At, Name, A, IsClosed);) {
    if (Name == "/g" && Stack.size() > 1) Stack.pop_back();
    if (Name.empty() || Name[0] == '/') continue;
    if (Name == "svg") {
      const std::vector<float> Box = NumbersOf(A["viewBox"]);
      if (Box.size() == 4) Scene.Width = Box[2], Scene.Height = Box[3];
      Inherit(A, Stack.back());
    }
    if (Name == "g" && !IsClosed) {
      Stack.push_back(Stack.back());
      Inherit(A, Stack.back());
    }
    if (Name != "path" && Name != "rect" && Name != "circle") continue;
    TInherited Own = Stack.back();
    Inherit(A, Own);
    AddShape(Scene, Own, GeometryOf(Name, A));
  }
  return Scene;
}

TBenchScene LoadIcons(const std::string& Folder, std::size_t Number, float Size) {
  std::vector<std::string> Files;
  std::error_code Error;
  for (const auto& Entry : std::filesystem::directory_iterator(Folder, Error))
    Files.push_back(Entry.path().string());
  std::sort(Files.begin(), Files.end());
  std::vector<TBenchShape> Icons;
  for (const std::string& File : Files)
    for (TBenchShape& Shape : LoadScene(File).Shapes) Icons.push_back(std::move(Shape));
  TBenchScene Scene{Size, Size, {}};
  if (Icons.empty()) return Scene;
  constexpr float Side = 24, Units = 16;
  const auto Columns = static_cast<std::size_t>(Size / Side);
  for (std::size_t I = 0; I < Number; ++I) {
    TBenchShape Shape = Icons[I % Icons.size()];
    const auto X = static_cast<float>(I % Columns) * Side;
    const auto Y = static_cast<float>(I / Columns % Columns) * Side;
    Shape.Path.Transform(QXMatrixMultiply(CreateScaleQXMatrix(Side / Units, Side / Units),
                                          CreateTranslateQXMatrix(X, Y)));
    Shape.Fill = 0xff000000 | static_cast<std::uint32_t>(I * 2654435761u >> 8);
    Scene.Shapes.push_back(std::move(Shape));
  }
  return Scene;
}

TBenchScene BigPolygon(std::size_t Points, float Size) {
  TBenchScene Scene{Size, Size, std::vector<TBenchShape>(1)};
  TBenchShape& Shape = Scene.Shapes[0];
  Shape.Fill = 0xff336699;
  Shape.FillMode = TQXGPFillMode::fmAlternate;
  std::mt19937 Random(7);
  std::uniform_real_distribution<float> Noise(0.97f, 1.03f);
  for (std::size_t I = 0; I < Points; ++I) {
    const double T = static_cast<double>(I) / static_cast<double>(Points);
    const double Angle = T * 6.283185307 * 40, R = Size * 0.47 * (0.15 + 0.85 * T) * Noise(Random);
    const TPointF P{static_cast<float>(Size / 2 + R * std::cos(Angle)),
                    static_cast<float>(Size / 2 + R * std::sin(Angle))};
    I == 0 ? Shape.Path.MoveTo(P) : Shape.Path.LineTo(P);
  }
  Shape.Path.Close();
  return Scene;
}

TBenchScene LongStrokes(std::size_t Number, float Size, bool IsDashed) {
  TBenchScene Scene{Size, Size, {}};
  std::mt19937 Random(11);
  std::uniform_real_distribution<float> Place(0, Size), Turn(-0.6f, 0.6f), Width(1, 6);
  for (std::size_t I = 0; I < Number; ++I) {
    TBenchShape Shape;
    Shape.Stroke = 0xff000000 | static_cast<std::uint32_t>(Random());
    Shape.Width = Width(Random);
    Shape.Join = TQXGPStrokeJoin::sjRound;
    Shape.Cap = TQXGPLineCap::lcRound;
    if (IsDashed) Shape.Dashes = {Shape.Width * 4, Shape.Width * 3};
    TPointF P{Place(Random), Place(Random)};
    float Angle = Turn(Random) * 5;
    Shape.Path.MoveTo(P);
    for (int J = 0; J < 60; ++J) {
      Angle += Turn(Random);
      P = {P.X + std::cos(Angle) * Size / 60, P.Y + std::sin(Angle) * Size / 60};
      Shape.Path.LineTo(P);
    }
    Scene.Shapes.push_back(std::move(Shape));
  }
  return Scene;
}

TQXPathGeometry ClipStar(float Size) {
  TQXPathGeometry Star;
  constexpr int Rays = 200;
  for (int I = 0; I < 2 * Rays; ++I) {
    const double Angle = I * 3.14159265358979 / Rays, R = Size * (I % 2 ? 0.48 : 0.30);
    const TPointF P{static_cast<float>(Size / 2 + R * std::cos(Angle)),
                    static_cast<float>(Size / 2 + R * std::sin(Angle))};
    I == 0 ? Star.MoveTo(P) : Star.LineTo(P);
  }
  Star.Close();
  Star.AddEllipse({Size * 0.4f, Size * 0.4f, Size * 0.6f, Size * 0.6f});
  return Star;
}

}  // namespace qxsvg::bench
