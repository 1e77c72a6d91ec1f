#include "windows/help_window.h"

#include <QHBoxLayout>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextCursor>
#include <QTextTable>
#include <QVBoxLayout>

#include "base/files.h"

namespace {

constexpr std::size_t kLongestGuide = std::size_t{4} << 20U;  // bytes

// Shows pictures no wider than the text, and follows links to other pages of the guide only.
class GuideBrowser : public QTextBrowser {
 public:
  void doSetSource(const QUrl& name, QTextDocument::ResourceType) override {
    if (!name.path().endsWith(QLatin1String(".md"))) return;
    QTextBrowser::doSetSource(name, QTextDocument::MarkdownResource);
  }
  QVariant loadResource(int type, const QUrl& name) override {
    const QVariant resource = QTextBrowser::loadResource(type, name);
    if (type != QTextDocument::ImageResource) return resource;
    QImage image;
    if (resource.canConvert<QImage>() && !resource.value<QImage>().isNull()) {
      image = resource.value<QImage>();
    } else {
      image.loadFromData(resource.toByteArray());
    }
    const int room = viewport()->width() - 2 * static_cast<int>(document()->documentMargin());
    if (image.isNull() || image.width() <= room) return resource;
    return image.scaledToWidth(room, Qt::SmoothTransformation);
  }
};

// Tables of a Markdown text come without lines or padding.
void DressTables(QTextDocument& document) {
  for (QTextFrame* frame : document.rootFrame()->childFrames()) {
    auto* table = qobject_cast<QTextTable*>(frame);
    if (table == nullptr) continue;
    QTextTableFormat format = table->format();
    format.setBorder(1);
    format.setBorderCollapse(true);
    format.setCellPadding(4);
    format.setCellSpacing(0);
    table->setFormat(format);
  }
}

// The place that links name a heading by: small letters, a hyphen for each blank, no other signs.
QString PlaceOf(const QString& heading) {
  QString place;
  for (const QChar c : heading.toLower()) {
    if (c == ' ') place += '-';
    if (c.isLetterOrNumber() || c == '-' || c == '_') place += c;
  }
  return place;
}

// Headings of a Markdown text come without the places that links lead to.
void NameHeadings(QTextDocument& document) {
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    if (block.blockFormat().headingLevel() == 0) continue;
    QTextCharFormat format;
    format.setAnchor(true);
    format.setAnchorNames({PlaceOf(block.text())});
    QTextCursor cursor(block);
    cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    cursor.mergeCharFormat(format);
  }
}

}  // namespace

HelpWindow::HelpWindow(QWidget* parent)
    : QWidget(parent, Qt::Window),
      text_(new GuideBrowser),
      search_(new QLineEdit),
      found_(new QLabel) {
  setObjectName("frmHelp");
  setWindowTitle(tr("Quorvane Help"));
  text_->setObjectName("txtHelp");
  search_->setObjectName("txtSearch");
  search_->setPlaceholderText(tr("Search the guide"));
  search_->setClearButtonEnabled(true);
  auto* back = new QPushButton(tr("Previous"));
  auto* next = new QPushButton(tr("Next"));
  auto* pageBack = new QPushButton(tr("&Back"));
  pageBack->setObjectName("cmdBack");
  pageBack->setToolTip(tr("The page before"));
  pageBack->setEnabled(false);
  auto* bar = new QHBoxLayout;
  bar->addWidget(pageBack);
  bar->addWidget(search_, 1);
  bar->addWidget(back);
  bar->addWidget(next);
  bar->addWidget(found_);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(bar);
  layout->addWidget(text_, 1);
  connect(pageBack, &QPushButton::clicked, text_, &QTextBrowser::backward);
  connect(text_, &QTextBrowser::backwardAvailable, pageBack, &QPushButton::setEnabled);
  connect(text_, &QTextBrowser::sourceChanged, this, [this](const QUrl& page) {
    DressTables(*text_->document());
    NameHeadings(*text_->document());
    if (page.hasFragment()) text_->scrollToAnchor(page.fragment());
  });
  connect(search_, &QLineEdit::returnPressed, this, [this] { Find(false); });
  connect(next, &QPushButton::clicked, this, [this] { Find(false); });
  connect(back, &QPushButton::clicked, this, [this] { Find(true); });
  connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this,
          &HelpWindow::BeginSearch);
  resize(fontMetrics().averageCharWidth() * 110, fontMetrics().height() * 40);
}

bool HelpWindow::ShowGuide(const std::filesystem::path& file) {
  try {
    ReadWholeFile(file, kLongestGuide);
  } catch (const FileFault&) {
    return false;
  }
  text_->setSource(QUrl::fromLocalFile(QString::fromStdString(PathText(file))),
                   QTextDocument::MarkdownResource);
  return true;
}

void HelpWindow::BeginSearch() {
  search_->setFocus();
  search_->selectAll();
}

void HelpWindow::Find(bool backward) {
  const QTextDocument::FindFlags flags =
      backward ? QTextDocument::FindBackward : QTextDocument::FindFlags();
  bool hit = text_->find(search_->text(), flags);
  if (!hit) {  // once more from the other end
    text_->moveCursor(backward ? QTextCursor::End : QTextCursor::Start);
    hit = text_->find(search_->text(), flags);
  }
  found_->setText(hit || search_->text().isEmpty() ? QString() : tr("Not found"));
}
