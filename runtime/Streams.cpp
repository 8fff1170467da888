// The stream base and the streams over memory; those over files are in FileStreams.cpp.
#include "runtime/Streams.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <utility>

#include "runtime/Exceptions.h"
#include "runtime/Numbers.h"

namespace qxsvg {

namespace {

constexpr std::size_t CopyBlock = 64 * 1024;

// The place that Offset from Origin means; Position and Size are those of the stream.
std::size_t SeekTarget(std::int64_t Offset, TSeekOrigin Origin, std::size_t Position,
                       std::size_t Size) {
  const std::size_t Base = Origin == TSeekOrigin::soBeginning ? 0
                           : Origin == TSeekOrigin::soCurrent ? Position
                                                              : Size;
  const auto Signed = static_cast<std::int64_t>(Base);
  if (Offset < -Signed || Offset > std::numeric_limits<std::int64_t>::max() - Signed)
    throw EStreamError(u"Stream position out of range");
  return static_cast<std::size_t>(Signed + Offset);
}

TBytesView RestOf(TBytesView Bytes, std::size_t Position) {
  return Bytes.subspan(std::min(Position, Bytes.size()));
}

std::size_t ReadFrom(TBytesView Bytes, std::size_t& Position, void* Buffer, std::size_t Count) {
  const TBytesView Rest = RestOf(Bytes, Position);
  const std::size_t Taken = std::min(Count, Rest.size());
  if (Taken > 0) std::memcpy(Buffer, Rest.data(), Taken);
  Position += Taken;
  return Taken;
}

}  // namespace

TStream::~TStream() = default;
TMemoryStream::TMemoryStream() = default;
TMemoryStream::TMemoryStream(TBytes Bytes) : FBytes(std::move(Bytes)) {}
TMemoryStream::~TMemoryStream() = default;
TBytesViewStream::~TBytesViewStream() = default;

std::int64_t TStream::Size() {
  const std::int64_t Kept = Position();
  const std::int64_t Result = Seek(0, TSeekOrigin::soEnd);
  SetPosition(Kept);
  return Result;
}

void TStream::ReadBuffer(void* Buffer, std::size_t Count) {
  if (Read(Buffer, Count) != Count) throw EReadError(u"Stream read error");
}

void TStream::WriteBuffer(const void* Buffer, std::size_t Count) {
  if (Write(Buffer, Count) != Count) throw EStreamError(u"Stream write error");
}

std::int64_t TStream::CopyFrom(TStream& Source) {
  std::int64_t Total = 0;
  std::array<std::uint8_t, CopyBlock> Block;
  while (const std::size_t Count = Source.Read(Block.data(), Block.size())) {
    WriteBuffer(Block.data(), Count);
    Total += static_cast<std::int64_t>(Count);
  }
  return Total;
}

std::size_t TMemoryStream::Read(void* Buffer, std::size_t Count) {
  return ReadFrom(FBytes, FPosition, Buffer, Count);
}

std::size_t TMemoryStream::Write(const void* Buffer, std::size_t Count) {
  if (Count == 0) return 0;
  if (FPosition > FBytes.max_size() - Count) throw EStreamError(u"Stream too long");
  if (FPosition > FBytes.size()) FBytes.resize(FPosition);
  const auto* First = static_cast<const std::uint8_t*>(Buffer);
  const std::size_t Inside = std::min(Count, FBytes.size() - FPosition);
  std::copy(First, First + Inside, FBytes.begin() + static_cast<std::ptrdiff_t>(FPosition));
  FBytes.insert(FBytes.end(), First + Inside, First + Count);
  FPosition += Count;
  return Count;
}

std::int64_t TMemoryStream::Seek(std::int64_t Offset, TSeekOrigin Origin) {
  FPosition = SeekTarget(Offset, Origin, FPosition, FBytes.size());
  return static_cast<std::int64_t>(FPosition);
}

TBytesView TMemoryStream::Rest() const {
  return RestOf(FBytes, FPosition);
}

TBytes TMemoryStream::Detach() {
  FPosition = 0;
  return std::exchange(FBytes, {});
}

void TMemoryStream::SetSize(std::size_t Size) {
  FBytes.resize(Size);
  FPosition = std::min(FPosition, Size);
}

std::size_t TBytesViewStream::Read(void* Buffer, std::size_t Count) {
  return ReadFrom(FBytes, FPosition, Buffer, Count);
}

std::size_t TBytesViewStream::Write(const void*, std::size_t) {
  throw EStreamError(u"This stream can only be read");
}

std::int64_t TBytesViewStream::Seek(std::int64_t Offset, TSeekOrigin Origin) {
  FPosition = SeekTarget(Offset, Origin, FPosition, FBytes.size());
  return static_cast<std::int64_t>(FPosition);
}

TBytesView TBytesViewStream::Rest() const {
  return RestOf(FBytes, FPosition);
}

TBytes ReadAll(TStream& Stream, std::size_t Limit) {
  const auto Raise = [Limit] {
    throw EStreamError(u"Input of more than %s bytes",
                       {IntToStr(static_cast<std::int64_t>(Limit))});
  };
  if (const TBytesView Rest = Stream.Rest(); !Rest.empty()) {
    if (Rest.size() > Limit) Raise();
    TBytes Result(Rest.begin(), Rest.end());
    Stream.Seek(0, TSeekOrigin::soEnd);
    return Result;
  }
  // Sizes that a system tells for what it makes up as it is read (0, mostly) are only a hint.
  const std::int64_t Left = std::max<std::int64_t>(Stream.Size() - Stream.Position(), 0);
  if (static_cast<std::uint64_t>(Left) > Limit) Raise();
  TBytes Result(static_cast<std::size_t>(Left));
  Result.resize(Stream.Read(Result.data(), Result.size()));
  std::array<std::uint8_t, CopyBlock> Block;
  while (const std::size_t Count = Stream.Read(Block.data(), Block.size())) {
    if (Count > Limit - Result.size()) Raise();
    Result.insert(Result.end(), Block.begin(), Block.begin() + static_cast<std::ptrdiff_t>(Count));
  }
  return Result;
}

TBytes ReadFile(StringView Name, std::size_t Limit) {
  TFileStream File(Name, TFileMode::fmOpenRead);
  try {
    return ReadAll(File, Limit);
  } catch (const EStreamError& Error) {
    throw EStreamError(u"%s: %s", {Name, Error.Message()});
  }
}

}  // namespace qxsvg
