// The protein of frmSolution: its sequence, pasted or from a file, and its disulphides.
#pragma once

#include <QGroupBox>
#include <QPlainTextEdit>
#include <vector>

#include "solution/sequence.h"
#include "solution/solution_entry.h"

class QComboBox;
class QLabel;
class QPushButton;
class QSpinBox;

namespace quorvane {

struct Session;

// A box for a text that takes a dropped file by its name.
class SequenceEdit : public QPlainTextEdit {
  Q_OBJECT
 public:
  using QPlainTextEdit::QPlainTextEdit;

 signals:
  void FileDropped(const QString& path);

 protected:
  bool canInsertFromMimeData(const QMimeData* source) const override;
  void insertFromMimeData(const QMimeData* source) override;
};

class SequenceBox : public QGroupBox {
  Q_OBJECT
 public:
  explicit SequenceBox(Session& session, QWidget* parent = nullptr);  // outlived by `session`

  void ShowEntry(const SolutionEntry& entry);

  // Sequence, name and disulphides as they now stand into `entry`; none for an empty text. False,
  // with `entry` as it was, while Fault() says what is wrong or which sequence is to be chosen.
  bool Take(SolutionEntry& entry) const;
  const QString& Fault() const { return fault_; }

 signals:
  void Changed();

 private:
  void BuildWidgets();
  void ConnectSignals();
  void Open();
  void ReadFile(const QString& path);
  void ReadText();
  void ShowRecords();
  void ShowChosen();
  const ProteinSequence* Chosen() const;  // null: none, or not chosen yet

  Session& session_;
  std::vector<ProteinSequence> sequences_;
  QString fault_;
  SequenceEdit* txtSequence_;
  QPushButton* cmdOpenSequence_;
  QLabel* lblSequenceRecord_;
  QComboBox* cmbSequenceRecord_;
  QSpinBox* spnDisulphides_;
  QLabel* lblSequence_;
};

}  // namespace quorvane
