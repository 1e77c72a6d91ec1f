// The connections between the windows, the commands and the menus of frmMain.
#pragma once

#include "windows/frame/command_set.h"
#include "windows/session/window_set.h"

namespace quorvane {

class Autosave;
class MainMenus;
class FigureWindow;
class PreviewWindow;
class SetRefConcWindow;
class UnsavedMark;
class CorrelationWindow;
class ComparisonWindow;
class ErrorAnalysisWindow;
class FitsWindow;
class QualityWindow;
class RestJudge;

// All are owned by the frame.
struct FrameParts {
  WindowSet windows;
  CommandSet commands;
  MainMenus& menus;
  CorrelationWindow& coefficients;
  QualityWindow& quality;
  ErrorAnalysisWindow& analysis;
  PreviewWindow& preview;
  FigureWindow& figure;
  SetRefConcWindow& setRefConc;
  FitsWindow& fits;
  ComparisonWindow& comparison;
  Autosave& autosave;
  UnsavedMark& unsaved;
  RestJudge& judge;
};

// What goes from one part to another without the frame. A signal's slots run in the order in which
// they are connected: what the frame itself does at a signal is connected before.
void ConnectParts(const FrameParts& parts);

}  // namespace quorvane
