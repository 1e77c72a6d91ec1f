// frmImport: delimited texts as scan files, with a look at what was understood.
#pragma once

#include <QWidget>
#include <string>
#include <vector>

#include "scan/text_import.h"
#include "windows/session/session.h"

class QLabel;
class QPushButton;
class QTableWidget;
class QTimer;

namespace quorvane {

class ImportChoicesPane;
class ImportPreview;

class ImportWindow : public QWidget {
  Q_OBJECT
 public:
  explicit ImportWindow(Session& session, QWidget* parent = nullptr);  // outlived by `session`

  // Asks for texts if there are none.
  void Begin();

 signals:
  // Scan files were written; those of `load` are to be loaded.
  void Imported(const QStringList& written, bool load);

 private:
  struct Text {
    std::filesystem::path source;
    std::string bytes;
    QString fault;  // why it could not be read
    TextImport import;
    std::filesystem::path name = {};  // of its scan file
    QString written = {};             // what came of writing it
  };

  void BuildWidgets();
  QWidget* BuildFiles();
  QLayout* BuildFoot();
  void ConnectSignals();
  void AddTexts();
  void Take(const QStringList& paths);
  void RemoveTexts();
  void ChooseFolder();
  void Understand();
  void ShowFiles();
  void ShowText();
  QString StateOf(const Text& text) const;
  const Text* Current() const;
  bool MayReplace(const std::vector<Text*>& ready);
  void Import(bool load);

  Session& session_;
  std::vector<Text> texts_;
  std::filesystem::path folder_;  // that the scan files go to
  QTimer* timer_;                 // until the choices stand still
  QTableWidget* gridFiles_;
  QPushButton* cmdAdd_;
  QPushButton* cmdRemove_;
  ImportChoicesPane* choices_;
  ImportPreview* preview_;
  QLabel* lblFolder_;
  QPushButton* cmdFolder_;
  QPushButton* cmdImport_;
  QPushButton* cmdImportLoad_;
};

}  // namespace quorvane
