// The persistent base: objects that can be assigned, know their class, and list their published
// properties, so that one table a class serves the binary writer, the component stream and tests.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <type_traits>
#include <variant>

#include "runtime/String.h"

namespace qxsvg {

class TFiler;
class TPersistent;

enum class TPropertyKind : std::uint8_t { Boolean, Integer, Float, Text, Enumeration, Set, Object };

// Booleans, ordinals of enumerations and bit masks of sets travel as integers. An object is not
// owned by the value; writing one assigns it into the object that the property holds.
using TPropertyValue = std::variant<std::int64_t, float, String, TPersistent*>;

// One published property: one row of a class's table.
struct TProperty {
  StringView Name;
  TPropertyKind Kind;
  TPropertyValue (*Read)(const TPersistent& Self);
  // Null for a property that can only be read. A value of another kind raises EConvertError.
  void (*Write)(TPersistent& Self, const TPropertyValue& Value);
  // Whether a stream has to hold the property: it differs from its default. Null means always.
  bool (*IsStored)(const TPersistent& Self);
};

// What a class value is: name, base, table of the properties it adds, and a way to make an
// instance.
struct TClass {
  StringView Name;
  const TClass* Base;
  std::span<const TProperty> Properties;
  // Null for a class that is abstract or whose constructor needs more than nothing.
  std::unique_ptr<TPersistent> (*New)();

  bool InheritsFrom(const TClass& Ancestor) const {
    const TClass* Class = this;
    while (Class && Class != &Ancestor) Class = Class->Base;
    return Class != nullptr;
  }
};

// The property of that name (exact), the class's own before those of its bases; null without one.
QXSVG_API const TProperty* FindProperty(const TClass& Class, StringView Name);

class QXSVG_API TPersistent {
 public:
  TPersistent() = default;
  TPersistent(const TPersistent&) = delete;
  TPersistent& operator=(const TPersistent&) = delete;
  virtual ~TPersistent();

  static const TClass Class;
  virtual const TClass& ClassType() const { return Class; }
  StringView ClassName() const { return ClassType().Name; }

  // Takes the state of Source. A source of a kind that this class does not know is asked to assign
  // itself to this object (AssignTo), which raises EConvertError where that is unknown too.
  virtual void Assign(const TPersistent* Source);
  virtual TPersistent* GetOwner() const { return nullptr; }

 protected:
  virtual void AssignTo(TPersistent* Dest) const;
  // Declares properties that a stream holds besides the published ones.
  virtual void DefineProperties(TFiler& Filer);
};

namespace detail {

template <class T>
struct PropertyTraits;
template <class C, class R>
struct PropertyTraits<R (C::*)() const> {
  using Class = C;
  using Value = std::remove_cvref_t<R>;
};
// A reader that may build what it gives.
template <class C, class R>
struct PropertyTraits<R (C::*)()> {
  using Class = C;
  using Value = std::remove_cvref_t<R>;
};
template <class C, class V>
struct PropertyTraits<void (C::*)(V)> {
  using Class = C;
  using Value = std::remove_cvref_t<V>;
};

template <class V>
constexpr TPropertyKind KindOf() {
  if constexpr (std::is_same_v<V, bool>)
    return TPropertyKind::Boolean;
  else if constexpr (std::is_enum_v<V>)
    return TPropertyKind::Enumeration;
  else if constexpr (std::is_floating_point_v<V>)
    return TPropertyKind::Float;
  else if constexpr (std::is_integral_v<V>)
    return TPropertyKind::Integer;
  else if constexpr (std::is_convertible_v<V, StringView>)
    return TPropertyKind::Text;
  else if constexpr (std::is_pointer_v<V>)
    return TPropertyKind::Object;
  else
    return TPropertyKind::Set;
}

template <class V>
TPropertyValue ToPropertyValue(const V& Value) {
  constexpr auto Kind = KindOf<V>();
  if constexpr (Kind == TPropertyKind::Float)
    return static_cast<float>(Value);
  else if constexpr (Kind == TPropertyKind::Text)
    return String(Value);
  else if constexpr (Kind == TPropertyKind::Object)
    return const_cast<TPersistent*>(static_cast<const TPersistent*>(Value));
  else if constexpr (Kind == TPropertyKind::Set)
    return static_cast<std::int64_t>(Value.Mask());
  else
    return static_cast<std::int64_t>(Value);
}

[[noreturn]] QXSVG_API void RaisePropertyKind();

template <class V>
V FromPropertyValue(const TPropertyValue& Value) {
  constexpr auto Kind = KindOf<V>();
  const auto Get = [&Value]<class T>(std::type_identity<T>) -> const T& {
    const T* Held = std::get_if<T>(&Value);
    if (!Held) RaisePropertyKind();
    return *Held;
  };
  if constexpr (Kind == TPropertyKind::Float)
    return static_cast<V>(Get(std::type_identity<float>()));
  else if constexpr (Kind == TPropertyKind::Text)
    return V(Get(std::type_identity<String>()));
  else if constexpr (Kind == TPropertyKind::Object)
    return dynamic_cast<V>(Get(std::type_identity<TPersistent*>()));
  else if constexpr (Kind == TPropertyKind::Set)
    return V::FromMask(static_cast<std::uint64_t>(Get(std::type_identity<std::int64_t>())));
  else
    return static_cast<V>(Get(std::type_identity<std::int64_t>()));
}

}  // namespace detail

// A row from a reader and a writer method: Property<&T::Title, &T::SetTitle>(u"Title", stored
// test). Pass nullptr as the writer for a property that cannot be written.
template <auto Reader, auto Writer>
constexpr TProperty Property(StringView Name, bool (*IsStored)(const TPersistent&) = nullptr) {
  using Traits = detail::PropertyTraits<decltype(Reader)>;
  using Owner = typename Traits::Class;
  TProperty Row{Name, detail::KindOf<typename Traits::Value>(), nullptr, nullptr, IsStored};
  Row.Read = [](const TPersistent& Self) {
    auto& Object = const_cast<Owner&>(static_cast<const Owner&>(Self));
    return detail::ToPropertyValue((Object.*Reader)());
  };
  if constexpr (!std::is_null_pointer_v<decltype(Writer)>) {
    Row.Write = [](TPersistent& Self, const TPropertyValue& Value) {
      using Target = typename detail::PropertyTraits<decltype(Writer)>::Class;
      using V = typename detail::PropertyTraits<decltype(Writer)>::Value;
      if constexpr (std::is_same_v<V, StringView>)
        (static_cast<Target&>(Self).*Writer)(detail::FromPropertyValue<String>(Value));
      else
        (static_cast<Target&>(Self).*Writer)(detail::FromPropertyValue<V>(Value));
    };
  }
  return Row;
}

// A stored test from a method: StoredIf<&T::IsOpacityStored>.
template <auto Test>
bool StoredIf(const TPersistent& Self) {
  using Owner = typename detail::PropertyTraits<decltype(Test)>::Class;
  return (static_cast<const Owner&>(Self).*Test)();
}
// A stored test from a reader and its default: StoredUnless<&T::Kind, 0>.
template <auto Reader, auto Default>
bool StoredUnless(const TPersistent& Self) {
  using Owner = typename detail::PropertyTraits<decltype(Reader)>::Class;
  return !((static_cast<const Owner&>(Self).*Reader)() == Default);
}
// A stored test for texts and lists: StoredUnlessEmpty<&T::Title>.
template <auto Reader>
bool StoredUnlessEmpty(const TPersistent& Self) {
  using Owner = typename detail::PropertyTraits<decltype(Reader)>::Class;
  return !(static_cast<const Owner&>(Self).*Reader)().empty();
}
// A row for an object that its owner holds: ObjectProperty<TThing, TPart, &TThing::Part>(u"Part").
// Reading gives the owner's object, which may be made by that; writing assigns into it.
template <class Owner, class Object, Object& (Owner::*Reader)()>
constexpr TProperty ObjectProperty(StringView Name,
                                   bool (*IsStored)(const TPersistent&) = nullptr) {
  return {Name, TPropertyKind::Object,
          [](const TPersistent& Self) -> TPropertyValue {
            return &(const_cast<Owner&>(static_cast<const Owner&>(Self)).*Reader)();
          },
          [](TPersistent& Self, const TPropertyValue& Value) {
            if (const auto* Source = detail::FromPropertyValue<TPersistent*>(Value))
              (static_cast<Owner&>(Self).*Reader)().Assign(Source);
          },
          IsStored};
}
// The same with a setter, which takes objects of that class alone; others are passed over.
template <class Owner, class Object, Object& (Owner::*Reader)(),
          void (Owner::*Writer)(const Object*)>
constexpr TProperty ObjectProperty(StringView Name,
                                   bool (*IsStored)(const TPersistent&) = nullptr) {
  TProperty Row = ObjectProperty<Owner, Object, Reader>(Name, IsStored);
  Row.Write = [](TPersistent& Self, const TPropertyValue& Value) {
    const auto* const Source =
        dynamic_cast<const Object*>(detail::FromPropertyValue<TPersistent*>(Value));
    if (Source) (static_cast<Owner&>(Self).*Writer)(Source);
  };
  return Row;
}
inline bool NeverStored(const TPersistent&) {
  return false;
}

}  // namespace qxsvg
