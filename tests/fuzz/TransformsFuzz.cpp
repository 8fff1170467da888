// Transform lists.
#include "FuzzInput.h"
#include "foundation/ParseTransform.h"
#include "foundation/Writers.h"
#include "runtime/Exceptions.h"

using namespace qxsvg;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size) {
  const String Text = fuzz::TextOf(Data, Size);
  TMatrix Matrix;
  try {
    Matrix = ParseTransformation(Text);
  } catch (const ESVGException&) {
    return 0;
  } catch (const EConvertError&) {
    return 0;
  }
  fuzz::Check(IsFinite(Matrix), "transforms are finite");
  const TMatrix Read = ParseTransformation(SVGTransformationToString(Matrix));
  fuzz::Check(Read == Matrix || QXMatrixEquals(Matrix, TMatrix(), 1e-4f), "transforms round trip");
  return 0;
}
