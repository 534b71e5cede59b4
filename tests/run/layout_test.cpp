// Tests of line layouts: every layout in use parses, and lines come out column by column.
#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

#include "run/text.hpp"  // for layout

namespace vbn {
namespace {

std::string written(const char* notation, std::initializer_list<value> values) {
  std::string out;
  layout(notation).write(out, values);
  return out;
}

// A layout with the values that one pass over it takes and the columns that they give, with a text of two
// characters under each bare `a` and a digit under each i0. Line ends within count as a column.
struct layout_in_use {
  std::size_t columns;
  std::size_t values;
  const char* notation;
};

// clang-format off
constexpr layout_in_use layouts_in_use[] = {
    {61, 1, R"#(("Error! The coordiantes from ",a," are different from two states!"))#"},
    {24, 1, R"#(("modify_mode = ", a10))#"},
    {24, 1, R"#(("modify_dush = ", a10))#"},
    {140, 10, R"#((10(ES13.6,X)))#"},
    {85, 5, R"#((5(2x,d15.8)))#"},
    {25, 3, R"#((2i6,f13.6))#"},
    {12, 2, R"#((a4,a8))#"},
    {12, 1, R"#(("BEGIN_DATA_",i1))#"},
    {102, 10, R"#((2x,10i10))#"},
    {14, 1, R"#((2x,"MODE",2x,i6))#"},
    {28, 2, R"#(("nat(",i0,") = ",i0," is out of [1,118]"))#"},
    {5, 2, R"#((a2,"(",i0,")"))#"},
    {8, 0, R"#((2x,"Error!"))#"},
    {29, 1, R"#((2x,"natom =", i20))#"},
    {7, 0, R"#((2x,"Stop!"))#"},
    {6, 0, R"#(("Error!"))#"},
    {55, 0, R"#(("Can not find coordinate in ChemShell output file, stop!"))#"},
    {52, 0, R"#(("Can not find coordinate in Molpro output file, stop!"))#"},
    {55, 0, R"#(("Can not find coordinate in TURBOMOLE output file, stop!"))#"},
    {128, 9, R"#((20X,9F12.8))#"},
    {63, 0, R"#(("Can not find force constant matrix in turbomole log file. Stop!"))#"},
    {71, 2, R"#((2x,"The coordinate of atom in file ", a,   " is not equal to that in the file ", a))#"},
    {90, 6, R"#((6f15.7))#"},
    {80, 0, R"#((80(1h_)))#"},
    {19, 0, R"#(("Do Eckart rotation",/))#"},
    {35, 0, R"#(("Set Eckart rotation matrix manually"))#"},
    {36, 1, R"#(("The index of Eckart matrix order = ", i0))#"},
    {40, 0, R"#(("Set Eckart rotation matrix automatically"))#"},
    {45, 2, R"#(("Eckart rotation", i4, 2x,"Delta x =", x,  f14.7))#"},
    {49, 2, R"#(("Eckart rotation", i4, 2x,"Delta x =", x, es18.7))#"},
    {45, 3, R"#(((3f15.7)))#"},
    {19, 1, R"#(("Select rotation",i4))#"},
    {72, 4, R"#(("Set mirror fc(",i6," ,",i6," ) = ",f15.7," > tol(",f15.7," )"))#"},
    {88, 8, R"#(("get_array3: ", 4i4, 4f15.7))#"},
    {147, 17, R"#(("get_array9:", 4(i4,2x), 4x 4(2i4,2x), 4x, i4, 4f15.7))#"},
    {23, 1, R"#((2x,"tol = ", f15.7))#"},
    {23, 1, R"#((2x,"dx  = ", f15.7))#"},
    {43, 0, R"#((2x,"dx > tol, fs is not the same as f0, stop!"))#"},
    {16, 1, R"#(("Point group:", 2x, a))#"},
    {15, 1, R"#((f15.2))#"},
    {80, 0, R"#((80(1h-)))#"},
    {48, 3, R"#((a6, 2x, 2a20  ))#"},
    {48, 3, R"#((a6, 2x, 2f20.2))#"},
    {55, 0, R"#(("Warning: frequences are changed after finding symmetry!"))#"},
    {42, 1, R"#((2x,"file type   ",7x,":",a20))#"},
    {42, 1, R"#((2x,"file version",7x,":",a20))#"},
    {42, 1, R"#((2x,"Number of atoms",4x,":",i20))#"},
    {22, 0, R"#((2x,"Atomic number",6x,":"    ))#"},
    {102, 10, R"#((2x,10i10  ))#"},
    {22, 0, R"#((2x,"Atomic symbol",6x,":"    ))#"},
    {102, 10, R"#((2x,10a10  ))#"},
    {22, 0, R"#((2x,"Atomic masses",6x,":"    ))#"},
    {102, 10, R"#((2x,10f10.5))#"},
    {42, 4, R"#((a8," (",i4,",",i4," ) = ",e18.6))#"},
    {15, 1, R"#(("Atom ", i10))#"},
    {50, 1, R"#((2x,"G cut                              = ", es11.2))#"},
    {49, 1, R"#((2x,"3N-6                               = ", i10   ))#"},
    {49, 1, R"#((2x,"nber non-redundant internal coords = ", i10   ))#"},
    {45, 0, R"#(("Check on Eigenvals of non-red overlap matrix:"))#"},
    {120, 10, R"#((10f12.8))#"},
    {16, 0, R"#((2x, "G eigenvalues:"))#"},
    {150, 10, R"#((10es15.6))#"},
    {24, 0, R"#((2x, "Error! nv is incorrect"))#"},
    {25, 0, R"#((2x, "Try to set set_cart = t"))#"},
    {5, 0, R"#(("Stop!"))#"},
    {33, 1, R"#(("Changed internal coordinate", i6))#"},
    {52, 8, R"#((4i6, 4x, 4i6))#"},
    {55, 0, R"#(("Error: Definitions of internal coordinates are changed!"))#"},
    {64, 2, R"#(("Error: numbers of internal coordinates are not same:", 2i6))#"},
    {33, 0, R"#(("Large changes in internal coords:"))#"},
    {5, 2, R"#((a2,i3))#"},
    {65, 10, R"#((a,i5,i2,4(3x,a5),3f8.3))#"},
    {80, 0, R"#((80("-")))#"},
    {15, 0, R"#(("print xd and zd"))#"},
    {48, 6, R"#((a5,a7,a9,3a9))#"},
    {100, 14, R"#((i5,i7,f9.4,3f9.5, 2(2x, 4i6) ))#"},
    {12, 2, R"#((i4,a8))#"},
    {38, 0, R"#(("zd(i) = z2(i) - z1(i)      (Angstrom) "))#"},
    {132, 0, R"#((132(1H-)))#"},
    {24, 0, R"#(("Internal coordinate type"))#"},
    {15, 0, R"#(("1: bond stretch"))#"},
    {14, 0, R"#(("2: linear bend"))#"},
    {14, 0, R"#(("3: normal bend"))#"},
    {24, 0, R"#(("4: proper dihedral angle"))#"},
    {26, 0, R"#(("5: improper dihedral angle"))#"},
    {23, 0, R"#(("6: proper torsion angle"))#"},
    {129, 7, R"#((a6,a6,2x," |",a16," |",a9," |",a33," |",a33," ||",a13))#"},
    {129, 6, R"#((6x,6x,2x," |",16x," |",9x," |",3a11," |",3a11," ||",13x))#"},
    {129, 8, R"#((a6,6x,2x," |",16x," |",9x," |",3f11.4," |",3f11.4," ||",f13.4))#"},
    {129, 14, R"#((i6,i6,2x," |",4i4," |",f9.4," |",3f11.4," |",3f11.4," ||",f13.4))#"},
    {43, 0, R"#((2x,"! The information of internal coordinates"))#"},
    {42, 1, R"#((2x,"nber bond                    =", i10))#"},
    {42, 1, R"#((2x,"nber proper bend             =", i10))#"},
    {42, 1, R"#((2x,"nber linear bend             =", i10))#"},
    {42, 1, R"#((2x,"nber proper torsion          =", i10))#"},
    {42, 1, R"#((2x,"nber improper torsion        =", i10))#"},
    {42, 1, R"#((2x,"nber improper torsion linear =", i10))#"},
    {42, 1, R"#((2x,"nber tot redundant int       =", i10))#"},
    {16, 0, R"#((2x,"1. normal bond"))#"},
    {96, 11, R"#((2i6, f10.4, 2x, "Ang", a8,1(" -",a8), " | ", 6f8.4))#"},
    {17, 0, R"#((2x,"2. linear angle"))#"},
    {130, 15, R"#((2i6, f10.4, 2x, "Ang", a8,2(" -",a8), " | ", 9f8.4))#"},
    {17, 0, R"#((2x,"3. normal angle"))#"},
    {25, 0, R"#((2x,"4. proper torsion angle"))#"},
    {164, 19, R"#((2i6, f10.4, 2x, "Deg", a8,3(" -",a8), " | ", 12f8.4))#"},
    {27, 0, R"#((2x,"5. improper torsion angle"))#"},
    {30, 0, R"#((2x,"6. torsion about linear bend"))#"},
    {67, 2, R"#((2x,"The number of atoms in file", a,   " is not equal to that in the file ", a))#"},
    {6, 2, R"#((2x, i0, 2x, i0))#"},
    {7, 0, R"#((2x, "Stop!"))#"},
    {65, 2, R"#((2x,"The mass of atom in file ", a,   " is not equal to that in the file ", a))#"},
    {46, 4, R"#((2x, i6, 2x, a, 2(2x,f15.6)))#"},
    {15, 1, R"#((x,E14.7))#"},
    {14, 1, R"#((  E14.7))#"},
    {22, 0, R"#(("  Information of NACME"))#"},
    {42, 1, R"#((2x,"NACME file type    :",a20))#"},
    {42, 1, R"#((2x,"NACME file version :",a20))#"},
    {68, 3, R"#(("  Excited energy = ", f11.6," au = ", f11.6, " eV =", f11.2," cm-1"))#"},
    {55, 0, R"#(("========= Transition Elecric Field (atomic unit) ======"))#"},
    {103, 0, R"#((30(1h=),"before rotation",34(1h=), "after rotation", 10(1h=)))#"},
    {103, 8, R"#((i5,a4,3f15.6,4x,3f15.6))#"},
    {80, 0, R"#((80(1h=)))#"},
    {55, 0, R"#(("========= NACME(x) before scaling (atomic unit) ======="))#"},
    {31, 0, R"#(("    <\psi_f | d \psi_i / dR >  "))#"},
    {42, 0, R"#(("=== <\psi_f | dV/dR | \psi_i> / \Delta_E  "))#"},
    {103, 8, R"#((i5, a4,3f15.6,4x,3f15.6))#"},
    {54, 0, R"#(("  ----------------------------------------------------"))#"},
    {60, 2, R"#((4x,"norm of NACME(x) is ",f15.6," au",f15.6," au"))#"},
    {54, 0, R"#(("======================================================"))#"},
    {55, 0, R"#(("========= NACME(q) before scaling (atomic unit) ======="))#"},
    {55, 0, R"#(("==================== q = sqrt(m) x  ==================="))#"},
    {103, 8, R"#((i5, a4,3f15.6,4x, 3f15.6))#"},
    {60, 2, R"#((4x,"norm of NACME(q) is ",f15.6," au",f15.6," au"))#"},
    {55, 0, R"#(("================ NACME(Q) (atomic unit) ==============="))#"},
    {40, 4, R"#((2a5, a15, a15))#"},
    {59, 5, R"#((2i5, f15.4,f15.9, 4x, f15.9))#"},
    {60, 2, R"#((4x,"norm of NACME(Q) is ",f15.6," au",f15.6," au"))#"},
    {15, 2, R"#((x,a6, i8))#"},
    {39, 0, R"#((" Energy Difference at present geometry:"))#"},
    {64, 3, R"#((  f15.10," a.u. = ",f15.10," eV = ",f15.8," cm-1"))#"},
    {53, 0, R"#((" Derivative Coupling before scaling and after scaling"))#"},
    {37, 0, R"#((" STEP 1:  Read nacm from output file."))#"},
    {105, 0, R"#(("          nacm_x = < \Psi_b | \frac{ \parital H }{ \partial x_{i \alpha} | \Psi_a > / ( E_a - E_b )  (au)"))#"},
    {48, 0, R"#((" STEP 2:  Transform the coordinates form x to q."))#"},
    {105, 0, R"#(("          nacm_q = < \Psi_b | \frac{ \parital H }{ \partial q_{i \alpha} | \Psi_a > / ( E_a - E_b )  (au)"))#"},
    {56, 0, R"#(("          where q_{i \alpha} = \sqrt(m_i) * x_{i \alpha}"))#"},
    {72, 0, R"#((" STEP 3:  Transform the coordinates form q to normal mode coordinates Q."))#"},
    {96, 0, R"#(("          nacm_q = < \Psi_b | \frac{ \parital H }{ \partial Q_j | \Psi_a > / ( E_a - E_b )  (au)"))#"},
    {88, 0, R"#((" STEP 4:  Transform the normal mode coordinates Q to dimensionless coordinates Q^\prime."))#"},
    {103, 0, R"#(("          nacm_q = < \Psi_b | \frac{ \parital H }{ \partial Q^\prime_j | \Psi_a > / ( E_a - E_b )  (au)"))#"},
    {80, 0, R"#(("          where Q^\prime = Q * SQRT(w),    and w is the corresponding frequency."))#"},
    {88, 0, R"#(("     nacm_before(  au):   < \Psi_b | d/dQ \Psi_a >                                (  au)"))#"},
    {88, 0, R"#(("     nacm_before(   1):   < \Psi_b | d/dQ \Psi_a >  / SQRT(w/hbar)                (   1)"))#"},
    {88, 0, R"#(("     nacm_after (  au):   < \Psi_b | d/dQ \Psi_a > * ( E_a - E_b ) / SQRT(w/hbar) (  au)"))#"},
    {88, 0, R"#(("     nacm_after (cm-1):   < \Psi_b | d/dQ \Psi_a > * ( E_a - E_b ) / SQRT(w/hbar) (cm-1)"))#"},
    {174, 12, R"#((  2a6,a6,a12,8a18))#"},
    {174, 12, R"#((2i6,a6,f12.2,3f18.10,f18.2,f18.6, 2f18.8, es18.8))#"},
    {4, 0, R"#((" End"))#"},
    {51, 4, R"#((i6, 3f15.7))#"},
    {21, 1, R"#((I4,"  # num of atoms "))#"},
    {21, 1, R"#((I4,"  # num of modes "))#"},
    {21, 1, R"#(("  BEGIN_DESCRIPTION_",i1))#"},
    {41, 1, R"#(("    ZPE1 (Ground ) : ",f15.7," cm-1"))#"},
    {41, 1, R"#(("    ZPE2 (Excited) : ",f15.7," cm-1"))#"},
    {41, 1, R"#(("    ZPE2 - ZPE1    : ",f15.7," cm-1"))#"},
    {19, 1, R"#(("  END_DESCRIPTION_",i1))#"},
    {16, 1, R"#(("  BEGIN_OUTPUT_",i1))#"},
    {135, 17, R"#((2a4,2(a5,a8,3a11,a8),2a5,a9))#"},
    {135, 17, R"#((2i4,2(a5,f8.2,f12.5,f10.5,f11.5,f8.2),2i5,f9.4))#"},
    {81, 2, R"#(("  Total reorganization energy (cm-1):",2X,2F21.6))#"},
    {14, 1, R"#(("  END_OUTPUT_",i1))#"},
    {10, 1, R"#(("END_DATA_",i1))#"},
    {39, 2, R"#(("BEGIN_DUSH_",i1,4x," Delta DUSH = ",f7.2, " %"))#"},
    {25, 1, R"#(("  BEGIN_DUSH_INFORMATION",i1))#"},
    {23, 1, R"#(("  END_DUSH_INFORMATION",i1))#"},
    {19, 1, R"#(("  BEGIN_DUSH_DATA_",i1))#"},
    {17, 1, R"#(("  END_DUSH_DATA_",i1))#"},
    {42, 1, R"#(("  BEGIN_DUSH_ORTH_TEST EPS = ", f13.6))#"},
    {10, 1, R"#(("END_DUSH_",i1))#"},
    {12, 1, R"#(("(",I0,"(2X,F9.5))"))#"},
    {42, 3, R"#((3(2x,F12.6)))#"},
    {63, 4, R"#((a2,4x,3f19.13))#"},
    {3, 1, R"#((I3))#"},
    {19, 1, R"#(( "(I3,x,",I0,"(I4,x,F4.1))" ))#"},
    {4, 1, R"#((i4))#"},
    {6, 0, R"#((" title"))#"},
    {52, 4, R"#((a4,3f16.10))#"},
    {88, 7, R"#((a4,3f16.10,3f12.6))#"},
    {25, 1, R"#((" freq = ", f11.2, " cm^-1"))#"},
    {100, 7, R"#((a4,6f16.10))#"},
    {14, 2, R"#((2x, "Mol ", i2, 4x, a))#"},
    {76, 6, R"#((a4, a8, 2x, a15, 2x, 3a15))#"},
    {76, 6, R"#((i4, a8, 2x, f15.7, 2x 3f15.7))#"},
    {15, 0, R"#((2x, "Original freq"))#"},
    {16, 0, R"#((2x, "Projected freq"))#"},
    {29, 1, R"#((2x, "Mol ", i2, 4x, "Frequency (cm^-1)"))#"},
    {110, 10, R"#((10f11.2))#"},
    {50, 3, R"#((5x,3(x,E14.7)))#"},
    {49, 3, R"#((7x,3(  E14.7)))#"},
    {80, 5, R"#((5x,5(x,E14.7)))#"},
    {77, 5, R"#((7x,5(  E14.7)))#"},
    {297, 27, R"#((27(2X,F9.5)))#"},
    {40, 9, R"#((I3,x,4(I4,x,F4.1)))#"},
};
// clang-format on

TEST(layout, every_layout_in_use_parses_to_its_columns) {
  for (const layout_in_use& expected : layouts_in_use) {
    const layout parsed(expected.notation);
    std::vector<value> values;
    for (const layout::item& item : parsed.items()) {
      switch (item.kind) {
        case layout::item_kind::characters:
          values.emplace_back("ab");
          break;
        case layout::item_kind::integer:
          values.emplace_back(7);
          break;
        case layout::item_kind::fixed:
        case layout::item_kind::exponent:
        case layout::item_kind::scientific:
          values.emplace_back(0.5);
          break;
        default:
          break;
      }
    }
    std::string out;
    parsed.write(out, values);
    EXPECT_EQ(values.size(), expected.values) << expected.notation;
    EXPECT_EQ(out.size(), expected.columns + 1) << expected.notation;
    const std::string_view notation = expected.notation;
    EXPECT_EQ(std::count(out.begin(), out.end(), '*'), std::count(notation.begin(), notation.end(), '*'))
        << notation;
  }
}

TEST(layout, values_stand_in_their_columns) {
  EXPECT_EQ(written("(2i6,f13.6)", {3, 4, 0.5}), "     3     4     0.500000\n");
  EXPECT_EQ(written("(a4,a8)", {"abcdefgh"}), "abcd\n");
  EXPECT_EQ(written("(a5,a3,a)", {"C1", text<4>("H"), text<4>("He")}), "   C1H  He  \n");
  EXPECT_EQ(written("(\"BEGIN_DATA_\",i1)", {12}), "BEGIN_DATA_*\n");
  EXPECT_EQ(written("(i4,i0,x,i0)", {12345, -2147483647 - 1, 0}), "****-2147483648 0\n");
  EXPECT_EQ(written("(\"nat(\",i0,\") = \",i0,\" is out of [1,118]\")", {3, 200}),
            "nat(3) = 200 is out of [1,118]\n");
  EXPECT_EQ(written("(i4, a8, 2x, f15.7, 2x 3f15.7)", {1, "C", 12.0, 0.1, -0.2, 0.3}),
            "   1       C       12.0000000        0.1000000     -0.2000000      0.3000000\n");
  EXPECT_EQ(written("(2X,2I3,1X,ES13.6,D15.8)", {1, 2, 1.0, -1.0}),
            "    1  2  1.000000E+00-0.10000000D+01\n");
  EXPECT_EQ(written("(3(1h=), 'it''s' \"a\"\"b\" 2(\"-\") 2h),)", {}), "===it'sa\"b--),\n");
  EXPECT_EQ(written("(\"one\",/)", {}), "one\n\n");
  EXPECT_EQ(written("(2/,i1/i1)", {1, 2}), "\n\n1\n2\n");
  EXPECT_EQ(layout("(\"(\",I0,\"(2X,F9.5))\")").line({27}), "(27(2X,F9.5))");
}

TEST(layout, a_line_ends_at_the_first_item_without_a_value_and_keeps_its_blanks) {
  EXPECT_EQ(written("(2x,\"MODE\",2x,i6)", {}), "  MODE  \n");
  EXPECT_EQ(written("()", {}), "\n");
  EXPECT_EQ(written("(2x,10i10)", {}), "  \n");
  EXPECT_EQ(written("(i2,\" |\",2x,i2,\" ||\",13x)", {1}), " 1 |  \n");
  EXPECT_EQ(written("(i2,\" |\",3x)", {1}), " 1 |   \n");
}

TEST(layout, values_that_are_left_start_it_again_from_the_last_inner_bracket_with_its_count) {
  std::vector<value> integers;
  for (int i = 1; i <= 25; ++i) integers.emplace_back(i);
  std::string out;
  layout("(2x,10i10)").write(out, integers);
  EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 3);
  EXPECT_EQ(out.substr(102, 1), "\n");
  EXPECT_EQ(out.substr(103, 12), "          11");
  EXPECT_EQ(out.substr(206), "          21        22        23        24        25\n");

  const double reals[] = {1.0, 2.0, 3.0, 4.0, 5.0};
  out.clear();
  layout("(2(F4.1,X))").write(out, std::span<const double>(reals));
  EXPECT_EQ(out, " 1.0  2.0 \n 3.0  4.0 \n 5.0 \n");
  out.clear();
  layout("(\"row\",f4.1,2(x,2(f4.1)),\"!\")").write(out, std::span<const double>(reals));
  EXPECT_EQ(out, "row 1.0  2.0 3.0  4.0 5.0!\n");
  EXPECT_EQ(written("(\"row\",i2,2(x,2(i2)),\"!\",(\"+\",i2))", {1, 2, 3, 4, 5, 6, 7, 8}),
            "row 1  2 3  4 5!+ 6\n+ 7\n+ 8\n");
  EXPECT_EQ(written("(\"row\",2(\"<\",i1),\">\")", {1, 2, 3}), "row<1<2>\n<3<\n");
  // A list that ends with the layout starts no further line.
  EXPECT_EQ(written("(2i2)", {1, 2, 3, 4}), " 1 2\n 3 4\n");
}

TEST(layout, reals_in_a_span_come_out_as_the_same_values_one_by_one) {
  for (const char* notation : {"(10(ES13.6,X))", "(3(2x,F12.6),/)", "(\"a\",e14.7,(x,d15.8,\"b\"))"}) {
    std::vector<double> reals;
    std::vector<value> values;
    for (int n = 0; n < 40; ++n) {
      std::string spanned;
      std::string single;
      layout(notation).write(spanned, std::span<const double>(reals));
      layout(notation).write(single, values);
      EXPECT_EQ(spanned, single) << notation << ' ' << n;
      reals.push_back(-0.37 * n);
      values.emplace_back(-0.37 * n);
    }
  }
}

TEST(layout, a_layout_that_is_none_or_fits_no_value_is_an_error_of_the_program) {
  for (const char* notation : {"",
                               "i4",
                               "(i4",
                               "(i4))",
                               "(i4)x",
                               "(q4)",
                               "(i)",
                               "(f8)",
                               "(f8.)",
                               "(f0.3)",
                               "(e9.0)",
                               "(a0)",
                               "(\"a)",
                               "(5hab)",
                               "(h)",
                               "(0i4)",
                               "(0(x))",
                               "(99999999999i4)",
                               "(9000(9000(x)))",
                               "(i99999999999)",
                               "(t5,a)",
                               "(1p,e9.2)"}) {
    EXPECT_THROW(layout{notation}, std::logic_error) << notation;
  }
  EXPECT_THROW(layout(std::string(100'000, '(')), std::logic_error);
  EXPECT_THROW(written("(i4)", {1.0}), std::logic_error);
  EXPECT_THROW(written("(f8.2)", {1}), std::logic_error);
  EXPECT_THROW(written("(f8.2)", {"a"}), std::logic_error);
  EXPECT_THROW(written("(a)", {1}), std::logic_error);
  // Values without an item to go under do not keep it busy for ever.
  EXPECT_THROW(written("(\"text\")", {1}), std::logic_error);
  EXPECT_THROW(written("(i4,2(\"x\"))", {1, 2}), std::logic_error);
}

}  // namespace
}  // namespace vbn
