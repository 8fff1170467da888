// What the content of references drew, kept so that it can be drawn again without a walk.
//
// A drawing of one target under one set of inherited styles and one scale gives the same shapes in
// the same paints wherever it is moved to. The first such drawing is only taken note of, the second
// is recorded, and from the third on it is played: as a list of steps that move, paint a shape or
// play what a reference within the target recorded. Matrices are multiplied in the order of the
// walk, so that the pixels are those that the walk would give.
//
// Recorded is what consists of nothing but groups, references and shapes in plain colours; whatever
// else the walk meets spoils the recording, and that content is walked through each time.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "foundation/Geometry.h"
#include "graphics/GraphicElement.h"
#include "graphics/GraphicElementScope.h"
#include "graphics/surface/Canvas.h"
#include "graphics/surface/CoverageStamps.h"

namespace qxsvg {

// How much work a reference is, as limits count it: elements that are drawn through it, and the
// levels of the tree and of references below it at the deepest.
struct TSVGRepeatedExtent {
  std::int64_t Elements = 0;
  std::int32_t Levels = 0, Depth = 0;
};

// Belongs to a root document, for all that lies in its tree. Any change in there drops everything.
class TSVGRepeats {
 public:
  class TAttempt;

  TSVGRepeats();
  TSVGRepeats(const TSVGRepeats&) = delete;
  TSVGRepeats& operator=(const TSVGRepeats&) = delete;
  ~TSVGRepeats();

  // Gives back all memory; recordings that are going on are spoiled.
  void Drop();

 private:
  friend class TSVGRecording;
  using TElement = TSVGGraphicElement;
  using TScope = TSVGGraphicElement::Scope;

  // What the look of a target depends on besides its place: where inherited values come from, and
  // those values that are no element's alone.
  struct TKey {
    std::array<const void*, TScope::DescribedCount + 2> Elements;
    std::array<float, 5> Numbers;
    std::uint32_t Flags;
    std::int32_t Items;
    double Opacity;
    friend bool operator==(const TKey&, const TKey&) = default;
  };
  struct THash {
    std::size_t operator()(const TKey& Key) const;
  };
  // One paint of a shape.
  struct TPaint {
    float Opacity = 0;
    TQXGPColor Color = 0;
    // Without one the surface is given the path.
    std::optional<TQXStampKey> Stamp;
  };
  struct TShape {
    TElement* Element;
    // Whose points they are. They are looked at anew each time, as both can be held back from
    // telling of a change.
    const TQXGPPath* Path;
    const TQXPathData* Data;
    TQXGPFillMode Mode;
    TQXCanvasQuality Quality;
    std::optional<TPaint> Fill, Stroke;
    std::unique_ptr<TQXGPPen> Pen;
    // Null until it is drawn for the second time.
    TElement::Coverage* Kept = nullptr;
  };
  struct TStep {
    enum TKind : std::uint8_t { Move, Back, Paint, Play } Kind;
    std::uint32_t Index;
  };
  struct TMove {
    TMatrix Matrix;
    // Nothing but a shift.
    bool IsShift;
    TMatrix Then(const TMatrix& M) const;
  };
  using TSerial = std::pair<const TQXCoverageStamps*, std::uint32_t>;
  struct TProgram {
    std::vector<TStep> Steps;
    std::vector<TMove> Moves;
    std::vector<TShape> Shapes;
    std::vector<TProgram*> Parts;
    // What the walk would have borrowed, each once.
    std::vector<TElement*> Targets;
    TSVGRepeatedExtent Extent;
    // All that it paints under one matrix, with the serials of what the stamps are from. Made for
    // what is drawn at the same place again, and only where there is nothing but stamps.
    std::vector<TQXPlacedStamp> Placed;
    std::vector<TSerial> Serials;
    TMatrix PlacedUnder;
    // What the dashes of its pens take.
    std::size_t DashBytes = 0;
    std::size_t PlacedBytes() const {
      return Placed.capacity() * sizeof(TQXPlacedStamp) + Serials.capacity() * sizeof(TSerial);
    }
    // Without what is placed.
    std::size_t Bytes() const;
  };
  // Without a program where it was drawn but once, or could not be recorded.
  struct TEntry {
    std::unique_ptr<TProgram> Program;
    bool IsVoid = false;
    // The matrix that it was last drawn under.
    TMatrix Under;
  };

  // User has a document. False where the drawing did not come straight down to it.
  static bool MakeKey(TElement& User, const TElement& Target, const TMatrix& Matrix, TKey& Key);
  // Null where there is no room.
  TEntry* EntryFor(const TKey& Key, std::uint64_t Drawing, bool& IsNew);
  // Calls Paint with each shape and its matrix, until it gives false.
  template <class Painting>
  bool ForEachShape(TProgram& Program, const TMatrix& Matrix, const Painting& Paint);
  void Play(TProgram& Program, const TMatrix& Matrix, TQXGPCanvas& Canvas);
  void PlaceAll(TProgram& Program, const TMatrix& Matrix, TQXGPCanvas& Canvas);
  // Null where it was not drawn before.
  static TQXCoverageStamps* StampsOf(TShape& Shape);
  static bool IsPlaced(const TProgram& Program, const TMatrix& Matrix);
  static void Paint(TShape& Shape, const TMatrix& Matrix, TQXGPCanvas& Canvas);

  std::unordered_map<TKey, TEntry, THash> FEntries;
  // See Limits::RepeatBytes.
  std::size_t FBytes = 0;
  // How often everything was dropped, and in which drawing that was to make room.
  std::uint64_t FEpoch = 0, FEmptied = 0;
  std::vector<TMatrix> FStack;
};

// Takes down what one target draws. The walk tells the innermost of its thread.
class TSVGRecording {
 public:
  // The innermost of this thread becomes useless, and with it those around it.
  static void Spoil() {
    if (TSVGRecording* const Innermost = TSVGGraphicElement::Scope::Recording())
      Innermost->FIsSpoiled = true;
  }

  // The element may be drawn next, or turns out to be hidden.
  void Visit(const TSVGElement& Element);
  // From here to Leave, what is drawn is under M, which is Own and then the matrix before it.
  void Enter(const TMatrix& Own, const TMatrix& M);
  void Leave();
  // The element paints its own outline with the canvas's brush and pen.
  void Draw(TSVGGraphicElement& Element, const TQXPathSource& Source, TQXGPCanvas& Canvas,
            float FillOpacity, float StrokeOpacity);

 private:
  friend class TSVGRepeats;
  using TMove = TSVGRepeats::TMove;
  using TStep = TSVGRepeats::TStep;
  using TPaint = TSVGRepeats::TPaint;
  using TShape = TSVGRepeats::TShape;
  using TProgram = TSVGRepeats::TProgram;
  using TIsPlain = bool (*)(const TSVGElement& Element);

  struct TLevel {
    TMatrix Matrix;
    bool Moves;
  };

  void Play(TProgram& Part);
  // Gives up what becomes too large.
  void CheckSize();

  TProgram FProgram;
  // The parts and targets of the program.
  std::unordered_set<const void*> FKnown;
  std::vector<TLevel> FStack;
  TMatrix FMatrix;
  TIsPlain FIsPlain = nullptr;
  const TSVGDocument* FDocument = nullptr;
  std::uint64_t FEpoch = 0;
  // Bytes that the program may take.
  std::size_t FRoom = 0;
  bool FIsSpoiled = false;
};

// One drawing of a target through a reference. Whoever draws asks Found and plays or, after a walk
// that lent the target, calls Done; what ends without either spoils the recording around it.
class TSVGRepeats::TAttempt {
 public:
  // User is being drawn; Matrix leads from the target's parent to the surface, by Shift and then
  // the matrix that User has. IsPlain tells of an element whether nothing but its state and the
  // walk decide what it draws. Drawing is a number for all that belongs to one drawing, 0 where
  // there is no knowing.
  TAttempt(TSVGGraphicElement& User, TSVGGraphicElement& Target, const TMatrix& Shift,
           const TMatrix& Matrix, TQXGPCanvas& Canvas, bool (*IsPlain)(const TSVGElement&),
           std::uint64_t Drawing);
  TAttempt(const TAttempt&) = delete;
  TAttempt& operator=(const TAttempt&) = delete;
  ~TAttempt();

  // What Play would cost; null where there is nothing to play.
  const TSVGRepeatedExtent* Found() const { return FFound ? &FFound->Extent : nullptr; }
  // False where everything was dropped meanwhile, with nothing drawn.
  bool Play();
  // The walk is over; Own is the extent of the target alone.
  void Done(const TSVGRepeatedExtent& Own);

 private:
  void Tell(TProgram& Program);

  TSVGRepeats* FRepeats = nullptr;
  TSVGGraphicElement& FTarget;
  TQXGPCanvas& FCanvas;
  const TMatrix &FShift, &FMatrix;
  TKey FKey;
  TProgram* FFound = nullptr;
  // As the time before.
  bool IsInPlace = false;
  TSVGRecording* const FOuter;
  std::optional<TSVGRecording> FRecording;
  bool FIsOver = false;
};

}  // namespace qxsvg
