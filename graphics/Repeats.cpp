#include "graphics/Repeats.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <typeinfo>

#include "document/Document.h"
#include "foundation/Limits.h"
#include "graphics/GraphicElementParts.h"
#include "graphics/surface/PathData.h"
#include "shapes/PathElement.h"

namespace qxsvg {

namespace {

bool IsShift(const TMatrix& M) {
  return M.m11 == 1 && M.m12 == 0 && M.m13 == 0 && M.m21 == 0 && M.m22 == 1 && M.m23 == 0 &&
         M.m33 == 1;
}

bool IsPlaneMatrix(const TMatrix& M) {
  return IsFinite(M) && M.m13 == 0 && M.m23 == 0 && M.m33 == 1;
}

bool IsPlainPaint(TQXGPBrushKind Kind) {
  return Kind == TQXGPBrushKind::bkNone || Kind == TQXGPBrushKind::bkSolid;
}

// Whether a handler of the host may look on, or the host's own class decide something.
bool IsWatched(const TSVGDocument& Document) {
  // Those around it are asked for options.
  for (const TSVGDocument* Asked = &Document; Asked; Asked = Asked->Document())
    if (typeid(*Asked) != typeid(TSVGDocument)) return true;
  return Document.OnDrawing || Document.OnDrawn || Document.OnShouldDraw ||
         Document.OnDisableAppearance || Document.OnDiagnostic;
}

bool HasConditions(const TSVGElement& Element) {
  return Element.RequiredFeatures().Count() > 0 || Element.RequiredExtensions().Count() > 0 ||
         Element.SystemLanguages().Count() > 0;
}

// What may be inherited of these is part of the key.
constexpr TSVGStyleProperties Foreseen =
    SVGInheritedProperties + TSVGStyleProperties{TSVGStyleProperty::ipOpacity,
                                                 TSVGStyleProperty::ipVectorEffect,
                                                 TSVGStyleProperty::ipDisplay};

}  // namespace

// --- Keys

std::size_t TSVGRepeats::THash::operator()(const TKey& Key) const {
  std::uint64_t Hash = 0;
  const auto Mix = [&Hash](std::uint64_t Value) {
    Hash = (Hash ^ Value) * 0x9e3779b97f4a7c15u;
    Hash ^= Hash >> 32;
  };
  for (const void* Element : Key.Elements) Mix(reinterpret_cast<std::uintptr_t>(Element));
  // Both zeros are one number.
  for (const float Number : Key.Numbers) Mix(std::bit_cast<std::uint32_t>(Number + 0.0f));
  Mix(std::uint64_t{Key.Flags} << 32 | static_cast<std::uint32_t>(Key.Items));
  Mix(std::bit_cast<std::uint64_t>(Key.Opacity + 0.0));
  return Hash;
}

bool TSVGRepeats::MakeKey(TElement& User, const TElement& Target, const TMatrix& Matrix,
                          TKey& Key) {
  const TScope* const InForce = TScope::Innermost();
  // Where the drawing came straight down from the root, all that stands above is being drawn.
  if (!InForce || !InForce->IsFor(User) || !InForce->IsRooted() || !IsPlaneMatrix(Matrix))
    return false;
  const auto End = InForce->Describe(Key.Elements.begin());
  End[0] = &Target;
  End[1] = User.GetNearestViewBox();
  Key.Numbers = {Matrix.m11, Matrix.m12, Matrix.m21, Matrix.m22, User.GetOpacity()};
  Key.Flags = static_cast<std::uint32_t>(User.GetVectorEffect()) |
              std::uint32_t{InForce->SourceOfVisible().FVisible} << 8 |
              std::uint32_t{InForce->IsEnabled()} << 9;
  // Whoever clears the table of identifiers by hand tells nobody.
  Key.Items = User.Document()->AllItems().Count();
  Key.Opacity = InForce->AbsoluteOpacity();
  // What is no number would never be found again.
  return !std::isnan(Key.Opacity) && !std::isnan(Key.Numbers.back());
}

// --- The store

TSVGRepeats::TSVGRepeats() = default;
TSVGRepeats::~TSVGRepeats() = default;

void TSVGRepeats::Drop() {
  ++FEpoch;
  // Clearing a table that was large takes as long as it was.
  if (FEntries.empty()) return;
  FBytes = 0;
  FEntries = decltype(FEntries)();
  FStack = {};
}

std::size_t TSVGRepeats::TProgram::Bytes() const {
  return sizeof *this + Steps.capacity() * sizeof(TStep) + Moves.capacity() * sizeof(TMove) +
         Shapes.capacity() * (sizeof(TShape) + sizeof(TQXGPPen)) + DashBytes +
         (Parts.capacity() + Targets.capacity()) * sizeof(void*);
}

TSVGRepeats::TEntry* TSVGRepeats::EntryFor(const TKey& Key, std::uint64_t Drawing, bool& IsNew) {
  const auto Found = FEntries.find(Key);
  IsNew = Found == FEntries.end();
  if (!IsNew) return &Found->second;
  if (FBytes >= Limits::RepeatBytes) {
    // What fills it is of no use to a drawing that fills it anew.
    if (Drawing == FEmptied) return nullptr;
    Drop();
    FEmptied = Drawing;
  }
  // The node of a hash table has a link and the hash besides.
  FBytes += sizeof(TKey) + sizeof(TEntry) + 4 * sizeof(void*);
  return &FEntries[Key];
}

// --- Playing

// The products of the walk, without those that leave a number as it is.
TMatrix TSVGRepeats::TMove::Then(const TMatrix& M) const {
  if (!IsShift) return QXMatrixMultiply(Matrix, M);
  TMatrix Result = M;
  const double X = Matrix.m31, Y = Matrix.m32;
  Result.m31 = static_cast<float>(X * M.m11 + Y * M.m21 + M.m31);
  Result.m32 = static_cast<float>(X * M.m12 + Y * M.m22 + M.m32);
  return Result;
}

template <class Painting>
bool TSVGRepeats::ForEachShape(TProgram& Program, const TMatrix& Matrix, const Painting& Paint) {
  TMatrix M = Matrix;
  for (const TStep& Step : Program.Steps) {
    switch (Step.Kind) {
      case TStep::Move:
        FStack.push_back(M);
        M = Program.Moves[Step.Index].Then(M);
        break;
      case TStep::Back:
        M = FStack.back();
        FStack.pop_back();
        break;
      case TStep::Paint:
        if (!Paint(Program.Shapes[Step.Index], M)) return false;
        break;
      case TStep::Play:
        if (!ForEachShape(*Program.Parts[Step.Index], M, Paint)) return false;
        break;
    }
  }
  return true;
}

void TSVGRepeats::Play(TProgram& Program, const TMatrix& Matrix, TQXGPCanvas& Canvas) {
  if (IsPlaced(Program, Matrix)) return Canvas.DrawStamps(Program.Placed);
  FStack.clear();
  ForEachShape(Program, Matrix, [&](TShape& Shape, const TMatrix& M) {
    Paint(Shape, M, Canvas);
    return true;
  });
}

TQXCoverageStamps* TSVGRepeats::StampsOf(TShape& Shape) {
  if (!Shape.Kept) Shape.Kept = Shape.Element->KeptCoverage();
  return Shape.Kept ? &Shape.Kept->StampsForWriting() : nullptr;
}

bool TSVGRepeats::IsPlaced(const TProgram& Program, const TMatrix& Matrix) {
  return !Program.Placed.empty() && Program.PlacedUnder == Matrix &&
         std::all_of(Program.Serials.begin(), Program.Serials.end(),
                     [](const auto& Known) { return Known.first->Serial() == Known.second; });
}

void TSVGRepeats::PlaceAll(TProgram& Program, const TMatrix& Matrix, TQXGPCanvas& Canvas) {
  FBytes -= Program.PlacedBytes();
  Program.Placed = {};
  Program.Serials = {};
  std::vector<TQXPlacedStamp> Placed;
  std::unordered_map<const TQXCoverageStamps*, std::uint32_t> Serials;
  FStack.clear();
  const bool IsDone = ForEachShape(Program, Matrix, [&](TShape& Shape, const TMatrix& M) {
    const TQXCoverageStamps* const Stamps = StampsOf(Shape);
    if (!Stamps) return false;
    Serials[Stamps] = Stamps->Serial();
    for (const std::optional<TPaint>* By : {&Shape.Fill, &Shape.Stroke}) {
      if (!*By) continue;
      TQXPlacedStamp Next;
      if (!(*By)->Stamp || !Canvas.PlaceStamp(*Stamps, *(*By)->Stamp, {M.m31, M.m32}, (*By)->Color,
                                              (*By)->Opacity, Next))
        return false;
      if (Next.Stamp.Width != 0 && Next.Color != 0) Placed.push_back(Next);
    }
    // A vector grows by doubling, and a table has a link and a slot for each entry.
    return FBytes + 2 * Placed.size() * sizeof(TQXPlacedStamp) +
               4 * Serials.size() * sizeof(TSerial) <
           Limits::RepeatBytes;
  });
  Program.PlacedUnder = Matrix;
  if (!IsDone) return;
  Placed.shrink_to_fit();
  Program.Serials.assign(Serials.begin(), Serials.end());
  Program.Placed = std::move(Placed);
  FBytes += Program.PlacedBytes();
}

void TSVGRepeats::Paint(TShape& Shape, const TMatrix& Matrix, TQXGPCanvas& Canvas) {
  TQXCoverageStamps* const Stamps = StampsOf(Shape);
  const auto IsStamped = [&](const TPaint& By) {
    TQXPlacedStamp Placed;
    if (!Stamps || !By.Stamp ||
        !Canvas.PlaceStamp(*Stamps, *By.Stamp, {Matrix.m31, Matrix.m32}, By.Color, By.Opacity,
                           Placed))
      return false;
    Canvas.DrawStamps({&Placed, 1});
    return true;
  };
  const TQXPathView View = Shape.Path ? Shape.Path->View() : Shape.Data->View();
  TQXPathSource Source{View, Shape.Mode, Matrix};
  Source.IsRepeated = true;
  Source.Stamps = Stamps;
  if (Shape.Fill && !IsStamped(*Shape.Fill)) {
    Canvas.SetQuality(Shape.Quality);
    Canvas.Brush().SetKind(TQXGPBrushKind::bkSolid);
    Canvas.Brush().SetColor(Shape.Fill->Color);
    if (Shape.Kept) Source.Coverage = &Shape.Kept->Fill;
    Canvas.FillPath(Source, Shape.Fill->Opacity);
  }
  if (Shape.Stroke && !IsStamped(*Shape.Stroke)) {
    Canvas.SetQuality(Shape.Quality);
    Canvas.SetPen(*Shape.Pen);
    if (Shape.Kept) Source.Coverage = &Shape.Kept->Stroke;
    Canvas.DrawPath(Source, Shape.Stroke->Opacity);
  }
}

// --- Recording

void TSVGRecording::Visit(const TSVGElement& Element) {
  const auto* const Graphic = const_cast<TSVGElement&>(Element).AsGraphicElement();
  const bool IsForeseen = Graphic && FIsPlain(Element) && Element.Document() == FDocument &&
                          (Graphic->Inherits().Value() - Foreseen).IsEmpty() &&
                          !Element.ElementState().Has(TSVGElementStateFlag::esReading) &&
                          !HasConditions(Element);
  if (!IsForeseen) FIsSpoiled = true;
}

void TSVGRecording::Enter(const TMatrix& Own, const TMatrix& M) {
  const bool Moves = !FIsSpoiled && !IsIdentityMatrix(Own);
  FStack.push_back({FMatrix, Moves});
  if (FIsSpoiled) return;
  if (Moves) {
    const TMove Move{Own, IsShift(Own)};
    FProgram.Steps.push_back({TStep::Move, static_cast<std::uint32_t>(FProgram.Moves.size())});
    FProgram.Moves.push_back(Move);
    FMatrix = Move.Then(FMatrix);
  }
  // Whoever came here by another way than the walk's.
  if (FMatrix != M) FIsSpoiled = true;
  CheckSize();
}

void TSVGRecording::CheckSize() {
  if (FIsSpoiled || FProgram.Bytes() <= FRoom) return;
  FIsSpoiled = true;
  FProgram = {};
}

void TSVGRecording::Leave() {
  if (FStack.back().Moves) FProgram.Steps.push_back({TStep::Back, 0});
  FMatrix = FStack.back().Matrix;
  FStack.pop_back();
}

void TSVGRecording::Draw(TSVGGraphicElement& Element, const TQXPathSource& Source,
                         TQXGPCanvas& Canvas, float FillOpacity, float StrokeOpacity) {
  const TQXGPBrush& Brush = Canvas.Brush();
  const TQXGPPen& Pen = Canvas.Pen();
  const auto IsFrom = [&Source](const TQXPathView& View) {
    return View.Points.data() == Source.Path.Points.data();
  };
  const TQXGPPath* const Path = Element.FShape.get();
  const TQXPathData* const Data = Element.SVGType() == TSVGElementType::etPath
                                      ? &static_cast<const TSVGPath&>(Element).Data()
                                      : nullptr;
  const bool IsPath = Path && IsFrom(Path->View()), IsData = Data && IsFrom(Data->View());
  if (Source.Matrix != FMatrix || !IsPlainPaint(Brush.Kind()) || !IsPlainPaint(Pen.Kind()) ||
      IsPath == IsData)
    FIsSpoiled = true;
  if (FIsSpoiled) return;
  TShape Shape{&Element,
               IsPath ? Path : nullptr,
               IsData ? Data : nullptr,
               Source.FillMode,
               Canvas.Quality(),
               {},
               {},
               nullptr,
               nullptr};
  if (Brush.Kind() == TQXGPBrushKind::bkSolid)
    Shape.Fill = TPaint{FillOpacity, Brush.Color(), Canvas.StampKey(Source, nullptr)};
  if (Pen.Kind() == TQXGPBrushKind::bkSolid) {
    Shape.Stroke = TPaint{StrokeOpacity, Pen.Color(), Canvas.StampKey(Source, &Pen)};
    Shape.Pen = std::make_unique<TQXGPPen>();
    Shape.Pen->Take(Pen);
    FProgram.DashBytes += Pen.CustomDash().size_bytes();
  }
  Element.FIsRecorded = true;
  FProgram.Steps.push_back({TStep::Paint, static_cast<std::uint32_t>(FProgram.Shapes.size())});
  FProgram.Shapes.push_back(std::move(Shape));
  CheckSize();
}

void TSVGRecording::Play(TProgram& Part) {
  if (FIsSpoiled) return;
  FProgram.Steps.push_back({TStep::Play, static_cast<std::uint32_t>(FProgram.Parts.size())});
  FProgram.Parts.push_back(&Part);
  TSVGRepeatedExtent& Extent = FProgram.Extent;
  Extent.Elements += Part.Extent.Elements;
  Extent.Levels = std::max(Extent.Levels, Part.Extent.Levels);
  Extent.Depth = std::max(Extent.Depth, Part.Extent.Depth);
  if (!FKnown.insert(&Part).second) return;
  for (TSVGGraphicElement* Target : Part.Targets)
    if (FKnown.insert(Target).second) FProgram.Targets.push_back(Target);
  CheckSize();
}

// --- Attempts

TSVGRepeats::TAttempt::TAttempt(TSVGGraphicElement& User, TSVGGraphicElement& Target,
                                const TMatrix& Shift, const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                bool (*IsPlain)(const TSVGElement&), std::uint64_t Drawing)
    : FTarget(Target),
      FCanvas(Canvas),
      FShift(Shift),
      FMatrix(Matrix),
      FOuter(TScope::Recording()) {
  TSVGDocument* const Document = User.Document();
  if (!Document || Drawing == 0 || IsWatched(*Document) || !Canvas.HasStamps() ||
      !IsIdentityMatrix(Canvas.Matrix()) || !MakeKey(User, Target, Matrix, FKey))
    return;
  FRepeats = &Document->Repeats();
  bool IsNew = false;
  TEntry* const Entry = FRepeats->EntryFor(FKey, Drawing, IsNew);
  if (!Entry || Entry->IsVoid) return;
  IsInPlace = !IsNew && !FOuter && Entry->Under == Matrix;
  Entry->Under = Matrix;
  if (Entry->Program) {
    // What is above User would come to stand above itself.
    const auto IsDrawn = [](const TElement* E) { return E->FScope != nullptr; };
    const std::vector<TElement*>& Targets = Entry->Program->Targets;
    if (std::none_of(Targets.begin(), Targets.end(), IsDrawn)) FFound = Entry->Program.get();
    return;
  }
  // What is drawn once must not pay for being drawn again.
  if (IsNew && !(FOuter && !FOuter->FIsSpoiled)) return;
  if (FRepeats->FBytes >= Limits::RepeatBytes) return;
  FRecording.emplace();
  FRecording->FMatrix = Matrix;
  FRecording->FIsPlain = IsPlain;
  FRecording->FDocument = Document;
  FRecording->FEpoch = FRepeats->FEpoch;
  FRecording->FRoom = Limits::RepeatBytes - FRepeats->FBytes;
  FRecording->Visit(Target);
  TScope::SetRecording(&*FRecording);
}

TSVGRepeats::TAttempt::~TAttempt() {
  TScope::SetRecording(FOuter);
  if (!FIsOver && FOuter) FOuter->FIsSpoiled = true;
}

void TSVGRepeats::TAttempt::Tell(TProgram& Program) {
  FIsOver = true;
  if (!FOuter) return;
  FOuter->Enter(FShift, FMatrix);
  FOuter->Play(Program);
  FOuter->Leave();
}

bool TSVGRepeats::TAttempt::Play() {
  // The walk lends each target and takes it back, which drops its caches.
  const std::uint64_t Epoch = FRepeats->FEpoch;
  for (std::size_t I = 0; I < FFound->Targets.size(); ++I) {
    TScope::ResetLent(*FFound->Targets[I]);
    // An element of the host's own may tell of a change.
    if (FRepeats->FEpoch != Epoch) return false;
  }
  FRepeats->Play(*FFound, FMatrix, FCanvas);
  if (IsInPlace && FFound->PlacedUnder != FMatrix) FRepeats->PlaceAll(*FFound, FMatrix, FCanvas);
  Tell(*FFound);
  return true;
}

void TSVGRepeats::TAttempt::Done(const TSVGRepeatedExtent& Own) {
  TScope::SetRecording(FOuter);
  // What was dropped meanwhile took the entry along.
  if (!FRecording || FRecording->FEpoch != FRepeats->FEpoch) return;
  TEntry& Entry = FRepeats->FEntries.at(FKey);
  Entry.IsVoid = FRecording->FIsSpoiled;
  if (Entry.IsVoid || Entry.Program) return;
  TProgram& Program =
      *(Entry.Program = std::make_unique<TProgram>(std::move(FRecording->FProgram)));
  Program.Extent.Elements += Own.Elements;
  Program.Extent.Levels += Own.Levels;
  Program.Extent.Depth += Own.Depth;
  Program.Targets.push_back(&FTarget);
  if (FRepeats->FBytes + Program.Bytes() > Limits::RepeatBytes) {
    Entry = {nullptr, true, FMatrix};
    return;
  }
  FRepeats->FBytes += Program.Bytes();
  if (IsInPlace) FRepeats->PlaceAll(Program, FMatrix, FCanvas);
  Tell(Program);
}

}  // namespace qxsvg
