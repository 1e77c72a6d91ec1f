#include "windows/solution/sequence_box.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QUrl>
#include <algorithm>

#include "base/files.h"
#include "solution/solution_fault.h"
#include "windows/controls/control_names.h"
#include "windows/session/session.h"

namespace quorvane {

namespace {

constexpr std::size_t kLongestFile = 4U << 20U;  // bytes
constexpr int kNoneSaid = -1;

QString Droppable(const QMimeData* source) {
  const QList<QUrl> urls = source->urls();
  return urls.size() == 1 ? urls.front().toLocalFile() : QString();
}

// As FASTA, in lines that fit the box.
QString TextOf(const SolutionEntry& entry) {
  constexpr int kLine = 40;
  const QString letters = QString::fromStdString(entry.letters);
  QString text;
  if (!entry.name.empty()) text = '>' + QString::fromStdString(entry.name) + '\n';
  for (qsizetype k = 0; k < letters.size(); k += kLine) text += letters.mid(k, kLine) + '\n';
  return text;
}

}  // namespace

bool SequenceEdit::canInsertFromMimeData(const QMimeData* source) const {
  return !Droppable(source).isEmpty() || QPlainTextEdit::canInsertFromMimeData(source);
}

void SequenceEdit::insertFromMimeData(const QMimeData* source) {
  const QString path = Droppable(source);
  if (path.isEmpty()) {
    QPlainTextEdit::insertFromMimeData(source);
  } else {
    emit FileDropped(path);
  }
}

SequenceBox::SequenceBox(Session& session, QWidget* parent)
    : QGroupBox(tr("Protein"), parent), session_(session) {
  BuildWidgets();
  ConnectSignals();
  ReadText();
}

void SequenceBox::BuildWidgets() {
  setObjectName("grpSolutionProtein");
  txtSequence_ = Named(new SequenceEdit, "txtSequence");
  txtSequence_->setAccessibleName(tr("Sequence"));
  txtSequence_->setPlaceholderText(
      tr("The sequence in letters or as FASTA: type, paste, or drop a file"));
  txtSequence_->setTabChangesFocus(true);
  txtSequence_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  cmdOpenSequence_ = Named(new QPushButton(tr("&Open FASTA...")), "cmdOpenSequence");
  cmdOpenSequence_->setAutoDefault(false);
  cmbSequenceRecord_ = Named(new QComboBox, "cmbSequenceRecord");
  cmbSequenceRecord_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  lblSequenceRecord_ = Named(new QLabel(tr("&Which one")), "lblSequenceRecord");
  lblSequenceRecord_->setBuddy(cmbSequenceRecord_);
  spnDisulphides_ = Named(new QSpinBox, "spnDisulphides");
  spnDisulphides_->setRange(kNoneSaid, kNoneSaid);
  spnDisulphides_->setSpecialValueText(tr("unknown"));
  spnDisulphides_->setToolTip(
      tr("Each takes 2.0 Da off the mass and adds 125 to the extinction at 280 nm"));
  auto* disulphides = new QLabel(tr("&Disulphides"));
  disulphides->setBuddy(spnDisulphides_);
  lblSequence_ = Named(new QLabel, "lblSequence");
  lblSequence_->setTextFormat(Qt::PlainText);
  lblSequence_->setWordWrap(true);
  lblSequence_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);  // long names
  auto* grid = new QGridLayout(this);
  grid->addWidget(txtSequence_, 0, 0, 1, 4);
  grid->addWidget(lblSequenceRecord_, 1, 0);
  grid->addWidget(cmbSequenceRecord_, 1, 1, 1, 3);
  grid->addWidget(disulphides, 2, 0);
  grid->addWidget(spnDisulphides_, 2, 1);
  grid->addWidget(cmdOpenSequence_, 2, 3);
  grid->addWidget(lblSequence_, 3, 0, 1, 4);
  grid->setColumnStretch(2, 1);
  grid->setRowStretch(0, 1);
}

void SequenceBox::ConnectSignals() {
  connect(txtSequence_, &QPlainTextEdit::textChanged, this, &SequenceBox::ReadText);
  connect(txtSequence_, &SequenceEdit::FileDropped, this, &SequenceBox::ReadFile);
  connect(cmdOpenSequence_, &QPushButton::clicked, this, &SequenceBox::Open);
  connect(cmbSequenceRecord_, &QComboBox::currentIndexChanged, this, &SequenceBox::ShowChosen);
  connect(spnDisulphides_, &QSpinBox::valueChanged, this, &SequenceBox::Changed);
}

void SequenceBox::ShowEntry(const SolutionEntry& entry) {
  txtSequence_->setPlainText(TextOf(entry));
  if (entry.disulphides) spnDisulphides_->setValue(*entry.disulphides);
}

void SequenceBox::Open() {
  const QString path =
      session_.Ask.OpenFile(this, {tr("Open FASTA"),
                                   ToQString(session_.CurrentFolder),
                                   tr("Sequences (*.fasta *.fa *.faa *.seq *.txt);;All files (*)"),
                                   {}});
  if (!path.isEmpty()) ReadFile(path);
}

// A file that cannot be read leaves the text as it is.
void SequenceBox::ReadFile(const QString& path) {
  try {
    txtSequence_->setPlainText(QString::fromUtf8(ReadWholeFile(ToPath(path), kLongestFile)));
  } catch (const FileFault& fault) {
    session_.Ask.ShowMessage(this, tr("Open FASTA"), QString::fromUtf8(fault.what()),
                             MessageIcon::kExclamation);
  }
}

void SequenceBox::ReadText() {
  sequences_.clear();
  fault_.clear();
  const std::string text = txtSequence_->toPlainText().toStdString();
  try {
    if (!txtSequence_->toPlainText().trimmed().isEmpty()) sequences_ = ReadSequences(text);
  } catch (const SolutionFault& fault) {
    fault_ = QString::fromStdString(fault.what());
  }
  ShowRecords();
  ShowChosen();
}

void SequenceBox::ShowRecords() {
  const QSignalBlocker quiet(cmbSequenceRecord_);
  const bool several = sequences_.size() > 1;
  cmbSequenceRecord_->clear();
  if (several) {
    for (const ProteinSequence& sequence : sequences_) {
      cmbSequenceRecord_->addItem(tr("%1. %2: %3 residues")
                                      .arg(QString::number(cmbSequenceRecord_->count() + 1),
                                           QString::fromStdString(sequence.name),
                                           QString::number(sequence.letters.size())));
    }
    cmbSequenceRecord_->setPlaceholderText(tr("Choose one of %1").arg(sequences_.size()));
  }
  cmbSequenceRecord_->setCurrentIndex(-1);
  cmbSequenceRecord_->setVisible(several);
  lblSequenceRecord_->setVisible(several);
}

const ProteinSequence* SequenceBox::Chosen() const {
  if (sequences_.size() == 1) return &sequences_.front();
  const int chosen = cmbSequenceRecord_->currentIndex();
  return sequences_.empty() || chosen < 0 ? nullptr : &sequences_[static_cast<std::size_t>(chosen)];
}

void SequenceBox::ShowChosen() {
  const ProteinSequence* chosen = Chosen();
  if (sequences_.size() > 1) {
    fault_ = chosen != nullptr ? QString()
                               : tr("There are %1 sequences: choose one.").arg(sequences_.size());
  }
  const std::ptrdiff_t cysteines =
      chosen == nullptr ? 0 : std::count(chosen->letters.begin(), chosen->letters.end(), 'C');
  {
    const QSignalBlocker quiet(spnDisulphides_);
    spnDisulphides_->setRange(kNoneSaid,
                              chosen == nullptr ? kNoneSaid : static_cast<int>(cysteines / 2));
  }
  lblSequence_->setText(
      chosen == nullptr
          ? fault_
          : tr("%1 residues, %2 cysteines").arg(chosen->letters.size()).arg(cysteines));
  emit Changed();
}

bool SequenceBox::Take(SolutionEntry& entry) const {
  if (!fault_.isEmpty()) return false;
  const ProteinSequence* chosen = Chosen();
  entry.name = chosen == nullptr ? "" : chosen->name;
  entry.letters = chosen == nullptr ? "" : chosen->letters;
  const int disulphides = spnDisulphides_->value();
  entry.disulphides = disulphides == kNoneSaid ? std::nullopt : std::optional(disulphides);
  return true;
}

}  // namespace quorvane
