#include "windows/data/info_window.h"

#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "windows/controls/control_names.h"

namespace quorvane {

InfoWindow::InfoWindow(const QString& comments, QWidget* parent) : QDialog(parent) {
  setObjectName("frmInfo");
  setWindowTitle(tr("Comment Lines"));
  setAttribute(Qt::WA_DeleteOnClose);
  auto* text = Named(new QPlainTextEdit(comments), "txtInfo");
  text->setReadOnly(true);
  text->setTabChangesFocus(true);
  auto* ok = Named(new QPushButton(tr("OK")), "cmdOK");
  ok->setDefault(true);
  connect(ok, &QPushButton::clicked, this, &QDialog::accept);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(text);
  layout->addWidget(ok, 0, Qt::AlignHCenter);
  ok->setFocus();
  const QFontMetrics metrics(text->font());
  resize(60 * metrics.averageCharWidth(), 12 * metrics.lineSpacing());
}

}  // namespace quorvane
