// Test main: every test program runs under a real monitor, with a real "lw.ini" beside a copy
// of the library that turns assertions on.
#include <gtest/gtest.h>

#include "testkit/MonitorCapture.h"

// Under AddressSanitizer an allocation that cannot be served must answer null, as the heap does
// in production, so the containers' out-of-memory paths can be tested however the program is run.
#if defined(__SANITIZE_ADDRESS__)
extern "C" const char* __asan_default_options() { return "allocator_may_return_null=1"; }
#endif

int main(int argc, char** argv) {
  testkit::enterMonitoredProcess(argc, argv, "[lw]\nkrsassert=1\n");
  ::testing::InitGoogleTest(&argc, argv);
  testkit::MonitorCapture::startReader();
  const int result = RUN_ALL_TESTS();
  testkit::leaveMonitoredProcess();
  return result;
}
