// First bytes and headings of files that are not read.
#include "readers/foreign.hpp"  // for what_is

#include "text/words.hpp"  // for adjustl, lowercase

namespace vbn {

namespace {

struct sign {
  std::string_view marker;
  std::string_view is;
};

// At the very beginning.
constexpr sign first_bytes[] = {
    {"\x1f\x8b", "compressed by gzip; unpack it first"},
    {"BZh", "compressed by bzip2; unpack it first"},
    {"\xfd"
     "7zXZ",
     "compressed by xz; unpack it first"},
    {"PK\x03\x04", "a zip archive or an office document; give the text file of the program"},
    {"%PDF", "a PDF; give the text file of the program"},
    {"\xff\xfe", "text in UTF-16; save it as plain text (UTF-8)"},
    {"\xfe\xff", "text in UTF-16; save it as plain text (UTF-8)"},
    {"\x89HDF", "an HDF5 file; give the text file of the program"},
    {"$coord", "a file of Turbomole or xtb; give the file hessian, with the geometry beside it"},
    {"$vibrational", "a file of Turbomole or xtb; give the file hessian, with the geometry beside it"},
    {"$operating", "a control file of Turbomole without force constants; give what aoforce prints"},
    {"$title", "a control file of Turbomole without force constants; give what aoforce prints"},
    {"{ \"bagel\"", "an input of BAGEL; give the output of the job"},
    {"{", "a JSON file, but none of QCSchema, ASE (VibrationsData) or ORCA with force constants"},
};

// Anywhere; of several the first in this list.
constexpr sign headings[] = {
    {"x T B", "an output of xtb; give the file hessian, with xtbopt.xyz beside it"},
    {"OpenMolcas", "an output of OpenMolcas; give the .UnSym file"},
    {"MOPAC", "an output of MOPAC; give the .aux file of a FORCE job with AUX"},
    {"**** ORCA ", "a file of ORCA; give the .hess file of the job"},
    {"Jaguar version", "an output of Jaguar; give the restart file .01.in"},
    {"T E R A C H E M", "an output of TeraChem, whose force constants have too few digits (four decimals)"},
    {"TeraChem v", "an output of TeraChem, whose force constants have too few digits (four decimals)"},
    {"Amsterdam Density Functional", "an output of ADF, which is not read"},
    {"Amsterdam Modeling Suite", "an output of AMS, which is not read"},
    {"Invoking FHI-aims", "an output of FHI-aims, which is not read"},
    {"CRYSTAL", "an output of CRYSTAL, which is not read"},
    {"Copyright 2018, Gaussian, Inc", "a Gaussian log without its beginning; give the whole log"},
    {"Entering Link 1", "a Gaussian log without its beginning; give the whole log"},
    {"Normal termination of Gaussian", "a Gaussian log without its beginning; give the whole log"},
};

// The first characters of a line of an input.
constexpr sign input_lines[] = {
    {"%chk", "an input of Gaussian; give the output of the job"},
    {"#p ", "an input of Gaussian; give the output of the job"},
    {"%mem", "an input of Gaussian; give the output of the job"},
    {"%nproc", "an input of Gaussian; give the output of the job"},
    {"$molecule", "an input of Q-Chem; give the output of the job"},
    {"$rem", "an input of Q-Chem; give the output of the job"},
    {"* xyz", "an input of ORCA; give the .hess file of the job"},
    {"*xyz", "an input of ORCA; give the .hess file of the job"},
    {"geometry", "an input of NWChem or Molpro; give the output of the job"},
    {"geometry={", "an input of Molpro; give the output of the job"},
    {"&gateway", "an input of OpenMolcas; give the .UnSym file of the job"},
    {"pm7 ", "an input of MOPAC; give the .aux file of a FORCE job with AUX"},
    {"pm6 ", "an input of MOPAC; give the .aux file of a FORCE job with AUX"},
    {"$contrl", "an input of GAMESS; give the output of the job"},
    {"&global", "an input of CP2K; give the output of the job"},
    {"&vbn", "an input of vbn"},
};

constexpr std::size_t input_size = 100'000;  // bytes; a longer text is no input

}  // namespace

std::string what_is(std::string_view content) {
  if (content.empty()) return "empty";
  for (const sign& s : first_bytes)
    if (content.starts_with(s.marker)) return std::string(s.is);
  for (const sign& s : headings)
    if (content.find(s.marker) != std::string_view::npos) return std::string(s.is);
  if (content.size() > input_size) return {};
  while (!content.empty()) {
    const std::size_t end = std::min(content.find('\n'), content.size());
    const std::string line = lowercase(adjustl(content.substr(0, end)));
    for (const sign& s : input_lines)
      if (line.starts_with(s.marker)) return std::string(s.is);
    content.remove_prefix(std::min(end + 1, content.size()));
  }
  return {};
}

}  // namespace vbn
