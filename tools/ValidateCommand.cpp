// qxsvg validate: whether files are drawings.
#include <CLI/CLI.hpp>

#include "document/Document.h"
#include "document/XML.h"
#include "foundation/Messages.h"
#include "runtime/Exceptions.h"
#include "tools/Commands.h"
#include "tools/Input.h"

namespace qxsvg::tools {

namespace {

struct ValidateOptions {
  std::vector<std::string> Files;
  bool Deep = false;
};

void Check(const std::string& Name, bool Deep) {
  if (Deep) {
    TSVGDocument Drawing;
    LoadDrawing(Drawing, Name);
    return;
  }
  const auto Document = LoadDrawingXML(Name);
  const IXMLNode* Root = Document->DocumentElement();
  if (!Root) throw ESVGException(SDocEmpty);
  if (Root->LocalName() != u"svg") throw ESVGException(SDocNotSVG);
}

void Add(CLI::App& App, int& Status) {
  CLI::App* Command = App.add_subcommand(
      "validate", "Checks whether files are drawings; prints a line for each that is not");
  const auto Options = std::make_shared<ValidateOptions>();
  Command->add_option("FILE", Options->Files, "Files; - is standard input")->required();
  Command->add_flag("--deep", Options->Deep,
                    "Loads the whole tree instead of looking at the root alone");
  Command->callback([Options, &Status] {
    Status =
        ForEachFile(Options->Files, [&](const std::string& Name) { Check(Name, Options->Deep); });
  });
}

const Registration Registered("validate", Add);

}  // namespace

}  // namespace qxsvg::tools
