#include "screens/calc_runner.h"

#include <QThread>
#include <exception>

#include "screens/screen_text.h"

namespace tervale::screens {

bool RunControl::Yield(double fraction, const std::string& note) {
  return runner_.YieldPoint(fraction, note);
}

bool RunControl::StopRequested() const {
  return runner_.stop_.load();
}

CalcRunner::CalcRunner(QObject* parent) : QObject(parent) {}

CalcRunner::~CalcRunner() {
  RequestStop();
  Wait();
}

bool CalcRunner::Start(Job job) {
  if (running_.load()) return false;
  if (thread_) {
    thread_->wait();
    delete thread_;
    thread_ = nullptr;
  }
  // A pause or changes posted before the start hold for this run.
  stop_ = false;
  running_ = true;
  sinceProgress_.invalidate();
  thread_ = QThread::create([this, job = std::move(job)] {
    RunControl control(*this);
    QString error;
    try {
      job(control);
    } catch (const std::exception& e) {
      error = Q(e.what());
    }
    running_ = false;
    emit finished(stop_.load(), error);
  });
  thread_->start();
  return true;
}

void CalcRunner::RequestStop() {
  stop_ = true;
  std::lock_guard lock(mutex_);
  paused_ = false;
  wake_.notify_all();
}

void CalcRunner::PostChange(Change change) {
  std::lock_guard lock(mutex_);
  changes_.push_back(std::move(change));
}

void CalcRunner::Pause() {
  std::lock_guard lock(mutex_);
  paused_ = true;
}

void CalcRunner::Resume() {
  std::lock_guard lock(mutex_);
  paused_ = false;
  wake_.notify_all();
}

bool CalcRunner::Wait(int milliseconds) {
  if (!thread_) return true;
  if (milliseconds < 0) return thread_->wait();
  return thread_->wait(QDeadlineTimer(milliseconds));
}

bool CalcRunner::YieldPoint(double fraction, const std::string& note) {
  std::vector<Change> changes;
  {
    std::unique_lock lock(mutex_);
    wake_.wait(lock, [this] { return !paused_ || stop_.load(); });
    changes.swap(changes_);
  }
  for (auto& change : changes) change();
  if (!sinceProgress_.isValid() || sinceProgress_.elapsed() >= intervalMs_) {
    sinceProgress_.restart();
    emit progress(fraction, Q(note));
  }
  return !stop_.load();
}

}  // namespace tervale::screens
