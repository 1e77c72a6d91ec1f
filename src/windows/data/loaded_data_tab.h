// The tab "Loaded Data" of the data window: a row of controls for each dataset, and the way to the
// parameter page.
#pragma once

#include <QWidget>
#include <vector>

#include "windows/session/session.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QMenu;
class QPushButton;
class QToolButton;
class QVBoxLayout;

namespace quorvane {

class PageCheckBox;
class RowKeys;
class ValueBox;

class LoadedDataTab : public QWidget {
  Q_OBJECT
 public:
  LoadedDataTab(Session& session, SessionHost& host, QWidget* parent = nullptr);  // both outlive it

  // Shows what the store holds; a name that is being edited is lost.
  void Rebuild();

  // Shows which datasets were opened for editing.
  void ShowEditStates();

  // Shows which model is chosen.
  void ShowModel();

  // Stores a name that is being edited. False if it was refused: a message was shown.
  bool CommitPending();

  // While a calculation runs nothing can be changed.
  void SetCalculating(bool on);

  QPushButton& SetupButton() { return *cmdSetFit_; }

 signals:
  void Unloading();                 // one or all datasets are about to go
  void DatasetsChanged();           // one was unloaded, renamed or blanked; rows are up to date
  void EditRequested(int dataset);  // position, from 0
  void SetupFitRequested();

 private:
  struct Row {
    QWidget* line;  // holds the others
    QLabel* lblDatasetNum;
    PageCheckBox* chkUseData;
    ValueBox* txtLoadData;
    QPushButton* cmdEditData;
    QToolButton* cmdShowInfo;
    QToolButton* cmdBlankData;
    QToolButton* cmdRemoveData;
  };

  void BuildWidgets();
  QWidget* BuildHead();
  QWidget* BuildFoot();
  void ConnectSignals();
  Row BuildRow(int i);
  void ConnectRow(int i);
  void AddRow();
  void RemoveLastRow();
  void ShowRow(int i);
  void ShowEditState(int i);
  void ShowChoices();  // the boxes "Fit this dataset?" of all rows and of the head

  bool Rename(int i, const QString& text);
  void Edit(int i);
  void ShowInfo(int i);
  void OfferBlanks(int i);
  void Blank(int i, int blank);
  void Unload(int i);
  void UnloadAll();

  Session& session_;
  SessionHost& host_;
  QCheckBox* chkUseAll_;
  QWidget* head_;
  QWidget* content_;
  RowKeys* keys_;
  QVBoxLayout* lines_;  // of the rows, with a stretch behind them
  QWidget* foot_;
  QLabel* lblNoData_;
  QPushButton* cmdRemoveAllData_;
  QComboBox* cmbModel_;
  QPushButton* cmdSetFit_;
  QMenu* mnuBlank_;
  std::vector<Row> rows_;
};

}  // namespace quorvane
