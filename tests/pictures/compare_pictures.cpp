// Tells whether two pictures of the command stream agree: compare_pictures A.ppm B.ppm

#include <cstdio>

#include "pictures/picture.h"

int main(int argc, char** argv) {
  if (argc != 3) return std::fputs("usage: compare_pictures A.ppm B.ppm\n", stderr), 2;
  const std::string found = qvtest::difference(qvtest::read_picture(argv[1]), qvtest::read_picture(argv[2]));
  if (found.empty()) return 0;
  std::fprintf(stderr, "%s and %s: %s\n", argv[1], argv[2], found.c_str());
  return 1;
}
