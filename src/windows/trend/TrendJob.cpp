#include "windows/trend/TrendJob.h"

#include "windows/widgets/QtText.h"

#include <utility>

namespace ombrix {

TrendJob::TrendJob(QObject* parent) : QObject(parent) {
    constexpr int lookSpacing_ms = 20;
    m_Looks.setInterval(lookSpacing_ms);
    connect(&m_Looks, &QTimer::timeout, this, &TrendJob::Look);
}

TrendJob::~TrendJob() {
    Cancel();
    if (m_Thread.joinable())
        m_Thread.join();
}

void TrendJob::Start(std::function<void(TrendProgress&)> work, std::function<void()> done) {
    m_Progress.Share = 0.0F;
    m_Progress.Cancelled = false;
    m_Finished = false;
    m_Error.clear();
    m_Done = std::move(done);
    m_Thread = std::thread([this, work = std::move(work)] {
        try {
            work(m_Progress);
        } catch (const std::bad_alloc&) {
            m_Error = "There is not enough memory for this file. Please close other programs.";
        } catch (const std::exception& error) {
            m_Error = error.what();
        }
        m_Finished = true;
    });
    m_Looks.start();
    emit Progressed(0.0F);
}

void TrendJob::Look() {
    emit Progressed(m_Progress.Share);
    if (!m_Finished)
        return;
    m_Looks.stop();
    m_Thread.join();
    m_Thread = {};
    if (m_Error.empty() && !m_Progress.Cancelled)
        std::exchange(m_Done, nullptr)();
    emit Ended(ToQt(m_Error));
}

} // namespace ombrix
