#pragma once

#include "jet/compact.h"
#include "store/message_base.h"
#include "ui/work_dialog.h"
#include "upkeep/ui/upkeep_needs.h"

/// The window that compacts the open base as soon as it is shown. The compacted file takes the place of the base,
/// which is opened anew: its messages and their numbers stay, what was read from its connection before does not.
class frmCompactBase : public WorkDialog {
  Q_OBJECT
 public:
  /// @param base  open; outlives the window
  frmCompactBase(const UpkeepNeeds& needs, MessageBase& base, QWidget* parent = nullptr);

  bool IsCompacted() const { return compacted_; }

 private:
  WorkReport Compact(FileSystem& files, MessageBase& base, Progress& progress);

  bool compacted_ = false;
};

/// The command "Сжать базу": asks, compacts and reports. Without an open base it does nothing. The tree need not be
/// built anew.
/// @return whether the base was compacted
bool CompactBase(const UpkeepNeeds& needs, MessageBase& base, QWidget* parent = nullptr);
