// What the program takes from its installation.
#include "windows/frame/app_icon.h"
#include "windows/main_window_fixture.h"
#include "windows/session/save_folder.h"

#include <QStandardPaths>

using namespace quorvane;

namespace fs = std::filesystem;

class InstallationTest : public MainWindowTest {};

TEST_F(InstallationTest, ExampleAndGuideAreFoundFromTheProgram) {
  const struct {
    const char* program;
    const char* data;
  } layouts[] = {{"usr/bin", "usr/share/quorvane"},
                 {"Quorvane.app/Contents/MacOS", "Quorvane.app/Contents/Resources"},
                 {"portable", "portable"}};
  for (const auto& layout : layouts) {
    fs::create_directories(folder / layout.program);
    fs::create_directories(folder / layout.data);
    for (const char* name : {"docs", "examples"}) {
      fs::create_directory_symlink(fs::path(QUORVANE_SOURCE_DIR) / name,
                                   folder / layout.data / name);
    }
    session.ProgramFolder = folder / layout.program;
    Start();
    Trigger("mnuFileExample");
    EXPECT_EQ(session.Module.Store.Datasets.size(), 9U) << layout.program;
    EXPECT_EQ(session.CurrentFolder, folder / layout.data / "examples" / "monomer-dimer");
    Trigger("mnuHelpContents");
    EXPECT_FALSE(Find<QTextEdit>("txtHelp")->toPlainText().isEmpty());
    session.Module = {};
  }
  EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(InstallationTest, SavingBeginsWhereItCanWrite) {
  const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  folder.Write("file", "");
  EXPECT_EQ(SaveFolder(ToQString(folder.path())), ToQString(folder.path()));
  EXPECT_EQ(SaveFolder(ToQString(folder / "file")), documents);
  EXPECT_EQ(SaveFolder(ToQString(folder / "gone")), documents);
}

TEST_F(InstallationTest, TheIconHasEverySize) {
  for (const int side : {16, 24, 32, 48, 64, 128, 256}) {
    const QImage picture = AppIcon().pixmap(side).toImage();
    EXPECT_EQ(picture.width(), side);
    EXPECT_GT(picture.pixelColor(side / 2, side / 2).alpha(), 250) << side;
  }
}
