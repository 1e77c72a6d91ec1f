#include "windows/session/recovery.h"

#include <QObject>
#include <QString>
#include <algorithm>
#include <string>
#include <variant>

#include "base/clock.h"
#include "base/files.h"
#include "base/host.h"
#include "base/text.h"
#include "fit/models.h"
#include "rtf/log_text.h"

namespace quorvane {

namespace {

constexpr const char* kTitle = QT_TRANSLATE_NOOP("QObject", "Unsaved Work");

// "1 graph", "3 graphs", "no graphs".
QString Counted(std::size_t count, const QString& one, const QString& many) {
  if (count == 0) return QObject::tr("no %1").arg(many);
  return QStringLiteral("%1 %2").arg(count).arg(count == 1 ? one : many);
}

QString LogText(const std::string& bytes) {
  const RichText text = ReadLog(bytes, {}).text;
  std::size_t pictures = 0;
  for (const Paragraph& paragraph : text.paragraphs) {
    pictures += static_cast<std::size_t>(std::count_if(
        paragraph.items.begin(), paragraph.items.end(),
        [](const InlineItem& item) { return std::holds_alternative<Picture>(item); }));
  }
  return QObject::tr("A log of %1 with %2")
      .arg(Counted(text.paragraphs.size() - 1, QObject::tr("line"), QObject::tr("lines")),
           Counted(pictures, QObject::tr("picture"), QObject::tr("pictures")));
}

std::string ModelText(const Experiment& experiment) {
  const double index = experiment.FitPage.ModelIndex;
  for (const Model& model : Models()) {
    if (index == static_cast<double>(model.index)) return std::string(model.name);
  }
  return std::string(FirstModel().name);
}

std::string OfferText(const Experiment& experiment, const UnsavedWork& work) {
  const QString datasets =
      Counted(experiment.Datasets.size(), QObject::tr("dataset"), QObject::tr("datasets"));
  const QString graphs =
      Counted(experiment.GraphStreams.size(), QObject::tr("graph"), QObject::tr("graphs"));
  return QObject::tr(
             "Quorvane did not end normally. This experiment was not saved:\n\n%1, model %2\n%3\n"
             "%4\nFolder %5\nAs it was on %6\n\nOpen it? Later leaves it for the next start.")
      .arg(datasets, QString::fromStdString(ModelText(experiment)), graphs, LogText(experiment.log),
           QString::fromStdString(Cp1252ToUtf8(Trim(experiment.directory.View()))),
           QString::fromStdString(DateAndTimeText(work.KeptAt())))
      .toStdString();
}

void SetAside(UnsavedWork& work, const std::string& why, Host& host) {
  QString where;
  try {
    where = QObject::tr("It is now %1").arg(QString::fromStdString(PathText(work.SetAside())));
  } catch (const FileFault& fault) {
    where =
        QObject::tr("It cannot be moved out of the way: %1").arg(QString::fromUtf8(fault.what()));
  }
  const QString text =
      QObject::tr(
          "Quorvane did not end normally. What it kept of the unsaved experiment is "
          "damaged and cannot be opened:\n%1\n\n%2")
          .arg(QString::fromStdString(why), where);
  host.ShowMessage(QObject::tr(kTitle).toStdString(), text.toStdString(),
                   MessageIcon::kExclamation);
}

}  // namespace

std::optional<UnsavedWork> OfferUnsavedWork(
    const std::filesystem::path& folder, Host& host,
    const std::function<WorkChoice(const std::string& title, const std::string& text)>& choose,
    const std::function<void(ReadExperiment&&)>& takeUp) {
  for (UnsavedWork& work : UnsavedWork::Abandoned(folder)) {
    try {
      ReadExperiment read = ReadExperimentFile(work.File());
      const WorkChoice choice =
          choose(QObject::tr(kTitle).toStdString(), OfferText(read.experiment, work));
      if (choice == WorkChoice::kDelete) work.Discard();
      if (choice != WorkChoice::kOpen) continue;
      takeUp(std::move(read));
      return std::move(work);
    } catch (const ArchiveFault& fault) {
      SetAside(work, fault.what(), host);
    } catch (const std::exception& fault) {  // as of a file that is larger than the memory
      host.ReportFailure(fault.what());
    }
  }
  return std::nullopt;
}

}  // namespace quorvane
