// Tells whether two pictures of the command stream agree: compare_pictures SEED A.ppm B.ppm

#include <cstdio>
#include <cstdlib>

#include "pictures/picture.h"

int main(int argc, char** argv) {
  if (argc != 4) return std::fputs("usage: compare_pictures SEED A.ppm B.ppm\n", stderr), 2;
  const std::string found = qvtest::difference(static_cast<unsigned>(std::atoi(argv[1])), qvtest::read_picture(argv[2]),
                                               qvtest::read_picture(argv[3]));
  if (found.empty()) return 0;
  std::fprintf(stderr, "%s and %s: %s\n", argv[2], argv[3], found.c_str());
  return 1;
}
