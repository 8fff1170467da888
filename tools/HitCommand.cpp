// qxsvg hit: what lies under a point.
#include <CLI/CLI.hpp>

#include <iostream>

#include "document/Document.h"
#include "graphics/surface/Canvas.h"
#include "tools/Commands.h"
#include "tools/Input.h"
#include "tools/Picture.h"

namespace qxsvg::tools {

namespace {

struct HitOptions {
  std::string File;
  float X = 0, Y = 0;
  PictureSize Size;
  bool Hidden = false, Groups = false, Box = false, NonFilled = false, Disabled = false;
};

// From the root down, each with its place among its siblings of all kinds: svg/g[2]#top/rect[0].
std::string PathOf(const TSVGElement& Element) {
  std::string Path = ToUtf8(Element.SVGTypeName());
  const TSVGElement* Parent = Element.Parent();
  if (Parent) Path += "[" + std::to_string(Parent->Items().IndexOf(&Element)) + "]";
  if (!Element.ID().empty() && !Element.HasMadeUpID()) Path += "#" + ToUtf8(Element.ID());
  return Parent ? PathOf(*Parent) + "/" + Path : Path;
}

void Hit(const HitOptions& O) {
  TSVGDocument Drawing;
  LoadDrawing(Drawing, O.File);
  const TPoint Pixels = PixelSize(NaturalSize(Drawing), O.Size);
  TSVGFindOptions Find;
  Find.Set(TSVGFindOption::foFindHiddenElements, O.Hidden);
  Find.Set(TSVGFindOption::foFindGroups, O.Groups);
  Find.Set(TSVGFindOption::foUseBoundingBox, O.Box);
  Find.Set(TSVGFindOption::foFindNonFilled, O.NonFilled);
  Find.Set(TSVGFindOption::foFindDisabled, O.Disabled);
  TQXGPBitmap Surface(Pixels.X, Pixels.Y);
  const TRectF Area = QXRect(0, 0, static_cast<float>(Pixels.X), static_cast<float>(Pixels.Y));
  const TSVGElement* Found = Drawing.ElementAtPos(Surface.GetCanvas(), {O.X, O.Y}, Area, Find);
  std::cout << (Found ? PathOf(*Found) : "nothing") << "\n";
}

void Add(CLI::App& App, int& Status) {
  CLI::App* Command = App.add_subcommand("hit", "Tells which element lies under a pixel");
  const auto Options = std::make_shared<HitOptions>();
  HitOptions& O = *Options;
  Command->set_help_flag("--help,-?", "Prints this help and exits");
  Command->add_option("FILE", O.File, "The drawing; - is standard input")->required();
  Command->add_option("X", O.X, "Pixels from the picture's left side")->required();
  Command->add_option("Y", O.Y, "Pixels from the picture's top")->required();
  Command->add_option("-w,--width", O.Size.Width, "Width of the picture")->check(PositiveNumber());
  Command->add_option("-h,--height", O.Size.Height, "Height of the picture")
      ->check(PositiveNumber());
  Command->add_flag("--hidden", O.Hidden, "Finds elements that are not visible too");
  Command->add_flag("--groups", O.Groups, "Gives the group that an element is in");
  Command->add_flag("--box", O.Box, "Lets the bounding box decide instead of the shape");
  Command->add_flag("--non-filled", O.NonFilled, "Finds the inside of shapes without fill too");
  Command->add_flag("--disabled", O.Disabled, "Finds elements that are not enabled too");
  Command->callback([Options, &Status] {
    Status = ForEachFile({Options->File}, [&](const std::string&) { Hit(*Options); });
  });
}

const Registration Registered("hit", Add);

}  // namespace

}  // namespace qxsvg::tools
