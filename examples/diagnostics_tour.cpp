// The diagnostics path seen from a host: a container used wrongly and a warning. With krgemon
// running (and "krsassert=1" in lw.ini beside the library) each step shows up as a record.
#include "KrGeL.h"

#include <cstdint>
#include <cstdio>

namespace {

struct Sample {
  double x = 0.0, y = 0.0, z = 0.0;
};

}  // namespace

void runDiagnosticsTour() {
  std::printf("diagnostics: assertions %s, monitor lines follow when krgemon runs\n",
              KrsModule::assertOn ? "on" : "off (no monitor at load, or krsassert=0)");

  KrsArray<double> values;
  for (int i = 0; i < 5; ++i) values.Add(i * 0.5);
  // Used wrongly twice at the same check: reported once, and nothing changes.
  values.RemoveAt(-1);
  values.RemoveAt(-1);
  std::printf("array of %d values after two bad removals, last %g\n", values.GetSize(), values[values.GetSize() - 1]);

  // Reading past the end does not crash the container: it hands out a recognisable bad address.
  const double* outside = &values.GetAt(values.GetSize());
  std::printf("address of element %d: 0x%08llX\n", values.GetSize(),
              static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(outside)));

  // Appending an element of the array to itself while it must grow: reported, and still right.
  KrsArray<Sample> samples;
  samples.SetSize(3, 0);
  samples[0].x = 7.0;
  samples.Add(samples[0]);
  std::printf("self-insert kept the value: %g\n", samples[3].x);

  // Warnings are sent every time (a host can silence them with KrsSetWarningsEnabled(false)).
  for (int i = 0; i < 2; ++i) KRS_WARN("demo host: degenerate input repaired");
}
