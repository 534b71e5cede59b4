// The sample files in the layouts of the programs, and routines to read and damage them.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "readers/file_type.hpp"   // for qm_file, open_qm_file
#include "tests/written_file.hpp"  // for content_of

namespace vbn {

inline std::string sample(const std::string& name) { return content_of(VBN_SAMPLES "/" + name); }

// The text as an open file.
inline qm_file opened(std::string_view content) {
  return open_qm_file(input_file::from_memory("sample.out", content));
}

// The text with the first `from` replaced, which must be there.
inline std::string changed(std::string content, std::string_view from, std::string_view to) {
  const std::size_t at = content.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return at == std::string::npos ? content : content.replace(at, from.size(), to);
}

}  // namespace vbn
