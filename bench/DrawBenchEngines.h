// Whole documents from text to pixels, by each library that is compared.
#pragma once

#include <memory>
#include <string>

namespace qxsvg::bench {

// One document and the square bitmap that it is drawn on.
class IDrawEngine {
 public:
  virtual ~IDrawEngine() = default;

  // Parses a document in place of the last one; false when the library refuses it. The text must
  // outlive the document.
  virtual bool Load(const std::string& File) = 0;
  virtual void Unload() = 0;
  // Gets a transparent bitmap of that side, or clears the one that is there.
  virtual void Prepare(int Side) = 0;
  // Draws the document over the whole bitmap, anti-aliased, on the calling thread alone.
  virtual void Draw() = 0;
};

std::unique_ptr<IDrawEngine> CreateOwnDrawEngine();
// Null where the peer was not there when this was built.
std::unique_ptr<IDrawEngine> CreateRsvgDrawEngine();
std::unique_ptr<IDrawEngine> CreateQtDrawEngine();

}  // namespace qxsvg::bench
