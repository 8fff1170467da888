// A bound method: an object and what to call on it, in two words.
//
// The wiring inside a tree (a length to its element, a string list to its owner) uses these instead
// of std::function, because an element holds dozens of them. The object is not owned and must
// outlive the binding; copying a binding never copies the object.
#pragma once

#include <utility>

namespace qxsvg {

template <class Signature>
class TMethod;

template <class Result, class... Arguments>
class TMethod<Result(Arguments...)> {
 public:
  constexpr TMethod() = default;

  // TMethod<void(int)>::Bind<&TThing::Handler>(Thing)
  template <auto Method, class Object>
  static constexpr TMethod Bind(Object* Target) {
    TMethod Bound;
    Bound.FObject = const_cast<void*>(static_cast<const void*>(Target));
    Bound.FCall = [](void* Self, Arguments... Args) -> Result {
      return (static_cast<Object*>(Self)->*Method)(std::forward<Arguments>(Args)...);
    };
    return Bound;
  }
  // Calls a functor that the caller keeps alive, such as a lambda in a test.
  template <class Functor>
  static constexpr TMethod To(Functor& Target) {
    return Bind<&Functor::operator()>(&Target);
  }

  constexpr explicit operator bool() const { return FCall != nullptr; }
  Result operator()(Arguments... Args) const {
    return FCall(FObject, std::forward<Arguments>(Args)...);
  }
  friend constexpr bool operator==(const TMethod&, const TMethod&) = default;

 private:
  void* FObject = nullptr;
  Result (*FCall)(void*, Arguments...) = nullptr;
};

class TPersistent;
// The plain notice: something about Sender changed.
using TNotifyMethod = TMethod<void(TPersistent* Sender)>;

}  // namespace qxsvg
