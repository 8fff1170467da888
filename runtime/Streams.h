// Streams of bytes: in memory, over a caller's bytes, and in files.
#pragma once

#include <concepts>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <span>
#include <vector>

#include "runtime/String.h"

namespace qxsvg {

using TBytes = std::vector<std::uint8_t>;
using TBytesView = std::span<const std::uint8_t>;

inline TBytesView BytesOf(std::string_view Text) {
  return {reinterpret_cast<const std::uint8_t*>(Text.data()), Text.size()};
}
inline std::string_view CharsOf(TBytesView Bytes) {
  return {reinterpret_cast<const char*>(Bytes.data()), Bytes.size()};
}

enum class TSeekOrigin : std::uint8_t { soBeginning, soCurrent, soEnd };

// Positions and sizes count bytes from 0. A stream belongs to one thread at a time.
class QXSVG_API TStream {
 public:
  TStream() = default;
  TStream(const TStream&) = delete;
  TStream& operator=(const TStream&) = delete;
  virtual ~TStream();

  // Take up to Count bytes at the position, which moves on by what was taken: that is less than
  // Count only at the end. EStreamError where the device fails or the stream does not do this.
  virtual std::size_t Read(void* Buffer, std::size_t Count) = 0;
  virtual std::size_t Write(const void* Buffer, std::size_t Count) = 0;
  // Gives the new position. It may lie behind the end, where reading finds nothing and writing
  // fills the gap with zeros; a place before the beginning raises EStreamError.
  virtual std::int64_t Seek(std::int64_t Offset, TSeekOrigin Origin) = 0;
  virtual std::int64_t Size();
  // What lies behind the position, without a copy, where the stream holds its bytes in memory;
  // empty otherwise, and valid until the stream changes. The position stays.
  virtual TBytesView Rest() const { return {}; }

  std::int64_t Position() { return Seek(0, TSeekOrigin::soCurrent); }
  void SetPosition(std::int64_t Position) { Seek(Position, TSeekOrigin::soBeginning); }
  // All of Count bytes, or EReadError (EStreamError for writing).
  void ReadBuffer(void* Buffer, std::size_t Count);
  void WriteBuffer(const void* Buffer, std::size_t Count);
  void WriteBytes(TBytesView Bytes) { WriteBuffer(Bytes.data(), Bytes.size()); }
  // Copies from the position of Source to its end and gives the number of bytes.
  std::int64_t CopyFrom(TStream& Source);
};

// Bytes in memory that the stream owns.
class QXSVG_API TMemoryStream : public TStream {
 public:
  TMemoryStream();
  // Takes the bytes; the position is their beginning.
  explicit TMemoryStream(TBytes Bytes);
  ~TMemoryStream() override;
  std::size_t Read(void* Buffer, std::size_t Count) override;
  std::size_t Write(const void* Buffer, std::size_t Count) override;
  std::int64_t Seek(std::int64_t Offset, TSeekOrigin Origin) override;
  std::int64_t Size() override { return static_cast<std::int64_t>(FBytes.size()); }
  TBytesView Rest() const override;

  const TBytes& Bytes() const { return FBytes; }
  // Hands the bytes over and leaves the stream empty.
  TBytes Detach();
  // Cuts or fills with zeros; a position behind the end goes back to it.
  void SetSize(std::size_t Size);
  void Clear() { SetSize(0); }

 private:
  TBytes FBytes;
  std::size_t FPosition = 0;
};

// Reads bytes that the caller keeps alive and unchanged. Writing raises EStreamError.
class QXSVG_API TBytesViewStream : public TStream {
 public:
  explicit TBytesViewStream(TBytesView Bytes) : FBytes(Bytes) {}
  explicit TBytesViewStream(std::string_view Text) : FBytes(BytesOf(Text)) {}
  ~TBytesViewStream() override;
  std::size_t Read(void* Buffer, std::size_t Count) override;
  std::size_t Write(const void* Buffer, std::size_t Count) override;
  std::int64_t Seek(std::int64_t Offset, TSeekOrigin Origin) override;
  std::int64_t Size() override { return static_cast<std::int64_t>(FBytes.size()); }
  TBytesView Rest() const override;

 private:
  TBytesView FBytes;
  std::size_t FPosition = 0;
};

enum class TFileMode : std::uint8_t {
  fmOpenRead,       // an existing regular file
  fmOpenReadWrite,  // an existing regular file
  fmCreate,         // a new or emptied file, for reading and writing
};

// The path that a name of the system's text stands for.
QXSVG_API std::filesystem::path ToPath(StringView Name);

// Whether Name is an existing regular file, links followed. Never raises.
QXSVG_API bool FileExists(StringView Name);

// A file. Pipes, devices and directories are refused when a file is opened for reading, so that a
// name out of a document never waits or reads without end. Errors are EStreamError and tell the
// file's name.
class QXSVG_API TFileStream : public TStream {
 public:
  TFileStream(StringView Name, TFileMode Mode);
  TFileStream(const std::same_as<std::filesystem::path> auto& Path, TFileMode Mode) : FPath(Path) {
    Open(Mode);
  }
  ~TFileStream() override;
  std::size_t Read(void* Buffer, std::size_t Count) override;
  std::size_t Write(const void* Buffer, std::size_t Count) override;
  std::int64_t Seek(std::int64_t Offset, TSeekOrigin Origin) override;

  const std::filesystem::path& Path() const { return FPath; }
  // Hands everything to the system and closes; an error that the destructor would have to swallow
  // is raised here. Nothing can be read or written afterwards.
  void Close();

 private:
  enum class TLast : std::uint8_t { Read, Write };
  void Open(TFileMode Mode);
  void Turn(TLast Operation);
  [[noreturn]] void Raise(StringView Message) const;

  std::filesystem::path FPath;
  std::filebuf FFile;
  TLast FLast = TLast::Read;
};

// An output file that appears under its name only when it is whole: the bytes go to a new file
// beside the target, which Finish renames. Without Finish the target stays as it was. A target that
// is a link is written where it points, one that exists and is no regular file (a device, a pipe)
// is written directly, and an existing target's permissions are kept.
class QXSVG_API TAtomicFile : public TStream {
 public:
  explicit TAtomicFile(StringView Name);
  explicit TAtomicFile(const std::same_as<std::filesystem::path> auto& Path) : FTarget(Path) {
    Open();
  }
  ~TAtomicFile() override;
  std::size_t Read(void* Buffer, std::size_t Count) override;
  std::size_t Write(const void* Buffer, std::size_t Count) override;
  std::int64_t Seek(std::int64_t Offset, TSeekOrigin Origin) override;

  // Closes and puts the file in its place. Raises EStreamError, the target then being untouched.
  void Finish();

 private:
  void Open();
  void Drop() noexcept;
  TFileStream& File();

  std::filesystem::path FTarget, FTemporary;  // FTemporary is empty where the target is direct
  std::unique_ptr<TFileStream> FFile;
};

// Everything from the position to the end. EStreamError as soon as that is more than Limit bytes,
// without taking memory for them.
QXSVG_API TBytes ReadAll(TStream& Stream, std::size_t Limit);
// The same for a file by name.
QXSVG_API TBytes ReadFile(StringView Name, std::size_t Limit);

}  // namespace qxsvg
