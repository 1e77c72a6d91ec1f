// Works plans out in a thread of its own, so that typing goes on meanwhile.
#pragma once

#include <QObject>
#include <QThreadPool>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sim/plan_check.h"

namespace quorvane {

// What is wanted of a plan that keeps all rules.
struct PlanTask {
  ExperimentPlan plan;
  std::optional<PlanAxis> axis = {};           // whose picture is wanted
  std::optional<PlanCheckRequest> check = {};  // a check instead of the errors
  PlanResult known = {};                       // for a check: what the plan expects
};

struct PlanAnswer {
  PlanResult result;
  std::vector<double> values;  // along the axis
  std::vector<std::vector<std::optional<double>>> along;
  std::optional<PlanCheck> check;
  std::string fault;  // why there is none; empty if there is
};

class PlanWorker : public QObject {
  Q_OBJECT
 public:
  explicit PlanWorker(QObject* parent = nullptr);
  ~PlanWorker() override;  // waits for the thread, which is told to stop

  // Begins; what is being worked out is given up.
  void Begin(PlanTask task);

  // What is being worked out is not wanted any more.
  void GiveUp();

  // Ends a check with what is done, and tells it.
  void StopCheck();

 signals:
  void Progressed(int done, int all);  // of a check
  void Answered(const PlanTask& task, const PlanAnswer& answer);

 private:
  struct Case;

  void Finish(const std::shared_ptr<Case>& done);

  std::shared_ptr<Case> case_;  // that is being worked out; the thread keeps its own hold of it
  QThreadPool thread_;
};

}  // namespace quorvane
