// How a picture or view keeps its proportions in a rectangle.
#pragma once

#include "foundation/Keywords.h"
#include "runtime/Method.h"
#include "runtime/Persistent.h"

namespace qxsvg {

// The value of preserveAspectRatio (SVG 1.1 chapter 7.8).
class QXSVG_API TSVGPreserveAspectRatio : public TPersistent {
 public:
  // The values are also what Clear returns to, and what decides whether a stream stores a property.
  TSVGPreserveAspectRatio(TSVGAlign Align, bool Defer, bool Slice);
  ~TSVGPreserveAspectRatio() override;

  static const TClass Class;
  const TClass& ClassType() const override { return Class; }

  // Takes the values and the defaults; OnChange stays.
  void Assign(const TPersistent* Source) override;
  virtual void Clear();
  // The attribute's text; OmitMeet leaves the word "meet" out.
  virtual String ToString(bool OmitMeet) const;

  TSVGAlign Align() const { return FAlign; }
  void SetAlign(TSVGAlign Value);
  // Read and written, but of no effect on the fit.
  bool Defer() const { return FDefer; }
  void SetDefer(bool Value);
  bool Slice() const { return FSlice; }
  void SetSlice(bool Value);

  bool IsAlignStored() const { return FAlign != FDefaultAlign; }
  bool IsDeferStored() const { return FDefer != FDefaultDefer; }
  bool IsSliceStored() const { return FSlice != FDefaultSlice; }

  TNotifyMethod OnChange;

 protected:
  void Change();

 private:
  TSVGAlign FAlign;
  bool FDefer, FSlice;
  bool FDefaultSlice;
  TSVGAlign FDefaultAlign;
  bool FDefaultDefer;
};

// Takes the attribute's text into Ratio; a blank text changes nothing, an unknown word of alignment
// is saNone.
QXSVG_API void ParseAspectRatio(StringView Text, TSVGPreserveAspectRatio& Ratio);

}  // namespace qxsvg
