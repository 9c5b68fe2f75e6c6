#include "config/ui/frmProperties.h"

#include <utility>

#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "base/error.h"
#include "config/settings_checks.h"
#include "ui/choice_lists.h"
#include "ui/text.h"

namespace {

std::string Switch(const QCheckBox* box) { return box->isChecked() ? "1" : "0"; }

void SetSwitch(QCheckBox* box, const std::string& text) { box->setChecked(user_settings::SwitchFromText(text)); }

}  // namespace

frmProperties::frmProperties(PropertiesNeeds needs, QWidget* parent) : QDialog(parent), needs_(std::move(needs)) {
  setObjectName(QStringLiteral("frmProperties"));
  setWindowTitle(QStringLiteral("Настройки"));
  AddControls();
  AddLayouts();
  LoadSettings();
  ConnectControls();
  ShowHint();
}

void frmProperties::AddControls() {
  cmbDays_ = FreeChoiceList("cmbDays");
  cmbFormat_ = FreeChoiceList("cmbFormat");
  cmbHighLight_ = FreeChoiceList("cmbHighLight");
  cmbTextSize_ = FreeChoiceList("cmbTextSize");
  AddEntries(cmbDays_, user_settings::kLoadDays);
  AddEntries(cmbFormat_, user_settings::kMessageFormats);
  AddEntries(cmbHighLight_, user_settings::kHighlightDays);
  AddEntries(cmbTextSize_, user_settings::kTextSizes);
  cmbFormat_->lineEdit()->setPlaceholderText(QStringLiteral("Тема"));  // what no choice means
  cmbTextSize_->lineEdit()->setPlaceholderText(QStringLiteral("как в системе"));
  chkThread_ = Named<QCheckBox>("chkThread", QStringLiteral("по &цепочке"));
  chkDate_ = Named<QCheckBox>("chkDate", QStringLiteral("по д&ате"));
  chkAuthor_ = Named<QCheckBox>("chkAuthor", QStringLiteral("по а&втору"));
  optAll_ = Named<QRadioButton>("optAll", QStringLiteral("в&се"));
  optNew_ = Named<QRadioButton>("optNew", QStringLiteral("с &новыми сообщениями"));
  optNo_ = Named<QRadioButton>("optNo", QStringLiteral("никаки&е"));
  txtDefaultBase_ = Named<QLineEdit>("txtDefaultBase");
  cmdChoose_ = Named<QPushButton>("cmdChoose", QStringLiteral("&Обзор…"));
  cmdChoose_->setToolTip(QStringLiteral("Найти файл базы на диске"));
  chkAutoLoad_ = Named<QCheckBox>("chkAutoLoad", QStringLiteral("&Загружать автоматически при запуске программы"));
  lblHint_ = HintLabel("lblHint", 2);
  cmdReset_ = Named<QPushButton>("cmdReset", QStringLiteral("По &умолчанию"));
  cmdReset_->setToolTip(QStringLiteral("Вернуть в списки первоначальные значения"));
  cmdOK_ = Named<QPushButton>("cmdOK", QStringLiteral("OK"));
  cmdCancel_ = Named<QPushButton>("cmdCancel", QStringLiteral("Отмена"));
}

QWidget* frmProperties::TreeGroup() {
  auto* views = new QHBoxLayout;
  for (QCheckBox* box : {chkThread_, chkDate_, chkAuthor_}) {
    views->addWidget(box);
    box->setAccessibleName(QStringLiteral("Строить дерево ") + box->text().remove(QLatin1Char('&')));
  }
  views->addStretch(1);
  auto* group = new QGroupBox(QStringLiteral("Дерево сообщений"));
  auto* form = new QFormLayout(group);
  form->addRow(LabelFor(cmbDays_, "lblDays", QStringLiteral("Загружать &дней:")), cmbDays_);
  form->addRow(LabelFor(cmbFormat_, "lblFormat", QStringLiteral("&Подписи сообщений:")), cmbFormat_);
  form->addRow(LabelFor(cmbHighLight_, "lblHighLight", QStringLiteral("Дней с&читать новыми:")), cmbHighLight_);
  form->addRow(QStringLiteral("Строить дерево:"), views);
  form->addRow(QStringLiteral("Раскрывать цепочки:"), ThreadsGroup());
  return group;
}

QWidget* frmProperties::MessageGroup() {
  auto* group = new QGroupBox(QStringLiteral("Сообщение"));
  auto* form = new QFormLayout(group);
  form->addRow(LabelFor(cmbTextSize_, "lblTextSize", QStringLiteral("Размер &текста, пунктов:")), cmbTextSize_);
  return group;
}

/// In a widget of their own, where option buttons exclude each other.
QWidget* frmProperties::ThreadsGroup() {
  auto* group = new QWidget;
  auto* row = new QHBoxLayout(group);
  row->setContentsMargins(0, 0, 0, 0);
  for (QRadioButton* option : {optAll_, optNew_, optNo_}) {
    row->addWidget(option);
    option->setAccessibleName(QStringLiteral("Раскрывать цепочки: ") + option->text().remove(QLatin1Char('&')));
  }
  row->addStretch(1);
  return group;
}

QWidget* frmProperties::BaseGroup() {
  auto* file = new QHBoxLayout;
  file->addWidget(txtDefaultBase_, 1);
  file->addWidget(cmdChoose_);
  auto* group = new QGroupBox(QStringLiteral("База по умолчанию"));
  auto* form = new QFormLayout(group);
  form->addRow(LabelFor(txtDefaultBase_, "lblDefaultBase", QStringLiteral("&Файл:")), file);
  form->addRow(QString(), chkAutoLoad_);
  return group;
}

void frmProperties::AddLayouts() {
  auto* buttons = new QDialogButtonBox;
  buttons->addButton(cmdReset_, QDialogButtonBox::ResetRole);
  buttons->addButton(cmdOK_, QDialogButtonBox::AcceptRole);
  buttons->addButton(cmdCancel_, QDialogButtonBox::RejectRole);
  auto* column = new QVBoxLayout(this);
  column->addWidget(TreeGroup());
  column->addWidget(MessageGroup());
  column->addWidget(BaseGroup());
  column->addWidget(lblHint_);
  column->addStretch(1);
  column->addWidget(buttons);
  cmdOK_->setDefault(true);  // a button becomes the default one of the dialog that it stands in
  setMinimumWidth(fontMetrics().averageCharWidth() * 90);
}

void frmProperties::ConnectControls() {
  for (QCheckBox* box : {chkThread_, chkDate_, chkAuthor_})
    connect(box, &QCheckBox::toggled, this, &frmProperties::ShowHint);
  connect(cmdChoose_, &QPushButton::clicked, this, &frmProperties::cmdChoose_Click);
  connect(cmdReset_, &QPushButton::clicked, this, &frmProperties::cmdReset_Click);
  connect(cmdOK_, &QPushButton::clicked, this, &frmProperties::cmdOK_Click);
  connect(cmdCancel_, &QPushButton::clicked, this, &frmProperties::reject);
}

void frmProperties::LoadSettings() {
  const user_settings::SettingTexts stored = user_settings::LoadSettings(needs_.settings);
  cmbTextSize_->setCurrentText(FromCp1251(stored.TextFontSize));
  cmbDays_->setCurrentText(FromCp1251(stored.LoadDays));
  cmbFormat_->setCurrentText(FromCp1251(stored.MessageFormat));
  cmbHighLight_->setCurrentText(FromCp1251(stored.HighlightMessagesByDays));
  SetSwitch(chkThread_, stored.BuildTreeByThread);
  SetSwitch(chkDate_, stored.BuildTreeByDate);
  SetSwitch(chkAuthor_, stored.BuildTreeByAuthor);
  SetSwitch(chkAutoLoad_, stored.DefaultBaseAutoLoad);
  txtDefaultBase_->setText(QStringFromPath(stored.DefaultBase));
  optAll_->setChecked(stored.OpenThreads == "All");
  optNew_->setChecked(stored.OpenThreads == "New");
  optNo_->setChecked(stored.OpenThreads == "No");
}

user_settings::SettingTexts frmProperties::Chosen() const {
  user_settings::SettingTexts chosen;
  chosen.TextFontSize = ToCp1251(cmbTextSize_->currentText());
  chosen.MessageFormat = ToCp1251(cmbFormat_->currentText());
  chosen.HighlightMessagesByDays = ToCp1251(cmbHighLight_->currentText());
  chosen.LoadDays = ToCp1251(cmbDays_->currentText());
  chosen.BuildTreeByThread = Switch(chkThread_);
  chosen.BuildTreeByDate = Switch(chkDate_);
  chosen.BuildTreeByAuthor = Switch(chkAuthor_);
  chosen.DefaultBase = PathFromQString(txtDefaultBase_->text());
  chosen.DefaultBaseAutoLoad = Switch(chkAutoLoad_);
  chosen.OpenThreads = optAll_->isChecked() ? "All" : optNew_->isChecked() ? "New" : optNo_->isChecked() ? "No" : "";
  return chosen;
}

double frmProperties::TextSize() const {
  return user_settings::TextSizeFromText(ToCp1251(cmbTextSize_->currentText()));
}

/// What a choice will lead to that the user may not expect.
void frmProperties::ShowHint() {
  const bool empty_tree = !chkThread_->isChecked() && !chkDate_->isChecked() && !chkAuthor_->isChecked();
  lblHint_->setText(empty_tree
                        ? QStringLiteral("Ни один вид дерева не отмечен: дерево сообщений останется пустым.")
                        : QStringLiteral("Размер текста меняется сразу, остальное — когда дерево будет построено "
                                         "заново (F5)."));
}

void frmProperties::cmdChoose_Click() {
  const std::string now = PathFromQString(txtDefaultBase_->text());
  const std::optional<std::string> path = needs_.dialogs.ChooseBase(this, now.empty() ? needs_.base_folder : now);
  if (!path) return;
  const QString shown = QStringFromPath(*path);
  if (!QFileInfo(shown).isFile()) return needs_.dialogs.Tell(this, QStringLiteral("Такого файла не существует !"));
  txtDefaultBase_->setText(shown);
}

void frmProperties::cmdReset_Click() {
  cmbFormat_->setCurrentIndex(0);
  cmbTextSize_->setCurrentIndex(1);
  cmbHighLight_->setCurrentText(QStringLiteral("2"));
  cmbDays_->setCurrentText(QStringLiteral("30"));
}

void frmProperties::Refuse(QComboBox* list) {
  needs_.dialogs.Tell(this, FromCp1251(settings_checks::kBadDays));
  list->setFocus();
  list->lineEdit()->selectAll();
}

void frmProperties::cmdOK_Click() {
  if (!settings_checks::HighlightDaysAreValid(ToCp1251(cmbHighLight_->currentText()))) return Refuse(cmbHighLight_);
  if (!settings_checks::LoadDaysAreValid(ToCp1251(cmbDays_->currentText()))) return Refuse(cmbDays_);
  SaveSettings();
  accept();
}

void frmProperties::SaveSettings() {
  try {
    user_settings::SaveSettings(needs_.settings, Chosen());
  } catch (const Error& error) {
    needs_.dialogs.Tell(this, FromCp1251(error.what()));  // the choice still holds until the program ends
  }
}
