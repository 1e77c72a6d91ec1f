#include "windows/session/box_entry.h"

#include <QObject>

#include "windows/controls/value_box.h"
#include "windows/session/session.h"

namespace quorvane {

void TellEntryError(Session& session, QWidget* window, const Refusal& refusal) {
  if (!refusal) return;
  session.Ask.ShowMessage(window, kEntryErrorTitle, QString::fromStdString(refusal.text),
                          MessageIcon::kExclamation);
}

void BindEntry(ValueBox& box, Session& session, BoxEntry entry) {
  box.SetStore([&box, &session, entry = std::move(entry)](const QString& text) {
    const Refusal refusal = entry.enter(text.toStdString());
    box.ShowStored(QString::fromStdString(entry.shown()));
    session.Remark(
        refusal
            ? QObject::tr("%1 takes %2.").arg(entry.name(), QString::fromStdString(entry.taken()))
            : QString());
    if (!refusal) return true;
    TellEntryError(session, box.window(), refusal);
    return false;
  });
}

}  // namespace quorvane
