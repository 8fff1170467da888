// Small pictures for the tests of the image codecs, in base64.
#pragma once

#include <string_view>

#include "runtime/Base64.h"

namespace qxsvg::test {

struct TImageFixture {
  const char* Name;
  int Width, Height;
  std::string_view Base64;

  TBytes Bytes() const { return Base64Decode(Base64); }
};

// PNGs of the kinds that our own writer does not make.
// 3 by 2, one bit of grey: black white black, white black white.
inline constexpr TImageFixture PngGray1{
    "gray1", 3, 2,
    "iVBORw0KGgoAAAANSUhEUgAAAAMAAAACAQAAAAC1D1u3AAAADElEQVR42mNwYFgAAAFkAOGvxwyAAAAAAElFTkSuQmCC"};
// 200 opaque and 100 with an alpha of 51.
inline constexpr TImageFixture PngGrayAlpha{"grayalpha", 2, 1,
                                            "iVBORw0KGgoAAAANSUhEUgAAAAIAAAABCAQAAABeK7cBAAAADUlEQV"
                                            "R42mM48T/FGAAHHQJfSpKOxAAAAABJRU5ErkJggg=="};
// 16 bits a channel: 1234 5678 9ABC, and a red that the file makes transparent.
inline constexpr TImageFixture PngDeep{
    "rgb16", 2, 1,
    "iVBORw0KGgoAAAANSUhEUgAAAAIAAAABEAIAAAAr0DSeAAAABnRSTlP//wAAAABABmvRAAAAFElEQVR42mMQMgmrmLXn/"
    "38GIAAAH54EaZfA7kUAAAAASUVORK5CYII="};
// Indices 0, 1, 2 of red, green of alpha 128, blue.
inline constexpr TImageFixture PngPalette{"palette", 3, 1,
                                          "iVBORw0KGgoAAAANSUhEUgAAAAMAAAABAgMAAABmjvwnAAAACVBMVEX/"
                                          "AAAA/wAAAP8tSs2KAAAAAnRSTlP/gAgPs2oAAAA"
                                          "KSURBVHjaY5AAAAAaABmAAI67AAAAAElFTkSuQmCC"};
// Grey 40 y + 8 x, interlaced.
inline constexpr TImageFixture PngInterlaced{"interlaced", 5, 6,
                                             "iVBORw0KGgoAAAANSUhEUgAAAAUAAAAGCAAAAAFZlzsBAAAAM0lEQ"
                                             "VR42mNgYFBgWHCAQYBhA0NAQgEDhwRDRAbDih0MGgY"
                                             "WDh4MFQ0dE2YwnLhw48ELANKaDZkpmFvLAAAAAElFTkSuQmCC"};

// A frame of 2 by 2 at 1, 1: red green, blue transparent.
inline constexpr TImageFixture GifFrame{
    "gif", 4, 3, "R0lGODlhBAADAIEAAP8AAAD/AAAA/////yH5BAEAAAMAIf4DYWJjACwBAAEAAgACAAACA0SoFQA7"};
// A column of ten whose row y has index y modulo 4 of red, green, blue, white, interlaced.
inline constexpr TImageFixture GifInterlaced{
    "gif interlaced", 1, 10,
    "R0lGODlhAQAKAIEAAP8AAAD/AAAA/////yH+A2FiYwAsAAAAAAEACgBAAgYECFHhwqUAOw=="};

// Both all of about 200, 100, 50.
inline constexpr TImageFixture JpegInks{
    "jpeg cmyk", 8, 8,
    "/9j/7gAOQWRvYmUAZAAAAAAC/9sAQwACAQEBAQECAQEBAgICAgIEAwICAgIFBAQDBAYFBgYGBQYGBgcJCAYHCQcGBg"
    "gLCAkKCgoKCgYICwwLCgwJCgoK/9sAQwECAgICAgIFAwMFCgcGBwoKCgoKCgoKCgoKCgoKCgoKCgoKCgoKCgoKCgoK"
    "CgoKCgoKCgoKCgoKCgoKCgoKCgoK/8AAFAgACAAIBAERAAIRAQMRAQQRAP/EABUAAQEAAAAAAAAAAAAAAAAAAAcJ/8"
    "QAFBABAAAAAAAAAAAAAAAAAAAAAP/EABUBAQEAAAAAAAAAAAAAAAAAAAgJ/8QAFBEBAAAAAAAAAAAAAAAAAAAAAP/a"
    "AA4EAQACEQMRBAAAPwADNROtSB//2Q=="};
inline constexpr TImageFixture JpegProgressive{
    "jpeg progressive", 16, 16,
    "/9j/4AAQSkZJRgABAQAAAQABAAD/2wBDAAMCAgMCAgMDAwMEAwMEBQgFBQQEBQoHBwYIDAoMDAsKCwsNDhIQDQ4RDg"
    "sLEBYQERMUFRUVDA8XGBYUGBIUFRT/2wBDAQMEBAUEBQkFBQkUDQsNFBQUFBQUFBQUFBQUFBQUFBQUFBQUFBQUFBQU"
    "FBQUFBQUFBQUFBQUFBQUFBQUFBQUFBT/wgARCAAQABADAREAAhEBAxEB/8QAFQABAQAAAAAAAAAAAAAAAAAAAAP/xA"
    "AWAQEBAQAAAAAAAAAAAAAAAAAABgf/2gAMAwEAAhADEAAAAYw+kAD/xAAUEAEAAAAAAAAAAAAAAAAAAAAg/9oACAEB"
    "AAEFAh//xAAUEQEAAAAAAAAAAAAAAAAAAAAg/9oACAEDAQE/AR//xAAUEQEAAAAAAAAAAAAAAAAAAAAg/9oACAECAQ"
    "E/AR//xAAUEAEAAAAAAAAAAAAAAAAAAAAg/9oACAEBAAY/Ah//xAAUEAEAAAAAAAAAAAAAAAAAAAAg/9oACAEBAAE/"
    "IR//2gAMAwEAAgADAAAAEJJP/8QAFBEBAAAAAAAAAAAAAAAAAAAAIP/aAAgBAwEBPxAf/8QAFBEBAAAAAAAAAAAAAA"
    "AAAAAAIP/aAAgBAgEBPxAf/8QAFBABAAAAAAAAAAAAAAAAAAAAIP/aAAgBAQABPxAf/9k="};

}  // namespace qxsvg::test
