// The limits that keep bad input from costing more than it is worth, each with its reason.
//
// What is over a limit while a document loads raises an exception; what is over a limit while it is
// drawn is left out, and the draw goes on.
#pragma once

#include <cstddef>
#include <cstdint>

namespace qxsvg::Limits {

// --- Loading

// Elements of one document. While it loads a small element takes about a kilobyte and a half with
// its XML, so that the largest tree peaks at about six gigabytes; drawings of maps and circuits
// reach a few hundred thousand.
inline constexpr std::int32_t Elements = 4'000'000;

// Levels of a tree. Every walk over a tree recurses, and 512 levels of the deepest call chain fit
// the smallest stacks that threads are given (a megabyte, half of that with sanitizers).
inline constexpr std::int32_t NestingDepth = 512;

// Blanks in an identifier made unique. The rule adds one with each round, so that the names of many
// equal identifiers would take memory with the square of their number.
inline constexpr std::int32_t UniqueNameBlanks = 128;

// Bytes of a document's text. Offsets of the XML reader are 32-bit.
inline constexpr std::size_t DocumentBytes = std::size_t{1} << 30;

// Bytes of one attribute or text node. Images inside a document as data URIs are the long ones.
inline constexpr std::size_t AttributeBytes = std::size_t{256} << 20;

// Nodes of an XML document: elements, texts and comments, about a hundred bytes each.
inline constexpr std::size_t XMLNodes = 12'000'000;

// Attributes of one element: the XML parser compares each with all others.
inline constexpr std::size_t ElementAttributes = 20'000;

// Bytes of declarations, other than of entities, in a document type: the XML parser compares each
// word of an enumeration with all others.
inline constexpr std::size_t DeclarationBytes = std::size_t{64} << 10;

// Bytes that all references to entities may expand to. Real documents keep namespaces and a style
// in entities, a few kilobytes; what goes beyond is an attack that doubles text at each level.
inline constexpr std::size_t EntityBytes = std::size_t{10} << 20;
// Levels of entities within entities, for the same reason.
inline constexpr std::int32_t EntityDepth = 20;
// Entities that a document type declares.
inline constexpr std::int32_t EntityCount = 1000;

// Bytes that a compressed document may expand to: compressed blanks shrink a thousandfold, and
// while a document loads it takes about five times its size.
inline constexpr std::size_t DecompressedBytes = std::size_t{128} << 20;

// Rules of the style sheets of one document: each is matched against each element.
inline constexpr std::int32_t StyleRules = 65'536;
// UTF-16 units of declarations that the selector lists of one document repeat: each selector of a
// list holds them for itself. Real lists come to some ten thousand.
inline constexpr std::size_t StyleCopies = std::size_t{8} << 20;
// Tokens of all rules times elements, which is the work of a cascade; one with a long list of
// classes counts as many. A map of 300,000 elements
// with a thousand rules stays below.
inline constexpr std::int64_t StyleMatches = 1'000'000'000;

// --- Geometry

// Segments of one path, as given and after flattening or repeating; a segment takes at most 32
// bytes here.
inline constexpr std::size_t PathSegments = 10'000'000;

// Dashes of one stroke: a dash of a thousandth of a pixel along a long path gives millions that no
// one can see. Over this the line is drawn solid.
inline constexpr std::size_t DashCount = 200'000;

// Stops of a gradient after it was repeated over the area that it fills.
inline constexpr std::size_t GradientPoints = 65'536;

// --- Pixels

// Width or height of a bitmap: products with four bytes a pixel and fixed-point coordinates stay
// within 32 bits.
inline constexpr std::int32_t BitmapSide = 32'767;
// Pixels of a bitmap, which takes four bytes for each; a tile of a pattern is one too.
inline constexpr std::int64_t BitmapPixels = std::int64_t{1} << 28;
// Pixels of one tile of a pattern. A tile is as large as the document says, whatever the size of
// the drawing; a screen of the finest displays has half as many.
inline constexpr std::int64_t PatternPixels = std::int64_t{1} << 24;
// Bytes that the coverage kept for redrawing may take, of all documents together. The tiger at the
// size of a large screen takes about two megabytes.
inline constexpr std::size_t CoverageBytes = std::size_t{64} << 20;
// What is kept of one path that is shown in many places through references: 64 by 64 positions
// within a pixel, and as many bytes as those of a few pixels take.
inline constexpr std::size_t StampsOfPath = 4096;
inline constexpr std::size_t StampBytesOfPath = std::size_t{2} << 20;
// Bytes of an image after decoding, asked of the header before memory is taken. Four bytes a pixel,
// so that the pictures of the largest phone cameras (108 million pixels) fit.
inline constexpr std::size_t ImageBytes = std::size_t{440} << 20;
// Bytes of an image before decoding, which is done in memory.
inline constexpr std::size_t ImageFileBytes = std::size_t{256} << 20;
// Bytes of the pictures of one document, of which the last one may have all that ImageBytes allows:
// a picture in one colour takes thousands of times the bytes of its text.
inline constexpr std::size_t PictureBytes = std::size_t{1} << 30;

// --- Text

// UTF-16 units of one text run: layout takes about a hundred bytes for each.
inline constexpr std::size_t TextRun = 1'000'000;

// --- References

// Levels of references within references (use, pattern, marker, gradient, clip path) while drawing.
// Each level costs several stack frames.
inline constexpr std::int32_t ReferenceDepth = 64;
// Elements, or 32 points, drawn through references in one draw: each level of use doubles them.
inline constexpr std::int64_t DrawnReferences = 400'000;
// Elements looked at in one cascade for what is shown through references: each combinator of each
// rule may search the whole tree at each element.
inline constexpr std::int64_t SearchedReferences = 4'000'000;
// Bytes that a document may keep of what its references drew: some ten thousand targets, each under
// the styles and at the scale that it was drawn with.
inline constexpr std::size_t RepeatBytes = std::size_t{4} << 20;
// Bytes of a clip's coverage for a canvas to keep it for the next element with the same clip path;
// a few are kept. That is the coverage of most outlines at the size of a screen.
inline constexpr std::size_t RecentClipBytes = std::size_t{1} << 19;
// Levels of SVG files that stand as images within each other, and files loaded that way in all from
// the outermost one: each is a whole document.
inline constexpr std::size_t ImageDocumentDepth = 4;
inline constexpr std::int32_t ImageDocuments = 256;
// Pixels of tiles painted in one draw: each pattern has tiles of its own, all of which may be
// large; a pixel of an image that is shown smaller counts for an eighth.
inline constexpr std::int64_t TilePixels = std::int64_t{1} << 29;

}  // namespace qxsvg::Limits
