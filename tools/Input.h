// The drawings that a command is given.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace qxsvg {
class IXMLDocument;
class TStream;
class TSVGDocument;
}  // namespace qxsvg

namespace qxsvg::tools {

// Opens a file, or standard input for "-". That, pipes and devices are read to their end at once.
// Raises EStreamError.
std::unique_ptr<TStream> OpenInput(const std::string& Name);

// Loads what OpenInput opens. Raises what the document raises.
void LoadDrawing(TSVGDocument& Drawing, const std::string& Name);

// The same as far as the nodes of the XML.
std::unique_ptr<IXMLDocument> LoadDrawingXML(const std::string& Name);

// The cause of a failure on one line; an XML error with its line and column.
std::string CauseOf(const std::exception& Error);
// "file: cause", with the file's name once.
std::string ReportOf(const std::string& Name, const std::exception& Error);

// Whether Work writes to standard output.
enum class Results { None, Printed };

// Runs Work for each file, one after the other, with a progress bar on a terminal when there are
// several and no results come between. A failure is told on standard error as "file: cause" and the
// others go on. Gives the exit status: 1 when any failed.
int ForEachFile(const std::vector<std::string>& Files,
                const std::function<void(const std::string& Name)>& Work,
                Results Kind = Results::None);

}  // namespace qxsvg::tools
