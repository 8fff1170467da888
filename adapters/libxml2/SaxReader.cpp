#include "adapters/libxml2/SaxReader.h"

#include <algorithm>
#include <cstdint>
#include <memory>

#include "document/XMLNames.h"
#include "foundation/Limits.h"
#include "foundation/Messages.h"
#include "runtime/Exceptions.h"

namespace qxsvg {

namespace {

// Without XML_PARSE_NOENT: with it libxml2 opens local files and gives up its own guard. With HUGE,
// because its fixed limits are not ours: nesting of 256, texts of ten megabytes.
// The bytes are UTF-8 by now, whatever the declaration in them says.
constexpr int ParseOptions = XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_IGNORE_ENC;
constexpr StringView DefaultedLimit =
    u"The attributes that the document type gives to elements come to too much text";
constexpr std::string_view WrapperOpen = "<e>", WrapperClose = "</e>";

std::string_view View(const xmlChar* Text) {
  return Text ? std::string_view(reinterpret_cast<const char*>(Text)) : std::string_view();
}
std::string_view View(const xmlChar* Begin, const xmlChar* End) {
  return {reinterpret_cast<const char*>(Begin), static_cast<std::size_t>(End - Begin)};
}

}  // namespace

// The hooks that libxml2 calls. No exception may pass through its frames: what is raised stops the
// parser and is raised again when the parser has returned.
struct TSaxEvents {
  template <class Action>
  static void Guarded(void* Self, Action Do) noexcept {
    auto& Reader = *static_cast<TSaxReader*>(Self);
    if (Reader.FFailure) return;
    try {
      Do(Reader);
    } catch (...) {
      Reader.FFailure = std::current_exception();
      xmlStopParser(Reader.FContext);
    }
  }

  static void StartElement(void* Self, const xmlChar* LocalName, const xmlChar* Prefix,
                           const xmlChar*, int NamespaceCount, const xmlChar** Namespaces,
                           int AttributeCount, int DefaultedCount, const xmlChar** Attributes) {
    Guarded(Self, [&](TSaxReader& R) {
      R.StartElement(LocalName, Prefix, NamespaceCount, Namespaces, AttributeCount, DefaultedCount,
                     Attributes);
    });
  }
  static void EndElement(void* Self, const xmlChar*, const xmlChar*, const xmlChar*) {
    Guarded(Self, [](TSaxReader& R) { R.EndElement(); });
  }
  static void Characters(void* Self, const xmlChar* Text, int Length) {
    Guarded(Self, [&](TSaxReader& R) { R.Characters(View(Text, Text + Length)); });
  }
  static void CData(void* Self, const xmlChar* Text, int Length) {
    Guarded(Self, [&](TSaxReader& R) {
      R.Leaf(TXMLNodeType::ntCData, R.FDocument.KeepUtf8(View(Text, Text + Length)));
    });
  }
  static void Comment(void* Self, const xmlChar* Text) {
    Guarded(Self, [&](TSaxReader& R) {
      R.Leaf(TXMLNodeType::ntComment, R.FDocument.KeepUtf8(View(Text)));
    });
  }
  static void Instruction(void* Self, const xmlChar* Target, const xmlChar* Data) {
    Guarded(Self, [&](TSaxReader& R) {
      String Value = FromUtf8(View(Target));
      if (Data) Value.append(u" ").append(FromUtf8(View(Data)));
      R.Leaf(TXMLNodeType::ntProcessingInstr, R.FDocument.Keep(Value));
    });
  }
  static void Reference(void* Self, const xmlChar* Name) {
    Guarded(Self, [&](TSaxReader& R) {
      // For an unknown name this comes in the middle of an attribute too.
      if (!R.IsInAttribute()) R.Reference(View(Name));
    });
  }
  static void EntityDeclared(void* Self, const xmlChar* Name, int Type, const xmlChar*,
                             const xmlChar*, xmlChar* Content) {
    Guarded(Self, [&](TSaxReader& R) {
      if (Type == XML_INTERNAL_GENERAL_ENTITY)
        R.FEntities.Declare(View(Name), View(Content), false);
      else if (Type == XML_EXTERNAL_GENERAL_PARSED_ENTITY)
        R.FEntities.Declare(View(Name), {}, true);
    });
  }
  static xmlEntity* GetEntity(void* Self, const xmlChar* Name) {
    xmlEntity* Result = nullptr;
    Guarded(Self, [&](TSaxReader& R) { Result = R.Answer(Name); });
    return Result;
  }
  // Parameter entities do not exist here: nested ones make libxml2 2.9 hang.
  static xmlEntity* GetParameterEntity(void*, const xmlChar*) { return nullptr; }
  static xmlParserInput* ResolveEntity(void*, const xmlChar*, const xmlChar*) { return nullptr; }
  static void Error(void* Self, xmlError* Error) {
    Guarded(Self, [&](TSaxReader& R) { R.NoteError(*Error); });
  }

  static xmlSAXHandler Table() {
    xmlSAXHandler Events{};
    Events.initialized = XML_SAX2_MAGIC;
    Events.startElementNs = StartElement;
    Events.endElementNs = EndElement;
    Events.characters = Characters;
    Events.ignorableWhitespace = Characters;
    Events.cdataBlock = CData;
    Events.comment = Comment;
    Events.processingInstruction = Instruction;
    Events.reference = Reference;
    Events.entityDecl = EntityDeclared;
    Events.getEntity = GetEntity;
    Events.getParameterEntity = GetParameterEntity;
    Events.resolveEntity = ResolveEntity;
    Events.serror = Error;
    return Events;
  }
};

TSaxReader::TSaxReader(TXMLDocument& Document, TEntities& Entities)
    : FDocument(Document), FEntities(Entities), FNodes(FOwnNodes), FElements(FOwnElements) {}

TSaxReader::TSaxReader(const TSaxReader& Outer, TXMLNode* Reference)
    : FDocument(Outer.FDocument),
      FEntities(Outer.FEntities),
      FNodes(Outer.FNodes),
      FElements(Outer.FElements),
      FParent(Reference),
      FDepth(Outer.FDepth),
      FOuterLine(Outer.Line()),
      FWrapped(1) {}

void TSaxReader::Read(std::string_view Bytes) {
  const std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> Context(xmlNewParserCtxt(),
                                                                             xmlFreeParserCtxt);
  if (!Context) throw std::bad_alloc();
  FContext = Context.get();
  *FContext->sax = TSaxEvents::Table();
  FContext->userData = this;
  // The events build no tree of libxml2's, but a declared entity makes it keep a shell of one.
  const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> Shell(
      xmlCtxtReadMemory(FContext, Bytes.data(), static_cast<int>(Bytes.size()), nullptr, nullptr,
                        ParseOptions),
      xmlFreeDoc);
  const bool IsWellFormed = FContext->wellFormed != 0;
  FContext = nullptr;
  if (FFailure) std::rethrow_exception(FFailure);
  if (IsWellFormed) return;
  if (FMessage.empty()) FMessage = "The text is no well-formed XML";
  throw EXMLError(FromUtf8(FMessage), FOuterLine ? FOuterLine : FErrorLine,
                  FOuterLine ? 0 : FErrorColumn);
}

int TSaxReader::Line() const {
  if (FOuterLine) return FOuterLine;
  return FContext && FContext->input ? FContext->input->line : 0;
}

bool TSaxReader::IsInAttribute() const {
  return FContext->instate == XML_PARSER_ATTRIBUTE_VALUE;
}

void TSaxReader::NoteError(const xmlError& Error) {
  // Lesser errors, such as a prefix that nothing declares, do not stand in the way of a drawing.
  if (Error.level != XML_ERR_FATAL || !FMessage.empty() || !Error.message) return;
  FMessage = Error.message;
  while (!FMessage.empty() && FMessage.back() == '\n') FMessage.pop_back();
  std::replace(FMessage.begin(), FMessage.end(), '\n', ' ');
  FErrorLine = Error.line;
  FErrorColumn = Error.int2;
  // Nothing after it counts, and each further one costs a copy of the comment that it stands in.
  // The call that stops a parser would free the text under one that is within a comment.
  FContext->instate = XML_PARSER_EOF;
  FContext->disableSAX = 1;
}

TXMLNode* TSaxReader::NewNode(TXMLNodeType Type, const TXMLName* Name) {
  if (++FNodes > Limits::XMLNodes) throw ESVGException(SElementCountLimit);
  TXMLNode* Node = FDocument.NewNode(Type, Name, Line());
  if (FParent)
    FParent->Append(Node);
  else
    FDocument.SetRoot(Node);
  return Node;
}

const TXMLName* TSaxReader::Name(const xmlChar* LocalName, const xmlChar* Prefix) {
  // libxml2 keeps each word once, so that its address stands for it.
  const auto Key =
      reinterpret_cast<std::uintptr_t>(LocalName) * 31 + reinterpret_cast<std::uintptr_t>(Prefix);
  TNameEntry& Entry = FNameCache[(Key ^ (Key >> 8)) % NameEntries];
  if (!Entry.Name || Entry.LocalName != LocalName || Entry.Prefix != Prefix)
    Entry = {LocalName, Prefix,
             FDocument.Intern(FromUtf8(View(LocalName)), FromUtf8(View(Prefix)))};
  return Entry.Name;
}

StringView TSaxReader::Value(std::string_view Raw) {
  if (Raw.size() > Limits::AttributeBytes) throw ESVGException(SAttributeLimit);
  if (Raw.find('&') == std::string_view::npos) return FDocument.KeepUtf8(Raw);
  return FDocument.KeepUtf8(FEntities.ExpandAttribute(Raw, Line()));
}

void TSaxReader::StartElement(const xmlChar* LocalName, const xmlChar* Prefix, int NamespaceCount,
                              const xmlChar** Namespaces, int AttributeCount, int DefaultedCount,
                              const xmlChar** Attributes) {
  FText = nullptr;
  if (FWrapped == 1) {
    ++FWrapped;
    return;
  }
  if (++FDepth > Limits::NestingDepth) throw ESVGException(SNestingDepthLimit);
  if (++FElements > static_cast<std::size_t>(Limits::Elements))
    throw ESVGException(SElementCountLimit);
  TXMLNode* Node = NewNode(TXMLNodeType::ntElement, Name(LocalName, Prefix));
  FParent = Node;
  const auto Count = static_cast<std::size_t>(NamespaceCount + AttributeCount);
  if (Count == 0) return;
  auto* Kept = FDocument.Arena().Allocate<TXMLAttribute>(Count);
  auto* Next = Kept;
  for (int I = 0; I < NamespaceCount; ++I) {
    const String Prefix = FromUtf8(View(Namespaces[2 * I]));
    const TXMLName Halves = NamespaceAttribute(Prefix);
    std::construct_at(Next++, TXMLAttribute{FDocument.Intern(Halves.LocalName, Halves.Prefix),
                                            Value(View(Namespaces[2 * I + 1]))});
  }
  // Local name, prefix, namespace, begin and end of the value. Those that the document type
  // declares as defaults come last: they cost text that the document does not hold.
  for (int I = 0; I < AttributeCount; ++I, Attributes += 5) {
    if (I >= AttributeCount - DefaultedCount)
      FEntities.Charge(
          static_cast<std::size_t>(Attributes[4] - Attributes[3]) + TEntities::ReferenceCost,
          DefaultedLimit);
    std::construct_at(Next++, TXMLAttribute{Name(Attributes[0], Attributes[1]),
                                            Value(View(Attributes[3], Attributes[4]))});
  }
  Node->SetAttributes(Kept, Count);
}

void TSaxReader::EndElement() {
  FText = nullptr;
  if (FWrapped && FParent->NodeType() == TXMLNodeType::ntEntityRef) return;
  --FDepth;
  FParent = static_cast<TXMLNode*>(FParent->Parent());
}

void TSaxReader::Characters(std::string_view Text) {
  if (!FParent) return;
  if (!FText) FText = NewNode(TXMLNodeType::ntText, nullptr);
  const StringView Kept = FDocument.AppendUtf8(FText->Value(), Text);
  if (Kept.size() > Limits::AttributeBytes) throw ESVGException(SAttributeLimit);
  FText->SetValue(Kept);
}

void TSaxReader::Leaf(TXMLNodeType Type, StringView Value) {
  FText = nullptr;
  // Outside the root nothing is kept.
  if (FParent) NewNode(Type, nullptr)->SetValue(Value);
}

xmlEntity* TSaxReader::Answer(const xmlChar* Name) {
  if (!FEntities.Find(View(Name))) return nullptr;
  FAnswer = {};
  FAnswer.type = XML_ENTITY_DECL;
  FAnswer.name = Name;
  // Set, so that libxml2 does not hand the answer a text to own.
  FAnswer.orig = const_cast<xmlChar*>(Name);
  // An internal entity without content is written as it stands in an attribute; an external one is
  // passed on unread in content.
  FAnswer.etype =
      IsInAttribute() ? XML_INTERNAL_GENERAL_ENTITY : XML_EXTERNAL_GENERAL_PARSED_ENTITY;
  return &FAnswer;
}

void TSaxReader::Reference(std::string_view Name) {
  FText = nullptr;
  if (!FParent) return;
  TXMLNode* Node = NewNode(TXMLNodeType::ntEntityRef, nullptr);
  Node->SetValue(FDocument.KeepUtf8(Name));
  TEntity* Entity = FEntities.Find(Name);
  if (!Entity || Entity->IsExternal) return;
  const TEntities::TOpening Opening(FEntities, *Entity, Name, Line());
  FEntities.Charge(Entity->Content.size() + TEntities::ReferenceCost);
  if (Entity->Content.find_first_of("<&") != std::string::npos) {
    FEntities.Charge(TEntities::MarkupCost);
    ExpandMarkup(*Entity, Node);
  } else if (!Entity->Content.empty()) {
    if (Entity->Wide.empty()) Entity->Wide = FDocument.KeepUtf8(Entity->Content);
    TXMLNode* Text = FDocument.NewNode(TXMLNodeType::ntText, nullptr, Line());
    Text->SetValue(Entity->Wide);
    Node->Append(Text);
  }
}

void TSaxReader::ExpandMarkup(const TEntity& Entity, TXMLNode* Node) {
  std::string Wrapped;
  Wrapped.reserve(WrapperOpen.size() + Entity.Content.size() + WrapperClose.size());
  Wrapped.append(WrapperOpen).append(Entity.Content).append(WrapperClose);
  TSaxReader Inner(*this, Node);
  Inner.Read(Wrapped);
}

}  // namespace qxsvg
