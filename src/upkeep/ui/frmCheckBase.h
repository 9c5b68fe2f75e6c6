#pragma once

#include <string>

#include <QPushButton>

#include "ui/work_dialog.h"
#include "upkeep/ui/upkeep_needs.h"

/// The window "Проверить базу": checks a base as soon as it is shown, and lists what is wrong with it in words. When
/// that is damage, a button saves the messages that can be read into a new base.
/// The base is only read, so it may be the open one, or one that does not open as a message base.
class frmCheckBase : public WorkDialog {
  Q_OBJECT
 public:
  /// @param base  the file system's own bytes
  frmCheckBase(const UpkeepNeeds& needs, const std::string& base, QWidget* parent = nullptr);

 private:
  void cmdRescue_Click();
  QString Obstacle(const std::string& to) const;
  WorkReport Check(Progress& progress);
  WorkReport Rescue(const std::string& to, Progress& progress);

  const UpkeepNeeds needs_;
  const std::string base_;
  QPushButton* cmdRescue_;
};
