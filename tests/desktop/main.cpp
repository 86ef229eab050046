#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  // Listing needs no windows, and nothing that the sanitizers watch.
  if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
  if (!qEnvironmentVariableIsSet("QLOOM_TEST_ON_DISPLAY")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  QApplication::setStyle(QStringLiteral("Fusion"));
  return RUN_ALL_TESTS();
}
