#pragma once

#include "trend/TrendFile.h"

#include <QObject>
#include <QTimer>

#include <atomic>
#include <functional>
#include <string>
#include <thread>

namespace ombrix {

/// Long work on a thread of its own, so that windows stay alive and a procedure that measures is
/// not held up. One at a time; its end comes as an event.
class TrendJob final : public QObject {
    Q_OBJECT

  public:
    explicit TrendJob(QObject* parent);
    ~TrendJob() override;

    bool Running() const { return m_Thread.joinable(); }
    /// Not while one runs. @param work may throw @param done follows work that was neither
    /// cancelled nor broken off
    void Start(std::function<void(TrendProgress&)> work, std::function<void()> done);
    /// The work ends at its next look.
    void Cancel() { m_Progress.Cancelled = true; }

  signals:
    /// @param share that is done, 0 to 1
    void Progressed(float share);
    /// @param error what has gone wrong; empty when nothing has
    void Ended(const QString& error);

  private:
    void Look();

    QTimer m_Looks;
    TrendProgress m_Progress;
    std::atomic<bool> m_Finished{false};
    std::string m_Error;
    std::function<void()> m_Done;
    std::thread m_Thread;
};

} // namespace ombrix
