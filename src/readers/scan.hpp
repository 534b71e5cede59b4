// Scanners that find a marker line in a file of another program, and the small text routines around them.
#pragma once

#include <string>
#include <string_view>

#include "text/input_file.hpp"  // for input_file

namespace vbn {

inline constexpr std::size_t search_width = 200;  // columns of a line that are searched

// Each scanner searches from the current position on, including the next line, and returns in `line` the
// whole line where it stopped. True: the target was found, and the position is after its line. False: the
// position is the end of the file. Case matters.

// The next line that holds `word` from this column on, counted from 1.
bool search_word(input_file& file, int column, std::string_view word, std::string_view& line);

// The next line that holds `word` within its first `width` columns.
bool search_word_free(input_file& file, std::string_view word, std::string_view& line,
                      std::size_t width = search_width);

// The last line of the whole file that holds `word`.
bool search_word_free_last(input_file& file, std::string_view word, std::string_view& line);

// The next line, and the last line before the byte at `end`, that holds `word`, blanks ignored in both.
bool search_word_del_space(input_file& file, std::string_view word, std::string_view& line);
bool search_word_last_del_space(input_file& file, std::string_view word, std::string_view& line,
                                std::size_t end = std::string_view::npos);

// The next line whose first word is a number for `is_number`.
bool search_word_first_number(input_file& file, std::string_view& line);

// The next line whose first word begins with a letter.
bool search_word_first_letter(input_file& file, std::string_view& line);

}  // namespace vbn
