#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include "upkeep/ui/upkeep_needs.h"

/// The window "Создать базу…": which forum the base is for, where it lies and in which format. After OK the base is
/// on the disk, without messages; nothing is ever overwritten.
class frmNewBase : public QDialog {
  Q_OBJECT
 public:
  /// @param forum  the code of the forum to begin with; empty or unknown = the first
  frmNewBase(const UpkeepNeeds& needs, std::string_view forum, QWidget* parent = nullptr);

  /// The new base, to be opened at once: the file system's own bytes; empty when none was made.
  const std::string& NewBase() const { return new_base_; }

 private:
  void AddControls();
  void AddLayouts();
  void FillForums(std::string_view forum);
  std::string Forum() const;
  std::string TypedPath() const;
  QString Obstacle(const std::string& path) const;
  void ShowHint();
  bool FolderIsThere(const std::string& path);

  void cmbForum_Click();
  void cmdBrowse_Click();
  void cmdOK_Click();

  const UpkeepNeeds needs_;
  std::vector<std::string> forums_;  // all codes; the first is no forum
  std::string new_base_;

  QComboBox* cmbForum_;
  QLineEdit* txtFile_;
  QRadioButton *optOld_, *optNew_;
  QLabel* lblHint_;
  QPushButton *cmdBrowse_, *cmdOK_, *cmdCancel_;
};
