#include "windows/data/load_settings_box.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

#include "windows/controls/control_names.h"

namespace quorvane {

namespace {

constexpr std::array<const char*, 3> kCenterpieceCaptions = {
    QT_TRANSLATE_NOOP("QObject", "2 channels"), QT_TRANSLATE_NOOP("QObject", "6 channels"),
    QT_TRANSLATE_NOOP("QObject", "8 channels")};

template <std::size_t N>
int CheckedIndex(const std::array<QRadioButton*, N>& buttons) {
  for (std::size_t k = 0; k < N; ++k) {
    if (buttons[k]->isChecked()) return static_cast<int>(k);
  }
  return 0;
}

}  // namespace

LoadSettingsBox::LoadSettingsBox(Session& session, QWidget* parent)
    : QWidget(parent), session_(session) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(BuildKindBox());
  layout->addWidget(BuildCenterpieceBox());
  ConnectSignals();
  ChangeCenterpiece();
  KeepSettings();
}

QGroupBox* LoadSettingsBox::BuildKindBox() {
  auto* box = new QGroupBox(tr("File Type"));
  auto* layout = new QHBoxLayout(box);
  for (std::size_t k = 0; k < optFileType_.size(); ++k) {
    optFileType_[k] = Named(new QRadioButton(KindName(static_cast<FileKind>(k))),
                            ElementName("optFileType", static_cast<int>(k)));
    layout->addWidget(optFileType_[k]);
  }
  layout->addStretch();
  chkAllFiles_ = Named(new QCheckBox(tr("All files")), "chkAllFiles");
  chkAllFiles_->setToolTip(tr("List every file of the folder, whatever its name"));
  layout->addWidget(chkAllFiles_);
  optFileType_[0]->setChecked(true);
  optFileType_[3]->setVisible(ShowElectrophoresis);
  return box;
}

QGroupBox* LoadSettingsBox::BuildCenterpieceBox() {
  auto* box = new QGroupBox(tr("Centerpiece"));
  auto* layout = new QVBoxLayout(box);
  auto* pieces = new QHBoxLayout;
  for (std::size_t k = 0; k < optCntrpiece_.size(); ++k) {
    optCntrpiece_[k] = Named(new QRadioButton(QObject::tr(kCenterpieceCaptions[k])),
                             ElementName("optCntrpiece", static_cast<int>(k)));
    pieces->addWidget(optCntrpiece_[k]);
  }
  pieces->addStretch();
  optCntrpiece_[0]->setChecked(true);
  auto* channels = new QHBoxLayout;
  channels->addWidget(new QLabel(tr("Channels:")));
  for (std::size_t c = 0; c < chkChannel_.size(); ++c) {
    chkChannel_[c] = Named(new QCheckBox(QString(QLatin1Char(ChannelLetters[c]))),
                           ElementName("chkChannel", static_cast<int>(c)));
    channels->addWidget(chkChannel_[c]);
  }
  channels->addStretch();
  layout->addLayout(pieces);
  layout->addLayout(channels);
  return box;
}

void LoadSettingsBox::ConnectSignals() {
  for (QRadioButton* option : optFileType_) {
    connect(option, &QRadioButton::toggled, this, [this](bool on) {
      if (on) ChangeKind();
      KeepSettings();
    });
  }
  for (QRadioButton* option : optCntrpiece_) {
    connect(option, &QRadioButton::toggled, this, [this](bool on) {
      if (on) ChangeCenterpiece();
      KeepSettings();
    });
  }
  for (QCheckBox* channel : chkChannel_) {
    connect(channel, &QCheckBox::toggled, this, [this] {
      KeepSettings();
      emit ChannelsChanged();
    });
  }
  connect(chkAllFiles_, &QCheckBox::toggled, this, &LoadSettingsBox::AllFilesToggled);
}

ScanLoadSettings LoadSettingsBox::Shown() const {
  ScanLoadSettings settings{static_cast<FileKind>(CheckedIndex(optFileType_)),
                            static_cast<Centerpiece>(CheckedIndex(optCntrpiece_)),
                            {}};
  for (std::size_t c = 0; c < chkChannel_.size(); ++c) {
    settings.chkChannel[c] = chkChannel_[c]->isChecked();
  }
  return settings;
}

bool LoadSettingsBox::AllFiles() const {
  return chkAllFiles_->isChecked();
}

void LoadSettingsBox::KeepSettings() {
  session_.Module.LoadSettings = Shown();
  emit SettingsChanged();
}

// Each box changes those below it, so the session's settings come from a copy.
void LoadSettingsBox::ShowSettings() {
  const ScanLoadSettings settings = session_.Module.LoadSettings;
  if (settings.kind == FileKind::kEl && !ShowElectrophoresis) return;
  optFileType_[static_cast<std::size_t>(settings.kind)]->setChecked(true);
  optCntrpiece_[static_cast<std::size_t>(settings.centerpiece)]->setChecked(true);
  for (std::size_t c = 0; c < chkChannel_.size(); ++c) {
    chkChannel_[c]->setChecked(settings.chkChannel[c]);
  }
  KeepSettings();
}

QString LoadSettingsBox::SettingsText() const {
  const ScanLoadSettings settings = Shown();
  QStringList parts = {QString::fromLatin1(KindName(settings.kind))};
  if (settings.kind == FileKind::kIpRa) {
    parts << QObject::tr(kCenterpieceCaptions[static_cast<std::size_t>(settings.centerpiece)]);
  }
  if (IsCut(settings)) {
    QStringList letters;
    for (const LoadWindow& window : WindowsOf(settings))
      letters << QChar::fromLatin1(window.letter);
    parts << (letters.isEmpty() ? tr("no channel") : letters.join(' '));
  }
  return parts.join(QStringLiteral(", "));
}

void LoadSettingsBox::ChangeKind() {
  for (QRadioButton* option : optCntrpiece_) option->setEnabled(Shown().kind == FileKind::kIpRa);
  optCntrpiece_[0]->setChecked(true);
  KeepSettings();
  emit KindChanged();
}

void LoadSettingsBox::ChangeCenterpiece() {
  const int channels = ChannelCount(Shown().centerpiece);
  for (int c = 0; c < kMaxChannels; ++c) {
    QCheckBox* box = chkChannel_[static_cast<std::size_t>(c)];
    box->setEnabled(channels > 1 && c < channels);
    box->setChecked(c < channels);
  }
  KeepSettings();
  emit CenterpieceChanged();
}

}  // namespace quorvane
