#include "windows/desktop/SafeEnd.h"

#include "board/procedure/SafeOutputs.h"
#include "platform/os/ProgramLog.h"
#include "windows/desktop/QtOperator.h"
#include "windows/main/AIBAccessoriesWindow.h"

#include <QGuiApplication>

#include <utility>

namespace ombrix {

namespace {

constexpr const char* OutputsOffText =
    "\r\n\r\nThe outputs have been switched off, and the program ends. Please start it again.";
/// Told also of a board that this program has not driven: what it drives now, nobody knows.
constexpr const char* OutputsOnText =
    "\r\n\r\nNot every board has let its outputs be switched off: AIR MAY STILL BE FLOWING. "
    "Please close the air supply and switch off the power of the Aeration Control Unit at once. "
    "The program ends; start it again once the board is connected.";

} // namespace

SafeEnd::SafeEnd(Station& station, AIBAccessoriesWindow& window, QtOperator& messages,
                 StopSignals& stopSignals, std::function<void()> endProgram)
    : m_Station(station), m_Window(window), m_Messages(messages),
      m_EndProgram(std::move(endProgram)),
      m_Arrived(stopSignals.Descriptor(), QSocketNotifier::Read) {
    connect(&m_Arrived, &QSocketNotifier::activated, this, [this, &stopSignals] {
        if (stopSignals.Take())
            End();
    });
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, [this] { End(); });
}

void SafeEnd::End() {
    m_EndProgram(); // first: whoever gets a refusal sees what it means
    m_Messages.StopAsking();
    m_Window.EndUnasked();
}

void SafeEnd::EndAfterError(const std::string& reason) {
    if (std::exchange(m_AfterError, true))
        return;
    const bool allOff = SwitchAllOff(m_Station);
    m_EndProgram();
    const std::string text = reason + (allOff ? OutputsOffText : OutputsOnText);
    WriteLog(m_Station.World, text);
    m_Station.World.Messages.Ask({text, MessageIcon::Critical, MessageButtons::Ok});
    End();
}

} // namespace ombrix
