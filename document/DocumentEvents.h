// The callbacks of a document. Sender and every other pointer is valid during the call only.
#pragma once

#include <cstdint>
#include <functional>

#include "foundation/Geometry.h"
#include "runtime/String.h"

namespace qxsvg {

class IXMLNode;
class TPersistent;
class TQXGPCanvas;
class TSVGElement;
class TSVGStyle;

using TNotifyEvent = std::function<void(TPersistent* Sender)>;
using TSVGElementEvent = std::function<void(TPersistent* Sender, TSVGElement* Element)>;
using TSVGParserNodeEvent = std::function<void(TPersistent* Sender, IXMLNode& Node)>;
using TSVGStyleEvent = std::function<void(TPersistent* Sender, TSVGStyle* Style)>;
// DoDraw comes in with what the system decided and goes out with what shall happen.
using TSVGShouldDrawQEvent = std::function<void(TPersistent* Sender, bool& DoDraw)>;
using TSVGDrawingQEvent =
    std::function<void(TPersistent* Sender, const TMatrix& Matrix, TQXGPCanvas& Canvas,
                       const TRectF& Rect, bool& DoDraw)>;
using TSVGDrawingEvent = std::function<void(TPersistent* Sender, const TMatrix& Matrix,
                                            TQXGPCanvas& Canvas, const TRectF& Rect)>;
// What the handler does to Matrix and Rect counts for the element; DoDefault false leaves its
// paints as they are.
using TSVGDrawingModificationEvent = std::function<void(
    TPersistent* Sender, TMatrix& Matrix, TQXGPCanvas& Canvas, TRectF& Rect, bool& DoDefault)>;
// Element goes out as what the hit test gives, which may be null.
using TSVGGraphicElementFoundEvent =
    std::function<void(TPersistent* Sender, TSVGElement*& Element)>;
using TSVGSaveElementEvent =
    std::function<void(TPersistent* Sender, TSVGElement* Element, IXMLNode& Node)>;
using TSVGSavingElementEvent =
    std::function<void(TPersistent* Sender, TSVGElement* Element, IXMLNode& Node, bool& DoSave)>;

// What was left out of a document or clamped in it.
enum class TSVGDiagnosticKind : std::uint8_t { dkLimit, dkValue, dkReference, dkResource };
// Element is the place, null where it is none; it may only be looked at during the call.
using TSVGDiagnosticEvent =
    std::function<void(TSVGDiagnosticKind Kind, TSVGElement* Element, StringView Text)>;

}  // namespace qxsvg
