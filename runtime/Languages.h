// The languages that the user prefers programs to speak.
#pragma once

#include "runtime/String.h"

namespace qxsvg {

// Language tags ("de-CH"), the most preferred first, at least one. They come from the environment
// (the list of LANGUAGE, then the first of LC_ALL, LC_MESSAGES and LANG) as it is now, without
// touching the program's locale; an environment that names none gives "en-US", the language of a
// program that nobody translated.
QXSVG_API std::vector<String> PreferredUILanguages();

// The same from the values of those variables.
QXSVG_API std::vector<String> PreferredUILanguages(std::string_view Language, std::string_view All,
                                                   std::string_view Messages,
                                                   std::string_view Lang);

}  // namespace qxsvg
