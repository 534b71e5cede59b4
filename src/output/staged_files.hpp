// Files that appear only when all of them are complete.
#pragma once

#include <list>
#include <string>
#include <vector>

#include "text/output_file.hpp"  // for output_file

namespace vbn {

// Writes each file beside its place, under its name and ".new"; `commit` closes and renames them all. Without
// it nothing is left of them.
class staged_files {
 public:
  staged_files() = default;
  staged_files(const staged_files&) = delete;
  staged_files& operator=(const staged_files&) = delete;
  ~staged_files();

  output_file& open(const std::string& name);
  void commit();
  std::vector<std::string> names() const;

 private:
  struct staged {
    std::string name;
    output_file file;
  };
  std::list<staged> files_;
  bool done_ = false;
};

}  // namespace vbn
