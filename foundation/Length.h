// Coordinates, sizes and spacings as they were written: a number, a unit and a percent mark.
#pragma once

#include <memory>
#include <type_traits>
#include <vector>

#include "foundation/Keywords.h"
#include "foundation/StyleProperties.h"
#include "foundation/Units.h"
#include "foundation/Writers.h"
#include "runtime/Method.h"
#include "runtime/Persistent.h"

namespace qxsvg {

class TSVGLength;
class TSVGStylePropertyLength;

using TSVGUnitFactorsEvent = TMethod<void(TPersistent* Sender, TSVGUnitFactors& UnitFactors)>;
using TSVGLengthRangeEvent =
    TMethod<void(TSVGLength* Sender, float& Min, float& Max, bool& DoRange)>;
// Makes a length for a list that is being read.
using TSVGLengthCreateEvent = TMethod<std::unique_ptr<TSVGLength>(float Value)>;

// What a length calls in its owner. One table serves all lengths of a kind, so that each length
// holds its owner and a table and stays small; entries may be null.
struct TSVGLengthEvents {
  void (*OnChange)(void* Owner, TPersistent* Sender) = nullptr;
  // Comes in with 0, 1 and true.
  void (*OnRange)(void* Owner, TSVGLength* Sender, float& Min, float& Max, bool& DoRange) = nullptr;
  void (*OnUnitFactors)(void* Owner, TPersistent* Sender, TSVGUnitFactors& Factors) = nullptr;
  // The factor of one unit alone, asked for instead of the table: for owners to whom some factors,
  // such as those of the font, cost more than others. Has to agree with OnUnitFactors.
  float (*OnUnitFactor)(void* Owner, TSVGUnit Unit) = nullptr;

  // For style lengths. IsInherited comes in with the last known mark.
  void (*OnGetInherited)(void* Owner, TSVGStylePropertyLength* Sender, bool& IsInherited) = nullptr;
  void (*OnSetInherited)(void* Owner, TSVGStylePropertyLength* Sender, bool IsInherited) = nullptr;
  // Gives the length to inherit from, or leaves null.
  void (*OnGetParent)(void* Owner, TSVGStylePropertyLength* Sender,
                      TSVGStylePropertyLength*& Parent) = nullptr;
};

// A table of methods of TOwner:
//
//   constinit const TSVGLengthEventsOf<TThing> TThing::WidthEvents =
//       TSVGLengthEventsOf<TThing>().Change<&TThing::Changed>().Range<&TThing::WidthRange>();
template <class TOwner>
struct TSVGLengthEventsOf : TSVGLengthEvents {
  template <auto Method>
  consteval TSVGLengthEventsOf Change() const {
    return With(&TSVGLengthEvents::OnChange, [](void* Owner, TPersistent* Sender) {
      (static_cast<TOwner*>(Owner)->*Method)(Sender);
    });
  }
  template <auto Method>
  consteval TSVGLengthEventsOf Range() const {
    return With(&TSVGLengthEvents::OnRange,
                [](void* Owner, TSVGLength* Sender, float& Min, float& Max, bool& DoRange) {
                  (static_cast<TOwner*>(Owner)->*Method)(Sender, Min, Max, DoRange);
                });
  }
  template <auto Method>
  consteval TSVGLengthEventsOf UnitFactors() const {
    return With(&TSVGLengthEvents::OnUnitFactors,
                [](void* Owner, TPersistent* Sender, TSVGUnitFactors& Factors) {
                  (static_cast<TOwner*>(Owner)->*Method)(Sender, Factors);
                });
  }
  template <auto Method>
  consteval TSVGLengthEventsOf UnitFactor() const {
    return With(&TSVGLengthEvents::OnUnitFactor, [](void* Owner, TSVGUnit Unit) -> float {
      return (static_cast<TOwner*>(Owner)->*Method)(Unit);
    });
  }
  template <auto Method>
  consteval TSVGLengthEventsOf GetInherited() const {
    return With(&TSVGLengthEvents::OnGetInherited,
                [](void* Owner, TSVGStylePropertyLength* Sender, bool& IsInherited) {
                  (static_cast<TOwner*>(Owner)->*Method)(Sender, IsInherited);
                });
  }
  template <auto Method>
  consteval TSVGLengthEventsOf SetInherited() const {
    return With(&TSVGLengthEvents::OnSetInherited,
                [](void* Owner, TSVGStylePropertyLength* Sender, bool IsInherited) {
                  (static_cast<TOwner*>(Owner)->*Method)(Sender, IsInherited);
                });
  }
  template <auto Method>
  consteval TSVGLengthEventsOf GetParent() const {
    return With(&TSVGLengthEvents::OnGetParent,
                [](void* Owner, TSVGStylePropertyLength* Sender, TSVGStylePropertyLength*& Parent) {
                  (static_cast<TOwner*>(Owner)->*Method)(Sender, Parent);
                });
  }

 private:
  template <class Call>
  consteval TSVGLengthEventsOf With(Call TSVGLengthEvents::*Entry,
                                    std::type_identity_t<Call> Value) const {
    TSVGLengthEventsOf Result = *this;
    Result.*Entry = Value;
    return Result;
  }
};

// A length is live: it holds what was written and turns it into pixels each time it is read, by the
// factors and the range that its owner supplies at that moment. So an em follows the font, a
// percentage the view box, and nothing has to be invalidated.
//
// GetPixels is the number in the unit's pixels; GetValue applies the range of a percentage too, and
// is what drawing reads. Nothing here raises unless an owner's callback does. A factor of 0 gives
// an infinity.
class QXSVG_API TSVGLength : public TPersistent {
 public:
  TSVGLength() = default;
  // IsPercent is also what Clear goes back to. Nobody is told.
  TSVGLength(float Value, bool IsPercent, TSVGUnit Unit);
  ~TSVGLength() override;

  static const TClass Class;
  const TClass& ClassType() const override { return Class; }

  // Number, unit, mark and default mark; the wiring stays.
  void Assign(const TPersistent* Source) override;

  // In pixels, or the bare fraction of a percentage without a range.
  virtual float GetValue() const;
  // Value is in pixels and becomes a number in the present unit; that of a percentage is not scaled
  // back through the range. The write is dropped when the present size in pixels equals the new
  // number (not the new size), so in a unit with a factor other than 1 equal sizes are written and
  // some others are not. Callers rely on the sizes that come out.
  virtual void SetValue(float Value);
  virtual void Clear();
  // A length with the same value that is wired to nobody.
  virtual std::unique_ptr<TSVGLength> Clone() const;
  virtual void Initialize(float Value, bool IsPercent, TSVGUnit Unit);
  // The number with its unit, a percentage scaled to the range from Min to Max.
  virtual String ToString(const TSVGNumberFormat& Format, float Min, float Max) const;

  // The owner's factors, SVGUnitFactors without one.
  virtual TSVGUnitFactors GetUnitFactors() const;

  // The number as written; a percentage is a fraction as a rule (50% is 0.5).
  float Raw() const { return FRaw; }
  void SetRaw(float Value);
  bool IsPercent() const { return FIsPercent; }
  void SetIsPercent(bool Value);
  bool DefaultIsPercent() const { return FDefaultIsPercent; }
  TSVGUnit Unit() const { return FUnit; }
  // Keeps the size in pixels.
  void SetUnit(TSVGUnit Value);

  float GetPixels() const;
  void SetPixels(float Value);
  float GetAsUnit(TSVGUnit Unit) const;
  // Takes Value as it is; the length is a percentage if Unit is suPercent.
  void SetAsUnit(TSVGUnit Unit, float Value);
  // A percentage scaled to the range from Min to Max; the number as it is otherwise.
  float GetPercentValue(float Min, float Max) const;

  bool IsUnitStored() const { return FUnit != TSVGUnit::suNone && FUnit != TSVGUnit::suPixels; }
  bool IsRawStored() const { return !(FRaw == 0); }
  bool IsPercentStored() const { return FIsPercent != FDefaultIsPercent; }

  // Owner and Events are not owned and have to outlive the length. Neither Assign nor Clone copies
  // them.
  template <class TOwner>
  void Wire(std::type_identity_t<TOwner>* Owner, const TSVGLengthEventsOf<TOwner>& Events) {
    FOwner = Owner;
    FEvents = &Events;
  }
  template <class TOwner>
  void Wire(std::type_identity_t<TOwner>* Owner,
            const TSVGLengthEventsOf<TOwner>&& Events) = delete;
  void Unwire();

 protected:
  // Tells the owner.
  virtual void Change();
  void* EventOwner() const { return FOwner; }
  const TSVGLengthEvents& Events() const { return *FEvents; }

 private:
  float UnitFactor(TSVGUnit Unit) const;

  void* FOwner = nullptr;
  const TSVGLengthEvents* FEvents = &NoEvents;
  float FRaw = 0;
  TSVGUnit FUnit = TSVGUnit::suNone;
  bool FIsPercent : 1 = false;
  bool FDefaultIsPercent : 1 = false;

  static const TSVGLengthEvents NoEvents;
};

// The class value of the family below, through which an owner makes any of them.
struct TSVGStylePropertyLengthClass : TClass {
  std::unique_ptr<TSVGStylePropertyLength> (*Create)(TSVGStyleProperty Property);
};

// The value of a style property, which may be taken from the parent.
class QXSVG_API TSVGStylePropertyLength : public TSVGLength {
 public:
  explicit TSVGStylePropertyLength(TSVGStyleProperty Property) : FStyleProperty(Property) {}

  static const TSVGStylePropertyLengthClass Class;
  const TSVGStylePropertyLengthClass& ClassType() const override { return Class; }

  // From a style length the inherited mark too.
  void Assign(const TPersistent* Source) override;
  // The parent's value where the property is inherited and there is a parent.
  float GetValue() const override;
  // Ends inheritance. Dropped when Value equals the number that stands and is in force.
  void SetValue(float Value) override;
  // Ends inheritance too.
  void Clear() override;
  // Of the same class and property.
  std::unique_ptr<TSVGLength> Clone() const override;

  // The length to inherit from, or null. Not owned.
  virtual TSVGStylePropertyLength* GetParentValue() const;

  TSVGStyleProperty StyleProperty() const { return FStyleProperty; }
  // Whether the value is inherited, as the owner says; a length without wiring keeps its own mark.
  bool IsParentValue() const;
  void SetParentValue(bool Value);

 private:
  TSVGStyleProperty FStyleProperty;
  // The last known mark; reading it refreshes it.
  mutable bool FInherited = false;
};

// A length that may be a keyword ("normal", "auto") instead of a number.
class QXSVG_API TSVGStylePropertyAutoLength : public TSVGStylePropertyLength {
 public:
  using TSVGStylePropertyLength::TSVGStylePropertyLength;

  static const TSVGStylePropertyLengthClass Class;
  const TSVGStylePropertyLengthClass& ClassType() const override { return Class; }

  void Assign(const TPersistent* Source) override;
  void Clear() override;

  // The keyword is in force and the number is not. Raises EInvalidCast when the parent's length is
  // of another class.
  bool IsAutomatic() const;
  void SetAutomatic(bool Value);

 private:
  bool FAutomatic = true;
};

// The value of baseline-shift: one of its keywords, or a length or percentage.
class QXSVG_API TSVGBaselineShiftLength : public TSVGStylePropertyLength {
 public:
  using TSVGStylePropertyLength::TSVGStylePropertyLength;

  static const TSVGStylePropertyLengthClass Class;
  const TSVGStylePropertyLengthClass& ClassType() const override { return Class; }

  void Assign(const TPersistent* Source) override;
  void Clear() override;

  // Raises EInvalidCast when the parent's length is of another class.
  TSVGBaselineShift GetShift() const;
  void SetShift(TSVGBaselineShift Value);

 private:
  TSVGBaselineShift FShift = TSVGBaselineShift::bsBaseline;
};

// A list that owns its lengths.
class QXSVG_API TSVGLengths {
 public:
  TSVGLengths() = default;
  TSVGLengths(TSVGLengths&&) noexcept = default;
  TSVGLengths& operator=(TSVGLengths&&) noexcept = default;

  std::size_t Count() const { return FItems.size(); }
  bool IsEmpty() const { return FItems.empty(); }
  // Index is below Count.
  TSVGLength& operator[](std::size_t Index) { return *FItems[Index]; }
  const TSVGLength& operator[](std::size_t Index) const { return *FItems[Index]; }
  // Takes the length, which is not null.
  TSVGLength& Add(std::unique_ptr<TSVGLength> Length);
  // Index is below Count.
  void Delete(std::size_t Index);
  void Clear() { FItems.clear(); }

  // Clones of the lengths, in order.
  std::unique_ptr<TSVGLengths> Clone() const;
  // The same into Dest, whose lengths go. Dest may be this list, which then stays as it is.
  TSVGLengths& Clone(TSVGLengths& Dest) const;

 private:
  std::vector<std::unique_ptr<TSVGLength>> FItems;
};

}  // namespace qxsvg
