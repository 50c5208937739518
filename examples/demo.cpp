#include "KrGeL.h"

#include <cstdio>

int main() {
  KrsArray<double> values;
  for (int i = 0; i < 5; ++i) values.Add(i * 0.5);
  values.RemoveAt(-1);  // a container used wrongly: reported once, changes nothing
  std::printf("array of %d values, last %g\n", values.GetSize(), values[values.GetSize() - 1]);
  return 0;
}
