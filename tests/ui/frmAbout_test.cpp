#include "ui/frmAbout.h"

#include <gtest/gtest.h>

#include <QPlainTextEdit>

namespace {

TEST(FrmAbout, ShowsTheShippedReadmeOrSaysWhyNot) {
  DiskFileSystem files;
  const auto readme = [&](const std::string& path) {
    return frmAbout(files, path).findChild<QPlainTextEdit*>(QStringLiteral("txtReadme"))->toPlainText();
  };
  const QString shipped = readme(FORUM_SOURCE_DIR "/packaging/readme.txt");
  for (const char* part :
       {"форум", "Ctrl+O", "Ctrl+D", "F9", "F5", "Ctrl+P", "Ctrl+F", "Ctrl+E", "F1", "Delete", "Esc"})
    EXPECT_TRUE(shipped.contains(QString::fromUtf8(part))) << part;
  EXPECT_TRUE(readme("").contains(QStringLiteral("readme.txt не найден")));
  EXPECT_TRUE(readme("/gone.txt").contains(QStringLiteral("/gone.txt")));
}

}  // namespace
