#include <gtest/gtest.h>

#include <QApplication>
#include <QTimer>

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  if (!qEnvironmentVariableIsSet("QLOOM_TEST_ON_DISPLAY")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  QApplication::setStyle(QStringLiteral("Fusion"));
  return RUN_ALL_TESTS();
}
