#include "platform/os/windows/WindowsApi.h"

#include <cerrno>
#include <system_error>

namespace ombrix {

std::wstring Wide(std::string_view text) {
    const int bytes = static_cast<int>(text.size());
    const int length = ::MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    ::MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, wide.data(), length);
    return wide;
}

std::string Narrow(std::wstring_view text) {
    const int length = static_cast<int>(text.size());
    const int bytes =
        ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(bytes), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, narrow.data(), bytes, nullptr, nullptr);
    return narrow;
}

namespace {

std::error_condition LastCondition() {
    const std::error_code code(static_cast<int>(::GetLastError()), std::system_category());
    return code.default_error_condition();
}

} // namespace

int LastErrorNumber() {
    const std::error_condition condition = LastCondition();
    return condition.category() == std::generic_category() ? condition.value() : EIO;
}

std::string LastErrorText() {
    return LastCondition().message();
}

} // namespace ombrix
