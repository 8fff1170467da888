// The built command, run as a user runs it.
#include <gtest/gtest.h>

#include <set>

#include "tests/support/RunCommand.h"

namespace qxsvg {
namespace {

using namespace test;

const std::filesystem::path Root = QXSVG_TEST_ROOT;

bool Has(const std::string& Text, const std::string& Part) {
  return Text.find(Part) != std::string::npos;
}

std::size_t LineCount(const std::string& Text) {
  return static_cast<std::size_t>(std::count(Text.begin(), Text.end(), '\n'));
}

// docs/cli.md holds what each command prints as help, in blocks that begin with "$ qxsvg ...". With
// QXSVG_UPDATE_DOCS in the environment the blocks are written anew.
TEST(Command, DocumentationShowsTheHelp) {
  const std::filesystem::path Page = Root / "docs/cli.md";
  const std::string Text = FileText(Page);
  const std::string Open = "```text\n$ qxsvg ", Close = "```";
  std::string Rewritten;
  std::set<std::string> Shown;
  std::size_t At = 0;
  while (true) {
    const std::size_t Block = Text.find(Open, At);
    Rewritten += Text.substr(At, Block == std::string::npos ? Block : Block - At);
    if (Block == std::string::npos) break;
    const std::size_t Begin = Block + Open.size(), Line = Text.find('\n', Begin);
    const std::string Arguments = Text.substr(Begin, Line - Begin);
    const std::string Help = RunQxsvg(Arguments).Output;
    const std::size_t End = Text.find(Close, Line);
    ASSERT_NE(End, std::string::npos);
    EXPECT_EQ(Text.substr(Line + 1, End - Line - 1), Help) << "qxsvg " << Arguments;
    Rewritten += Open + Arguments + "\n" + Help + Close;
    Shown.insert(Arguments);
    At = End + Close.size();
  }
  if (std::getenv("QXSVG_UPDATE_DOCS")) std::ofstream(Page, std::ios::binary) << Rewritten;

  EXPECT_TRUE(Shown.contains("--help"));
  const std::string Help = RunQxsvg("--help").Output;
  std::istringstream Lines(Help.substr(Help.find("Subcommands:")));
  std::string Line;
  std::getline(Lines, Line);
  while (std::getline(Lines, Line)) {
    std::string Name;
    if (Line.starts_with("  ") && std::istringstream(Line) >> Name && Line[2] != ' ') {
      EXPECT_TRUE(Shown.contains(Name + " --help")) << "docs/cli.md lacks " << Name;
    }
  }
}

constexpr std::string_view Sample = R"(<?xml version="1.0"?>
<svg xmlns="http://www.w3.org/2000/svg" width="10cm" viewBox="0 0 20 10">
  <style>.a { fill: #ff0000 }</style>
  <g id="top" class="a b"><path d="M0,0L1,1"/><path id="p" d="M0,0" stroke="lime"/></g>
  <filter id="f"/><script>x</script><foo/>
</svg>)";

TEST(Command, InfoTellsWhatADrawingIsMadeOf) {
  const TRunResult Told = RunQxsvg("info --tree --computed -", Sample);
  EXPECT_EQ(Told.Status, 0) << Told.Errors;
  for (const char* Part :
       {"size: 10cm by not given\n", "view box: 0 0 20 10\n",
        "elements: 6: filter 1, g 1, path 2, script 1, svg 1\n", "identifiers: 3: top, p, f\n",
        "kept but not drawn: filter 1, script 1\n", "  loaded in ", "\n    g#top.a.b {",
        "\n      path#p {", "\n    filter#f\n"})
    EXPECT_TRUE(Has(Told.Output, Part)) << Part << "\n" << Told.Output;
  // The rule reaches the group, the paths inherit from it, and only one has a stroke.
  std::istringstream Lines(Told.Output);
  for (std::string Line; std::getline(Lines, Line);) {
    if (!Line.starts_with("    ")) continue;  // not of the tree
    if (Has(Line, " g#") || Has(Line, " path")) {
      EXPECT_TRUE(Has(Line, "fill: ")) << Line;
    }
    EXPECT_EQ(Has(Line, "stroke: "), Has(Line, "path#p")) << Line;
  }
}

TEST(Command, InfoForProgramsIsOneJsonText) {
  const TScratchFolder Folder;
  // A name need not be text.
  const std::string Good = Folder.Add("a \"b\"\xff.svg", Sample),
                    Bad = Folder.Add("bad.svg", "<svg>\n<");
  const TRunResult Told = RunQxsvg("info --json --tree " + Quoted(Good) + " " + Quoted(Bad));
  EXPECT_EQ(Told.Status, 1);
  EXPECT_EQ(LineCount(Told.Errors), 1u) << Told.Errors;
  for (const char* Part :
       {"a \\\"b\\\"\xef\xbf\xbd.svg\"", "\"width\": \"10cm\"", "\"height\": \"\"",
        "\"elementCount\": 6", "\"path\": 2", "\"classes\": [", "\"error\": \"line 2"})
    EXPECT_TRUE(Has(Told.Output, Part)) << Part << "\n" << Told.Output;
  const std::string Check = "python3 -c 'import json,sys; json.load(sys.stdin)'";
  if (RunLine("command -v python3").Status == 0) {
    EXPECT_EQ(RunLine(Check, Told.Output).Status, 0) << Told.Output;
  }
}

TEST(Command, ValidateGivesALineForEachBadFile) {
  const TScratchFolder Folder;
  // Parts of the messages, shallow and deep, empty for a good file.
  const std::pair<std::string_view, std::string> Cases[] = {
      {"<svg xmlns='http://www.w3.org/2000/svg'/>", ""},
      {"<x:svg xmlns:x='http://www.w3.org/2000/svg'/>", ""},
      {"<html/>", "Not a valid SVG"},
      {"", "line 1, column 1"},
      {"<svg>\n  <g></svg>", "line 2, column 12"},
      {"<svg><circle><circle/></circle></svg>", ""},
      {"<svg><radialGradient><g/></radialGradient></svg>", ""},
  };
  for (const auto& [Text, Expected] : Cases) {
    const std::string Name = Folder.Add("case.svg", Text);
    for (const bool Deep : {false, true}) {
      const TRunResult Told = RunQxsvg((Deep ? "validate --deep " : "validate ") + Quoted(Name));
      EXPECT_EQ(Told.Status, Expected.empty() ? 0 : 1) << Text << "\n" << Told.Errors;
      EXPECT_EQ(LineCount(Told.Errors), Expected.empty() ? 0u : 1u) << Told.Errors;
      EXPECT_TRUE(Has(Told.Errors, Expected)) << Text << "\n" << Told.Errors;
      EXPECT_EQ(Told.Output, "");
    }
  }
  const TRunResult Several = RunQxsvg("validate " + Quoted(Folder.Add("1.svg", "<svg/>")) + " " +
                                      Quoted(Folder.Add("2.svg", "<a/>")) + " /nonexistent/3.svg " +
                                      Quoted(Folder.Path().string()));
  EXPECT_EQ(Several.Status, 1);
  EXPECT_EQ(LineCount(Several.Errors), 3u) << Several.Errors;
}

TEST(Command, UsageErrorsHaveAStatusOfTheirOwn) {
  for (const char* Arguments :
       {"", "info", "nonsense", "info --nonsense x.svg", "info --computed -"}) {
    const TRunResult Told = RunQxsvg(Arguments);
    EXPECT_EQ(Told.Status, 2) << Arguments;
    EXPECT_NE(Told.Errors, "") << Arguments;
  }
}

TEST(Command, ReadsEveryFileOfTheCorpus) {
  const std::filesystem::path Corpus = Root / "../shared/corpus";
  if (!std::filesystem::exists(Corpus)) GTEST_SKIP() << "no corpus here";
  const TRunResult Told =
      RunQxsvg("info " + Corpus.string() + "/*/*.svg > /dev/null; test $? -le 1");
  EXPECT_EQ(Told.Status, 0);
  EXPECT_EQ(Told.Errors, "");
}

TEST(Command, EndsWellOnHostileFiles) {
  const std::filesystem::path Folder = Root / "../shared/hostile";
  std::ifstream Table(Folder / "cases.tsv");
  if (!Table) GTEST_SKIP() << "no hostile files here";
  const std::string Tokens =
      RunLine("cat " + Quoted((Folder / "canary").string()) + "/*.txt").Output;
  const std::string Token = Tokens.substr(Tokens.find("CANARY"), 11);
  for (std::string Line; std::getline(Table, Line);) {
    std::istringstream Row(Line);
    std::string Name, Class, Outcome;
    std::getline(Row, Name, '\t');
    std::getline(Row, Class, '\t');
    std::getline(Row, Outcome, '\t');
    if (!std::filesystem::exists(Folder / Name)) continue;
    for (const char* Command : {"validate --deep ", "info --tree "}) {
      const TRunResult Told = RunLine("timeout 60 " + Quoted(QXSVG_COMMAND) + " " + Command +
                                      Quoted((Folder / Name).string()));
      EXPECT_LE(Told.Status, 1) << Command << Name << "\n" << Told.Errors.substr(0, 4000);
      if (Outcome == "E") {
        EXPECT_EQ(Told.Status, 1) << Command << Name;
      }
      EXPECT_FALSE(Has(Told.Output + Told.Errors, Token)) << Command << Name;
    }
  }
}

}  // namespace
}  // namespace qxsvg
