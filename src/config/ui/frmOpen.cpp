#include "config/ui/frmOpen.h"

#include <utility>

#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "base/error.h"
#include "config/base_list.h"
#include "config/forum_list.h"
#include "config/paths.h"
#include "config/settings_checks.h"
#include "config/user_settings.h"
#include "ui/choice_lists.h"
#include "ui/text.h"

namespace {

const QString kNotChosen = QStringLiteral("не выбран");
const QString kProgramFolderEntry = QStringLiteral("  ");

/// Selects an entry; a text of the user's own becomes one.
void SelectEntry(QComboBox* list, const QString& text) {
  if (text.isEmpty()) return list->setCurrentIndex(0);
  if (list->findText(text) < 0) list->addItem(text);
  list->setCurrentIndex(list->findText(text));
}

bool IsFile(const std::string& path) { return QFileInfo(QStringFromPath(path)).isFile(); }

}  // namespace

frmOpen::frmOpen(const mdl_AZ::ForumIni& ini, const mdl_AZ::ForumLog& log, SettingsStore& settings, Dialogs& dialogs,
                 QWidget* parent)
    : QDialog(parent), ini_(ini), log_(log), settings_(settings), dialogs_(dialogs), folder_(ini.ProgramFolder()) {
  setObjectName(QStringLiteral("frmOpen"));
  setWindowTitle(QStringLiteral("Открыть базу сообщений"));
  AddControls();
  AddLayouts();
  Form_Load();
  connect(cmbSpec_, &QComboBox::currentIndexChanged, this, &frmOpen::cmbSpec_Click);
  connect(cmbBase_, &QComboBox::currentIndexChanged, this, &frmOpen::cmbBase_Click);
  connect(cmdBrowse_, &QPushButton::clicked, this, &frmOpen::cmdBrowse_Click);
  connect(cmdOK_, &QPushButton::clicked, this, &frmOpen::cmdOK_Click);
  connect(cmdCancel_, &QPushButton::clicked, this, &frmOpen::reject);
}

void frmOpen::AddControls() {
  cmbSpec_ = ChoiceList("cmbSpec");
  cmbBase_ = ChoiceList("cmbBase");
  cmbBase_->setPlaceholderText(QStringLiteral("База не выбрана"));
  txtBase_ = Named<QLineEdit>("txtBase");
  txtBase_->setReadOnly(true);
  cmdBrowse_ = Named<QPushButton>("cmdBrowse", QStringLiteral("&Обзор…"));
  cmdBrowse_->setToolTip(QStringLiteral("Найти файл базы на диске"));
  lblHint_ = HintLabel("lblHint", 3);
  cmbDays_ = FreeChoiceList("cmbDays");
  cmbFormat_ = ChoiceList("cmbFormat");
  cmdNew_ = Named<QPushButton>("cmdNew", QStringLiteral("&Создать базу…"));
  cmdNew_->hide();
  cmdOK_ = Named<QPushButton>("cmdOK", QStringLiteral("OK"));
  cmdCancel_ = Named<QPushButton>("cmdCancel", QStringLiteral("Отмена"));
}

void frmOpen::AddLayouts() {
  auto* file = new QHBoxLayout;
  file->addWidget(txtBase_, 1);
  file->addWidget(cmdBrowse_);

  auto* form = new QFormLayout;
  form->addRow(LabelFor(cmbSpec_, "lblSpec", QStringLiteral("&Форум:")), cmbSpec_);
  form->addRow(LabelFor(cmbBase_, "lblBase", QStringLiteral("&База:")), cmbBase_);
  form->addRow(LabelFor(txtBase_, "lblFile", QStringLiteral("Ф&айл:")), file);
  form->addRow(QString(), lblHint_);
  form->addRow(LabelFor(cmbDays_, "lblDays", QStringLiteral("Загрузить &дней:")), cmbDays_);
  form->addRow(LabelFor(cmbFormat_, "lblFormat", QStringLiteral("&Подписи сообщений:")), cmbFormat_);

  auto* buttons = new QDialogButtonBox;
  buttons->addButton(cmdNew_, QDialogButtonBox::ResetRole);
  buttons->addButton(cmdOK_, QDialogButtonBox::AcceptRole);
  buttons->addButton(cmdCancel_, QDialogButtonBox::RejectRole);

  auto* column = new QVBoxLayout(this);
  column->addLayout(form);
  column->addStretch(1);
  column->addWidget(buttons);
  cmdOK_->setDefault(true);  // a button becomes the default one of the dialog that it stands in
  setMinimumWidth(fontMetrics().averageCharWidth() * 90);
}

void frmOpen::Form_Load() {
  AddEntries(cmbDays_, user_settings::kLoadDays);
  AddEntries(cmbFormat_, user_settings::kMessageFormats);
  FillForums();
  const user_settings::SettingTexts stored = user_settings::SettingsForOpening(settings_);
  cmbDays_->setCurrentText(FromCp1251(stored.LoadDays));
  SelectEntry(cmbFormat_, FromCp1251(stored.MessageFormat));
  ListBases();  // shown, none selected: which base is opened is the settings' or the user's choice
  SetBase(paths::Resolve(stored.DefaultBase));
  if (!base_.empty()) return cmdOK_->setFocus();
  (cmbBase_->count() > 0 ? static_cast<QWidget*>(cmbBase_) : cmdBrowse_)->setFocus();
}

void frmOpen::StartWithDays(const std::string& open_base) {
  if (!open_base.empty()) SetBase(open_base);
  FocusDays();
}

void frmOpen::FocusDays() {
  cmbDays_->setFocus();
  cmbDays_->lineEdit()->selectAll();
}

void frmOpen::FillForums() {
  cmbSpec_->addItem(kProgramFolderEntry, QString());
  cmbSpec_->setItemData(0, QStringLiteral("Базы из папки программы"), Qt::ToolTipRole);
  try {
    for (const std::string& forum : forum_list::ForumsInUse(ini_))
      cmbSpec_->addItem(FromCp1251(forum_list::ForumName(ini_, forum)), FromCp1251(forum));
  } catch (const Error& error) {
    trouble_ = FromCp1251(error.what());
  }
}

/// Lists the bases of the chosen forum's folder and selects none.
void frmOpen::ListBases() {
  const QSignalBlocker quiet(cmbBase_);
  cmbBase_->clear();
  try {
    const std::string forum = ToCp1251(cmbSpec_->currentData().toString());
    folder_ = forum.empty() ? ini_.ProgramFolder() : ini_.BaseFolder(forum);
    for (const base_list::Base& base : base_list::ListBases(ini_, log_, folder_, forum))
      cmbBase_->addItem(FromCp1251(base.text), QStringFromPath(base.path));
  } catch (const Error& error) {
    trouble_ = FromCp1251(error.what());
  }
  cmbBase_->setCurrentIndex(-1);
}

/// Lets the list show the chosen base, if it is one of its entries.
void frmOpen::SelectListedBase() {
  const QSignalBlocker quiet(cmbBase_);
  cmbBase_->setCurrentIndex(base_.empty() ? -1 : cmbBase_->findData(QStringFromPath(base_)));
}

void frmOpen::SetBase(const std::string& path) {
  base_ = path;
  const QString shown = QStringFromPath(path);
  txtBase_->setText(path.empty() ? kNotChosen : shown);
  txtBase_->setToolTip(shown);
  cmbBase_->setToolTip(shown);
  SelectListedBase();
  ShowHint();
}

/// What a user who is stuck may do next; nothing when all is well.
void frmOpen::ShowHint() {
  QString hint;
  if (!trouble_.isEmpty())
    hint = QStringLiteral("Список форумов в файле forum.ini прочитать не удалось: %1.").arg(trouble_);
  else if (base_.empty() && cmbBase_->count() == 0)
    hint = NoBasesHint();
  else if (base_.empty())
    hint = QStringLiteral("Выберите базу из списка или нажмите «Обзор…» и укажите её файл (*.mdb) на диске.");
  else if (!IsFile(base_))
    hint = QStringLiteral("Этого файла сейчас нет на диске. Выберите другую базу или нажмите «Обзор…».");
  lblHint_->setText(hint);
}

QString frmOpen::NoBasesHint() const {
  return QStringLiteral(
             "В папке %1 баз известных форумов нет. Нажмите «Обзор…» и укажите файл базы (*.mdb) на диске или создайте "
             "новую.")
      .arg(QStringFromPath(folder_));
}

void frmOpen::cmbSpec_Click() {
  ListBases();
  if (cmbBase_->count() > 0) return cmbBase_->setCurrentIndex(0);
  if (trouble_.isEmpty()) lblHint_->setText(NoBasesHint());  // the base chosen before stays chosen
}

void frmOpen::cmbBase_Click() {
  if (cmbBase_->currentIndex() >= 0) SetBase(PathFromQString(cmbBase_->currentData().toString()));
}

void frmOpen::cmdBrowse_Click() {
  const std::optional<std::string> path = dialogs_.ChooseBase(this, base_.empty() ? folder_ : base_);
  if (!path) return;
  if (!IsFile(*path)) return dialogs_.Tell(this, QStringLiteral("Такого файла не существует !"));
  SetBase(*path);
  cmdOK_->setFocus();
}

void frmOpen::cmdOK_Click() {
  if (base_.empty()) return dialogs_.Tell(this, QStringLiteral("Выберите базу сообщений (mdb файл) для загрузки !"));
  if (!settings_checks::LoadDaysAreValid(ToCp1251(cmbDays_->currentText()))) {
    dialogs_.Tell(this, FromCp1251(settings_checks::kBadDays));
    return FocusDays();
  }
  StoreChoice();
  accept();
}

void frmOpen::OfferNewBase(NewBaseMaker make) {
  make_new_base_ = std::move(make);
  connect(cmdNew_, &QPushButton::clicked, this, &frmOpen::cmdNew_Click);
  cmdNew_->show();
}

void frmOpen::cmdNew_Click() {
  const auto base = make_new_base_(ToCp1251(cmbSpec_->currentData().toString()), this);
  if (!base) return;
  ListBases();
  SetBase(*base);
  cmdOK_Click();
}

void frmOpen::StoreChoice() {
  try {
    user_settings::SaveOpeningChoice(settings_, ToCp1251(cmbDays_->currentText()), ToCp1251(cmbFormat_->currentText()));
  } catch (const Error& error) {
    dialogs_.Tell(this, FromCp1251(error.what()));  // the choice still holds until the program ends
  }
}
