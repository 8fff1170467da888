// What a canvas gives for a saved state.
#pragma once

#include <cstdint>

#include "runtime/Export.h"

namespace qxsvg {

class TQXGPCanvas;

// A mark to come back to; see TQXGPCanvas::SaveState.
class TQXGPCanvasSaveState {
 public:
  TQXGPCanvasSaveState() = default;

 private:
  friend class TQXGPCanvas;
  // How many states lie below and with it; 0 is no state.
  std::uint32_t FDepth = 0;
  // Tells the state from later ones of the same depth.
  std::uint64_t FSerial = 0;
};

}  // namespace qxsvg
