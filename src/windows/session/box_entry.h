// How the boxes of the parameter page and of the simulator hand over what is typed.
#pragma once

#include <QString>
#include <functional>
#include <string>

#include "core/page/page_entry.h"

class QWidget;

namespace quorvane {

class ValueBox;
struct Session;

// How a box hands its text over.
struct BoxEntry {
  std::function<Refusal(const std::string&)> enter;
  std::function<std::string()> shown;  // what the box shows afterwards
  std::function<QString()> name;       // of the box, as a remark on a refused text bears it
  std::function<std::string()> taken;  // the numbers that the box takes
};

// The box "Parameter Entry Error" over `window`; nothing if nothing was refused.
void TellEntryError(Session& session, QWidget* window, const Refusal& refusal);

// A refused text is told, and the status bar says what the box takes.
void BindEntry(ValueBox& box, Session& session, BoxEntry entry);

}  // namespace quorvane
