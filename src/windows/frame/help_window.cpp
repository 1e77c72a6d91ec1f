#include "windows/frame/help_window.h"

#include <QHBoxLayout>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextCursor>
#include <QTextTable>
#include <QVBoxLayout>
#include <algorithm>
#include <vector>

#include "base/files.h"

namespace quorvane {

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
    // The viewport follows only once the window is shown.
    const int margins = 2 * frameWidth() + verticalScrollBar()->sizeHint().width() +
                        2 * static_cast<int>(document()->documentMargin());
    const int room = std::max(1, width() - margins);
    if (image.isNull() || image.width() <= room) return resource;
    // As sharp as the screen can show it.
    const int pixels = std::min(image.width(), qRound(room * devicePixelRatioF()));
    image = image.scaledToWidth(pixels, Qt::SmoothTransformation);
    image.setDevicePixelRatio(static_cast<double>(pixels) / room);
    return image;
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

// Many dark desktops leave links in the dark blue that is meant for white paper.
QColor LinkColor(const QPalette& palette) {
  constexpr int kDark = 128;
  constexpr int kReadable = 100;
  const QColor link = palette.color(QPalette::Link);
  const bool lost =
      qGray(palette.color(QPalette::Base).rgb()) < kDark && qGray(link.rgb()) < kReadable;
  return lost ? QColor(120, 180, 255) : link;
}

void DressLinks(QTextDocument& document, const QColor& color) {
  QTextCharFormat look;
  look.setForeground(color);
  QTextCursor cursor(&document);
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    std::vector<QTextFragment> links;  // before any of them is changed
    for (auto piece = block.begin(); !piece.atEnd(); ++piece) {
      if (!piece.fragment().charFormat().anchorHref().isEmpty()) links.push_back(piece.fragment());
    }
    for (const QTextFragment& link : links) {
      cursor.setPosition(link.position());
      cursor.setPosition(link.position() + link.length(), QTextCursor::KeepAnchor);
      cursor.mergeCharFormat(look);
    }
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
  text_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
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
    DressLinks(*text_->document(), LinkColor(text_->palette()));
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
  layout()->activate();  // pictures take the width of the text
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

}  // namespace quorvane
