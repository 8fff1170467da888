// The general entities of a document, and what they may cost.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "foundation/Messages.h"
#include "runtime/String.h"

namespace qxsvg {

struct TEntity {
  // The replacement text: character references are resolved, references to entities are not.
  std::string Content;
  // One that names something outside, which is never read: a reference to it stays empty.
  bool IsExternal = false;
  // While it is being expanded: an entity within itself has no end.
  bool IsOpen = false;
  // The widened content of an entity that holds neither markup nor references.
  StringView Wide;
};

class TEntities {
 public:
  // What a reference costs besides its text: a node.
  static constexpr std::size_t ReferenceCost = 16;
  // And when markup has to be parsed for it, which takes a parser of its own.
  static constexpr std::size_t MarkupCost = 1024;

  // The first declaration of a name holds. Raises ESVGException over Limits::EntityCount.
  void Declare(std::string_view Name, std::string_view Content, bool IsExternal);
  TEntity* Find(std::string_view Name);

  // Takes the cost of an expansion off the document's budget (Limits::EntityBytes); raises
  // ESVGException with that text when there is none left.
  void Charge(std::size_t Bytes, StringView Refusal = SEntityLimit);

  // The attribute text with its references resolved. Raises EXMLError at Line for entities that
  // contain themselves, are external or hold a "<".
  std::string ExpandAttribute(std::string_view Raw, int Line);

  // Marks an entity as being expanded as long as it lives. Raises EXMLError when it is already, and
  // ESVGException over Limits::EntityDepth.
  class TOpening {
   public:
    TOpening(TEntities& Entities, TEntity& Entity, std::string_view Name, int Line);
    TOpening(const TOpening&) = delete;
    TOpening& operator=(const TOpening&) = delete;
    ~TOpening();

   private:
    TEntities& FEntities;
    TEntity& FEntity;
  };

 private:
  void Expand(std::string_view Raw, int Line, bool InEntity, std::string& Result);
  void ExpandReference(std::string_view Name, int Line, std::string& Result);

  std::map<std::string, TEntity, std::less<>> FEntities;
  std::size_t FSpent = 0;
  int FDepth = 0;
};

}  // namespace qxsvg
