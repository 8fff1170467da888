#include "runtime/Filer.h"

namespace qxsvg {

TReader::~TReader() = default;
TWriter::~TWriter() = default;
TFiler::~TFiler() = default;

}  // namespace qxsvg
