#include "upkeep/ui/frmImportPages.h"

#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "base/error.h"
#include "config/forum_list.h"
#include "config/paths.h"
#include "saved_pages/forum_pages.h"
#include "saved_pages/import_saved_pages.h"
#include "store/base_recordset.h"
#include "ui/controls.h"
#include "ui/text.h"

namespace {

const QString kAbout = QStringLiteral(
    "Страницы форума, сохранённые на диске, станут сообщениями базы %1. Номер сообщения берётся из имени файла: "
    "1234.html, msg_1234.htm, read.asp_id=1234.html. Что уже есть в базе, остаётся как было, поэтому импорт можно "
    "остановить и повторить.");

class TroubleLines : public page_files::Trouble {
 public:
  void Tell(const std::string& path, std::string_view why) override {
    lines.append(QStringLiteral("%1: %2").arg(QStringFromPath(path), FromCp1251(why)));
  }
  QStringList lines;
};

QString FileName(const std::string& path) { return QFileInfo(QStringFromPath(path)).fileName(); }

}  // namespace

frmImportPages::frmImportPages(const UpkeepNeeds& needs, MessageBase& base, QWidget* parent)
    : WorkDialog(QStringLiteral("Импорт сохранённых страниц"), parent), needs_(needs), base_(base) {
  setObjectName(QStringLiteral("frmImportPages"));
  SetTop(NewTop());
  cmdImport_ = Named<QPushButton>("cmdImport", QStringLiteral("&Импортировать"));
  AddButton(cmdImport_);
  FillForums();
  ShowSource();
  connect(cmdFolder_, &QPushButton::clicked, this, &frmImportPages::cmdFolder_Click);
  connect(cmdFiles_, &QPushButton::clicked, this, &frmImportPages::cmdFiles_Click);
  connect(cmdImport_, &QPushButton::clicked, this, &frmImportPages::cmdImport_Click);
  cmdFolder_->setFocus();
}

QWidget* frmImportPages::NewTop() {
  auto* about = Named<QLabel>("lblAbout", kAbout.arg(FileName(base_.path())));
  about->setTextFormat(Qt::PlainText);
  about->setWordWrap(true);
  cmbForum_ = Named<QComboBox>("cmbForum");
  cmbForum_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  txtSource_ = Named<QLineEdit>("txtSource");
  txtSource_->setReadOnly(true);
  txtSource_->setPlaceholderText(QStringLiteral("Выберите папку или файлы"));
  cmdFolder_ = Named<QPushButton>("cmdFolder", QStringLiteral("&Папка…"));
  cmdFolder_->setToolTip(QStringLiteral("Взять все страницы папки и тех, что в ней"));
  cmdFiles_ = Named<QPushButton>("cmdFiles", QStringLiteral("&Файлы…"));
  cmdFiles_->setToolTip(QStringLiteral("Взять отдельные файлы"));
  for (QPushButton* button : {cmdFolder_, cmdFiles_}) button->setAutoDefault(false);

  auto* source = new QHBoxLayout;
  source->addWidget(txtSource_, 1);
  source->addWidget(cmdFolder_);
  source->addWidget(cmdFiles_);
  auto* form = new QFormLayout;
  form->addRow(LabelFor(cmbForum_, "lblForum", QStringLiteral("Фору&м:")), cmbForum_);
  form->addRow(LabelFor(txtSource_, "lblSource", QStringLiteral("&Страницы:")), source);
  auto* top = new QWidget;
  auto* column = new QVBoxLayout(top);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(about);
  column->addLayout(form);
  return top;
}

/// The base's own forum alone, where its name tells it.
void frmImportPages::FillForums() {
  const auto add = [this](const std::string& forum) {
    if (ForumPages::Knows(forum))
      cmbForum_->addItem(FromCp1251(forum_list::ForumName(needs_.ini, forum)), FromCp1251(forum));
  };
  try {
    if (!base_.forum_kind().empty()) return add(base_.forum_kind());
    for (const std::string& forum : forum_list::ReadForumList(needs_.ini)) add(forum);
    cmbForum_->setCurrentIndex(-1);
    cmbForum_->setPlaceholderText(QStringLiteral("Выберите форум"));
  } catch (const Error& error) {
    ShowStatus(FromCp1251(error.what()));
  }
}

void frmImportPages::ShowSource() {
  QString shown = source_.empty() ? QString() : QStringFromPath(source_.front());
  if (source_.size() > 1) shown = QStringLiteral("Файлов: %1 — %2").arg(source_.size()).arg(QFileInfo(shown).path());
  txtSource_->setText(shown);
  txtSource_->setToolTip(shown);
  cmdImport_->setEnabled(!source_.empty());
}

void frmImportPages::cmdFolder_Click() {
  const auto folder = needs_.dialogs.ChooseFolder(this, QStringLiteral("Папка со страницами форума"),
                                                  std::string(paths::FolderOf(base_.path())));
  if (!folder) return;
  source_ = {*folder};
  ShowSource();
  cmdImport_->setFocus();
}

void frmImportPages::cmdFiles_Click() {
  std::vector<std::string> files = needs_.dialogs.ChoosePages(this, std::string(paths::FolderOf(base_.path())));
  if (files.empty()) return;
  source_ = std::move(files);
  ShowSource();
  cmdImport_->setFocus();
}

void frmImportPages::cmdImport_Click() {
  const std::string forum = ToCp1251(cmbForum_->currentData().toString());
  if (forum.empty()) {
    needs_.dialogs.Tell(this, QStringLiteral("Выберите форум, с которого сохранены страницы !"));
    return cmbForum_->setFocus();
  }
  Run(QStringLiteral("Читаю страницы…"), [&](Progress& progress) { return Import(forum, progress); });
  if (isVisible()) cmdImport_->setFocus();
}

WorkReport frmImportPages::Import(const std::string& forum, Progress& progress) {
  TroubleLines trouble;
  progress.Advance(0);  // the window shows what it is doing before the folders are walked
  const std::vector<std::string> pages = page_files::Find(source_, trouble);
  if (pages.empty()) return {QStringLiteral("Страниц форума (*.html, *.shtml, *.asp) здесь нет."), trouble.lines};
  BaseRecordset records(base_);
  const ImportTotals totals = ImportSavedPages({needs_.files, records, needs_.clock, progress, trouble}, forum, pages);
  imported_ += totals.imported;
  return {FromCp1251(ImportSummary(totals)), trouble.lines};
}
