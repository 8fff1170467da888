// What a drawing is made of.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace qxsvg {
class TSVGDocument;
class TSVGElement;
}  // namespace qxsvg

namespace qxsvg::tools {

using Counts = std::map<std::string, std::size_t>;

struct DrawingInfo {
  // Attributes of the root as they stand in the file; empty where the root has none.
  std::string Width, Height, ViewBox;
  // By the element's name, the root included.
  Counts Elements;
  // What the drawing keeps and nothing draws or runs: filters, animations, scripts and the like.
  Counts NotDrawn;
  // In the order of the tree, without those that the library makes up.
  std::vector<std::string> Identifiers;
  double LoadMilliseconds = 0;

  std::size_t ElementCount() const;
};

// Loads a file ("-": standard input) into Drawing and tells about it. Raises what the load raises.
DrawingInfo LoadWithInfo(TSVGDocument& Drawing, const std::string& Name);

// The word that stands for the element in a file.
std::string ElementName(const TSVGElement& Element);

// The identifier that the file gives the element; empty where there is none.
std::string GivenID(const TSVGElement& Element);

// The presentation properties in force whose values differ from those of a new element of that
// class, by name.
std::vector<std::pair<std::string, std::string>> ComputedProperties(TSVGElement& Element);

}  // namespace qxsvg::tools
