#include <cstdint>

extern "C" {
std::int32_t OpenAIBAPI() {
    return 1;
}
std::int32_t CloseAIBAPI() {
    return 0;
}
}
