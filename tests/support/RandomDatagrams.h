// Datagrams that are made of samples and then damaged, the same ones in every run.
#ifndef TESTS_SUPPORT_RANDOMDATAGRAMS_H
#define TESTS_SUPPORT_RANDOMDATAGRAMS_H

#include <random>
#include <string>

namespace test {

class RandomDatagrams {
 public:
  explicit RandomDatagrams(unsigned seed) : random_(seed) {}

  // Up to five samples, one after the other, whole.
  std::string NextWhole();
  // The same with up to four octets, words, lengths or ends changed; and those bytes so.
  std::string Next() { return Damaged(NextWhole()); }
  std::string Damaged(std::string bytes);

  unsigned Below(std::size_t n) { return static_cast<unsigned>(random_() % n); }

 private:
  void Damage(std::string* bytes);

  std::mt19937 random_;
};

}  // namespace test

#endif
