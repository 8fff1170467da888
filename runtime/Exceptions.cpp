#include "runtime/Exceptions.h"

namespace qxsvg {

Exception::Exception(StringView Message) : FMessage(Message), FUtf8(ToUtf8(Message)) {}
Exception::Exception(StringView Message, std::initializer_list<StringView> Arguments)
    : Exception(Format(Message, Arguments)) {}
EXMLError::EXMLError(StringView Message, int Line, int Column)
    : Exception(Message), FLine(Line), FColumn(Column) {}

// Defined here so that each type's run-time information lives in the library alone and a handler in
// another module catches what the library threw.
Exception::~Exception() = default;
ESVGException::~ESVGException() = default;
EConvertError::~EConvertError() = default;
EInvalidOperation::~EInvalidOperation() = default;
EListError::~EListError() = default;
EGHashtableError::~EGHashtableError() = default;
EClassNotFound::~EClassNotFound() = default;
EInvalidCast::~EInvalidCast() = default;
EArgumentOutOfRange::~EArgumentOutOfRange() = default;
EAbort::~EAbort() = default;
EInvalidGraphicOperation::~EInvalidGraphicOperation() = default;
EStreamError::~EStreamError() = default;
EReadError::~EReadError() = default;
EAssertionFailed::~EAssertionFailed() = default;
EXMLError::~EXMLError() = default;

}  // namespace qxsvg
