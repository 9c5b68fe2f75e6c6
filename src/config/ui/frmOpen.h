#pragma once

#include <functional>
#include <optional>
#include <string>

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "config/mdl_AZ.h"
#include "config/settings_store.h"
#include "ui/controls.h"

/// The open-base dialog: which base to open, how far back and how its messages are captioned.
class frmOpen : public QDialog {
  Q_OBJECT
 public:
  /// All references outlive the dialog. The dialog shows the stored settings; OK stores the chosen
  /// days and captions there, where the next tree building finds them.
  frmOpen(const mdl_AZ::ForumIni& ini, const mdl_AZ::ForumLog& log, SettingsStore& settings, Dialogs& dialogs,
          QWidget* parent = nullptr);

  /// Begins with the number of days, for a user who wants to see more of a base.
  /// @param open_base  the base on show, offered instead of the default one; empty = none
  void StartWithDays(const std::string& open_base);

  /// Makes a base and returns its path, none when the user thinks better of it.
  /// @param forum   the code of the forum that the dialog shows; may be empty
  /// @param parent  the dialog
  using NewBaseMaker = std::function<std::optional<std::string>(const std::string& forum, QWidget* parent)>;
  /// Shows the button "Создать базу…". A base that it makes is opened at once, like one chosen with OK.
  void OfferNewBase(NewBaseMaker make);

  /// The chosen file, the file system's own bytes; empty while none is chosen.
  const std::string& ChosenBase() const { return base_; }

 private:
  void AddControls();
  void AddLayouts();
  void Form_Load();
  void FillForums();
  void ListBases();
  void SelectListedBase();
  void SetBase(const std::string& path);
  void FocusDays();
  void ShowHint();
  QString NoBasesHint() const;

  void cmbSpec_Click();
  void cmbBase_Click();
  void cmdBrowse_Click();
  void cmdOK_Click();
  void cmdNew_Click();
  void StoreChoice();

  const mdl_AZ::ForumIni& ini_;
  const mdl_AZ::ForumLog& log_;
  SettingsStore& settings_;
  Dialogs& dialogs_;
  std::string base_;
  std::string folder_;  // whose bases are listed
  QString trouble_;     // why there is nothing to list
  NewBaseMaker make_new_base_;

  QComboBox *cmbSpec_, *cmbBase_, *cmbDays_, *cmbFormat_;
  QLineEdit* txtBase_;
  QLabel* lblHint_;
  QPushButton *cmdBrowse_, *cmdNew_, *cmdOK_, *cmdCancel_;
};
