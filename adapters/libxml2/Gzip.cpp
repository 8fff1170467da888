#include "adapters/libxml2/Gzip.h"

#include <zlib.h>

#include <algorithm>

#include "foundation/Limits.h"
#include "foundation/Messages.h"
#include "runtime/Exceptions.h"

namespace qxsvg {

namespace {

constexpr std::string_view Magic = "\x1F\x8B";
constexpr int GzipWindowBits = 15 + 16;
constexpr std::size_t FirstRoom = std::size_t{1} << 16;

[[noreturn]] void RaiseDamaged() {
  throw EXMLError(u"The compressed document is damaged", 0, 0);
}

class TInflater {
 public:
  TInflater() {
    if (inflateInit2(&FStream, GzipWindowBits) != Z_OK) throw std::bad_alloc();
  }
  TInflater(const TInflater&) = delete;
  TInflater& operator=(const TInflater&) = delete;
  ~TInflater() { inflateEnd(&FStream); }

  // Reads one member, appending to Result; gives the bytes that it took.
  std::size_t ReadMember(std::string_view Bytes, std::string& Result) {
    inflateReset(&FStream);
    // zlib takes its input by a pointer to bytes that it does not change.
    FStream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(Bytes.data()));
    FStream.avail_in = static_cast<uInt>(Bytes.size());
    std::size_t Used = Result.size();
    while (true) {
      // One byte over the limit tells a document that is too large from one that just fits.
      const std::size_t Room =
          std::min(std::max(FirstRoom, Used * 2), Limits::DecompressedBytes + 1);
      Result.resize(Room);
      FStream.next_out = reinterpret_cast<Bytef*>(Result.data() + Used);
      FStream.avail_out = static_cast<uInt>(Room - Used);
      const int Status = inflate(&FStream, Z_NO_FLUSH);
      Used = Room - FStream.avail_out;
      if (Used > Limits::DecompressedBytes) throw ESVGException(SDecompressedSizeLimit);
      if (Status == Z_STREAM_END) break;
      if (Status != Z_OK || FStream.avail_out != 0) RaiseDamaged();
    }
    Result.resize(Used);
    return Bytes.size() - FStream.avail_in;
  }

 private:
  z_stream FStream{};
};

}  // namespace

bool IsGzip(std::string_view Bytes) {
  return Bytes.starts_with(Magic);
}

std::string Decompress(std::string_view Bytes) {
  if (Bytes.size() > Limits::DocumentBytes) throw ESVGException(SDocumentSizeLimit);
  TInflater Inflater;
  std::string Result;
  do {
    Bytes.remove_prefix(Inflater.ReadMember(Bytes, Result));
  } while (IsGzip(Bytes));
  return Result;
}

}  // namespace qxsvg
