// Blanks, words and names within a line of text.
#pragma once

#include <string>
#include <string_view>

namespace vbn {

// Without trailing blanks.
std::string_view trim(std::string_view a);

// Without leading blanks. The result is shorter: no blanks are added at its end.
std::string_view adjustl(std::string_view a);

// Number of words; only the blank separates.
int number_of_words(std::string_view words);

// Word k of a line, from 1; empty when there are fewer.
std::string_view word_of(std::string_view line, int k);

// The text with every blank left out.
std::string del_space(std::string_view a);

// Digits only (a sign or a point makes it false), letters only; false for an empty text.
bool is_number(std::string_view a);
bool is_letter(std::string_view a);

// The part of a path after its last "/"; and the same without its ending, from the last "." on.
std::string name_base(std::string_view path);
std::string name_main(std::string_view path);

// The text in lower case (A to Z only).
std::string lowercase(std::string_view a);

}  // namespace vbn
