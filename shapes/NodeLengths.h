// Lengths of an element as attributes of its node, and as rows of its property table.
#pragma once

#include <array>

#include "document/XML.h"
#include "graphics/GraphicElement.h"

namespace qxsvg {

// Puts one length on the node, percentages of the range 0 to Maximum. With OmitZero an attribute of
// raw value 0 is left out, and one that is there goes.
void SaveLength(IXMLNode& Node, StringView Name, const TSVGLength& Length,
                const TSVGNumberFormat& Format, float Maximum, bool OmitZero);

// "x", "y", "width" and "height" of an element, in this order, percentages of the range 0 to 100;
// zeros are left out in compact form.
void SaveBox(IXMLNode& Node, TSVGGraphicElement& Element);

// X, Y, width and height under the names given, in this order, percentages as fractions of 1; one
// with an empty name is passed over.
void SaveLengths(IXMLNode& Node, TSVGGraphicElement& Element,
                 const std::array<StringView, 4>& Names, bool OmitZero);

// Reads a length's attribute, percentages as fractions of 1, after clearing it.
void LoadLength(const IXMLNode& Node, StringView Name, TSVGLength& Length);

// "xlink:href" with "#" before the identifier, unless that is empty.
void SaveReference(IXMLNode& Node, StringView Reference);

// The rows of position and size, by value and as lengths.
inline constexpr std::array<TProperty, 8> SVGBoxProperties = [] {
  using T = TSVGGraphicElement;
  return std::array<TProperty, 8>{
      Property<&T::GetX, &T::SetX>(u"X", NeverStored),
      Property<&T::GetY, &T::SetY>(u"Y", NeverStored),
      Property<&T::GetWidth, &T::SetWidth>(u"Width", NeverStored),
      Property<&T::GetHeight, &T::SetHeight>(u"Height", NeverStored),
      ObjectProperty<T, TSVGLength, &T::Xu>(u"Xu"),
      ObjectProperty<T, TSVGLength, &T::Yu>(u"Yu"),
      ObjectProperty<T, TSVGLength, &T::WidthU>(u"WidthU"),
      ObjectProperty<T, TSVGLength, &T::HeightU>(u"HeightU"),
  };
}();

// One table of the rows of two.
template <std::size_t M, std::size_t N>
constexpr std::array<TProperty, M + N> JoinRows(const std::array<TProperty, M>& A,
                                                const std::array<TProperty, N>& B) {
  return [&]<std::size_t... I, std::size_t... J>(std::index_sequence<I...>,
                                                 std::index_sequence<J...>) {
    return std::array<TProperty, M + N>{A[I]..., B[J]...};
  }
  (std::make_index_sequence<M>(), std::make_index_sequence<N>());
}

}  // namespace qxsvg
