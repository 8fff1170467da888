// Files as streams, and output files that appear when they are whole.
#include <cerrno>
#include <ios>
#include <random>
#include <system_error>

#include "runtime/Exceptions.h"
#include "runtime/Streams.h"

namespace qxsvg {

namespace fs = std::filesystem;

namespace {

String NameOf(const fs::path& Path) {
  const auto Text = Path.u8string();
  return FromUtf8({reinterpret_cast<const char*>(Text.data()), Text.size()});
}

// What the system said last, or Fallback where it said nothing.
String SystemMessage(int Error, StringView Fallback) {
  return Error == 0 ? String(Fallback) : FromUtf8(std::generic_category().message(Error));
}

fs::file_status StatusOf(const fs::path& Path) {
  std::error_code Error;
  return fs::status(Path, Error);
}

String RandomSuffix() {
  // Making one, and each call, may ask the processor, which takes longer than all the rest here.
  thread_local std::random_device Device;
  String Result = u".";
  for (int Call = 0; Call < 2; ++Call)
    for (std::uint32_t Bits = Device(), I = 0; I < 6; ++I, Bits >>= 5)
      Result += u"abcdefghijklmnopqrstuvwxyz012345"[Bits % 32];
  return Result + u".tmp";
}

}  // namespace

fs::path ToPath(StringView Name) {
  const std::string Bytes = ToUtf8(Name);
  return {std::u8string(Bytes.begin(), Bytes.end())};
}

bool FileExists(StringView Name) {
  // A NUL would cut the name where the system reads it.
  if (Name.empty() || Name.find(u'\0') != StringView::npos) return false;
  return fs::is_regular_file(StatusOf(ToPath(Name)));
}

TFileStream::TFileStream(StringView Name, TFileMode Mode) : FPath(ToPath(Name)) {
  Open(Mode);
}

TFileStream::~TFileStream() = default;

void TFileStream::Raise(StringView Message) const {
  throw EStreamError(u"%s: %s", {NameOf(FPath), Message});
}

void TFileStream::Open(TFileMode Mode) {
  const fs::file_status Status = StatusOf(FPath);
  if (FPath.native().find(fs::path::value_type()) != fs::path::string_type::npos)
    Raise(u"A file name holds no zero character");
  if (fs::is_directory(Status)) Raise(u"This is a folder");
  if (Mode != TFileMode::fmCreate && fs::exists(Status) && !fs::is_regular_file(Status))
    Raise(u"This is no regular file");
  auto Flags = std::ios::in | std::ios::binary;
  if (Mode != TFileMode::fmOpenRead) Flags |= std::ios::out;
  if (Mode == TFileMode::fmCreate) Flags |= std::ios::trunc;
  // A pipe has no other end for reading here, and a device may be for writing only.
  if (Mode == TFileMode::fmCreate && fs::exists(Status) && !fs::is_regular_file(Status))
    Flags = std::ios::out | std::ios::binary;
  errno = 0;
  if (!FFile.open(FPath, Flags)) Raise(SystemMessage(errno, u"The file cannot be opened"));
  FLast = Mode == TFileMode::fmOpenRead ? TLast::Read : TLast::Write;
}

void TFileStream::Turn(TLast Operation) {
  if (!FFile.is_open()) Raise(u"The file is closed");
  if (FLast == Operation) return;
  // A file buffer has one place for both and asks for a seek in between.
  if (FFile.pubseekoff(0, std::ios::cur) == std::streampos(-1)) Raise(u"The file cannot be read");
  FLast = Operation;
}

std::size_t TFileStream::Read(void* Buffer, std::size_t Count) {
  Turn(TLast::Read);
  errno = 0;
  try {
    const auto Taken = FFile.sgetn(static_cast<char*>(Buffer), static_cast<std::streamsize>(Count));
    return static_cast<std::size_t>(Taken);
  } catch (const std::ios::failure&) {
    Raise(SystemMessage(errno, u"The file cannot be read"));
  }
}

std::size_t TFileStream::Write(const void* Buffer, std::size_t Count) {
  Turn(TLast::Write);
  errno = 0;
  const auto Put =
      FFile.sputn(static_cast<const char*>(Buffer), static_cast<std::streamsize>(Count));
  if (static_cast<std::size_t>(Put) != Count)
    Raise(SystemMessage(errno, u"The file cannot be written"));
  return Count;
}

std::int64_t TFileStream::Seek(std::int64_t Offset, TSeekOrigin Origin) {
  if (!FFile.is_open()) Raise(u"The file is closed");
  const auto From = Origin == TSeekOrigin::soBeginning ? std::ios::beg
                    : Origin == TSeekOrigin::soCurrent ? std::ios::cur
                                                       : std::ios::end;
  const auto Position = FFile.pubseekoff(Offset, From);
  if (Position == std::streampos(-1)) Raise(u"File position out of range");
  return Position;
}

void TFileStream::Close() {
  errno = 0;
  if (FFile.is_open() && !FFile.close()) Raise(SystemMessage(errno, u"The file cannot be written"));
}

TAtomicFile::TAtomicFile(StringView Name) : FTarget(ToPath(Name)) {
  Open();
}

TAtomicFile::~TAtomicFile() {
  if (FFile) Drop();
}

void TAtomicFile::Open() {
  std::error_code Error;
  // No more links in a row than systems follow.
  constexpr int MostLinks = 40;
  for (int I = 0; I < MostLinks && fs::is_symlink(fs::symlink_status(FTarget, Error)); ++I) {
    fs::path Pointed = fs::canonical(FTarget, Error);
    // The file that it leads to may be still to come.
    if (Error) Pointed = FTarget.parent_path() / fs::read_symlink(FTarget, Error);
    if (!Error) FTarget = Pointed;
  }
  const fs::file_status Status = StatusOf(FTarget);
  const bool IsDirect = fs::exists(Status) && !fs::is_regular_file(Status);
  if (!IsDirect) {
    FTemporary = FTarget;
    FTemporary += ToPath(RandomSuffix());
  }
  try {
    FFile = std::make_unique<TFileStream>(IsDirect ? FTarget : FTemporary, TFileMode::fmCreate);
  } catch (const EStreamError&) {
    if (IsDirect) throw;
    // The name that the user knows belongs into the message; asking for the folder tells why.
    const bool HasFolder = fs::exists(StatusOf(fs::absolute(FTarget, Error).parent_path()));
    throw EStreamError(u"%s: %s", {NameOf(FTarget), HasFolder ? u"The file cannot be created"
                                                              : u"There is no such folder"});
  }
}

namespace {

// A failure with the temporary file, told of the name that the user knows.
template <class Work>
auto Retold(const fs::path& Temporary, const fs::path& Target, Work Try) {
  try {
    return Try();
  } catch (const EStreamError& Error) {
    const String Name = NameOf(Temporary);
    if (Temporary.empty() || !Error.Message().starts_with(Name)) throw;
    throw EStreamError(u"%s%s", {NameOf(Target), Error.Message().substr(Name.size())});
  }
}

}  // namespace

void TAtomicFile::Drop() noexcept {
  FFile.reset();
  std::error_code Error;
  if (!FTemporary.empty()) fs::remove(FTemporary, Error);
}

TFileStream& TAtomicFile::File() {
  if (!FFile) throw EStreamError(u"%s: %s", {NameOf(FTarget), u"The file is finished"});
  return *FFile;
}

std::size_t TAtomicFile::Read(void* Buffer, std::size_t Count) {
  return File().Read(Buffer, Count);
}
std::size_t TAtomicFile::Write(const void* Buffer, std::size_t Count) {
  return Retold(FTemporary, FTarget, [&] { return File().Write(Buffer, Count); });
}
std::int64_t TAtomicFile::Seek(std::int64_t Offset, TSeekOrigin Origin) {
  return File().Seek(Offset, Origin);
}

void TAtomicFile::Finish() {
  Retold(FTemporary, FTarget, [&] { File().Close(); });
  if (!FTemporary.empty()) {
    std::error_code Error;
    const fs::file_status Status = StatusOf(FTarget);
    if (fs::exists(Status)) fs::permissions(FTemporary, Status.permissions(), Error);
    fs::rename(FTemporary, FTarget, Error);
    if (Error) {
      Drop();
      throw EStreamError(u"%s: %s", {NameOf(FTarget), FromUtf8(Error.message())});
    }
  }
  FFile.reset();
}

}  // namespace qxsvg
