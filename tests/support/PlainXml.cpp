// A small XML reader for builds without the adapter, so that the tests of the logic can load text
// there. It knows elements, attributes, texts, CDATA, comments and the five entities of XML itself,
// and takes UTF-8 only; a document type declaration is skipped.
#include <memory>
#include <vector>

#include "document/XML.h"
#include "runtime/Exceptions.h"
#include "runtime/Services.h"

namespace qxsvg::test {

namespace {

class Parser {
 public:
  explicit Parser(StringView Text) : FText(Text), FDocument(CreateXMLDocument()) {}

  std::unique_ptr<IXMLDocument> Run() {
    if (FText.starts_with(u'\uFEFF')) FAt = 1;
    while (FAt < FText.size()) Step();
    if (!FOpen.empty() || !FDocument->DocumentElement()) Fail(u"The document is not complete");
    return std::move(FDocument);
  }

 private:
  void Step() {
    if (FText[FAt] != u'<') return Characters();
    if (Skip(u"<?")) return (void)Until(u"?>");
    if (Skip(u"<!--")) return (void)Until(u"-->");
    if (Skip(u"<![CDATA[")) return (void)Top().AddCData(Until(u"]]>"));
    if (Skip(u"<!")) return (void)Until(u">");
    if (Skip(u"</")) return Close();
    ++FAt;
    Open();
  }
  void Characters() {
    const std::size_t End = std::min(FText.find(u'<', FAt), FText.size());
    const StringView Text = FText.substr(FAt, End - FAt);
    FAt = End;
    if (!FOpen.empty())
      Top().AddText(Expand(Text));
    else if (!Trim(Text).empty())
      Fail(u"Text outside of the root");
  }
  void Open() {
    const String Name = TakeName();
    if (FOpen.empty() && FDocument->DocumentElement()) Fail(u"A second root");
    IXMLNode* Node = FOpen.empty() ? FDocument->CreateRoot(Name) : Top().AddChild(Name);
    while (true) {
      SkipBlanks();
      if (Skip(u"/>")) return;
      if (Skip(u">")) return FOpen.push_back(Node);
      const String Attribute = TakeName();
      SkipBlanks();
      if (!Skip(u"=")) Fail(u"An attribute without value");
      SkipBlanks();
      const char16_t Quote = FAt < FText.size() ? FText[FAt++] : u'\0';
      if (Quote != u'"' && Quote != u'\'') Fail(u"A value without quotes");
      Node->SetAttribute(Attribute, Expand(Until(StringView(&Quote, 1))));
    }
  }
  void Close() {
    const String Name = TakeName();
    SkipBlanks();
    const String Opened = FOpen.empty() ? String()
                          : Top().Prefix().empty()
                              ? String(Top().LocalName())
                              : String(Top().Prefix()).append(u":").append(Top().LocalName());
    if (!Skip(u">") || Name != Opened) Fail(u"The end of another element");
    FOpen.pop_back();
  }
  static String Expand(StringView Text) {
    static constexpr std::pair<StringView, StringView> Known[] = {
        {u"&lt;", u"<"}, {u"&gt;", u">"}, {u"&quot;", u"\""}, {u"&apos;", u"'"}, {u"&amp;", u"&"}};
    String Result(Text);
    for (const auto& [Name, Value] : Known)
      for (std::size_t At = 0; (At = Result.find(Name, At)) != String::npos; At += Value.size())
        Result.replace(At, Name.size(), Value);
    return Result;
  }
  String TakeName() {
    const std::size_t Begin = FAt;
    while (FAt < FText.size() && StringView(u" \t\r\n/>=<").find(FText[FAt]) == StringView::npos)
      ++FAt;
    if (FAt == Begin) Fail(u"A name is missing");
    return String(FText.substr(Begin, FAt - Begin));
  }
  StringView Until(StringView End) {
    const std::size_t At = FText.find(End, FAt);
    if (At == StringView::npos) Fail(u"The document ends too early");
    const StringView Text = FText.substr(FAt, At - FAt);
    FAt = At + End.size();
    return Text;
  }
  bool Skip(StringView Part) {
    if (!FText.substr(FAt).starts_with(Part)) return false;
    FAt += Part.size();
    return true;
  }
  void SkipBlanks() {
    while (FAt < FText.size() && FText[FAt] <= u' ') ++FAt;
  }
  IXMLNode& Top() {
    if (FOpen.empty()) Fail(u"Content outside of the root");
    return *FOpen.back();
  }
  [[noreturn]] static void Fail(StringView Message) { throw EXMLError(Message, 1, 1); }

  StringView FText;
  std::size_t FAt = 0;
  std::unique_ptr<IXMLDocument> FDocument;
  std::vector<IXMLNode*> FOpen;
};

class PlainXmlVendor : public IXMLVendor {
 public:
  std::unique_ptr<IXMLDocument> LoadFromBytes(std::string_view Bytes) override {
    return LoadFromText(FromUtf8(Bytes));
  }
  std::unique_ptr<IXMLDocument> LoadFromText(StringView Text) override {
    return Parser(Text).Run();
  }
};

const bool IsInstalled = [] {
  Services().XML.Install([] { return std::make_shared<PlainXmlVendor>(); });
  return true;
}();

}  // namespace

}  // namespace qxsvg::test
