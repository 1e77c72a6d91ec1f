// Faults caught here: constants that follow no longer what is typed, a bad entry that changes
// something, "Use" that takes what was not checked, an entry lost with the experiment.
#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTableView>
#include <QUrl>

#include "base/clock.h"
#include "core/page/solution_use.h"
#include "core/report/paper_report.h"
#include "windows/main_window_fixture.h"
#include "windows/solution/sequence_box.h"

using namespace quorvane;

namespace {

class SolutionWindowTest : public MainWindowTest {
 protected:
  void Open() { Trigger("mnuSolution"); }
  QString Text(const char* label) { return Find<QLabel>(label)->text(); }
  void Paste(const QString& sequence) {
    Find<QPlainTextEdit>("txtSequence")->setPlainText(sequence);
  }
  // Types the amount of the first component that `name` finds.
  void Amount(const char* name, const char* amount) {
    Find<QLineEdit>("txtFindComponent")->setText(name);
    QAbstractItemModel* rows = Find<QTableView>("gridComponents")->model();
    for (int row = 0; row < rows->rowCount(); ++row) {
      if (rows->index(row, 1).data().toString() != name) continue;
      rows->setData(rows->index(row, 3), amount);
      return;
    }
    ADD_FAILURE() << name;
  }
};

constexpr const char* kProtein = ">a protein\nACDWKC\n";

}  // namespace

TEST_F(SolutionWindowTest, ShowsAtOnceWhatIsTyped) {
  SetUpExample();
  Open();
  EXPECT_EQ(Find<QLineEdit>("txtSolutionTemp")->text(), "20.0");
  EXPECT_EQ(Text("lblSolutionDensity"), "0.99823 g/ml");
  EXPECT_EQ(Text("lblSolutionMass"), "\u2013");
  Paste(kProtein);
  Amount("NaCl", "1 M");
  EXPECT_EQ(Text("lblSolutionDensity"), "1.03857 g/ml");
  EXPECT_EQ(Text("lblBuffer"), "Sodium chloride = 1 M");
  EXPECT_EQ(Text("lblSolutionMass"), "724.8 Da");
  EXPECT_TRUE(Text("lblSolutionRemarks").contains("cysteines are counted as reduced"));
  EXPECT_TRUE(Text("lblSolutionWeight").contains(", then MW = "))
      << Text("lblSolutionWeight").toStdString();
  Find<QSpinBox>("spnDisulphides")->setValue(5);
  EXPECT_EQ(Find<QSpinBox>("spnDisulphides")->value(), 1);
  EXPECT_EQ(Text("lblSolutionMass"), "722.8 Da");
  EXPECT_TRUE(Text("lblSolutionExtinction").startsWith("5,625 1/(M cm)"));
  Find<QLineEdit>("txtSolutionTemp")->setText("4");
  EXPECT_NE(Text("lblSolutionDensity"), "1.03857 g/ml");
  EXPECT_EQ(session.Module.FitPage.Density, 1.0);  // until "Use"
}

TEST_F(SolutionWindowTest, NamesABadEntryAndChangesNothing) {
  SetUpExample();
  Open();
  Paste(kProtein);
  Amount("NaCl", "100 mM");
  const SolutionEntry entry = session.Module.Solution;
  const std::pair<const char*, const char*> sequences[] = {
      {"ACX", "\"X\" (any amino acid) at place 3"},
      {"AC 12", "\"1\" (a number) at place 3"},
      {">a\n>b\nAC", "a: the sequence has no letters"},
      {">a %3\nAC\n>a %3\nACD", "There are 2 sequences: choose one."}};
  for (const auto& [sequence, says] : sequences) {
    Paste(sequence);
    EXPECT_TRUE(Text("lblSolutionRemarks").contains(says))
        << Text("lblSolutionRemarks").toStdString();
    EXPECT_FALSE(Find<QAbstractButton>("cmdUseSolution")->isEnabled());
    EXPECT_EQ(session.Module.Solution, entry);
  }
  Find<QComboBox>("cmbSequenceRecord")->setCurrentIndex(1);
  EXPECT_EQ(Find<QComboBox>("cmbSequenceRecord")->currentText(), "2. a %3: 3 residues");
  EXPECT_EQ(session.Module.Solution.letters, "ACD");
  for (const char* degC : {"", "x", "-1", "1e9"}) {
    Find<QLineEdit>("txtSolutionTemp")->setText(degC);
    EXPECT_TRUE(Text("lblSolutionRemarks").contains("Temperature: a number from 0 to 100"));
  }
  Find<QLineEdit>("txtSolutionTemp")->setText("20");
  for (const char* amount : {"-1 M", "1e9 M", "0.1", "5 %"}) {
    Amount("NaCl", amount);
    EXPECT_TRUE(Text("lblBuffer").startsWith("Sodium chloride = "))
        << Text("lblBuffer").toStdString();
    EXPECT_EQ(session.Module.Solution.buffer, entry.buffer) << amount;
  }
  Amount("NaCl", "");
  EXPECT_EQ(Text("lblBuffer"), "water");
}

// Return in a box once pressed "Use", which closes the window.
TEST_F(SolutionWindowTest, ReturnInFindTakesARecipeOrGoesToTheAmount) {
  SetUpExample();
  Open();
  auto* find = Find<QLineEdit>("txtFindComponent");
  const auto enter = [&](const char* text) {
    find->setText(text);
    QTest::keyClick(find, Qt::Key_Return);
    return Text("lblBuffer");
  };
  EXPECT_TRUE(enter("20 mM Tris-HCl, 5 % glycerol").contains("percent of what?"));
  EXPECT_TRUE(session.Module.Solution.buffer.empty());
  EXPECT_TRUE(enter("MOPS").contains("nor a name near it"));
  EXPECT_EQ(enter("20 mM Tris-HCl, 5 % (v/v) glycerol"),
            "Tris(hydroxymethyl)aminomethane = 20 mM, Glycerol = 5 % v/v");
  enter("10 mM tris");
  EXPECT_TRUE(enter("cl").startsWith("Tris(hydroxymethyl)aminomethane = 10 mM, Glycerol"));
  enter("gly");
  const QModelIndex amount = Find<QTableView>("gridComponents")->currentIndex();
  EXPECT_EQ(amount.siblingAtColumn(0).data().toString(), "Glycerol");
  EXPECT_EQ(amount.data().toString(), "5 % v/v");
  QTest::keyClick(Find<QLineEdit>("txtSolutionTemp"), Qt::Key_Return);
  EXPECT_TRUE(Find<QDialog>("frmSolution")->isVisible());
  EXPECT_EQ(session.Module.FitPage.Density, 1.0);
}

TEST_F(SolutionWindowTest, TakesADroppedFile) {
  folder.Write("a.fasta", kProtein);
  Open();
  QMimeData dropped;
  dropped.setUrls({QUrl::fromLocalFile(ToQString(folder / "a.fasta"))});
  auto* box = Find<SequenceEdit>("txtSequence");
  QDragEnterEvent enter({5, 5}, Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(box->viewport(), &enter);
  QDropEvent drop({5, 5}, Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(box->viewport(), &drop);
  EXPECT_EQ(box->toPlainText(), kProtein);
  emit box->FileDropped(ToQString(folder / "none.fasta"));
  EXPECT_EQ(box->toPlainText(), kProtein);
  ASSERT_EQ(dialogs.messages.size(), 1U);
}

TEST_F(SolutionWindowTest, UseSetsWhatIsCheckedAndTheReportSaysSo) {
  SetUpExample();
  for (Dataset& dataset : session.Module.Store.Datasets) dataset.Wavelength = 281;
  session.Module.Store.Datasets.back().Wavelength = 300;
  Open();
  Paste(kProtein);
  Amount("NaCl", "100 mM");
  Find<QCheckBox>("chkUseExtinction")->setChecked(true);
  const double last = session.Module.Store.Datasets.back().ExtCoeff;
  Click("cmdUseSolution");
  const FitPage& page = session.Module.FitPage;
  EXPECT_NEAR(page.Density, 1.00237, 1e-4);
  EXPECT_NEAR(page.Vbar, 0.69748, 1e-5);
  EXPECT_TRUE(session.Module.ConstantsSet.Vbar && session.Module.ConstantsSet.Density);
  EXPECT_EQ(session.Module.Store.Datasets.front().ExtCoeff, 5500 * 1.2);
  EXPECT_EQ(Find<QLineEdit>("txtExtCoeff(1)")->text(), "6.600E+3");
  EXPECT_EQ(session.Module.Store.Datasets.back().ExtCoeff, last);
  EXPECT_FALSE(LogText().contains("a protein"));
  const SolutionUse ofB = {.ofB = true, .density = false, .extinction = true};
  const SolutionRequest request = RequestOf(session.Module.Solution, 4.0);
  ASSERT_FALSE(UseSolution(session.Module, ofB, CalcSolution(request)));
  EXPECT_NEAR(page.VbarB, 0.69748 - 16 * kVbarPerKelvin, 1e-5);
  EXPECT_NEAR(page.Vbar, 0.69748, 1e-5);
  EXPECT_EQ(session.Module.Store.Datasets.front().ExtCoeff2, 5500 * 1.2);
  Click("cmdFitMe");
  const ReportSection section = MakePaperReport(session.Module).sections[1];
  ASSERT_EQ(section.title, "Constants of the solution");
  ASSERT_EQ(section.paragraphs.size(), 3U);
  EXPECT_NE(section.paragraphs[0].find("a protein (6 residues"), std::string::npos);
  EXPECT_NE(section.paragraphs[2].find("is that of 100 mM sodium chloride, from"),
            std::string::npos);
  // The density was set by hand since: the report does not claim it.
  session.Module.FitPage.Density = 1.01;
  Click("cmdFitMe");
  EXPECT_EQ(MakePaperReport(session.Module).sections[1].paragraphs.size(), 2U);
}

TEST_F(SolutionWindowTest, TheEntryStaysWithTheExperiment) {
  SetUpExample();
  Open();
  Paste(">odd \"name\" \\ \n" + QString("ACDWKC"));
  Find<QSpinBox>("spnDisulphides")->setValue(0);
  Amount("NaCl", "0.125 M");
  Find<QLineEdit>("txtSolutionTemp")->setText("4.5");
  Click("cmdCloseSolution");
  const SolutionEntry entry = session.Module.Solution;
  ASSERT_TRUE(entry.disulphides && entry.degC);
  const QString file = ToQString(folder / "kept.exz");
  dialogs.files = {file};
  Trigger("mnuFileSave");
  dialogs.yesNo = {true, true};
  window->Experiments().LoadAsked(ToQString(kExamples / "monomer-dimer" / "experiment.exz"));
  EXPECT_EQ(session.Module.Solution, SolutionEntry());
  dialogs.yesNo = {true, true};
  window->Experiments().LoadAsked(file);
  EXPECT_EQ(session.Module.Solution, entry);
  Open();
  EXPECT_EQ(Text("lblBuffer"), "Sodium chloride = 125 mM");
  EXPECT_EQ(Find<QLineEdit>("txtSolutionTemp")->text(), "4.5");
  EXPECT_EQ(Find<QSpinBox>("spnDisulphides")->value(), 0);
}
