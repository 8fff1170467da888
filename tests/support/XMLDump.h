// A tree of XML nodes in one line, for comparing.
#pragma once

#include <string>

#include "document/XML.h"

namespace qxsvg::test {

// svg(x=1) { 'text' [cdata] &name;{ ... } <!--comment--> <?target data?> p:a }
inline void DumpXML(const IXMLNode& Node, std::string& Result) {
  const std::string Value = ToUtf8(Node.Value());
  const auto Name = [](StringView Prefix, StringView Local) {
    return Prefix.empty() ? ToUtf8(Local) : ToUtf8(Prefix) + ":" + ToUtf8(Local);
  };
  switch (Node.NodeType()) {
    case TXMLNodeType::ntText: Result += "'" + Value + "'"; break;
    case TXMLNodeType::ntCData: Result += "[" + Value + "]"; break;
    case TXMLNodeType::ntComment: Result += "<!--" + Value + "-->"; break;
    case TXMLNodeType::ntProcessingInstr: Result += "<?" + Value + "?>"; break;
    case TXMLNodeType::ntEntityRef: Result += "&" + Value + ";"; break;
    case TXMLNodeType::ntElement: {
      Result += Name(Node.Prefix(), Node.LocalName());
      std::string Attributes;
      for (const TXMLAttribute& A : Node.Attributes())
        Attributes += (Attributes.empty() ? "(" : " ") + Name(A.Prefix(), A.LocalName()) + "=" +
                      ToUtf8(A.Value);
      if (!Attributes.empty()) Result += Attributes + ")";
    }
  }
  if (!Node.FirstChild()) return;
  Result += "{";
  for (const IXMLNode* Child = Node.FirstChild(); Child; Child = Child->NextSibling()) {
    if (Child != Node.FirstChild()) Result += " ";
    DumpXML(*Child, Result);
  }
  Result += "}";
}

inline std::string DumpXML(const IXMLDocument& Document) {
  std::string Result;
  if (Document.DocumentElement()) DumpXML(*Document.DocumentElement(), Result);
  return Result;
}

}  // namespace qxsvg::test
