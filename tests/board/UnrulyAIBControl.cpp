// A board library that lies, prints, writes too far, hangs, crashes and ends the process.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

using Int = std::int32_t;

extern "C" {
Int OpenAIBAPI() {
    std::puts("opened");
    const char* boards = std::getenv("UNRULY_BOARDS");
    return boards == nullptr ? 1 : std::atoi(boards);
}
Int GetAccessoryInfo(Int, char* record) {
    std::memset(record, 'x', 20'000); // texts without end
    return 0;
}
Int GetADC(Int, Int channel, Int* value) {
    *value = channel == 0 ? 65'535 : channel == 1 ? 65'536 : -1;
    return 0;
}
Int MFCGetFlowrate(Int, Int, Int* flow) {
    *flow = 32'001;
    return 0;
}
Int ReadReg(Int, Int status, Int*) {
    std::exit(status);
}
Int GetGPI(Int, Int, Int*) {
    for (;;)
        ::sleep(3600);
}
Int DumpEEPROM(Int, const char*) {
    for (int descriptor = 3; descriptor < 100; ++descriptor)
        ::close(descriptor);
    return 0;
}
Int GetVariable(Int, Int number, Int* value) {
    for (int line = 0; line < number; ++line)
        std::printf("line %d of far too many\n", line);
    *value = number;
    return 0;
}
Int CloseAIBAPI() {
    return 0;
}
Int UploadFPGAImage(Int, const char*) {
    return 0;
}
Int WriteReg(Int, Int, Int) {
    return 0;
}
Int ConfigureGPIO(Int, Int) {
    return 0;
}
Int SetGPO(Int, Int) {
    return 0;
}
Int ClearGPO(Int, Int) {
    return 0;
}
Int SetExtGPO(Int, Int) {
    return 0;
}
Int ClearExtGPO(Int, Int) {
    return 0;
}
Int SetDAC(Int, Int, Int) {
    return 0;
}
Int WriteAIBInfo(Int, Int, Int, Int) {
    return 0;
}
Int WriteEEPROM(Int, Int, Int) {
    return 0;
}
Int ReadEEPROM(Int, Int, Int*) {
    return 0;
}
Int MFCSetFlowrate(Int, Int, Int) {
    return 0;
}
Int MFCSetParameter(Int, Int, Int, Int, Int, Int) {
    return 0;
}
Int MFCGetParameter(Int, Int, Int, Int, Int, Int*) {
    return 0;
}
}
