#pragma once

#include "board/eprom/EpromStorage.h"
#include "board/unit/ACURecord.h"

#include <optional>
#include <string>

namespace ombrix {

// The EPROM coding of an ACU's record, block by block. Writing lists the words, or sends them to a
// board; where a block fixes fields, the record takes them too. Reading takes what an EPROM holds
// into a record: a word that cannot be read counts as 0, and a field that is not read keeps its
// value.

/// Data version 2; its place depends on the bus.
void WriteEPROM_Header(EpromSink& to, ACURecord& record, bool isFireWire);
/// An empty number rewrites the present one.
void WriteEPROM_MFCNumber(EpromSink& to, ACURecord& record, const std::string& mfcNumber);
void WriteEPROM_VelocityHeader(EpromSink& to, const ACURecord& record);
/// The channel's table; channel 0 also writes the demands, which all channels share.
void WriteEPROM_VelocitySystem(EpromSink& to, const ACURecord& record, std::int32_t channel);
void WriteEPROM_VelocityDateUserSystem(EpromSink& to, const ACURecord& record);
void WriteEPROM_VelocityDateUserAudit(EpromSink& to, const ACURecord& record);
void WriteEPROM_PressureHeader(EpromSink& to, ACURecord& record);
/// @param zeroOnly marks the pressure as uncalibrated instead of storing coefficients
void WriteEPROM_PressureSystem(EpromSink& to, ACURecord& record, bool zeroOnly);
void WriteEPROM_PressureDateUserSystem(EpromSink& to, const ACURecord& record);
void WriteEPROM_PressureDateUserAudit(EpromSink& to, const ACURecord& record);
/// The whole record.
void WriteEPROM(EpromSink& to, ACURecord& record, bool isFireWire);
/// The header of a fresh unit: 5000 and 200 ml/min, 10 points, solenoid valves.
void Init_VelocityHeader(EpromSink& to, ACURecord& record, bool isFireWire);

/// The data version, where boards of that bus keep it; -1 for an erased word.
std::int32_t ReadDataVersion_Usb(EpromSource& from);
std::int32_t ReadDataVersion_FireWire(EpromSource& from);
/// False when a word cannot be read: it is not known to be missing then.
bool ReadCapacities(EpromSource& from, ACURecord& record);
/// Neither erased (no number) nor 0.
bool IsCapacity(float capacity);
/// Of both air channels.
bool HasCapacities(const ACURecord& record);
/// The MFC number, where one was written.
void TakeWrittenMFCNumber(EpromSource& from, ACURecord& record);
/// Points, valves, configurations and MFC number.
void ReadHeader(EpromSource& from, ACURecord& record);
void ReadEPROMValues_Velocity(EpromSource& from, ACURecord& record);
/// @return the sensor's full scale when it is none that is known; 1000 mBar stands in for it
std::optional<float> ReadEPROMValues_Pressure(EpromSource& from, ACURecord& record);

} // namespace ombrix
