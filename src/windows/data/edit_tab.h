// The tab "Edit" of the data window: deleting and restoring points, meniscus and base.
#pragma once

#include <QWidget>
#include <functional>

#include "scan/point_edits.h"

class QAction;
class QLabel;
class QMenu;
class QPushButton;

namespace quorvane {

class ChartWidget;
class DatasetStrip;
class PointChart;
class RangeLine;
class SessionHost;
struct Chart;
struct ChartArea;
struct RadiusSpan;
struct Refusal;
struct Session;

class EditTab : public QWidget {
  Q_OBJECT
 public:
  EditTab(Session& session, SessionHost& host, QWidget* parent = nullptr);  // both outlive it

  // Opens the dataset at `position` (from 0): to be edited, or to be looked at if it is a blank.
  void ShowDataset(int position);

  // Shows no dataset.
  void Clear();

  // The dataset, its name or the colours may have changed. The zoom stays, and so do lines that
  // were moved, unless meniscus or base were set elsewhere.
  void Redraw();

  // While a calculation runs nothing can be changed.
  void SetCalculating(bool on);

  const ChartWidget& ShownChart() const;

 signals:
  // Points, meniscus or base of the dataset shown, or points of others, have changed.
  void Edited();
  // Datasets were opened for editing.
  void Opened();
  // The pointer moved over the chart, in axis values.
  void PointerMoved(double x, double y);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  using PointEdit = void (*)(Dataset& dataset, const EditRectangle& rectangle);

  void BuildWidgets();
  QWidget* BuildPlaces();
  void BuildMenu();
  QAction* AddKey(const char* name, const QString& caption, const QList<QKeySequence>& keys);
  QAction* AddEntry(const char* name, const QString& caption, const QKeySequence& key);
  void ConnectSignals();
  void ConnectAdditions();
  void ConnectPointEdit(QAction* entry, PointEdit edit);
  void OfferActions(const ChartArea& area, const QPoint& where);
  void Edit(const std::function<void(Dataset&)>& edit);
  void SetMeniscusAndBaseFromLines();
  void Undo();
  void Redo();
  void AfterEdit();
  void Step(int by);
  bool KeepTypedRange();
  void KeepInSameChannel();
  void KeepMarqueeInChannel();
  void Spread(const RadiusSpan& span);
  void UndoSameChannel();
  void TellRefusal(const Refusal& refusal);
  void UpdatePlace();
  void CopyToLog();
  enum class Lines { kStay, kAsRecorded };
  Chart DatasetChart(const Dataset& dataset, Lines lines);
  void UpdateActions();
  Dataset* Shown() const;  // null if there is none

  Session& session_;
  SessionHost& host_;
  int EditDataset_ = -1;  // position of the dataset shown, from 0
  double Rmen_ = 0.0;     // of the record when the lines were last placed there, cm
  double Rbase_ = 0.0;
  EditRectangle marquee_;  // last drawn
  PointChart* editTChart_;
  QPushButton* cmdSetMenBase_;
  QPushButton* cmdRestoreAll_;
  QPushButton* cmdZoomOut_;
  QPushButton* cmdUndoEdit_;
  QPushButton* cmdRedoEdit_;
  RangeLine* range_;
  DatasetStrip* strip_;
  QWidget* places_;  // the strip and what stands beside it
  QLabel* lblEditPlace_;
  QPushButton* cmdPrevDataset_;
  QPushButton* cmdNextDataset_;
  QMenu* mnuEditData_;
  QAction* ZoomInMarq_;
  QAction* JustZoomOut_;
  QAction* DelOutMarq_;
  QAction* DelInMarq_;
  QAction* RestOutMarq_;
  QAction* RestInMarq_;
  QAction* mnuCopyToLog_;
  QAction* keepInChannel_;
  QAction* undo_;
  QAction* redo_;
  QAction* previous_;
  QAction* next_;
};

}  // namespace quorvane
