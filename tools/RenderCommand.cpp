// qxsvg render: drawings into pictures.
#include <CLI/CLI.hpp>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <map>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "document/Document.h"
#include "foundation/Limits.h"
#include "graphics/surface/Canvas.h"
#include "runtime/Exceptions.h"
#include "runtime/Streams.h"
#include "tools/Commands.h"
#include "tools/InkCanvas.h"
#include "tools/Input.h"
#include "tools/Picture.h"
#include "tools/ProgressBar.h"

namespace qxsvg::tools {

namespace {

namespace fs = std::filesystem;

struct RenderOptions {
  std::vector<std::string> Files;
  std::string Output, ExportID, Format, StyleSheet, Languages;
  // The text of the style sheet, which may be a pipe and be there once.
  String Rules;
  // Transparent without one.
  TQXGPColor Background = 0;
  PictureSize Size;
  double DPI = 96;
  int Quality = -1;
  unsigned Jobs = 0;
  bool IsTimed = false, IsQuiet = false;
};

struct Job {
  std::string Input, Output;
  // The input whose picture has the same name; empty where there is none.
  std::string Rival;
};

class Stopwatch {
 public:
  // Milliseconds since the last lap.
  double Lap() {
    const auto Now = std::chrono::steady_clock::now();
    const std::chrono::duration<double, std::milli> Passed = Now - std::exchange(FLast, Now);
    return Passed.count();
  }

 private:
  std::chrono::steady_clock::time_point FLast = std::chrono::steady_clock::now();
};

void Configure(TSVGDocument& Drawing, const RenderOptions& Options) {
  Drawing.SetDPI(static_cast<std::int32_t>(std::lround(Options.DPI)));
  // A document has no colour of its own, and currentColor would be invisible: icons count on black.
  Drawing.OnParsingNode = [&Drawing](TPersistent* Sender, IXMLNode&) {
    constexpr TQXGPColor Black = 0xFF000000;
    if (Sender == &Drawing) Drawing.SetColor(Black);
  };
  if (Options.Languages.empty()) return;
  Drawing.SetOptions(Drawing.GetOptions() - TSVGOptions{TSVGOption::soUseLocaleForLanguage});
  Drawing.SetPreferredLanguage(FromUtf8(Options.Languages));
}

// UTF-8, or UTF-16 with a byte order mark.
String TextOfSheet(std::string_view Bytes) {
  if (Bytes.starts_with("\xef\xbb\xbf")) return FromUtf8(Bytes.substr(3));
  const bool IsBig = Bytes.starts_with("\xfe\xff");
  if (!IsBig && !Bytes.starts_with("\xff\xfe")) return FromUtf8(Bytes);
  const auto ByteAt = [&](std::size_t At) { return static_cast<unsigned char>(Bytes[At]); };
  String Result;
  for (std::size_t At = 2; At + 1 < Bytes.size(); At += 2)
    Result += static_cast<char16_t>(IsBig ? ByteAt(At) << 8 | ByteAt(At + 1)
                                          : ByteAt(At + 1) << 8 | ByteAt(At));
  return Result;
}

void ApplyRules(TSVGDocument& Drawing, StringView Rules) {
  if (Rules.empty()) return;
  Drawing.ReadStyles(Rules);
  Drawing.ApplyStyles();
}

// What an element covers when the drawing is fitted into View; the box of its geometry where it
// leaves no ink.
TRectF BoxOnPaper(TSVGDocument& Drawing, TSVGGraphicElement& Element, const TRectF& View) {
  InkCanvas Canvas;
  Drawing.DrawElement(Element, Canvas, View);
  // Tiles that were made for this size must not serve another.
  Drawing.Reset();
  if (!Canvas.Ink().IsEmpty()) return Canvas.Ink();
  return QXMatrixTransform(Drawing.GetViewMatrix(View), BoxOfElement(Drawing, Element));
}

// Draws the whole drawing over the whole picture, or one element alone with what it covers over it.
void Draw(TSVGDocument& Drawing, const RenderOptions& Options, TQXGPBitmap& Picture) {
  const TSizeF Natural = NaturalSize(Drawing);
  TSVGGraphicElement& Element =
      Options.ExportID.empty() ? Drawing : GraphicElementByID(Drawing, Options.ExportID);
  const auto Prepare = [&](TSizeF Size) {
    const TPoint Pixels = PixelSize(Size, Options.Size);
    Picture.SetSize(Pixels.X, Pixels.Y);
    if (Options.Background != 0) Picture.Clear(Options.Background);
    return QXRect(0, 0, static_cast<float>(Pixels.X), static_cast<float>(Pixels.Y));
  };
  if (&Element == &Drawing) {
    const TRectF Whole = Prepare(Natural);
    Drawing.Draw(Picture.GetCanvas(), Whole);
    return;
  }
  // Alone, an element may be larger than the page.
  Drawing.SetOverflow(true);
  const TRectF View = QXRect(0, 0, Natural.Width, Natural.Height);
  const TRectF Box = BoxOnPaper(Drawing, Element, View);
  const TRectF Whole = Prepare({Box.Width(), Box.Height()});
  // The drawing at its own size, moved and scaled so that the element's box fills the picture.
  const TMatrix Place = QXMatrixMultiply(
      CreateTranslateQXMatrix(-Box.Left, -Box.Top),
      CreateScaleQXMatrix(Whole.Width() / Box.Width(), Whole.Height() / Box.Height()));
  Drawing.DrawElement(Element, QXMatrixMultiply(Drawing.GetViewMatrix(View), Place),
                      Picture.GetCanvas(), Whole);
}

std::string RenderOne(const Job& Work, const RenderOptions& Options) {
  if (!Work.Rival.empty())
    throw ESVGException(u"Its picture would take the name of that of %s", {FromUtf8(Work.Rival)});
  std::error_code IsMissing;
  if (Work.Input != "-" && Work.Output != "-" && fs::equivalent(Work.Input, Work.Output, IsMissing))
    throw ESVGException(u"The picture would replace the drawing");
  const String Codec = CodecFor(Options.Format, Work.Output);
  Stopwatch Watch;
  TSVGDocument Drawing;
  Configure(Drawing, Options);
  LoadDrawing(Drawing, Work.Input);
  ApplyRules(Drawing, Options.Rules);
  const double Load = Watch.Lap();
  TQXGPBitmap Picture;
  Draw(Drawing, Options, Picture);
  const double Drawn = Watch.Lap();
  WritePicture(Picture, Codec, Options.Quality, Work.Output);
  if (!Options.IsTimed) return {};
  char Line[160];
  std::snprintf(Line, sizeof Line, "load %.2f ms, draw %.2f ms, encode %.2f ms, %d x %d pixels",
                Load, Drawn, Watch.Lap(), Picture.GetWidth(), Picture.GetHeight());
  return Work.Input + ": " + Line;
}

std::string ExtensionFor(const std::string& Format) {
  return "." + (Format.empty() ? "png" : Format);
}

bool IsDrawing(const std::string& File) {
  const String Extension = FromUtf8(fs::path(File).extension().string());
  return SameText(Extension, u".svg") || SameText(Extension, u".svgz");
}

std::vector<Job> PlanForDirectory(const RenderOptions& Options, const std::string& Extension) {
  std::error_code Failure;
  fs::create_directories(Options.Output, Failure);
  if (Failure)
    throw ESVGException(u"%s: %s", {FromUtf8(Options.Output), FromUtf8(Failure.message())});
  std::vector<Job> Jobs;
  std::map<std::string, std::string> Taken;  // pictures and their drawings
  for (const std::string& File : Options.Files) {
    const std::string Stem = File == "-" ? "stdin" : fs::path(File).stem().string();
    const std::string Output = (fs::path(Options.Output) / (Stem + Extension)).string();
    const auto [Entry, IsFirst] = Taken.try_emplace(Output, File);
    Jobs.push_back({File, Output, IsFirst ? std::string() : Entry->second});
  }
  return Jobs;
}

// What goes where: IN OUT; or IN -o FILE; or many files into a directory, which -o names.
std::vector<Job> Plan(const RenderOptions& Options) {
  const auto& Files = Options.Files;
  const std::string Extension = ExtensionFor(Options.Format);
  if (Options.Output.empty()) {
    // A second drawing was hardly meant to become the picture of the first.
    if (Files.size() > 2 || (Files.size() == 2 && IsDrawing(Files[1])))
      throw CLI::ValidationError("FILES", "several drawings need --output with a directory");
    if (Files.size() == 2) return {{Files[0], Files[1], {}}};
    if (Files[0] == "-") return {{"-", "-", {}}};
    return {{Files[0], fs::path(Files[0]).replace_extension(Extension).string(), {}}};
  }
  std::error_code Unknown;
  const bool IsDirectory = Files.size() > 1 || fs::is_directory(Options.Output, Unknown) ||
                           Options.Output.ends_with('/');
  if (!IsDirectory) return {{Files[0], Options.Output, {}}};
  if (Options.Output == "-")
    throw CLI::ValidationError("--output", "several pictures cannot go to standard output");
  return PlanForDirectory(Options, Extension);
}

// One drawing a worker; a failure is told and the others go on.
int RunAll(const std::vector<Job>& Jobs, const RenderOptions& Options) {
  ProgressBar Bar(Options.IsQuiet ? 0 : Jobs.size());
  std::mutex Console;
  std::atomic<std::size_t> Next = 0;
  std::atomic<int> Status = 0;
  const auto Work = [&] {
    for (std::size_t I; (I = Next++) < Jobs.size();) {
      std::string Report;
      try {
        Report = RenderOne(Jobs[I], Options);
      } catch (const std::exception& Error) {
        Report = ReportOf(Jobs[I].Input, Error);
        Status = 1;
      }
      const std::lock_guard Lock(Console);
      if (!Report.empty()) {
        Bar.Hide();
        std::cerr << Report << std::endl;
      }
      Bar.Advance();
    }
  };
  unsigned Workers =
      Options.Jobs > 0 ? Options.Jobs : std::max(1u, std::thread::hardware_concurrency());
  Workers = static_cast<unsigned>(std::min<std::size_t>(Workers, Jobs.size()));
  std::vector<std::jthread> Threads;
  try {
    for (unsigned I = 1; I < Workers; ++I) Threads.emplace_back(Work);
  } catch (const std::system_error&) {
    // As many as the system gives do the work too.
  }
  Work();
  Threads.clear();
  return Status;
}

int Run(RenderOptions& Options) {
  const std::vector<Job> Jobs = Plan(Options);
  if (!Options.StyleSheet.empty()) {
    const auto IsStandardInput = [](const Job& J) { return J.Input == "-"; };
    if (Options.StyleSheet == "-" && std::any_of(Jobs.begin(), Jobs.end(), IsStandardInput))
      throw CLI::ValidationError("--stylesheet", "standard input is the drawing already");
    const TBytes Bytes = ReadAll(*OpenInput(Options.StyleSheet), Limits::DocumentBytes);
    Options.Rules = TextOfSheet(CharsOf(Bytes));
  }
  return RunAll(Jobs, Options);
}

void Add(CLI::App& App, int& Status) {
  CLI::App* Command = App.add_subcommand("render", "Draws files into PNG, JPEG or WebP pictures");
  const auto Options = std::make_shared<RenderOptions>();
  RenderOptions& O = *Options;
  // -h is the height, as in the common converters.
  Command->set_help_flag("--help,-?", "Prints this help and exits");
  Command->add_option("FILES", O.Files, "IN.svg [OUT.png]; - is standard input and output")
      ->required();
  Command->add_option("-o,--output", O.Output,
                      "The picture's file, or the directory for several drawings");
  Command->add_option("-j,--jobs", O.Jobs, "Drawings at a time; 0 takes one for each processor");
  Command->add_option("-w,--width", O.Size.Width, "Width in pixels")->check(PositiveNumber());
  Command->add_option("-h,--height", O.Size.Height, "Height in pixels")->check(PositiveNumber());
  Command->add_option("-z,--zoom", O.Size.Zoom, "Factor on the drawing's own size")
      ->check(PositiveNumber());
  Command->add_flag("-a,--keep-aspect-ratio", O.Size.KeepAspectRatio,
                    "Fits the picture into the width and height");
  Command->add_option("-d,--dpi", O.DPI, "Pixels per inch of absolute units")
      ->check(CLI::Range(10.0, 100000.0))
      ->capture_default_str();
  Command->add_option_function<std::string>(
      "-b,--background,--background-color",
      [&O](const std::string& Text) {
        try {
          O.Background = ParseBackground(Text);
        } catch (const std::exception& Error) {
          throw CLI::ValidationError("--background", Error.what());
        }
      },
      "Colour under the drawing; none without it");
  Command->add_option("-i,--export-id", O.ExportID, "Draws the element of this identifier alone");
  Command->add_option("-f,--format", O.Format, "png, jpeg or webp; else by the file's extension")
      ->check(CLI::IsMember({"png", "jpeg", "webp"}));
  Command->add_option("-q,--quality", O.Quality, "Quality of JPEG and WebP, effort of PNG")
      ->check(CLI::Range(0, 100));
  Command->add_option("-s,--stylesheet", O.StyleSheet, "A file of further style rules");
  Command->add_option("-l,--languages,--accept-language", O.Languages,
                      "Preferred languages, best first, parted by commas");
  Command->add_flag("--perf", O.IsTimed, "Tells the times of load, draw and encoding");
  Command->add_flag("--quiet", O.IsQuiet, "Shows no progress");
  Command->callback([Options, &Status] { Status = Run(*Options); });
}

const Registration Registered("render", Add);

}  // namespace

}  // namespace qxsvg::tools
