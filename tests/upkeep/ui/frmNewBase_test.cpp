#include "upkeep/ui/frmNewBase.h"

#include <gmock/gmock.h>

#include <filesystem>

#include <QApplication>

#include "jet/database.h"
#include "support/faulty_file.h"
#include "support/offscreen_app.h"
#include "ui/text.h"
#include "upkeep/ui/upkeep_stage.h"

namespace {

const auto* const app = testing::AddGlobalTestEnvironment(new OffscreenApp);

using testing::HasSubstr;

class FrmNewBase : public UpkeepStage {
 protected:
  static std::string File(const frmNewBase& window) {
    return PathFromQString(Find<QLineEdit>(window, "txtFile")->text());
  }
  static std::string Hint(const frmNewBase& window) { return Find<QLabel>(window, "lblHint")->text().toStdString(); }
  jet::Version VersionOf(const std::string& base) {
    return jet::Database::Open(files_, base, jet::Access::kRead).version();
  }
};

TEST_F(FrmNewBase, ProposesAFreeNameInTheForumsFolderAndMakesTheFolder) {
  frmNewBase window(needs_, "");
  EXPECT_EQ(Find<QComboBox>(window, "cmbForum")->count(), 2);  // forums that are not downloaded too
  EXPECT_EQ(File(window), folder_ / "kdv/kdv_2024.mdb");
  EXPECT_THAT(Hint(window), HasSubstr("По началу имени, «kdv»"));
  dialogs_.ok = false;  // no such folder
  Click(window, "cmdOK");
  EXPECT_EQ(window.NewBase(), "");
  dialogs_.ok = true;
  Click(window, "cmdOK");
  EXPECT_EQ(window.result(), QDialog::Accepted);
  EXPECT_EQ(window.NewBase(), folder_ / "kdv/kdv_2024.mdb");
  EXPECT_EQ(VersionOf(window.NewBase()), jet::Version::kJet3);

  frmNewBase second(needs_, "kdv");
  EXPECT_EQ(File(second), folder_ / "kdv/kdv_2024_2.mdb");
  Find<QComboBox>(second, "cmbForum")->setCurrentIndex(1);
  EXPECT_EQ(File(second), folder_ / "ptrv_2024.mdb");
  Find<QRadioButton>(second, "optNew")->click();
  Click(second, "cmdOK");
  EXPECT_EQ(VersionOf(folder_ / "ptrv_2024.mdb"), jet::Version::kJet4);
}

TEST_F(FrmNewBase, ANameIsCompletedOrRefusedInWords) {
  folder_.Put("kdv/kdv_full.mdb", "not to be lost");
  const struct {
    std::string typed, hint, made;
  } cases[] = {
      {" ", "Назовите файл", ""},           {"archive", "«kdv»", ""},
      {"kdv_full", "уже есть", ""},         {"KDV архив", "", "kdv/KDV архив.mdb"},
      {folder_ / "Kdv.MDB", "", "Kdv.MDB"},
  };
  for (const auto& c : cases) {
    frmNewBase window(needs_, "kdv");
    Find<QLineEdit>(window, "txtFile")->setText(QStringFromPath(c.typed));
    EXPECT_THAT(Hint(window), HasSubstr(c.hint)) << c.typed;
    dialogs_.told.clear();
    Click(window, "cmdOK");
    EXPECT_EQ(dialogs_.told.empty(), c.hint.empty()) << c.typed;
    EXPECT_EQ(window.NewBase(), c.made.empty() ? "" : folder_ / c.made) << c.typed;
  }
  EXPECT_EQ(folder_.Get("kdv/kdv_full.mdb"), "not to be lost");
}

TEST_F(FrmNewBase, AFullDiskIsToldAndTheWindowStays) {
  FaultyFileSystem disk;
  const UpkeepNeeds needs{disk, clock_, ini_, dialogs_};
  std::filesystem::create_directory(folder_ / "kdv");
  frmNewBase window(needs, "kdv");
  disk.FailAt(disk.operations() + 3, FaultyFileSystem::Fault::kFail, FaultyFileSystem::Lasting::kFromThenOn);
  Click(window, "cmdOK");
  EXPECT_EQ(dialogs_.told.size(), 1u);
  EXPECT_EQ(window.NewBase(), "");
  EXPECT_EQ(window.result(), QDialog::Rejected);
  disk.NeverFail();
  EXPECT_FALSE(disk.Exists(folder_ / "kdv/kdv_2024.mdb"));
  Click(window, "cmdOK");
  EXPECT_EQ(window.result(), QDialog::Accepted);
}

}  // namespace
