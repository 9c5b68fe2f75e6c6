#pragma once

#include <string>

#include <QDialog>

#include "base/file.h"

/// The about box: the program's version, what it is built with, and the text of readme.txt.
class frmAbout : public QDialog {
  Q_OBJECT
 public:
  /// @param files   read from by the constructor alone
  /// @param readme  path of readme.txt, whose text is Windows-1251; empty when there is none
  frmAbout(FileSystem& files, const std::string& readme, QWidget* parent = nullptr);

 private:
  QWidget* Head();
};
