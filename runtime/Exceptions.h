// The exceptions of the system. Every failure that stops an operation is one of these.
#pragma once

#include <exception>
#include <string>

#include "runtime/String.h"

namespace qxsvg {

// Carries its message in UTF-16; what() gives the same text in UTF-8.
class QXSVG_API Exception : public std::exception {
 public:
  explicit Exception(StringView Message);
  // A message with "%s" places, filled in order.
  Exception(StringView Message, std::initializer_list<StringView> Arguments);
  ~Exception() override;
  const String& Message() const noexcept { return FMessage; }
  const char* what() const noexcept override { return FUtf8.c_str(); }

 private:
  String FMessage;
  std::string FUtf8;
};

// The library's own exception; its messages are those of foundation/Messages.h.
struct QXSVG_API ESVGException : Exception {
  using Exception::Exception;
  ~ESVGException() override;
};
// A text that is no number, colour or other value of the type asked for.
struct QXSVG_API EConvertError : Exception {
  using Exception::Exception;
  ~EConvertError() override;
};
struct QXSVG_API EInvalidOperation : Exception {
  using Exception::Exception;
  ~EInvalidOperation() override;
};
// A duplicate or missing key or index of a list or table.
struct QXSVG_API EListError : Exception {
  using Exception::Exception;
  ~EListError() override;
};
struct QXSVG_API EGHashtableError : Exception {
  using Exception::Exception;
  ~EGHashtableError() override;
};
struct QXSVG_API EClassNotFound : Exception {
  using Exception::Exception;
  ~EClassNotFound() override;
};
struct QXSVG_API EInvalidCast : Exception {
  using Exception::Exception;
  ~EInvalidCast() override;
};
struct QXSVG_API EArgumentOutOfRange : Exception {
  using Exception::Exception;
  ~EArgumentOutOfRange() override;
};
// Ends an operation silently: a host that asked for the end catches it without a message.
struct QXSVG_API EAbort : Exception {
  using Exception::Exception;
  ~EAbort() override;
};
struct QXSVG_API EInvalidGraphicOperation : Exception {
  using Exception::Exception;
  ~EInvalidGraphicOperation() override;
};
struct QXSVG_API EStreamError : Exception {
  using Exception::Exception;
  ~EStreamError() override;
};
struct QXSVG_API EReadError : EStreamError {
  using EStreamError::EStreamError;
  ~EReadError() override;
};
// A condition that the program itself guarantees does not hold.
struct QXSVG_API EAssertionFailed : Exception {
  using Exception::Exception;
  ~EAssertionFailed() override;
};

// Malformed XML, with its place: line and column count from 1, 0 where unknown.
class QXSVG_API EXMLError : public Exception {
 public:
  EXMLError(StringView Message, int Line, int Column);
  ~EXMLError() override;
  int Line() const noexcept { return FLine; }
  int Column() const noexcept { return FColumn; }

 private:
  int FLine, FColumn;
};

}  // namespace qxsvg
