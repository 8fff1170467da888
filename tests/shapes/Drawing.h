// Documents of a few elements, drawn on a canvas that writes down what it is asked for.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "document/QXSVG.h"
#include "shapes/QXSVG.BasicShapes.h"
#include "tests/support/RecordingCanvas.h"

namespace qxsvg::test {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

using Lines = std::vector<std::string>;

inline std::string Wrapped(std::string_view Body, std::string_view Root) {
  return "<svg xmlns=\"http://www.w3.org/2000/svg\" "
         "xmlns:xlink=\"http://www.w3.org/1999/xlink\" " +
         std::string(Root) + ">" + std::string(Body) + "</svg>";
}

// A document whose user units are the pixels of a canvas of 100 by 100.
struct TDrawing {
  explicit TDrawing(std::string_view Body, std::string_view Root = "viewBox=\"0 0 100 100\"") {
    Document.LoadFromText(Wrapped(Body, Root));
  }

  template <class T = TSVGGraphicElement>
  T& Get(StringView ID) {
    TSVGElement* const Found = Document.FindElement(ID);
    if (!Found) throw std::runtime_error("no element " + ToUtf8(ID));
    return dynamic_cast<T&>(*Found);
  }
  // What is painted, a line each: "fill" or "draw", and the path on the device.
  Lines Draw() {
    TRecordingCanvas Canvas;
    Document.Draw(Canvas, QXRect(0, 0, 100, 100));
    Lines Result;
    for (const std::string& Line : Canvas.Take()) {
      const std::size_t Colon = Line.find(": ");
      Result.push_back(Line.substr(0, Line.find(' ')) + " " + Line.substr(Colon + 2));
    }
    return Result;
  }
  // The whole lines, with paints and opacities.
  Lines DrawInFull() {
    TRecordingCanvas Canvas;
    Document.Draw(Canvas, QXRect(0, 0, 100, 100));
    return Canvas.Take();
  }
  // One text, with saves, restores and clips too.
  std::string DrawWithStates() {
    TRecordingCanvas Canvas;
    Canvas.RecordsStates = true;
    Document.Draw(Canvas, QXRect(0, 0, 100, 100));
    EXPECT_EQ(Canvas.Depth(), 0u);
    return Canvas.TakeText();
  }
  void Exclude(TSVGOption Option) {
    Document.SetOptions(Document.GetOptions() - TSVGOptions{Option});
  }
  // The identifier of what lies under a point; "" for nothing.
  std::string At(float X, float Y, const TSVGFindOptions& Options = {}) {
    TRecordingCanvas Canvas;
    const TSVGElement* const Found =
        Document.ElementAtPos(Canvas, QXPoint(X, Y), QXRect(0, 0, 100, 100), Options);
    return Found ? ToUtf8(Found->ID()) : "";
  }
  // The element as it is saved, without its children.
  std::string Saved(StringView ID) {
    const std::string Text = ToUtf8(Document.FindElement(ID)->ToString());
    const std::size_t Start = Text.find('<', 1);
    return Text.substr(Start, Text.find('>', Start) - Start + 1);
  }

  TSVGDocument Document;
};

}  // namespace qxsvg::test
