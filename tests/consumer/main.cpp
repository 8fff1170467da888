// A program that knows nothing of the library but its installed headers.
#include <qxsvg.h>

#include <cstdio>

int main() {
  qxsvg::TSVGDocument Document;
  int Changes = 0;
  Document.OnChange = [&Changes](auto*) { ++Changes; };
  Document.LoadFromText(R"(<svg xmlns="http://www.w3.org/2000/svg" width="40" height="20">
    <g id="all" fill="red"><rect id="r" width="10" height="10"/><circle r="5"/></g></svg>)");
  qxsvg::TSVGElement* Rect = Document.FindElement(u"r");
  if (!Rect || Rect->GetSVGType() != qxsvg::TSVGElementType::etRectangle || Changes != 1) return 1;
  try {
    Document.LoadFromText("<html/>");
    return 1;
  } catch (const qxsvg::ESVGException& Error) {
    std::printf("%d elements; refused another root: %s\n", int{Document.AllItems().Count()},
                Error.what());
  }
  return Document.FindElement(u"r") == Rect ? 0 : 1;
}
