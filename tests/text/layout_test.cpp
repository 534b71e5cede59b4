// Tests of line layouts: every layout in use parses, and lines come out column by column.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "text/layout.hpp"  // for layout, value

namespace vbn {
namespace {

std::string written(const char* notation, std::initializer_list<value> values) {
  std::string out;
  layout(notation).write(out, values);
  return out;
}

// A layout with the columns of a line, given a text of two characters under each bare `a` and a digit under
// each i0, and the values that it takes. Line ends within count as a column.
struct layout_in_use {
  std::size_t columns, values;
  const char* notation;
};

// clang-format off
constexpr layout_in_use layouts_in_use[] = {
    {105, 0, R"#(("          nacm_x = < \Psi_b | \frac{ \parital H }{ \partial x_{i \alpha} | \Psi_a > / ( E_a - E_b )  (au)"))#"},
    {105, 0, R"#(("          nacm_q = < \Psi_b | \frac{ \parital H }{ \partial q_{i \alpha} | \Psi_a > / ( E_a - E_b )  (au)"))#"},
    {103, 0, R"#(("          nacm_q = < \Psi_b | \frac{ \parital H }{ \partial Q^\prime_j | \Psi_a > / ( E_a - E_b )  (au)"))#"},
    {96, 0, R"#(("          nacm_q = < \Psi_b | \frac{ \parital H }{ \partial Q_j | \Psi_a > / ( E_a - E_b )  (au)"))#"},
    {88, 0, R"#(("     nacm_before(  au):   < \Psi_b | d/dQ \Psi_a >                                (  au)"))#"},
    {88, 0, R"#(("     nacm_before(   1):   < \Psi_b | d/dQ \Psi_a >  / SQRT(w/hbar)                (   1)"))#"},
    {88, 0, R"#(("     nacm_after (  au):   < \Psi_b | d/dQ \Psi_a > * ( E_a - E_b ) / SQRT(w/hbar) (  au)"))#"},
    {88, 0, R"#(("     nacm_after (cm-1):   < \Psi_b | d/dQ \Psi_a > * ( E_a - E_b ) / SQRT(w/hbar) (cm-1)"))#"},
    {88, 0, R"((" STEP 4:  Transform the normal mode coordinates Q to dimensionless coordinates Q^\prime."))"},
    {71, 2, R"((2x,"The coordinate of atom in file ", a,   " is not equal to that in the file ", a))"},
    {80, 0, R"(("          where Q^\prime = Q * SQRT(w),    and w is the corresponding frequency."))"},
    {67, 2, R"((2x,"The number of atoms in file", a,   " is not equal to that in the file ", a))"},
    {65, 2, R"((2x,"The mass of atom in file ", a,   " is not equal to that in the file ", a))"},
    {72, 0, R"((" STEP 3:  Transform the coordinates form q to normal mode coordinates Q."))"},
    {68, 3, R"(("  Excited energy = ", f11.6," au = ", f11.6, " eV =", f11.2," cm-1"))"}, {90, 6, "(6f15.7)"},
    {61, 1, R"(("Error! The coordiantes from ",a," are different from two states!"))"}, {45, 3, "((3f15.7))"},
    {63, 0, R"(("Can not find force constant matrix in turbomole log file. Stop!"))"}, {25, 3, "(2i6,f13.6)"},
    {129, 14, R"((i6,i6,2x," |",4i4," |",f9.4," |",3f11.4," |",3f11.4," ||",f13.4))"}, {120, 10, "(10f12.8)"},
    {72, 4, R"#(("Set mirror fc(",i6," ,",i6," ) = ",f15.7," > tol(",f15.7," )"))#"}, {102, 10, "(2x,10i10)"},
    {129, 8, R"((a6,6x,2x," |",16x," |",9x," |",3f11.4," |",3f11.4," ||",f13.4))"}, {7, 0, R"((2x,"Stop!"))"},
    {103, 0, R"((30(1h=),"before rotation",34(1h=), "after rotation", 10(1h=)))"}, {8, 0, R"((2x,"Error!"))"},
    {64, 2, R"(("Error: numbers of internal coordinates are not same:", 2i6))"}, {15, 1, R"(("Atom ", i10))"},
    {56, 0, R"(("          where q_{i \alpha} = \sqrt(m_i) * x_{i \alpha}"))"}, {140, 10, "(10(ES13.6,X))"},
    {55, 0, R"(("Can not find coordinate in ChemShell output file, stop!"))"}, {5, 2, R"#((a2,"(",i0,")"))#"},
    {55, 0, R"(("Can not find coordinate in TURBOMOLE output file, stop!"))"}, {10, 1, R"(("END_DATA_",i1))"},
    {55, 0, R"(("Warning: frequences are changed after finding symmetry!"))"}, {10, 1, R"(("END_DUSH_",i1))"},
    {55, 0, R"(("Error: Definitions of internal coordinates are changed!"))"}, {88, 7, "(a4,3f16.10,3f12.6)"},
    {55, 0, R"(("========= Transition Elecric Field (atomic unit) ======"))"}, {40, 9, "(I3,x,4(I4,x,F4.1))"},
    {55, 0, R"(("========= NACME(x) before scaling (atomic unit) ======="))"}, {48, 3, "(a6, 2x, 2a20  )"},
    {55, 0, R"(("========= NACME(q) before scaling (atomic unit) ======="))"}, {48, 3, "(a6, 2x, 2f20.2)"},
    {55, 0, R"(("==================== q = sqrt(m) x  ==================="))"}, {6, 2, "(2x, i0, 2x, i0)"},
    {55, 0, R"(("================ NACME(Q) (atomic unit) ==============="))"}, {7, 0, R"((2x, "Stop!"))"},
    {129, 6, R"((6x,6x,2x," |",16x," |",9x," |",3a11," |",3a11," ||",13x))"}, {14, 1, R"((2x,"MODE",2x,i6))"},
    {54, 0, R"(("  ----------------------------------------------------"))"}, {40, 4, "(2a5, a15, a15)"},
    {54, 0, R"(("======================================================"))"}, {63, 4, "(a2,4x,3f19.13)"},
    {147, 17, R"(("get_array9:", 4(i4,2x), 4x 4(2i4,2x), 4x, i4, 4f15.7))"}, {12, 1, R"(("BEGIN_DATA_",i1))"},
    {53, 0, R"((" Derivative Coupling before scaling and after scaling"))"}, {14, 0, R"(("2: linear bend"))"},
    {52, 0, R"(("Can not find coordinate in Molpro output file, stop!"))"}, {29, 1, R"((2x,"natom =", i20))"},
    {129, 7, R"((a6,a6,2x," |",a16," |",a9," |",a33," |",a33," ||",a13))"}, {15, 0, R"(("print xd and zd"))"},
    {164, 19, R"((2i6, f10.4, 2x, "Deg", a8,3(" -",a8), " | ", 12f8.4))"}, {23, 1, R"((2x,"tol = ", f15.7))"},
    {130, 15, R"((2i6, f10.4, 2x, "Ang", a8,2(" -",a8), " | ", 9f8.4))"}, {16, 0, R"((2x,"1. normal bond"))"},
    {96, 11, R"((2i6, f10.4, 2x, "Ang", a8,1(" -",a8), " | ", 6f8.4))"}, {19, 1, R"(("Select rotation",i4))"},
    {50, 1, R"((2x,"G cut                              = ", es11.2))"}, {24, 1, R"(("modify_mode = ", a10))"},
    {49, 1, R"((2x,"3N-6                               = ", i10   ))"}, {24, 1, R"(("modify_dush = ", a10))"},
    {49, 1, R"((2x,"nber non-redundant internal coords = ", i10   ))"}, {16, 1, R"(("Point group:", 2x, a))"},
    {48, 0, R"((" STEP 2:  Transform the coordinates form x to q."))"}, {103, 8, "(i5, a4,3f15.6,4x,3f15.6)"},
    {60, 2, R"((4x,"norm of NACME(x) is ",f15.6," au",f15.6," au"))"}, {19, 0, R"(("Do Eckart rotation",/))"},
    {60, 2, R"((4x,"norm of NACME(q) is ",f15.6," au",f15.6," au"))"}, {103, 8, "(i5, a4,3f15.6,4x, 3f15.6)"},
    {60, 2, R"((4x,"norm of NACME(Q) is ",f15.6," au",f15.6," au"))"}, {21, 1, R"((I4,"  # num of atoms "))"},
    {64, 3, R"((  f15.10," a.u. = ",f15.10," eV = ",f15.8," cm-1"))"}, {21, 1, R"((I4,"  # num of modes "))"},
    {81, 2, R"(("  Total reorganization energy (cm-1):",2X,2F21.6))"}, {76, 6, "(a4, a8, 2x, a15, 2x, 3a15)"},
    {45, 2, R"(("Eckart rotation", i4, 2x,"Delta x =", x,  f14.7))"}, {46, 4, "(2x, i6, 2x, a, 2(2x,f15.6))"},
    {49, 2, R"(("Eckart rotation", i4, 2x,"Delta x =", x, es18.7))"}, {19, 1, R"(("  END_DESCRIPTION_",i1))"},
    {45, 0, R"(("Check on Eigenvals of non-red overlap matrix:"))"}, {22, 0, R"(("  Information of NACME"))"},
    {174, 12, "(2i6,a6,f12.2,3f18.10,f18.2,f18.6, 2f18.8, es18.8)"}, {59, 5, "(2i5, f15.4,f15.9, 4x, f15.9)"},
    {39, 2, R"(("BEGIN_DUSH_",i1,4x," Delta DUSH = ",f7.2, " %"))"}, {19, 1, R"(("  BEGIN_DUSH_DATA_",i1))"},
    {43, 0, R"((2x,"dx > tol, fs is not the same as f0, stop!"))"}, {23, 0, R"(("6: proper torsion angle"))"},
    {43, 0, R"((2x,"! The information of internal coordinates"))"}, {21, 1, R"(("  BEGIN_DESCRIPTION_",i1))"},
    {135, 17, "(2i4,2(a5,f8.2,f12.5,f10.5,f11.5,f8.2),2i5,f9.4)"}, {24, 0, R"(("Internal coordinate type"))"},
    {42, 0, R"(("=== <\psi_f | dV/dR | \psi_i> / \Delta_E  "))"}, {88, 8, R"(("get_array3: ", 4i4, 4f15.7))"},
    {40, 0, R"(("Set Eckart rotation matrix automatically"))"}, {22, 0, R"((2x,"Atomic number",6x,":"    ))"},
    {36, 1, R"(("The index of Eckart matrix order = ", i0))"}, {27, 0, R"((2x,"5. improper torsion angle"))"},
    {39, 0, R"((" Energy Difference at present geometry:"))"}, {19, 1, R"#(( "(I3,x,",I0,"(I4,x,F4.1))" ))#"},
    {29, 1, R"#((2x, "Mol ", i2, 4x, "Frequency (cm^-1)"))#"}, {22, 0, R"((2x,"Atomic symbol",6x,":"    ))"},
    {28, 2, R"(("nat(",i0,") = ",i0," is out of [1,118]"))"}, {42, 1, R"((2x,"Number of atoms",4x,":",i20))"},
    {38, 0, R"(("zd(i) = z2(i) - z1(i)      (Angstrom) "))"}, {42, 4, R"((a8," (",i4,",",i4," ) = ",e18.6))"},
    {42, 1, R"((2x,"nber bond                    =", i10))"}, {22, 0, R"((2x,"Atomic masses",6x,":"    ))"},
    {42, 1, R"((2x,"nber proper bend             =", i10))"}, {25, 0, R"((2x, "Try to set set_cart = t"))"},
    {42, 1, R"((2x,"nber linear bend             =", i10))"}, {42, 1, R"((2x,"NACME file type    :",a20))"},
    {42, 1, R"((2x,"nber proper torsion          =", i10))"}, {42, 1, R"((2x,"NACME file version :",a20))"},
    {42, 1, R"((2x,"nber improper torsion        =", i10))"}, {25, 1, R"(("  BEGIN_DUSH_INFORMATION",i1))"},
    {42, 1, R"((2x,"nber improper torsion linear =", i10))"}, {42, 1, R"((2x,"file type   ",7x,":",a20))"},
    {42, 1, R"((2x,"nber tot redundant int       =", i10))"}, {42, 1, R"((2x,"file version",7x,":",a20))"},
    {37, 0, R"((" STEP 1:  Read nacm from output file."))"}, {24, 0, R"((2x, "Error! nv is incorrect"))"},
    {42, 1, R"(("  BEGIN_DUSH_ORTH_TEST EPS = ", f13.6))"}, {33, 1, R"(("Changed internal coordinate", i6))"},
    {35, 0, R"(("Set Eckart rotation matrix manually"))"}, {30, 0, R"((2x,"6. torsion about linear bend"))"},
    {41, 1, R"(("    ZPE1 (Ground ) : ",f15.7," cm-1"))"}, {31, 0, R"(("    <\psi_f | d \psi_i / dR >  "))"},
    {41, 1, R"(("    ZPE2 (Excited) : ",f15.7," cm-1"))"}, {100, 14, "(i5,i7,f9.4,3f9.5, 2(2x, 4i6) )"},
    {41, 1, R"(("    ZPE2 - ZPE1    : ",f15.7," cm-1"))"}, {26, 0, R"(("5: improper dihedral angle"))"},
    {33, 0, R"(("Large changes in internal coords:"))"}, {25, 0, R"((2x,"4. proper torsion angle"))"},
    {23, 1, R"(("  END_DUSH_INFORMATION",i1))"}, {25, 1, R"((" freq = ", f11.2, " cm^-1"))"}, {3, 1, "(I3)"},
    {24, 0, R"(("4: proper dihedral angle"))"}, {135, 17, "(2a4,2(a5,a8,3a11,a8),2a5,a9)"}, {5, 2, "(a2,i3)"},
    {76, 6, "(i4, a8, 2x, f15.7, 2x 3f15.7)"}, {17, 1, R"(("  END_DUSH_DATA_",i1))"}, {6, 0, R"(("Error!"))"},
    {12, 1, R"#(("(",I0,"(2X,F9.5))"))#"}, {14, 2, R"((2x, "Mol ", i2, 4x, a))"}, {50, 3, "(5x,3(x,E14.7))"},
    {16, 0, R"((2x, "G eigenvalues:"))"}, {65, 10, "(a,i5,i2,4(3x,a5),3f8.3)"}, {49, 3, "(7x,3(  E14.7))"},
    {17, 0, R"((2x,"2. linear angle"))"}, {17, 0, R"((2x,"3. normal angle"))"}, {80, 5, "(5x,5(x,E14.7))"},
    {103, 8, "(i5,a4,3f15.6,4x,3f15.6)"}, {16, 1, R"(("  BEGIN_OUTPUT_",i1))"}, {77, 5, "(7x,5(  E14.7))"},
    {16, 0, R"((2x, "Projected freq"))"}, {15, 0, R"((2x, "Original freq"))"}, {297, 27, "(27(2X,F9.5))"},
    {23, 1, R"((2x,"dx  = ", f15.7))"}, {14, 1, R"(("  END_OUTPUT_",i1))"}, {15, 0, R"(("1: bond stretch"))"},
    {14, 0, R"(("3: normal bend"))"}, {174, 12, "(  2a6,a6,a12,8a18)"}, {102, 10, "(2x,10i10  )"},
    {102, 10, "(2x,10a10  )"}, {102, 10, "(2x,10f10.5)"}, {52, 8, "(4i6, 4x, 4i6)"}, {85, 5, "(5(2x,d15.8))"},
    {48, 6, "(a5,a7,a9,3a9)"}, {128, 9, "(20X,9F12.8)"}, {42, 3, "(3(2x,F12.6))"}, {100, 7, "(a4,6f16.10)"},
    {150, 10, "(10es15.6)"}, {80, 0, R"((80("-")))"}, {51, 4, "(i6, 3f15.7)"}, {6, 0, R"((" title"))"},
    {52, 4, "(a4,3f16.10)"}, {5, 0, R"(("Stop!"))"}, {132, 0, "(132(1H-))"}, {110, 10, "(10f11.2)"},
    {15, 2, "(x,a6, i8)"}, {4, 0, R"((" End"))"}, {80, 0, "(80(1h_))"}, {80, 0, "(80(1h-))"}, {4, 1, "(i4)"},
    {15, 1, "(x,E14.7)"}, {14, 1, "(  E14.7)"}, {80, 0, "(80(1h=))"}, {12, 2, "(a4,a8)"}, {15, 1, "(f15.2)"},
    {12, 2, "(i4,a8)"},
};
// clang-format on

TEST(layout, values_stand_in_their_columns_and_a_line_ends_at_the_first_item_without_one) {
  const struct {
    const char* notation;
    std::vector<value> values;
    const char* line;
  } cases[] = {
      {"(2i6,f13.6)", {3, 4, 0.5}, "     3     4     0.500000\n"},
      {"(a5,a3,a,a2)", {"C1", "H   ", "He  ", "abc"}, "   C1H  He  ab\n"},
      {"(i4,i0,x,i0)", {12345, -2147483647 - 1, 0}, "****-2147483648 0\n"},
      {"(i4, a8, 2x, f9.3, 2x 3f9.3)",
       {1, "C", 12.0, 0.1, -0.2},
       "   1       C     12.000      0.100   -0.200\n"},
      {"(2X,2I3,1X,ES13.6,D15.8)", {1, 2, 1.0, -1.0}, "    1  2  1.000000E+00-0.10000000D+01\n"},
      {"(3(1h=), 'it''s' \"a\"\"b\" 2(\"-\") 2h),)", {}, "===it'sa\"b--),\n"},
      {"(2/,i1/i1)", {1, 2}, "\n\n1\n2\n"},
      {"(2x,\"MODE\",2x,i6)", {}, "  MODE  \n"},
      {"(i2,\" |\",2x,i2,\" ||\",13x)", {1}, " 1 |  \n"},
      {"(\"row\",i2,2(x,2(i2)),\"!\",(\"+\",i2))",
       {1, 2, 3, 4, 5, 6, 7, 8},
       "row 1  2 3  4 5!+ 6\n+ 7\n+ 8\n"},
      {"(\"row\",2(\"<\",i1),\">\")", {1, 2, 3}, "row<1<2>\n<3<\n"},
      {"(2i2)", {1, 2, 3, 4}, " 1 2\n 3 4\n"},
  };
  for (const auto& it : cases) {
    std::string out;
    layout(it.notation).write(out, it.values);
    EXPECT_EQ(out, it.line) << it.notation;
  }
}

TEST(layout, reals_in_a_span_come_out_as_the_same_values_one_by_one) {
  for (const char* notation : {"(10(ES13.6,X))", "(3(2x,F12.6),/)", "(\"a\",e14.7,(x,d15.8,\"b\"))"}) {
    std::vector<double> reals;
    std::vector<value> values;
    for (int n = 0; n < 40; ++n) {
      std::string spanned, single;
      layout(notation).write(spanned, std::span<const double>(reals));
      layout(notation).write(single, values);
      EXPECT_EQ(spanned, single) << notation << ' ' << n;
      reals.push_back(-0.37 * n);
      values.emplace_back(-0.37 * n);
    }
  }
}

TEST(layout, a_layout_that_is_none_or_fits_no_value_is_an_error_of_the_program) {
  for (const char* notation : {"", "i4", "(i4", "(i4)x", "(q4)", "(i)", "(f8)", "(f0.3)", "(e9.0)", "(\"a)",
                               "(5hab)", "(0i4)", "(99999999999i4)", "(9000(9000(x)))", "(t5,a)"}) {
    EXPECT_THROW(layout{notation}, std::logic_error) << notation;
  }
  EXPECT_THROW(layout(std::string(100'000, '(')), std::logic_error);
  EXPECT_THROW(written("(i4)", {1.0}), std::logic_error);
  EXPECT_THROW(written("(f8.2)", {1}), std::logic_error);
  // Values without an item to go under do not keep it busy for ever.
  EXPECT_THROW(written("(i4,2(\"x\"))", {1, 2}), std::logic_error);
}

}  // namespace
}  // namespace vbn
