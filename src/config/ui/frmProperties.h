#pragma once

#include <string>

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include "config/settings_store.h"
#include "config/user_settings.h"
#include "ui/controls.h"

/// What the properties dialog works with; the references outlive it.
struct PropertiesNeeds {
  SettingsStore& settings;
  Dialogs& dialogs;
  std::string base_folder;  // where the choice of a default base begins while there is none
};

/// The properties dialog: the user's settings. OK checks and stores them; the next building of the tree reads
/// them there. The text size alone counts at once: the caller applies TextSize() when exec() says Accepted.
class frmProperties : public QDialog {
  Q_OBJECT
 public:
  explicit frmProperties(PropertiesNeeds needs, QWidget* parent = nullptr);

  /// The size of the message text in points; 0 = it stays as it is.
  double TextSize() const;

 private:
  void AddControls();
  QWidget* TreeGroup();
  QWidget* MessageGroup();
  QWidget* ThreadsGroup();
  QWidget* BaseGroup();
  void AddLayouts();
  void ConnectControls();
  void LoadSettings();
  user_settings::SettingTexts Chosen() const;
  void SaveSettings();
  void ShowHint();
  void Refuse(QComboBox* list);

  void cmdChoose_Click();
  void cmdReset_Click();
  void cmdOK_Click();

  const PropertiesNeeds needs_;
  QComboBox *cmbTextSize_, *cmbDays_, *cmbFormat_, *cmbHighLight_;
  QCheckBox *chkThread_, *chkDate_, *chkAuthor_, *chkAutoLoad_;
  QRadioButton *optAll_, *optNew_, *optNo_;
  QLineEdit* txtDefaultBase_;
  QLabel* lblHint_;
  QPushButton *cmdChoose_, *cmdReset_, *cmdOK_, *cmdCancel_;
};
