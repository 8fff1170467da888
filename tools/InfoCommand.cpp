// qxsvg info: what drawings are made of.
#include <CLI/CLI.hpp>

#include <iostream>

#include "document/Document.h"
#include "runtime/Exceptions.h"
#include "tools/Commands.h"
#include "tools/DrawingInfo.h"
#include "tools/Input.h"
#include "tools/Json.h"

namespace qxsvg::tools {

namespace {

struct InfoOptions {
  std::vector<std::string> Files;
  bool Tree = false, Computed = false, Json = false;
};

// --- For people

std::string Listed(const Counts& Words) {
  std::string Result;
  for (const auto& [Word, Count] : Words)
    Result += (Result.empty() ? "" : ", ") + Word + " " + std::to_string(Count);
  return Result;
}

std::string Listed(const std::vector<std::string>& Words) {
  // A map has thousands of identifiers: a line shows the first few, --json all.
  constexpr std::size_t Shown = 12;
  std::string Result = std::to_string(Words.size());
  for (std::size_t I = 0; I < Words.size() && I < Shown; ++I)
    Result += (I ? ", " : ": ") + Words[I];
  return Words.size() > Shown ? Result + ", ..." : Result;
}

void PrintTree(TSVGElement& Element, std::size_t Depth, bool Computed) {
  std::string Line(2 + Depth * 2, ' ');
  Line += ElementName(Element);
  if (const std::string ID = GivenID(Element); !ID.empty()) Line += "#" + ID;
  const TStrings& Classes = std::as_const(Element).Classes();
  for (std::int32_t I = 0; I < Classes.Count(); ++I) Line += "." + ToUtf8(Classes[I]);
  if (Computed) {
    std::string Properties;
    for (const auto& [Name, Value] : ComputedProperties(Element))
      Properties += (Properties.empty() ? "" : "; ") + Name + ": " + Value;
    if (!Properties.empty()) Line += " { " + Properties + " }";
  }
  std::cout << Line << "\n";
  for (TSVGElement* Child : Element.Items()) PrintTree(*Child, Depth + 1, Computed);
}

void Print(const std::string& Name, const DrawingInfo& Info) {
  const auto Written = [](const std::string& Text) { return Text.empty() ? "not given" : Text; };
  std::cout << Name << "\n  size: " << Written(Info.Width) << " by " << Written(Info.Height)
            << "\n  view box: " << Written(Info.ViewBox) << "\n  elements: " << Info.ElementCount()
            << ": " << Listed(Info.Elements) << "\n  identifiers: " << Listed(Info.Identifiers)
            << "\n  kept but not drawn: "
            << (Info.NotDrawn.empty() ? "nothing" : Listed(Info.NotDrawn)) << "\n";
  char Time[64];
  std::snprintf(Time, sizeof Time, "  loaded in %.1f ms\n", Info.LoadMilliseconds);
  std::cout << Time;
}

// --- For programs

void Write(JsonWriter& Json, const Counts& Words) {
  Json.BeginObject();
  for (const auto& [Word, Count] : Words) Json.Key(Word).Number(static_cast<std::int64_t>(Count));
  Json.EndObject();
}

void WriteTree(JsonWriter& Json, TSVGElement& Element, bool Computed) {
  Json.BeginObject().Key("name").Text(ElementName(Element));
  if (const std::string ID = GivenID(Element); !ID.empty()) Json.Key("id").Text(ID);
  const TStrings& Classes = std::as_const(Element).Classes();
  if (Classes.Count() > 0) {
    Json.Key("classes").BeginArray();
    for (std::int32_t I = 0; I < Classes.Count(); ++I) Json.Text(ToUtf8(Classes[I]));
    Json.EndArray();
  }
  if (Computed) {
    Json.Key("properties").BeginObject();
    for (const auto& [Name, Value] : ComputedProperties(Element)) Json.Key(Name).Text(Value);
    Json.EndObject();
  }
  if (Element.Items().Count() > 0) {
    Json.Key("children").BeginArray();
    for (TSVGElement* Child : Element.Items()) WriteTree(Json, *Child, Computed);
    Json.EndArray();
  }
  Json.EndObject();
}

void Write(JsonWriter& Json, const DrawingInfo& Info) {
  Json.Key("width").Text(Info.Width).Key("height").Text(Info.Height);
  Json.Key("viewBox").Text(Info.ViewBox);
  Json.Key("elementCount").Number(static_cast<std::int64_t>(Info.ElementCount()));
  Json.Key("elements");
  Write(Json, Info.Elements);
  Json.Key("identifiers").BeginArray();
  for (const std::string& ID : Info.Identifiers) Json.Text(ID);
  Json.EndArray().Key("notDrawn");
  Write(Json, Info.NotDrawn);
  Json.Key("loadMilliseconds").Milliseconds(Info.LoadMilliseconds);
}

void WriteFile(JsonWriter& Json, const std::string& Name, const InfoOptions& O) {
  // JSON is text, and the bytes of a name need not be.
  Json.BeginObject().Key("file").Text(ToUtf8(FromUtf8(Name)));
  try {
    TSVGDocument Drawing;
    Write(Json, LoadWithInfo(Drawing, Name));
    if (O.Tree) {
      Json.Key("tree");
      WriteTree(Json, Drawing, O.Computed);
    }
  } catch (const std::exception& Error) {
    Json.Key("error").Text(CauseOf(Error)).EndObject();
    throw;
  }
  Json.EndObject();
}

int Run(const InfoOptions& O) {
  JsonWriter Json;
  if (O.Json) Json.BeginArray();
  const auto Tell = [&](const std::string& Name) {
    if (O.Json) {
      WriteFile(Json, Name, O);
      return;
    }
    TSVGDocument Drawing;
    const DrawingInfo Info = LoadWithInfo(Drawing, Name);
    Print(Name, Info);
    if (O.Tree) PrintTree(Drawing, 0, O.Computed);
  };
  const int Status = ForEachFile(O.Files, Tell, O.Json ? Results::None : Results::Printed);
  if (O.Json) std::cout << Json.EndArray().Result() << "\n";
  return Status;
}

void Add(CLI::App& App, int& Status) {
  CLI::App* Command = App.add_subcommand("info", "Tells what drawings are made of");
  const auto Options = std::make_shared<InfoOptions>();
  InfoOptions& O = *Options;
  Command->add_option("FILE", O.Files, "Drawings; - is standard input")->required();
  CLI::Option* Tree = Command->add_flag("--tree", O.Tree, "Prints the tree of elements too");
  Command
      ->add_flag("--computed", O.Computed,
                 "With --tree: the properties in force that differ from the defaults")
      ->needs(Tree);
  Command->add_flag("--json", O.Json, "Prints an array of objects for programs");
  Command->callback([Options, &Status] { Status = Run(*Options); });
}

const Registration Registered("info", Add);

}  // namespace

}  // namespace qxsvg::tools
