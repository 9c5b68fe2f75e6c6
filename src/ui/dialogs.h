#pragma once

#include <optional>
#include <string>
#include <vector>

#include <QString>

class QWidget;

/// The program's name, and the title of every box that has none of its own.
inline QString ProgramName() { return QStringLiteral("Quorvex"); }

enum class BoxIcon { kNone, kQuestion, kWarning, kError };

/// The small questions and answers that hold up a command until the user has dealt with them. Windows
/// put them through this interface, so that tests can answer. Texts are plain, CR LF breaks the line;
/// `parent` is the window that asks.
class Dialogs {
 public:
  virtual ~Dialogs() = default;
  /// One button, OK.
  virtual void Tell(QWidget* parent, const QString& text, BoxIcon icon = BoxIcon::kNone,
                    const QString& title = ProgramName()) = 0;
  /// OK or Cancel; OK is the default button, closing the box is Cancel.
  virtual bool AskOkCancel(QWidget* parent, const QString& text, BoxIcon icon = BoxIcon::kQuestion,
                           const QString& title = ProgramName()) = 0;
  /// One line of text, empty at first; Cancel gives "" as well.
  virtual QString AskLine(QWidget* parent, const QString& prompt, const QString& title = ProgramName()) = 0;
  /// The path of a message base picked on the disk, as the file system's own bytes; it need not
  /// exist. None when the user cancels.
  /// @param start  the folder or file shown first
  virtual std::optional<std::string> ChooseBase(QWidget* parent, const std::string& start) = 0;
  /// The same for a base that is to be made. A file that exists can be named; nobody is asked about it.
  virtual std::optional<std::string> ChooseNewBase(QWidget* parent, const std::string& start) = 0;
  /// @param start  the folder shown first
  virtual std::optional<std::string> ChooseFolder(QWidget* parent, const QString& title, const std::string& start) = 0;
  /// Files that hold saved pages; none when the user cancels.
  virtual std::vector<std::string> ChoosePages(QWidget* parent, const std::string& start) = 0;
};

/// Dialogs as boxes on the screen.
class QtDialogs : public Dialogs {
 public:
  void Tell(QWidget* parent, const QString& text, BoxIcon icon, const QString& title) override;
  bool AskOkCancel(QWidget* parent, const QString& text, BoxIcon icon, const QString& title) override;
  QString AskLine(QWidget* parent, const QString& prompt, const QString& title) override;
  std::optional<std::string> ChooseBase(QWidget* parent, const std::string& start) override;
  std::optional<std::string> ChooseNewBase(QWidget* parent, const std::string& start) override;
  std::optional<std::string> ChooseFolder(QWidget* parent, const QString& title, const std::string& start) override;
  std::vector<std::string> ChoosePages(QWidget* parent, const std::string& start) override;
};
