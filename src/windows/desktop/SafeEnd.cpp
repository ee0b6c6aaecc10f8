#include "windows/desktop/SafeEnd.h"

#include "board/procedure/SafeOutputs.h"
#include "platform/os/ProgramLog.h"
#include "windows/desktop/QtOperator.h"

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

SafeEnd::SafeEnd(Station& station, QtOperator& messages, StopSignals& stopSignals, Ending ending)
    : m_Station(station), m_Messages(messages), m_Ending(std::move(ending)),
      m_Arrived(stopSignals.Descriptor(), QSocketNotifier::Read) {
    connect(&m_Arrived, &QSocketNotifier::activated, this, [this, &stopSignals] {
        if (stopSignals.Take())
            End();
    });
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, [this] { End(); });
}

void SafeEnd::End() {
    m_Ending.EndProgram(); // first: whoever gets a refusal sees what it means
    m_Messages.StopAsking();
    m_Ending.CloseWindow();
}

void SafeEnd::EndAfterError(const std::string& reason) {
    if (std::exchange(m_AfterError, true))
        return;
    const bool allOff = SwitchAllOff(m_Station);
    m_Ending.EndProgram();
    const std::string text = reason + (allOff ? OutputsOffText : OutputsOnText);
    WriteLog(m_Station.World, text);
    m_Station.World.Messages.Ask({text, MessageIcon::Critical, MessageButtons::Ok});
    End();
}

} // namespace ombrix
