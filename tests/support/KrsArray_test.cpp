#include "KrsArray.h"

#include "testkit/MonitorCapture.h"

#include <gtest/gtest.h>

#include <cstdint>

using testkit::MonitorCapture;

TEST(KrsArray, IndexOutsideYieldsInvalidAddressAndAssertsOnce) {
  ASSERT_TRUE(MonitorCapture::active());
  MonitorCapture::clear();
  KrsArray<double> values;
  values.SetSize(3);
  for (int pass = 0; pass < 2; ++pass)
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(&values.GetAt(3)), 0xFDFD2006u);
  const auto records = MonitorCapture::drain();
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].source, "KrsTempl");
  EXPECT_EQ(records[0].message, testkit::assertionText("(nIndex >= 0 && nIndex < m_nSize)", "KrsTempl", records[0].line));
  EXPECT_EQ(records[0].kind, 0x08040100u);
  EXPECT_EQ(records[0].code, 190u);
  EXPECT_EQ(records[0].magic, 1400u);
}
