// The face of the property stream that a class sees when it declares properties of its own making
// besides the published ones.
#pragma once

#include <cstdint>
#include <functional>

#include "runtime/String.h"

namespace qxsvg {

class QXSVG_API TReader {
 public:
  virtual ~TReader();
  virtual std::int64_t ReadInteger() = 0;
  virtual double ReadFloat() = 0;
  virtual bool ReadBoolean() = 0;
  virtual String ReadString() = 0;
  virtual void ReadListBegin() = 0;
  virtual void ReadListEnd() = 0;
  virtual bool EndOfList() = 0;
  // True when the next value is a list, false when it is a plain value.
  virtual bool IsNextList() = 0;
};

class QXSVG_API TWriter {
 public:
  virtual ~TWriter();
  virtual void WriteInteger(std::int64_t Value) = 0;
  virtual void WriteFloat(double Value) = 0;
  virtual void WriteBoolean(bool Value) = 0;
  virtual void WriteString(StringView Value) = 0;
  virtual void WriteListBegin() = 0;
  virtual void WriteListEnd() = 0;
};

// A reader offers each declared property the value found under its name; a writer calls Write for
// those with HasData.
class QXSVG_API TFiler {
 public:
  virtual ~TFiler();
  virtual void DefineProperty(StringView Name, const std::function<void(TReader&)>& Read,
                              const std::function<void(TWriter&)>& Write, bool HasData) = 0;
};

}  // namespace qxsvg
