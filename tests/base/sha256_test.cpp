// Faults caught here: a mistyped constant, a wrong padding where the length falls on the edge of a
// block. Digests: FIPS 180-4, its examples, and the long one of the same series; the lengths round
// the edge from another implementation (sha256sum).
#include "base/sha256.h"

#include <gtest/gtest.h>

using namespace quorvane;

namespace {

TEST(Sha256, GivesThePublishedDigests) {
  const struct {
    std::string bytes;
    const char* digest;
  } rows[] = {
      {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
      {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
      {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
       "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
      {std::string(1000000, 'a'),
       "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
      {std::string(55, '\xff'), "aadaed00a3c5fbb8072ae7f1984ba8199fbe5272de427d11eaf31583af37db51"},
      {std::string(56, '\xff'), "528ff50ab05e77bbbd224a9ec86165dbb6824a9a9efb544be0a1d57d5b416457"},
      {std::string(63, '\xff'), "d12449c8124182545ae91924286cc6af13528bcf62a5ddbd5e00b891fffc1b48"},
      {std::string(64, '\xff'), "8667e718294e9e0df1d30600ba3eeb201f764aad2dad72748643e4a285e1d1f7"},
      {std::string(119, '\xff'),
       "b863f94597d433ef2280e3b4656f13ea265a79bb8047287321c218905b03c99b"},
      {std::string(120, '\xff'),
       "9088fee917e5a748c2f0b4f5458c1cbdabbd696291c69be6e605bae0ef779e8f"},
  };
  for (const auto& row : rows) EXPECT_EQ(Sha256(row.bytes), row.digest) << row.bytes.size();
}

}  // namespace
