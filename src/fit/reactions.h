// The models as chemical reactions, for reports and the guide.
#pragma once

#include <array>
#include <string_view>

// In these texts "_" stands before a subscript and "^" before a superscript: one letter or number,
// or several in parentheses, which go with it.
struct Reaction {
  std::string_view equation;
  std::string_view constants;             // definitions; empty without association
  std::array<std::string_view, 3> names;  // of the constants, in the order of the ln K of a fit
};

// In the order of ModelNames.
inline constexpr std::array<Reaction, 11> ModelReactions = {{
    {"A (one ideal species)", "", {}},
    {"A (one species with second virial coefficient B)", "", {}},
    {"n A <-> A_n", "K = [A_n]/[A]^n", {"K"}},
    {"n A <-> A_n, m A <-> A_m", "K_1 = [A_n]/[A]^n, K_2 = [A_m]/[A]^m", {"K_1", "K_2"}},
    {"n A <-> A_n, and a fraction Alpha of A that cannot associate", "K = [A_n]/[A]^n", {"K"}},
    {"n A <-> A_n, and a fraction Alpha as A_n that cannot dissociate", "K = [A_n]/[A]^n", {"K"}},
    {"A + B <-> AB", "K_1 = [AB]/[A][B]", {"K_1"}},
    {"A + B <-> AB, AB + B <-> AB_2", "K_1 = [AB]/[A][B], K_2 = [AB_2]/[AB][B]", {"K_1", "K_2"}},
    {"A + B <-> AB, AB + B <-> AB_2, AB_2 + B <-> AB_3",
     "K_1 = [AB]/[A][B], K_2 = [AB_2]/[AB][B], K_3 = [AB_3]/[AB_2][B]",
     {"K_1", "K_2", "K_3"}},
    {"A_i + A <-> A_(i+1), i = 1, 2, 3 ...", "K_i = [A_(i+1)]/[A_i][A], alike for all i", {"K_i"}},
    {"n A <-> A_n, A_n + B <-> A_nB", "K_s = [A_n]/[A]^n, K_h = [A_nB]/[A_n][B]", {"K_s", "K_h"}},
}};
