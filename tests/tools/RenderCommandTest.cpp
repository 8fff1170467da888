// The commands that draw and ask, run as a user runs them.
#include <gtest/gtest.h>

#include <tuple>

#include "foundation/Color.h"
#include "graphics/surface/ImageCodecs.h"
#include "runtime/Services.h"
#include "tests/support/RunCommand.h"

namespace qxsvg {
namespace {

using namespace test;

void Render(const std::string& Options, std::string_view Drawing, TQXGPBitmap& Picture) {
  const TRunResult Drawn = RunQxsvg("render - " + Options, Drawing);
  ASSERT_EQ(Drawn.Status, 0) << Options << Drawn.Errors;
  Services().Images.Get()->Decode(BytesOf(Drawn.Output), Picture);
}

constexpr std::string_view Sample =
    "<svg width='30.4' height='2in' viewBox='0 0 10 20'>"
    "<g id='g' transform='translate(2 4)'><rect id='r' width='5' height='5' fill='#00ff00'/></g>"
    "</svg>";

TEST(Render, SizesFollowTheOptions) {
  constexpr std::string_view Percent = "<svg width='100%' viewBox='0 0 33 11'/>";
  constexpr std::string_view Plain = "<svg width='40' height='20'/>";
  constexpr std::string_view Sizeless = "<svg><rect x='5' y='6' width='20' height='30'/></svg>";
  constexpr std::string_view Share =
      "<svg width='100%' height='100%'><rect x='5' y='6' width='20' height='30'/></svg>";
  const std::tuple<std::string, std::string_view, int, int> Cases[] = {
      {"", Sample, 31, 192},
      {"", Percent, 33, 11},
      {"", Plain, 40, 20},
      {"", Sizeless, 20, 30},
      {"", Share, 20, 30},
      {"-d 48", Sample, 31, 96},
      {"-w 100", Plain, 100, 50},
      {"--height 100", Plain, 200, 100},
      {"-z 1.51", Plain, 61, 31},
      // What the products add to whole numbers is no pixel.
      {"-z 1.1", "<svg width='100' height='50'/>", 110, 55},
      {"-w 14", "<svg width='7' height='29'/>", 14, 58},
      {"-w 100 -h 100", Plain, 100, 100},
      {"-w 100 -h 100 -a", Plain, 100, 50},
      {"-i r", Sample, 16, 16},
      {"-i page", "<svg id='page' width='40' height='20'><rect width='5' height='5'/></svg>", 40,
       20},
      {"-i beside",
       "<svg width='9' height='9'><rect id='beside' x='-5' width='10' height='30'/></svg>", 10, 30},
      // With all of its stroke, and what a use shows.
      {"-i s",
       "<svg width='40' height='20'><path id='s' d='M5 5h10' stroke='red' "
       "stroke-width='4'/></svg>",
       10, 4},
      {"-i u",
       "<svg width='40' height='20' xmlns:xlink='http://www.w3.org/1999/xlink'><g><use "
       "id='u' x='5' xlink:href='#c'/></g><defs><circle id='c' cx='9' cy='9' r='4' "
       "stroke='red' stroke-width='2'/></defs></svg>",
       10, 10},
  };
  for (const auto& [Options, Drawing, Width, Height] : Cases) {
    TQXGPBitmap Picture;
    Render(Options, Drawing, Picture);
    EXPECT_EQ(Picture.GetWidth(), Width) << Options << Drawing;
    EXPECT_EQ(Picture.GetHeight(), Height) << Options << Drawing;
  }
}

TEST(Render, OptionsReachThePicture) {
  const TScratchFolder Folder;
  const std::string Rules = Folder.Add("rules.css", "rect { fill: blue }");
  const std::string Marked = Folder.Add("marked.css", "\xef\xbb\xbfrect { fill: blue }");
  const std::string Wide =
      Folder.Add("wide.css", std::string("\xff\xfe*\0{\0f\0i\0l\0l\0:\0r\0e\0d\0}\0", 24));
  constexpr std::string_view Rect = "<svg width='8' height='8'><rect width='8' height='8'/></svg>";
  // The pixel in the middle.
  const std::tuple<std::string, std::string_view, std::uint32_t> Cases[] = {
      {"", "<svg width='8' height='8'/>", 0},
      {"-b transparent", "<svg width='8' height='8'/>", 0},
      {"-b '#102030'", "<svg width='8' height='8'/>", 0xFF102030},
      {"-b '#ff000080'", "<svg width='8' height='8'/>", 0x80800000},
      {"-b '#f008'", "<svg width='8' height='8'/>", 0x88880000},
      {"", Rect, 0xFF000000},
      {"-s " + Quoted(Rules), Rect, 0xFF0000FF},
      {"-s " + Quoted(Marked), Rect, 0xFF0000FF},
      {"-s " + Quoted(Wide), Rect, 0xFFFF0000},
      // What has no size of its own is all in the picture.
      {"", "<svg width='100%'><rect x='90' y='90' width='9' height='9'/></svg>", 0xFF000000},
      // Icons count on black for the colour that nobody set.
      {"", "<svg width='8' height='8'><rect width='8' height='8' fill='currentColor'/></svg>",
       0xFF000000},
      {"-i r", Sample, 0xFF00FF00},
      {"-l de",
       "<svg width='8' height='8'><switch><rect width='8' height='8' systemLanguage='en'/>"
       "<rect width='8' height='8' fill='red' systemLanguage='de'/></switch></svg>",
       0xFFFF0000},
      {"-f jpeg -q 100 -b white", "<svg width='8' height='8'/>", 0xFFFFFFFF},
      {"-f webp -b white", "<svg width='8' height='8'/>", 0xFFFFFFFF},
  };
  for (const auto& [Options, Drawing, Pixel] : Cases) {
    TQXGPBitmap Picture;
    Render(Options, Drawing, Picture);
    EXPECT_EQ(Picture.GetPixels().Row(Picture.GetHeight() / 2)[Picture.GetWidth() / 2], Pixel)
        << Options << Drawing;
  }
}

TEST(Render, ManyFilesGoOnAfterABadOne) {
  const TScratchFolder Folder;
  const std::string Good = Folder.Add("good.svg", Sample), Bad = Folder.Add("bad.svg", "<svg>"),
                    More = Folder.Add("more.svg", Sample),
                    Target = (Folder.Path() / "pictures").string();
  const TRunResult Drawn = RunQxsvg("render " + Quoted(Good) + " " + Quoted(Bad) + " " +
                                    Quoted(More) + " -o " + Quoted(Target) + " --jobs 2");
  EXPECT_EQ(Drawn.Status, 1);
  EXPECT_EQ(Drawn.Errors.find(Bad + ": "), 0u) << Drawn.Errors;
  EXPECT_TRUE(std::filesystem::exists(Target + "/good.png"));
  EXPECT_TRUE(std::filesystem::exists(Target + "/more.png"));
  EXPECT_FALSE(std::filesystem::exists(Target + "/bad.png"));
}

TEST(Render, PipesServeAllDrawings) {
  constexpr std::string_view Rect = "<svg width='8' height='8'><rect width='8' height='8'/></svg>";
  const TScratchFolder Folder;
  const std::string Render = " | " + Quoted(QXSVG_COMMAND) + " render -s /dev/stdin " +
                             Quoted(Folder.Add("a.svg", Rect)) + " " +
                             Quoted(Folder.Add("b.svg", Rect));
  const auto Drawn = [&](const std::string& Rules) {
    const std::filesystem::path Target = Folder.Path() / Rules;
    const TRunResult Told =
        RunLine("echo 'rect { fill: " + Rules + " }'" + Render + " -o " + Quoted(Target.string()));
    EXPECT_EQ(Told.Status, 0) << Told.Errors;
    EXPECT_EQ(FileText(Target / "a.png"), FileText(Target / "b.png"));
    return FileText(Target / "b.png");
  };
  EXPECT_NE(Drawn("red"), Drawn("blue"));
}

TEST(Render, NoFileIsOverwrittenByMistake) {
  const TScratchFolder Folder;
  std::filesystem::create_directories(Folder.Path() / "a");
  const std::string First = Folder.Add("x.svg", Sample), Second = Folder.Add("a/x.svg", Sample),
                    Target = (Folder.Path() / "out").string();
  // Pictures of one name: the first stands.
  const TRunResult Many =
      RunQxsvg("render " + Quoted(First) + " " + Quoted(Second) + " -o " + Quoted(Target));
  EXPECT_EQ(Many.Status, 1);
  EXPECT_EQ(Many.Errors.find(Second + ": "), 0u) << Many.Errors;
  EXPECT_TRUE(std::filesystem::exists(Target + "/x.png"));
  // Two drawings are not a drawing and its picture.
  for (const std::string& Other : {Second, Folder.Add("y.SVG", Sample)}) {
    EXPECT_EQ(RunQxsvg("render -f png " + Quoted(First) + " " + Quoted(Other)).Status, 2);
    EXPECT_EQ(FileText(Other), Sample);
  }
  const std::string Misnamed = Folder.Add("z.png", Sample);
  EXPECT_EQ(RunQxsvg("render " + Quoted(Misnamed)).Status, 1);
  EXPECT_EQ(FileText(Misnamed), Sample);
}

TEST(Render, AFailureKeepsThePictureThatWasThere) {
  const TScratchFolder Folder;
  const std::string Old = Folder.Add("old.png", "kept");
  for (const std::string& Arguments :
       {"render - " + Quoted(Old) + " -i nothing", "render - " + Quoted(Old) + " -w 1000000",
        "render /nowhere.svg " + Quoted(Old)}) {
    const TRunResult Drawn = RunQxsvg(Arguments, Sample);
    EXPECT_EQ(Drawn.Status, 1) << Arguments;
    EXPECT_EQ(std::count(Drawn.Errors.begin(), Drawn.Errors.end(), '\n'), 1) << Drawn.Errors;
    // The file is named once, whoever names it.
    EXPECT_EQ(Drawn.Errors.rfind("/nowhere.svg"), Drawn.Errors.find("/nowhere.svg"));
    EXPECT_EQ(FileText(Old), "kept");
  }
}

TEST(Render, FailuresHaveTheirStatusAndSayWhy) {
  const TScratchFolder Folder;
  const std::string File = Quoted(Folder.Add("file", ""));
  const std::tuple<std::string, int, std::string> Cases[] = {
      {"render - -b nocolor", 2, "nocolor is no colour"},
      {"render - -b '#12345'", 2, "#12345 is no colour"},
      {"render - x.tiff", 1, "tiff is no picture format"},
      // Told before the work begins.
      {"render - x.tiff < /", 1, "tiff is no picture format"},
      {"render - -o " + File + "/x/y", 1, "/file/x/y: "},
      {"render - -z inf", 2, "no number above 0"},
      {"render - -s /nowhere.css", 1, "/nowhere.css: "},
      {"render - -o " + File + "/x", 1, "/file/x: "},
      {"render - - -o -", 2, "several pictures"},
      {"render - -s -", 2, "standard input is the drawing already"},
      {"render - > /dev/full", 1, "-: Standard output cannot be written"},
      {"info - > /dev/full", 1, "Standard output cannot be written"},
      {"info - < /", 1, "-: Standard input cannot be read"},
      {"--help > /dev/full", 1, "Standard output cannot be written"},
      {"surface-demo /nowhere/x.png", 1, "There is no such folder"},
      {"surface-demo /no.where/x", 1, "There is no such folder"},
  };
  for (const auto& [Arguments, Status, Cause] : Cases) {
    const TRunResult Told = RunQxsvg(Arguments, Sample);
    EXPECT_EQ(Told.Status, Status) << Arguments;
    EXPECT_NE(Told.Errors.find(Cause), std::string::npos) << Arguments << "\n" << Told.Errors;
    if (Status == 1) {
      EXPECT_EQ(Told.Errors.find('\n') + 1, Told.Errors.size()) << Told.Errors;
    }
  }
}

TEST(HitCommand, NamesWhatLiesUnderThePixel) {
  EXPECT_EQ(RunQxsvg("hit - 2.5 4.5 -w 10 -h 20", Sample).Output, "svg/g[0]#g/rect[0]#r\n");
  EXPECT_EQ(RunQxsvg("hit - 9 19 -w 10 -h 20", Sample).Output, "nothing\n");
  EXPECT_EQ(RunQxsvg("hit - 2.5 4.5 -w 10 -h 20 --groups", Sample).Output, "svg/g[0]#g\n");
}

TEST(BoundsCommand, PrintsBoxesInTheSpaceOfTheDrawing) {
  EXPECT_EQ(RunQxsvg("bounds - r", Sample).Output, "r\t2\t4\t5\t5\n");
  EXPECT_EQ(RunQxsvg("bounds -", Sample).Output, "g\t2\t4\t5\t5\nr\t2\t4\t5\t5\n");
  EXPECT_EQ(RunQxsvg("bounds - nothing", Sample).Status, 1);
  constexpr std::string_view Nested =
      "<svg viewBox='0 0 99 99'><svg x='50' width='20' height='20' viewBox='0 0 10 10'>"
      "<g transform='translate(1 0)'><rect id='n' width='3' height='4'/></g></svg></svg>";
  EXPECT_EQ(RunQxsvg("bounds - l", "<svg><line id='l' x1='9' y1='9' x2='1' y2='2'/></svg>").Output,
            "l\t1\t2\t8\t7\n");
  EXPECT_EQ(RunQxsvg("bounds - n", Nested).Output, "n\t52\t0\t6\t8\n");
  EXPECT_EQ(RunQxsvg("bounds -", Nested).Output, "n\t52\t0\t6\t8\n");
}

}  // namespace
}  // namespace qxsvg
