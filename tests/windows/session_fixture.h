// A session whose dialogs are scripted and whose files live in a folder of the test.
#pragma once

#include <filesystem>

#include "support/temp_folder.h"
#include "windows/scripted_dialogs.h"
#include "windows/session/session.h"

namespace quorvane {

class SessionFixture : public testing::Test {
 protected:
  TempFolder folder;
  ScriptedDialogs dialogs;
  IniSettings settings{folder / "quorvane.ini"};
  Session session{settings, dialogs, folder.path()};
};

}  // namespace quorvane
