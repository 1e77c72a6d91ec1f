// The user guide in a window of its own, with search.
#pragma once

#include <QWidget>
#include <filesystem>

class QLabel;
class QLineEdit;
class QTextBrowser;

namespace quorvane {

class HelpWindow : public QWidget {
  Q_OBJECT
 public:
  explicit HelpWindow(QWidget* parent = nullptr);

  // Shows the guide, a Markdown file. False if it cannot be read.
  bool ShowGuide(const std::filesystem::path& file);

  // Puts the caret into the search field.
  void BeginSearch();

 private:
  void Find(bool backward);

  QTextBrowser* text_;
  QLineEdit* search_;
  QLabel* found_;
};

}  // namespace quorvane
