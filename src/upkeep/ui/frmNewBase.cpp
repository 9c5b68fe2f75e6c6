#include "upkeep/ui/frmNewBase.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "base/error.h"
#include "config/forum_list.h"
#include "config/paths.h"
#include "store/new_base.h"
#include "ui/busy.h"
#include "ui/choice_lists.h"
#include "ui/controls.h"
#include "ui/text.h"
#include "upkeep/ui/new_base_name.h"

frmNewBase::frmNewBase(const UpkeepNeeds& needs, std::string_view forum, QWidget* parent)
    : QDialog(parent), needs_(needs) {
  setObjectName(QStringLiteral("frmNewBase"));
  setWindowTitle(QStringLiteral("Создать базу сообщений"));
  AddControls();
  AddLayouts();
  FillForums(forum);
  cmbForum_Click();
  connect(cmbForum_, &QComboBox::currentIndexChanged, this, &frmNewBase::cmbForum_Click);
  connect(txtFile_, &QLineEdit::textChanged, this, &frmNewBase::ShowHint);
  connect(cmdBrowse_, &QPushButton::clicked, this, &frmNewBase::cmdBrowse_Click);
  connect(cmdOK_, &QPushButton::clicked, this, &frmNewBase::cmdOK_Click);
  connect(cmdCancel_, &QPushButton::clicked, this, &frmNewBase::reject);
}

void frmNewBase::AddControls() {
  cmbForum_ = ChoiceList("cmbForum");
  txtFile_ = Named<QLineEdit>("txtFile");
  cmdBrowse_ = Named<QPushButton>("cmdBrowse", QStringLiteral("&Обзор…"));
  cmdBrowse_->setToolTip(QStringLiteral("Выбрать другую папку или имя"));
  optOld_ = Named<QRadioButton>("optOld", QStringLiteral("О&бычный: его читают и прежние программы (до 1 ГБ)"));
  optNew_ = Named<QRadioButton>("optNew", QStringLiteral("&Новый: для больших архивов (до 2 ГБ), прежние программы "
                                                         "его не откроют"));
  optOld_->setChecked(true);
  lblHint_ = HintLabel("lblHint", 2);
  cmdOK_ = Named<QPushButton>("cmdOK", QStringLiteral("&Создать"));
  cmdCancel_ = Named<QPushButton>("cmdCancel", QStringLiteral("Отмена"));
}

void frmNewBase::AddLayouts() {
  auto* file = new QHBoxLayout;
  file->addWidget(txtFile_, 1);
  file->addWidget(cmdBrowse_);
  auto* format = new QVBoxLayout;
  format->addWidget(optOld_);
  format->addWidget(optNew_);

  auto* form = new QFormLayout;
  form->addRow(LabelFor(cmbForum_, "lblForum", QStringLiteral("&Форум:")), cmbForum_);
  form->addRow(LabelFor(txtFile_, "lblFile", QStringLiteral("Ф&айл:")), file);
  form->addRow(QString(), lblHint_);
  form->addRow(Named<QLabel>("lblFormat", QStringLiteral("Формат:")), format);

  auto* buttons = new QDialogButtonBox;
  buttons->addButton(cmdOK_, QDialogButtonBox::AcceptRole);
  buttons->addButton(cmdCancel_, QDialogButtonBox::RejectRole);
  auto* column = new QVBoxLayout(this);
  column->addLayout(form);
  column->addStretch(1);
  column->addWidget(buttons);
  cmdOK_->setDefault(true);
  setMinimumWidth(fontMetrics().averageCharWidth() * 90);
}

/// Forums that are no longer downloaded too: their pages may lie on the disk.
void frmNewBase::FillForums(std::string_view forum) {
  try {
    forums_ = forum_list::ReadForumList(needs_.ini);
  } catch (const Error& error) {
    needs_.dialogs.Tell(this, FromCp1251(error.what()), BoxIcon::kWarning);
  }
  for (std::size_t place = 1; place < forums_.size(); ++place) {
    cmbForum_->addItem(FromCp1251(forum_list::ForumName(needs_.ini, forums_[place])), FromCp1251(forums_[place]));
    if (forums_[place] == forum) cmbForum_->setCurrentIndex(static_cast<int>(place) - 1);
  }
}

std::string frmNewBase::Forum() const { return ToCp1251(cmbForum_->currentData().toString()); }

/// A bare name stands for a file in the forum's folder.
std::string frmNewBase::TypedPath() const {
  const QString typed = txtFile_->text().trimmed();
  if (typed.isEmpty() || Forum().empty()) return {};
  const std::string path = WithBaseExtension(PathFromQString(typed));
  return QFileInfo(typed).isRelative() ? paths::Join(needs_.ini.BaseFolder(Forum()), path) : path;
}

void frmNewBase::cmbForum_Click() {
  const std::string forum = Forum();
  cmdOK_->setEnabled(!forum.empty());
  if (!forum.empty())
    txtFile_->setText(
        QStringFromPath(ProposedBasePath(needs_.files, needs_.ini.BaseFolder(forum), forum, needs_.clock)));
  ShowHint();
}

/// Empty when a base can be made there.
QString frmNewBase::Obstacle(const std::string& path) const {
  if (cmbForum_->count() == 0)
    return QStringLiteral("В файле forum.ini нет ни одного форума: он лежит в папке %1.")
        .arg(QStringFromPath(needs_.ini.ProgramFolder()));
  if (path.empty()) return QStringLiteral("Назовите файл новой базы.");
  return ObstacleToNewBase(needs_.files, forums_, Forum(), path);
}

void frmNewBase::ShowHint() {
  const QString obstacle = Obstacle(TypedPath());
  lblHint_->setText(
      !obstacle.isEmpty()
          ? obstacle
          : QStringLiteral("По началу имени, «%1», программа узнаёт форум базы.").arg(FromCp1251(Forum())));
}

void frmNewBase::cmdBrowse_Click() {
  const std::string start = TypedPath().empty() ? needs_.ini.ProgramFolder() : TypedPath();
  if (const auto path = needs_.dialogs.ChooseNewBase(this, start)) txtFile_->setText(QStringFromPath(*path));
}

/// Makes the folder when the user wants it.
bool frmNewBase::FolderIsThere(const std::string& path) {
  const QString folder = QStringFromPath(paths::FolderOf(path));
  if (QFileInfo(folder).isDir()) return true;
  const QString question = QStringLiteral("Папки %1 ещё нет. Создать её ?").arg(folder);
  if (!needs_.dialogs.AskOkCancel(this, question, BoxIcon::kQuestion, windowTitle())) return false;
  if (QDir().mkpath(folder)) return true;
  needs_.dialogs.Tell(this, QStringLiteral("Не удалось создать папку %1").arg(folder), BoxIcon::kWarning,
                      windowTitle());
  return false;
}

void frmNewBase::cmdOK_Click() {
  const std::string path = TypedPath();
  if (const QString obstacle = Obstacle(path); !obstacle.isEmpty()) {
    needs_.dialogs.Tell(this, obstacle, BoxIcon::kWarning, windowTitle());
    return txtFile_->setFocus();
  }
  if (!FolderIsThere(path)) return;
  const jet::NewBase kind{.version = optNew_->isChecked() ? jet::Version::kJet4 : jet::Version::kJet3};
  try {
    const Hourglass hourglass;
    CreateMessageBase(needs_.files, path, kind, needs_.clock);
  } catch (const Error& error) {
    return needs_.dialogs.Tell(this, FromCp1251(error.what()), BoxIcon::kWarning, windowTitle());
  }
  new_base_ = path;
  accept();
}
