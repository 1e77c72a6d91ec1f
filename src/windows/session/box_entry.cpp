#include "windows/session/box_entry.h"

#include <QObject>

#include "windows/controls/value_box.h"
#include "windows/session/session.h"

namespace quorvane {

void BindEntry(ValueBox& box, Session& session, BoxEntry entry) {
  box.SetStore([&box, &session, entry = std::move(entry)](const QString& text) {
    const Refusal refusal = entry.enter(text.toStdString());
    box.ShowStored(QString::fromStdString(entry.shown()));
    session.Remark(
        refusal.empty()
            ? QString()
            : QObject::tr("%1 takes %2.").arg(entry.name(), QString::fromStdString(entry.taken())));
    if (refusal.empty()) return true;
    session.Ask.ShowMessage(box.window(), kEntryErrorTitle, QString::fromStdString(refusal),
                            MessageIcon::kExclamation);
    return false;
  });
}

}  // namespace quorvane
