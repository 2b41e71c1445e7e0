#pragma once
// Runs a long calculation on a worker thread. The calculation calls RunControl::Yield once
// per pass or step: that is where progress goes out, queued changes are applied, a pause
// (a change screen being open) holds the run, and a stop request is honoured.
#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

class QThread;

namespace tervale::screens {

class CalcRunner;

class RunControl {
 public:
  // The run's yield point. Returns false when the run is to stop.
  bool Yield(double fraction, const std::string& note = {});
  bool StopRequested() const;

 private:
  friend class CalcRunner;
  explicit RunControl(CalcRunner& runner) : runner_(runner) {}
  CalcRunner& runner_;
};

class CalcRunner : public QObject {
  Q_OBJECT
 public:
  using Job = std::function<void(RunControl&)>;
  using Change = std::function<void()>;

  explicit CalcRunner(QObject* parent = nullptr);
  ~CalcRunner() override;  // stops the run and waits for it

  // Starts the job on a new worker thread; false when a run is still going.
  bool Start(Job job);
  bool IsRunning() const { return running_.load(); }
  void RequestStop();
  // A change made between steps, on the worker thread, at the next yield.
  void PostChange(Change change);
  // Holds the run at its next yield until Resume (a change screen is open).
  void Pause();
  void Resume();
  // Waits for the worker to end; false on time-out.
  bool Wait(int milliseconds = -1);
  // Shortest interval between two progress signals.
  void SetProgressInterval(int milliseconds) { intervalMs_ = milliseconds; }

 signals:
  void progress(double fraction, const QString& note);
  // The run has ended; stopped tells whether it ended on a stop request.
  void finished(bool stopped, const QString& error);

 private:
  friend class RunControl;
  bool YieldPoint(double fraction, const std::string& note);

  QThread* thread_ = nullptr;
  std::atomic<bool> running_{false};
  std::atomic<bool> stop_{false};
  std::mutex mutex_;
  std::condition_variable wake_;
  bool paused_ = false;
  std::vector<Change> changes_;
  QElapsedTimer sinceProgress_;
  int intervalMs_ = 100;
};

}  // namespace tervale::screens
