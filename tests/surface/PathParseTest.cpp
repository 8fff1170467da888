#include <gtest/gtest.h>

#include <random>

#include "graphics/surface/PathData.h"
#include "runtime/String.h"
#include "tests/support/RecordingCanvas.h"

namespace qxsvg {
namespace {

using test::Describe;

std::string Parsed(std::string_view Text) {
  TQXPathGeometry Path;
  const bool IsWhole = QXParsePath(FromUtf8(Text), Path);
  return Describe(Path.View()) + (IsWhole ? "" : " !");
}

struct TCase {
  const char *Text, *Points;
};

TEST(PathParse, ReadsEveryCommand) {
  const TCase Cases[] = {
      {"", ""},
      {" \n\t", ""},
      {"M10 20", "M 10,20"},
      {"m10,20", "M 10,20"},
      {"M1 2L3 4l5 6", "M 1,2 L 3,4 L 8,10"},
      {"M1 2 3 4 5 6", "M 1,2 L 3,4 L 5,6"},
      {"m1 2 3 4 5 6", "M 1,2 L 4,6 L 9,12"},
      {"M1 2H5h2 1V7v-1 2", "M 1,2 L 5,2 L 7,2 L 8,2 L 8,7 L 8,6 L 8,8"},
      {"M0 0C1 2 3 4 5 6", "M 0,0 C 1,2 3,4 5,6"},
      {"M1 1c1 2 3 4 5 6", "M 1,1 C 2,3 4,5 6,7"},
      {"M0 0c1 2 3 4 5 6 1 2 3 4 5 6", "M 0,0 C 1,2 3,4 5,6 C 6,8 8,10 10,12"},
      // A smooth curve mirrors the control of a curve of its own kind, and takes the point
      // otherwise.
      {"M0 0C1 2 3 4 5 6S9 9 10 10", "M 0,0 C 1,2 3,4 5,6 C 7,8 9,9 10,10"},
      {"M0 0C1 2 3 4 5 6s4 3 5 4", "M 0,0 C 1,2 3,4 5,6 C 7,8 9,9 10,10"},
      {"M1 1S3 3 4 4", "M 1,1 C 1,1 3,3 4,4"},
      {"M0 0Q3 3 6 0S9 9 12 0", "M 0,0 C 2,2 4,2 6,0 C 6,0 9,9 12,0"},
      {"M0 0Q3 3 6 0", "M 0,0 C 2,2 4,2 6,0"},
      {"M0 0q3 3 6 0T12 0", "M 0,0 C 2,2 4,2 6,0 C 8,-2 10,-2 12,0"},
      {"M0 0Q3 3 6 0t6 0 6 0", "M 0,0 C 2,2 4,2 6,0 C 8,-2 10,-2 12,0 C 14,2 16,2 18,0"},
      {"M0 0T6 0", "M 0,0 C 0,0 2,0 6,0"},
      {"M0 0C1 2 3 4 5 6T6 0", "M 0,0 C 1,2 3,4 5,6 C 5,6 5.333,4 6,0"},
      // After a close the next segment begins a figure at the start of the closed one.
      {"M1 1L2 2ZL3 3", "M 1,1 L 2,2 Z M 1,1 L 3,3"},
      {"M1 1L2 2zm1 1l1 1", "M 1,1 L 2,2 Z M 2,2 L 3,3"},
      {"M1 1L2 2zZ", "M 1,1 L 2,2 Z"},
      {"M1 1z", "M 1,1 Z"},
      {"M1 1M2 2L3 3", "M 1,1 M 2,2 L 3,3"},
      // Arcs that are none: no half-axis, no way.
      {"M0 0A0 5 0 0 1 9 9", "M 0,0 L 9,9"},
      {"M1 1A5 5 0 0 1 1 1", "M 1,1 L 1,1"},
      {"M0 0A5 5 0 0 1 5 5", "M 0,0 C 2.761,0 5,2.239 5,5"},
      {"M0 0A5 5 0 0 0 5 5", "M 0,0 C 0,2.761 2.239,5 5,5"},
      {"M0 0a-5 5 0 0 1 5 5", "M 0,0 C 2.761,0 5,2.239 5,5"},
      // Half-axes too small for the way grow until they reach.
      {"M0 0A1 1 0 0 1 10 0", "M 0,0 C 0,-2.761 2.239,-5 5,-5 C 7.761,-5 10,-2.761 10,0"},
  };
  for (const TCase& Case : Cases) EXPECT_EQ(Parsed(Case.Text), Case.Points) << Case.Text;
}

TEST(PathParse, ReadsNumbersThatTouch) {
  const TCase Cases[] = {
      {"M1-2.5.5-.5", "M 1,-2.5 L 0.5,-0.5"},
      {"M+1+2", "M 1,2"},
      {"M1.2.3", "M 1.2,0.3"},
      {"M1. 2.", "M 1,2"},
      {"M1e2-2E-1", "M 100,-0.2"},
      {"M1e+2 2", "M 100,2"},
      {"M 1 , 2 , 3 , 4", "M 1,2 L 3,4"},
      {"\r\n M \t1\f2", "M 1,2"},
      {"M000000000000000000001 00.5", "M 1,0.5"},
      {"M0.12345678901234567890 1", "M 0.123,1"},
  };
  for (const TCase& Case : Cases) EXPECT_EQ(Parsed(Case.Text), Case.Points) << Case.Text;
}

TEST(PathParse, ReadsFlagsThatTouch) {
  const TCase Cases[] = {
      {"M0 0a5 5 0 011 1", "M0 0 a 5 5 0 0 1 1 1"},
      {"M0 0A5 5 0 01.5.5", "M0 0 A 5 5 0 0 1 .5 .5"},
      {"M0 0A5 5 0 10-5-5", "M0 0 A 5 5 0 1 0 -5 -5"},
      {"M0,0A5,5,0,0,1,5,5", "M0 0 A 5 5 0 0 1 5 5"},
      {"M0 0A5 5 0 015 5 5 5 0 1,1,0 10", "M0 0 A 5 5 0 0 1 5 5 A 5 5 0 1 1 0 10"},
  };
  for (const TCase& Case : Cases) {
    EXPECT_NE(Parsed(Case.Text).back(), '!') << Case.Text;
    EXPECT_EQ(Parsed(Case.Text), Parsed(Case.Points)) << Case.Text;
  }
}

TEST(PathParse, KeepsTheGeometryUpToTheError) {
  const std::pair<const char*, std::vector<const char*>> Cases[] = {
      {" !", {"L1 1", "1 2", "Z", "M", "M1", "M1,", "M,1 2", "M1,,2"}},
      {"M 1,2 !",
       {"M1 2 3", "M1 2,", "M1 2,L3 4", "M1 2C1 2 3 4 5", "M1 2L1e 2", "M1 2L- 2", "M1 2L. 2",
        "M1 2L1e99 2", "M1 2L1e400 2L3 4", "M1 2LNaN 2", "M1 2A5 5 0 2 1 5 5", "M1 2A5 5 0 0 5 5",
        "M1 2B3 4"}},
      {"M 1,2 L 3,4 !", {"M1 2L3 4 5", "M1 2L3 4 x", "M1 2L3 4L"}},
      {"M 1,2 Z !", {"M1 2z3 4", "M1 2z,L3 4"}},
  };
  for (const auto& [Points, Texts] : Cases)
    for (const char* Text : Texts) EXPECT_EQ(Parsed(Text), Points) << Text;
  TQXPathGeometry Far;
  EXPECT_FALSE(QXParsePath(u"M3e38 0l3e38 0", Far));
  EXPECT_EQ(Far.Count(), 1u);
}

TEST(PathParse, AppendsBehindWhatIsThere) {
  TQXPathGeometry Path;
  Path.MoveTo({1, 1});
  Path.LineTo({2, 2});
  EXPECT_TRUE(QXParsePath(u"m3 3l1 1z", Path));
  EXPECT_EQ(Describe(Path.View()), "M 1,1 L 2,2 M 3,3 L 4,4 Z");
  Path.LineTo({9, 9});
  EXPECT_EQ(Describe(Path.View()), "M 1,1 L 2,2 M 3,3 L 4,4 Z M 3,3 L 9,9");
}

std::string RandomPath(std::mt19937& Random) {
  std::uniform_int_distribution<int> Number(-9999, 9999), Letter(0, 9);
  const auto N = [&] { return std::to_string(Number(Random)) + "e-2 "; };
  std::string Text = "M" + N() + N();
  for (int I = 0; I < 40; ++I) switch (Letter(Random)) {
      case 0: Text += "Z"; break;
      case 1: Text += "m" + N() + N(); break;
      case 2: Text += "A" + N() + N() + N() + "1 0" + N() + N(); break;
      case 3: Text += "q" + N() + N() + N() + N(); break;
      case 4: Text += "T" + N() + N(); break;
      case 5: Text += "S" + N() + N() + N() + N(); break;
      case 6: Text += "h" + N(); break;
      case 7: Text += "C" + N() + N() + N() + N() + N() + N(); break;
      default: Text += "L" + N() + N();
    }
  return Text;
}

TEST(PathWrite, IsReadBackAsItWas) {
  constexpr unsigned Seed = 4711;
  std::mt19937 Random(Seed);
  for (int Round = 0; Round < 200; ++Round) {
    TQXPathData Data, Copy;
    Data.SetPathString(FromUtf8(RandomPath(Random)));
    Copy.SetPathString(Data.GetPathString());
    ASSERT_GT(Data.GetCount(), 30u);
    ASSERT_TRUE(Data.Geometry() == Copy.Geometry()) << "seed " << Seed << " round " << Round;
  }
}

TEST(PathWrite, UsesTheNumberFormat) {
  TQXPathData Data;
  Data.SetPathString(u"M1.23456 2C0 0 1 1.5 2 2.0004z");
  EXPECT_EQ(ToUtf8(Data.GetPathString()), "M1.23456,2 C0,0 1,1.5 2,2.0004 Z");
  Data.SetFormatStr(u"0.##");
  EXPECT_EQ(ToUtf8(Data.GetPathString()), "M1.23,2 C0,0 1,1.5 2,2 Z");
  Data.Clear();
  EXPECT_EQ(Data.GetPathString(), u"");
}

}  // namespace
}  // namespace qxsvg
