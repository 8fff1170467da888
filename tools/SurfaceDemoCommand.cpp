// qxsvg surface-demo: a sheet of what the drawing surface can do.
#include <CLI/CLI.hpp>

#include "tools/Commands.h"
#include "tools/Input.h"
#include "tools/Picture.h"
#include "tools/SurfaceDemoSheet.h"

namespace qxsvg::tools {

namespace {

void Add(CLI::App& App, int& Status) {
  CLI::App* Command = App.add_subcommand(
      "surface-demo", "Draws a sheet of caps, joins, dashes, paints and clips, to look at");
  const auto Output = std::make_shared<std::string>();
  Command->add_option("OUT", *Output, "The picture, such as OUT.png")->required();
  Command->callback([Output, &Status] {
    Status = ForEachFile({*Output}, [](const std::string& Name) {
      const String Codec = CodecFor({}, Name);
      TQXGPBitmap Sheet(SurfaceDemoWidth, SurfaceDemoHeight);
      DrawSurfaceDemo(Sheet.GetCanvas());
      WritePicture(Sheet, Codec, -1, Name);
    });
  });
}

const Registration Registered("surface-demo", Add);

}  // namespace

}  // namespace qxsvg::tools
