#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <QComboBox>
#include <QLineEdit>

#include "store/message_base.h"
#include "ui/work_dialog.h"
#include "upkeep/ui/upkeep_needs.h"

/// The window "Импортировать сохранённые страницы…": which files or folder, and of which forum where the base does not
/// tell; then the import, with what could not be read and why. It can be stopped and repeated: messages that are
/// in the base already are passed over.
class frmImportPages : public WorkDialog {
  Q_OBJECT
 public:
  /// @param base  open; outlives the window. While pages are imported it is open for writing
  frmImportPages(const UpkeepNeeds& needs, MessageBase& base, QWidget* parent = nullptr);

  /// How many messages the base has got since the window was opened; with any the tree must be built anew.
  std::size_t Imported() const { return imported_; }

 private:
  QWidget* NewTop();
  void FillForums();
  void ShowSource();

  void cmdFolder_Click();
  void cmdFiles_Click();
  void cmdImport_Click();
  WorkReport Import(const std::string& forum, Progress& progress);

  const UpkeepNeeds needs_;
  MessageBase& base_;
  std::vector<std::string> source_;  // files, or one folder
  std::size_t imported_ = 0;

  QComboBox* cmbForum_;
  QLineEdit* txtSource_;
  QPushButton *cmdFolder_, *cmdFiles_, *cmdImport_;
};
