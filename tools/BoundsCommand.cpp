// qxsvg bounds: the boxes of elements.
#include <CLI/CLI.hpp>

#include <cstdio>

#include "document/Document.h"
#include "shapes/Reference.h"
#include "tools/Commands.h"
#include "tools/Input.h"
#include "tools/Picture.h"

namespace qxsvg::tools {

namespace {

void Print(TSVGDocument& Drawing, TSVGGraphicElement& Element) {
  const TRectF Box = BoxOfElement(Drawing, Element);
  std::printf("%s\t%.7g\t%.7g\t%.7g\t%.7g\n", ToUtf8(Element.ID()).c_str(), Box.Left, Box.Top,
              Box.Width(), Box.Height());
}

void PrintNamed(TSVGDocument& Drawing, TSVGElement& Parent) {
  for (std::int32_t I = 0; I < Parent.Items().Count(); ++I) {
    TSVGElement& Child = *Parent.Items()[I];
    TSVGGraphicElement* Graphic = Child.AsGraphicElement();
    if (Graphic && !Child.HasMadeUpID()) Print(Drawing, *Graphic);
    PrintNamed(Drawing, Child);
  }
}

void Add(CLI::App& App, int& Status) {
  CLI::App* Command = App.add_subcommand(
      "bounds", "Prints x, y, width and height of elements in the drawing's user space");
  struct Arguments {
    std::string File;
    std::vector<std::string> IDs;
  };
  const auto Options = std::make_shared<Arguments>();
  Command->add_option("FILE", Options->File, "The drawing; - is standard input")->required();
  Command->add_option("ID", Options->IDs, "Identifiers; all that the drawing gives without any");
  Command->callback([Options, &Status] {
    TSVGDocument Drawing;
    Status = ForEachFile({Options->File}, [&](const std::string& Name) {
      LoadDrawing(Drawing, Name);
      if (!Options->IDs.empty()) return;
      // One budget for all boxes: each of many identifiers may stand for a fan of uses.
      const TReferenceScope Budget(Limits::DrawnReferences * 8);
      if (!Drawing.ID().empty()) Print(Drawing, Drawing);
      PrintNamed(Drawing, Drawing);
    });
    if (Status != 0) return;
    Status = ForEachFile(
        Options->IDs,
        [&](const std::string& ID) { Print(Drawing, GraphicElementByID(Drawing, ID)); },
        Results::Printed);
  });
}

const Registration Registered("bounds", Add);

}  // namespace

}  // namespace qxsvg::tools
