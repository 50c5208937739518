// Test main: every test program runs under a real monitor, with a real "lw.ini" beside a copy
// of the library that turns assertions on.
#include "testkit/MonitorCapture.h"

#include <gtest/gtest.h>

#include <dirent.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

// Under AddressSanitizer an allocation that cannot be served must answer null, as the heap does
// in production, so the containers' out-of-memory paths can be tested however the program is run.
#if defined(__SANITIZE_ADDRESS__)
#define KRGEL_TEST_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KRGEL_TEST_ASAN 1
#endif
#endif
#if defined(KRGEL_TEST_ASAN)
extern "C" const char* __asan_default_options() { return "allocator_may_return_null=1"; }
#endif

int main(int argc, char** argv) {
  testkit::enterMonitoredProcess(argc, argv, "[lw]\nkrsassert=1\n");
  ::testing::InitGoogleTest(&argc, argv);
  testkit::MonitorCapture::startReader();
  const int result = RUN_ALL_TESTS();
  if (const char* dir = std::getenv("KRGEL_TEST_DIR")) {
    if (DIR* listing = opendir(dir)) {
      while (const dirent* entry = readdir(listing))
        if (entry->d_name[0] != '.') unlink((std::string(dir) + "/" + entry->d_name).c_str());
      closedir(listing);
    }
    rmdir(dir);
  }
  return result;
}
