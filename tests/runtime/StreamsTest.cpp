// Streams in memory and in files.
#include "runtime/Streams.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "runtime/Exceptions.h"
#include "runtime/FileResolver.h"
#include "runtime/Services.h"
#include "tests/support/ScratchFolder.h"

namespace qxsvg {
namespace {

namespace fs = std::filesystem;

class Files : public ::testing::Test {
 protected:
  fs::path Path(const char* Name) const { return FFolder.Path() / Name; }
  String Name(const char* Name) const { return FromUtf8(Path(Name).string()); }
  std::string Put(const char* Name, const std::string& Text) const {
    return FFolder.Add(Name, Text);
  }
  std::string Get(const char* Name) const { return test::FileText(Path(Name)); }
  std::ptrdiff_t FileCount() const {
    return std::distance(fs::directory_iterator(FFolder.Path()), fs::directory_iterator());
  }
  test::TScratchFolder FFolder;
};

std::string Message(const std::function<void()>& Call) {
  try {
    Call();
  } catch (const EStreamError& Error) {
    return Error.what();
  }
  return "no EStreamError";
}

// What every stream that can be read and written owes.
void CheckReadWriteSeek(TStream& Stream) {
  Stream.WriteBytes(BytesOf("0123456789"));
  EXPECT_EQ(Stream.Position(), 10);
  Stream.Seek(-8, TSeekOrigin::soEnd);
  Stream.WriteBytes(BytesOf("ab"));
  char Buffer[8] = {};
  EXPECT_EQ(Stream.Read(Buffer, 3), 3u);
  EXPECT_EQ(std::string_view(Buffer, 3), "456");
  Stream.Seek(-4, TSeekOrigin::soCurrent);
  Stream.WriteBytes(BytesOf("c"));
  EXPECT_EQ(Stream.Read(Buffer, 8), 6u);
  EXPECT_EQ(std::string_view(Buffer, 6), "456789");
  EXPECT_THROW(Stream.ReadBuffer(Buffer, 1), EReadError);
  EXPECT_THROW(Stream.Seek(-1, TSeekOrigin::soBeginning), EStreamError);
  Stream.SetPosition(12);
  EXPECT_EQ(Stream.Read(Buffer, 1), 0u);
  Stream.WriteBytes(BytesOf("z"));
  EXPECT_EQ(Stream.Size(), 13);
  EXPECT_EQ(Stream.Position(), 13);
  Stream.SetPosition(0);
  EXPECT_EQ(CharsOf(ReadAll(Stream, 13)), std::string_view("01ac456789\0\0z", 13));
}

TEST(Streams, MemoryReadsWritesAndSeeks) {
  TMemoryStream Stream;
  CheckReadWriteSeek(Stream);
  Stream.SetSize(4);
  EXPECT_EQ(Stream.Position(), 4);
  EXPECT_EQ(CharsOf(Stream.Detach()), "01ac");
  EXPECT_EQ(Stream.Size(), 0);
}

TEST(Streams, AViewIsReadWithoutACopy) {
  constexpr std::string_view Text = "<svg/>";
  TBytesViewStream Stream(Text);
  Stream.SetPosition(1);
  EXPECT_EQ(Stream.Rest().data(), reinterpret_cast<const std::uint8_t*>(Text.data()) + 1);
  EXPECT_EQ(CharsOf(ReadAll(Stream, 5)), "svg/>");
  EXPECT_TRUE(ReadAll(Stream, 5).empty());
  EXPECT_THROW(Stream.WriteBytes(BytesOf("x")), EStreamError);
}

TEST(Streams, CopyAndTheLimitOfReadAll) {
  const std::string Long(200'000, 'x');
  TBytesViewStream Source{std::string_view(Long)};
  TMemoryStream Target;
  EXPECT_EQ(Target.CopyFrom(Source), 200'000);
  Target.SetPosition(0);
  EXPECT_EQ(Message([&] { ReadAll(Target, 199'999); }), "Input of more than 199999 bytes");
}

TEST_F(Files, ReadWriteAndSeek) {
  TFileStream Stream(Path("data"), TFileMode::fmCreate);
  CheckReadWriteSeek(Stream);
  Stream.Close();
  EXPECT_THROW(Stream.Size(), EStreamError);
  EXPECT_EQ(Get("data").size(), 13u);
  TFileStream(Name("data"), TFileMode::fmOpenReadWrite).WriteBytes(BytesOf("new"));
  EXPECT_EQ(Get("data").substr(0, 4), "newc");
}

TEST_F(Files, NamesAreUnicode) {
  const String Umlaut = Name("") + u"/\u00E4\U0001F600.svg";
  TFileStream(Umlaut, TFileMode::fmCreate).WriteBytes(BytesOf("x"));
  EXPECT_TRUE(FileExists(Umlaut));
  EXPECT_EQ(Get("\xC3\xA4\xF0\x9F\x98\x80.svg"), "x");
}

TEST_F(Files, OnlyRegularFilesAreOpenedForReading) {
  fs::create_symlink(Put("file", "content"), Path("link"));
  fs::create_symlink("/dev/zero", Path("device"));
  EXPECT_EQ(ReadFile(Name("link"), 100).size(), 7u);
  EXPECT_FALSE(FileExists(Name("device")));
  EXPECT_FALSE(FileExists(u""));
  EXPECT_FALSE(FileExists(Name("file") + String(1, u'\0')));
  const std::string Prefix = FFolder.Path().string() + "/";
  const auto Open = [this](const char* File) {
    return Message([&] { TFileStream(Name(File), TFileMode::fmOpenRead); });
  };
  EXPECT_EQ(Open("device"), Prefix + "device: This is no regular file");
  EXPECT_EQ(Open(""), Prefix + ": This is a folder");
  EXPECT_EQ(Open("none"), Prefix + "none: No such file or directory");
  EXPECT_EQ(Message([this] { ReadFile(Name("file"), 6); }),
            Prefix + "file: Input of more than 6 bytes");
}

TEST_F(Files, AnAtomicFileAppearsWhenItIsFinished) {
  Put("target", "old");
  {
    TAtomicFile Abandoned(Path("target"));
    Abandoned.WriteBytes(BytesOf("half"));
    EXPECT_EQ(Get("target"), "old");
  }
  EXPECT_EQ(FileCount(), 1);
  fs::permissions(Path("target"), fs::perms::owner_read | fs::perms::owner_write);
  fs::create_symlink("target", Path("link"));
  TAtomicFile File(Name("link"));
  File.WriteBytes(BytesOf("new"));
  EXPECT_EQ(Get("target"), "old");
  File.Finish();
  EXPECT_EQ(Get("target"), "new");
  EXPECT_TRUE(fs::is_symlink(Path("link")));
  EXPECT_EQ(fs::status(Path("target")).permissions(),
            fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(FileCount(), 2);
  EXPECT_THROW(File.WriteBytes(BytesOf("late")), EStreamError);
  fs::create_symlink("coming", Path("early"));
  TAtomicFile(Path("early")).Finish();
  EXPECT_TRUE(FileExists(Name("coming")));
}

TEST_F(Files, AnAtomicFileTellsWhyItCannotBe) {
  const auto Open = [this](const char* File) { return Message([&] { TAtomicFile{Path(File)}; }); };
  EXPECT_EQ(Open("none/file"), Path("none/file").string() + ": There is no such folder");
  fs::create_directory(Path("folder"));
  EXPECT_EQ(Open("folder"), Path("folder").string() + ": This is a folder");
  // A device is written, not replaced.
  TAtomicFile Null(fs::path("/dev/null"));
  Null.WriteBytes(BytesOf("x"));
  Null.Finish();
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(Files, ResolversGiveOnlyWhatTheyMay) {
  fs::create_directory(Path("inside"));
  Put("inside/a.png", "a");
  Put("outside.png", "secret");
  fs::create_symlink("../outside.png", Path("inside/link.png"));
  TFileResolver Any;
  EXPECT_TRUE(Any.Open(Name("outside.png")));
  for (const StringView Refused :
       {u"", u"none.png", u"http://127.0.0.1/a.png", u"file:///etc/passwd", u"//host/share/a.png",
        u"\\\\host\\a.png", u"/dev/zero", u"/"})
    EXPECT_FALSE(Any.Open(Refused)) << ToUtf8(Refused);
  TFolderFileResolver Folder(Name("inside"));
  EXPECT_EQ(ReadAll(*Folder.Open(u"a.png"), 10).size(), 1u);
  EXPECT_TRUE(Folder.Open(Name("inside/a.png")));
  for (const StringView Refused :
       {u"../outside.png", u"link.png", u"", u".", u"a.png/../../outside.png"})
    EXPECT_FALSE(Folder.Open(Refused)) << ToUtf8(Refused);
  EXPECT_FALSE(Folder.Open(Name("outside.png")));
  EXPECT_FALSE(TNoFileResolver().Open(Name("outside.png")));
}

TEST(Services, AreMadeOnceAtFirstUseAndCanBeReplaced) {
  EXPECT_NE(Services().Files.Get(), nullptr);
  int Made = 0;
  const auto Make = [&Made] {
    ++Made;
    return std::make_shared<TNoFileResolver>();
  };
  TService<IFileResolver> Service(u"IFileResolver", u"runtime");
  Service.Install(Make);
  EXPECT_EQ(Made, 0);
  EXPECT_EQ(Service.Get(), Service.Get());
  Service.Install(Make);
  Service.Get();
  EXPECT_EQ(Made, 2);
  Service.Install(nullptr);
  EXPECT_FALSE(Service.IsSupplied());
  EXPECT_THAT([&] { Service.Get(); },
              testing::ThrowsMessage<EInvalidOperation>(testing::AllOf(
                  testing::HasSubstr("IFileResolver"), testing::HasSubstr("runtime"))));
}

}  // namespace
}  // namespace qxsvg
