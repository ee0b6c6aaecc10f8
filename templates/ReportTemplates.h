#pragma once

#include <string>

namespace ombrix::templates {

/// The templates of the reports (".xltx"), named as their files are.

/// The health check's report.
std::string MakeACUHealthCheck();
/// The velocity audit's sheet.
std::string MakePV16_ACUAudit_Velocity();
/// The pressure audit's sheet.
std::string MakePV17_ACUAudit_Pressure();
/// The general report of a velocity run.
std::string MakeQX_ACU_Calibration();
/// The board's identity, the record and the raw EPROM.
std::string MakeQX_ACU_Calibraiton_Info();

} // namespace ombrix::templates
