// What every implementer of the XML contract holds to. A new vendor joins the list at the end.
#include <gtest/gtest.h>
#include <zlib.h>

#include <thread>

#include "adapters/libxml2/LibXmlVendor.h"
#include "document/XML.h"
#include "foundation/Limits.h"
#include "foundation/Messages.h"
#include "runtime/Exceptions.h"
#include "runtime/Streams.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/XMLDump.h"

namespace qxsvg {
namespace {

using test::DumpXML;
using VendorMaker = std::unique_ptr<IXMLVendor> (*)();

class XMLContract : public testing::TestWithParam<VendorMaker> {
 protected:
  std::unique_ptr<IXMLDocument> Load(std::string_view Bytes) {
    return FVendor->LoadFromBytes(Bytes);
  }
  std::string Dump(std::string_view Bytes) { return DumpXML(*Load(Bytes)); }
  // The message of the exception of that type that a load raises.
  template <class Error>
  std::string Refusal(std::string_view Bytes) {
    try {
      Load(Bytes);
    } catch (const Error& E) {
      return E.what();
    }
    return "nothing was raised";
  }

  std::unique_ptr<IXMLVendor> FVendor = GetParam()();
};

std::string Compressed(std::string_view Text) {
  z_stream Stream{};
  deflateInit2(&Stream, 1, Z_DEFLATED, 15 + 16, 9, Z_DEFAULT_STRATEGY);
  std::string Result(deflateBound(&Stream, Text.size()) + 32, '\0');
  Stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(Text.data()));
  Stream.avail_in = static_cast<uInt>(Text.size());
  Stream.next_out = reinterpret_cast<Bytef*>(Result.data());
  Stream.avail_out = static_cast<uInt>(Result.size());
  deflate(&Stream, Z_FINISH);
  Result.resize(Stream.total_out);
  deflateEnd(&Stream);
  return Result;
}

std::string Repeated(std::string_view Text, std::size_t Count) {
  std::string Result;
  for (std::size_t I = 0; I < Count; ++I) Result += Text;
  return Result;
}

struct Case {
  std::string_view Text, Expected;
};

TEST_P(XMLContract, KeepsEveryKindOfNodeApart) {
  const Case Cases[] = {
      {"<svg/>", "svg"},
      {"<?xml version='1.0'?><!-- a --><svg> </svg><!-- b -->", "svg{' '}"},
      {"<svg>a<![CDATA[b<]]>c<!--d--><?e f?><g/></svg>", "svg{'a' [b<] 'c' <!--d--> <?e f?> g}"},
      {"<svg>a&lt;b&#65;c\r\nd</svg>", "svg{'a<bAc\nd'}"},
      {"<s:svg xmlns:s='u' s:a='1' b='2'><s:g/></s:svg>", "s:svg(xmlns:s=u s:a=1 b=2){s:g}"},
      {"<svg xmlns='u' id=' a  b\n'/>", "svg(xmlns=u id= a  b )"},
      {"<svg><x:g y:a='1'/></svg>", "svg{x:g(y:a=1)}"},
      {"<svg a='&lt;&amp;&quot;&#233;&#x1F600;'/>", "svg(a=<&\"\xC3\xA9\xF0\x9F\x98\x80)"},
  };
  for (const Case& C : Cases) EXPECT_EQ(Dump(C.Text), C.Expected) << C.Text;
}

TEST_P(XMLContract, DetectsTheEncoding) {
  const std::string Expected = "svg{'\xC3\xA9\xE2\x82\xAC'}";
  const auto Wide = [](StringView Text, bool BigEndian) {
    std::string Result;
    for (const char16_t C : Text)
      for (const int Shift : {BigEndian ? 8 : 0, BigEndian ? 0 : 8})
        Result.push_back(static_cast<char>(C >> Shift));
    return Result;
  };
  constexpr StringView Marked = u"\uFEFF<svg>\u00E9\u20AC</svg>";
  EXPECT_EQ(Dump("<svg>\xC3\xA9\xE2\x82\xAC</svg>"), Expected);
  EXPECT_EQ(Dump("\xEF\xBB\xBF<svg>\xC3\xA9\xE2\x82\xAC</svg>"), Expected);
  for (const bool BigEndian : {false, true}) {
    EXPECT_EQ(Dump(Wide(Marked, BigEndian)), Expected);
    EXPECT_EQ(Dump(Wide(Marked.substr(1), BigEndian)), Expected);
  }
  std::string Quad;
  for (const char16_t C : Marked) Quad += Wide(StringView(&C, 1), false) + std::string(2, '\0');
  EXPECT_EQ(Dump(Quad), Expected);
  EXPECT_EQ(Dump("<?xml version='1.0' encoding='ISO-8859-1'?><svg>\xE9</svg>"), "svg{'\xC3\xA9'}");
  EXPECT_EQ(Dump("<?xml version='1.0' encoding='windows-1251'?><svg>\xDF</svg>"),
            "svg{'\xD0\xAF'}");
  // The first bytes show that it is none.
  EXPECT_EQ(Dump("<?xml version='1.0' encoding='UTF-16'?><svg>a</svg>"), "svg{'a'}");
  EXPECT_NE(Refusal<EXMLError>("<?xml version='1.0' encoding='klingon'?><svg/>").find("klingon"),
            std::string::npos);
  EXPECT_NE(Refusal<EXMLError>("<svg>\xC0\xAF</svg>"), "nothing was raised");
  testing::internal::CaptureStderr();
  EXPECT_NE(Refusal<EXMLError>("<?xml version='1.0' encoding='EUC-JP'?><svg>\xFF\xFF</svg>"),
            "nothing was raised");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "a library prints nothing";
}

TEST_P(XMLContract, IgnoresTheDeclaredEncodingOfAText) {
  const auto Document =
      FVendor->LoadFromText(u"\uFEFF<?xml version='1.0' encoding='ISO-8859-1'?><svg>\u044F</svg>");
  EXPECT_EQ(DumpXML(*Document), "svg{'\xD1\x8F'}");
}

TEST_P(XMLContract, JoinsATextThatComesInParts) {
  // Parsers hand out texts beyond ASCII a few hundred bytes at a time.
  const std::string Long = Repeated("\xC3\xA9 abc &amp; ", 5000);
  const auto Document = Load("<svg><g>" + Long + "</g></svg>");
  const IXMLNode* Group = Document->DocumentElement()->FirstChild();
  EXPECT_TRUE(Group->IsTextElement());
  EXPECT_EQ(Group->Text().size(), 5000u * 8);
  EXPECT_TRUE(Group->Text().ends_with(u"\u00E9 abc & "));
}

TEST_P(XMLContract, KeepsEntityReferencesWithTheirExpansion) {
  const std::string_view Declared =
      "<!DOCTYPE svg [<!ENTITY t 'text'> <!ENTITY c '<circle r=\"1\"/>x&t;'> <!ENTITY e ''>"
      "<!ENTITY amps 'a&#38;#38;b'> <!ENTITY wide 'a\tb'> <!ENTITY p '<s:rect/>'>"
      "<!ENTITY first '1'> <!ENTITY first '2'> <!ENTITY lt '&#38;#60;'>"
      "<!ENTITY out SYSTEM 'file:///etc/passwd'> <!ATTLIST g k CDATA 'v&t;'>]>";
  const Case Cases[] = {
      {"<svg>a&t;b</svg>", "svg{'a' &t;{'text'} 'b'}"},
      {"<svg>&c;</svg>", "svg{&c;{circle(r=1) 'x' &t;{'text'}}}"},
      {"<svg>&c;&c;</svg>",
       "svg{&c;{circle(r=1) 'x' &t;{'text'}} &c;{circle(r=1) 'x' &t;{'text'}}}"},
      {"<svg>&e;</svg>", "svg{&e;}"},
      {"<svg>&amps;</svg>", "svg{&amps;{'a&b'}}"},
      {"<svg>&lt;&first;</svg>", "svg{'<' &first;{'1'}}"},
      {"<svg>&out;</svg>", "svg{&out;}"},
      {"<s:svg xmlns:s='u'>&p;</s:svg>", "s:svg(xmlns:s=u){&p;{s:rect}}"},
      {"<svg a='1&t;2&amps;3&wide;4&e;'/>", "svg(a=1text2a&b3a b4)"},
      {"<svg a='&lt;&first;'/>", "svg(a=<1)"},
      {"<svg><g/></svg>", "svg{g(k=vtext)}"},
  };
  for (const Case& C : Cases)
    EXPECT_EQ(Dump(std::string(Declared).append(C.Text)), C.Expected) << C.Text;
  const auto Document = Load(std::string(Declared) + "<s:svg xmlns:s='u'>a&p;&c;</s:svg>");
  const IXMLNode* Root = Document->DocumentElement();
  EXPECT_EQ(Root->Text(), u"axtext");
  const IXMLNode* Reference = Root->FirstChild()->NextSibling();
  EXPECT_EQ(Reference->LocalName(), u"");
  // A prefix inside an entity means what it means at the reference.
  EXPECT_EQ(Reference->FirstChild()->NamespaceURI(), u"u");
}

TEST_P(XMLContract, ReadsUnknownEntitiesAsEmptyWhereAnExternalSubsetMayHoldThem) {
  const std::string Text = "<!DOCTYPE svg PUBLIC 'p' 'http://host.invalid/svg.dtd'>";
  EXPECT_EQ(Dump(Text + "<svg a='x&nbsp;y'>a&nbsp;b</svg>"), "svg(a=xy){'a' &nbsp; 'b'}");
  EXPECT_NE(Refusal<EXMLError>("<svg>&nbsp;</svg>").find("nbsp"), std::string::npos);
}

TEST_P(XMLContract, OpensNothingThatADocumentNames) {
  const test::TScratchFolder Folder;
  const std::string Name = "'" + Folder.Add("secret", "<!ENTITY inner 'SECRET'> SECRET") + "'";
  const std::string Documents[] = {
      "<!DOCTYPE svg [<!ENTITY x SYSTEM " + Name + ">]><svg>&x;</svg>",
      "<!DOCTYPE svg [<!ENTITY % x SYSTEM " + Name + "> %x;]><svg>&inner;</svg>",
      "<!DOCTYPE svg SYSTEM " + Name + "><svg>&inner;</svg>",
      "<!DOCTYPE svg [<!ENTITY x SYSTEM " + Name + ">]><svg a='&x;'/>",
      "<svg xmlns:xi='http://www.w3.org/2001/XInclude'><xi:include parse='text' href=" + Name +
          "/></svg>"};
  for (const std::string& Text : Documents) {
    std::string Seen;
    try {
      const auto Document = Load(Text);
      Seen = DumpXML(*Document) + Document->ToUtf8();
    } catch (const Exception& E) {
      Seen = E.what();
    }
    EXPECT_EQ(Seen.find("SECRET"), std::string::npos) << Text;
  }
}

TEST_P(XMLContract, TellsWhereMalformedTextIs) {
  const std::pair<std::string_view, int> Faults[] = {
      {"", 1},
      {"   ", 1},
      {"plain", 1},
      {"<svg>\n<g>\n</svg>", 3},
      {"<svg>\n<g a=1/></svg>", 2},
      {"<svg a='1'\na='2'/>", 2},
      {"<svg/>\n<svg/>", 2},
      {"<svg>\n&undeclared;</svg>", 2},
      {"<svg>\n\n<![CDATA[", 3},
      {"<svg>\n\x01</svg>", 2},
      {"<!DOCTYPE svg [<!ENTITY a '<g>'>]>\n<svg>\n&a;</svg>", 3},
      {"<!DOCTYPE svg [<!ENTITY a '</e><e>'>]>\n<svg>\n&a;</svg>", 3},
      {"<!DOCTYPE svg [<!ENTITY a '&b;'><!ENTITY b '&a;'>]>\n<svg>&a;</svg>", 2},
      {"<!DOCTYPE svg [<!ENTITY a '&b;'><!ENTITY b '&a;'>]>\n<svg a='&a;'/>", 2},
      {"<!DOCTYPE svg [<!ENTITY a '<b/>'>]>\n<svg a='&a;'/>", 2},
  };
  for (const auto& [Text, Line] : Faults) {
    try {
      Load(Text);
      ADD_FAILURE() << "accepted: " << Text;
    } catch (const EXMLError& E) {
      EXPECT_EQ(E.Line(), Line) << Text;
      EXPECT_FALSE(E.Message().empty());
      EXPECT_EQ(E.Message().find(u'\n'), String::npos) << "one line: " << E.what();
    }
  }
}

TEST_P(XMLContract, BoundsWhatADocumentMayCost) {
  std::string Bomb = "<!DOCTYPE svg [<!ENTITY e0 'aaaaaaaaaa'>";
  for (int I = 1; I < 12; ++I) {
    Bomb += "<!ENTITY e" + std::to_string(I) + " '";
    for (int K = 0; K < 10; ++K) Bomb += "&e" + std::to_string(I - 1) + ";";
    Bomb += "'>";
  }
  std::string Chain = "<!DOCTYPE svg [<!ENTITY e0 'a'>";
  for (int I = 1; I < 100; ++I)
    Chain += "<!ENTITY e" + std::to_string(I) + " '&e" + std::to_string(I - 1) + ";'>";
  std::string Many = "<!DOCTYPE svg [";
  for (int I = 0; I <= Limits::EntityCount; ++I) Many += "<!ENTITY e" + std::to_string(I) + " ''>";
  std::string Words = "<!DOCTYPE svg [<!ATTLIST svg a (w";
  for (std::size_t I = 0; I < Limits::DeclarationBytes / 4; ++I) Words += "|w" + std::to_string(I);
  std::string Crowd = "<svg";
  for (std::size_t I = 0; I <= Limits::ElementAttributes; ++I)
    Crowd += " a" + std::to_string(I) + "='>'";
  const auto Depth = static_cast<std::size_t>(Limits::NestingDepth);
  const std::pair<std::string, StringView> Cases[] = {
      {Bomb + "]><svg>&e11;</svg>", SEntityLimit},
      {Bomb + "]><svg d='&e11;'/>", SEntityLimit},
      {Bomb + "<!ATTLIST g a CDATA '&e6;'>]><svg><g/><g/></svg>", SEntityLimit},
      {"<!DOCTYPE svg [<!ATTLIST g a CDATA '" + Repeated("a", 60'000) + "'>]><svg>" +
           Repeated("<g/>", 200) + "</svg>",
       u"The attributes that the document type gives to elements come to too much text"},
      {Chain + "]><svg>&e99;</svg>", SEntityLimit},
      {Many + "]><svg/>", SEntityCountLimit},
      {Words + ") #IMPLIED>]><svg/>", SDeclarationLimit},
      {Crowd + "/>", SElementAttributesLimit},
      {Repeated("<g>", Depth + 1) + Repeated("</g>", Depth + 1), SNestingDepthLimit},
      {Compressed(std::string(Limits::DecompressedBytes + 1, ' ')), SDecompressedSizeLimit},
  };
  for (const auto& [Text, Message] : Cases)
    EXPECT_EQ(Refusal<ESVGException>(Text), ToUtf8(Message)) << Text.substr(0, 60);
  EXPECT_NO_THROW(Load(Repeated("<g>", Depth) + Repeated("</g>", Depth)));
  // Quotes that are no attributes.
  const std::string Quotes = Repeated("'\"' ", Limits::ElementAttributes * 2);
  EXPECT_NO_THROW(Load("<svg><!-- " + Quotes + "--><style>" + Quotes + "</style></svg>"));
  // A fault at each of a million hyphens: the first one ends the reading.
  EXPECT_NE(Refusal<EXMLError>("<svg><!--" + Repeated("-", 1'000'000) + "--></svg>"),
            "nothing was raised");
}

TEST_P(XMLContract, ReadsCompressedDocuments) {
  const std::string Whole = Compressed("<svg>" + Repeated("<g/>", 30000) + "</svg>");
  EXPECT_EQ(Load(Whole)->DocumentElement()->ChildCount(), 30000u);
  const std::string Parts = Compressed("<svg><g/>") + Compressed("</svg>");
  EXPECT_EQ(Dump(Parts), "svg{g}");
  for (const std::size_t Size :
       {std::size_t{2}, std::size_t{9}, Whole.size() / 2, Whole.size() - 4})
    EXPECT_NE(Refusal<EXMLError>(Whole.substr(0, Size)), "nothing was raised") << Size;
}

TEST_P(XMLContract, ReadsStreamsToTheirEnd) {
  const test::TScratchFolder Folder;
  const std::string Text = "junk<svg>" + Repeated("<g/>", 100'000) + "</svg>";
  TFileStream File(std::filesystem::path(Folder.Add("a.svg", Text)), TFileMode::fmOpenRead);
  File.SetPosition(4);
  EXPECT_EQ(FVendor->LoadFromStream(File)->DocumentElement()->ChildCount(), 100'000u);
  TBytesViewStream Memory(std::string_view("junk<svg/>"));
  Memory.SetPosition(4);
  EXPECT_EQ(DumpXML(*FVendor->LoadFromStream(Memory)), "svg");
  EXPECT_EQ(Memory.Position(), Memory.Size());
}

TEST_P(XMLContract, ServesSeveralThreadsAtOnce) {
  const std::string Text =
      "<!DOCTYPE svg [<!ENTITY e '<g/>'>]><svg>" + Repeated("<a b='c'>&e;</a>", 200) + "</svg>";
  std::vector<std::jthread> Threads;
  std::atomic<int> Good = 0;
  for (int I = 0; I < 4; ++I)
    Threads.emplace_back([&] {
      for (int K = 0; K < 10; ++K) Good += Load(Text)->DocumentElement()->ChildCount() == 200;
    });
  Threads.clear();
  EXPECT_EQ(Good, 40);
}

INSTANTIATE_TEST_SUITE_P(Vendors, XMLContract, testing::Values([]() -> std::unique_ptr<IXMLVendor> {
                           return std::make_unique<TLibXmlVendor>();
                         }),
                         [](const auto&) { return "LibXml2"; });

}  // namespace
}  // namespace qxsvg
