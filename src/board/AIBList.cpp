#include "board/AIBList.h"

#include <algorithm>
#include <exception>

namespace ombrix {

AIBList::~AIBList() {
    if (m_Open)
        CloseAIBAPI();
}

bool AIBList::OpenAIBAPI(std::int32_t& count) {
    m_Count = 0;
    count = 0;
    try {
        m_Count = std::max(0, m_Services.Library.OpenAIBAPI());
        count = m_Count;
        m_Boards.clear();
        for (std::int32_t index = 0; index < m_Count; ++index) {
            m_Boards.push_back(std::make_shared<ombrix::AIB>(m_Services));
            m_Boards.back()->GetAccessoryInfo(index);
            m_Boards.back()->CheckMFCReady();
        }
        m_Open = m_Count > 0;
        return true;
    } catch (const AIBLibraryError& error) {
        return OpenFailed(count, error.what());
    } catch (const BoardError& error) {
        return OpenFailed(count, error.what());
    } catch (const std::exception&) {
        return false;
    }
}

bool AIBList::OpenFailed(std::int32_t& count, const std::string& why) {
    m_Count = 0;
    count = 0;
    m_Services.World.Messages.Ask({why, MessageIcon::Critical, MessageButtons::Ok});
    return false;
}

bool AIBList::CloseAIBAPI() {
    try {
        m_Services.Library.CloseAIBAPI();
        m_Open = false;
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

std::int32_t AIBList::AIBCount() {
    if (!m_Open) {
        std::int32_t count = 0;
        OpenAIBAPI(count);
    }
    return m_Count;
}

bool AIBList::GetAccessoryInfo(std::int32_t index, AccessoryInfo& info) {
    try {
        AccessoryInfoBlock record = Encode(info);
        m_Services.Library.GetAccessoryInfo(index, record);
        info = Decode(record);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

std::shared_ptr<ombrix::AIB> AIBList::AIB(std::int32_t index) const {
    return m_Boards.at(static_cast<std::size_t>(index));
}

} // namespace ombrix
