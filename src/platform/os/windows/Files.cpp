#include "platform/os/Files.h"

#include "platform/os/windows/WindowsApi.h"

#include <random>
#include <string>

namespace ombrix {

void FileDescriptor::Close(int descriptor) noexcept {
    ::CloseHandle(HandleOf(descriptor));
}

FileDescriptor OpenInPlace(const std::filesystem::path& path) {
    return Owned(::CreateFileW(path.c_str(), GENERIC_WRITE,
                               FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                               OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
}

bool WriteAt(const FileDescriptor& file, std::int64_t offset, std::string_view bytes) {
    OVERLAPPED at{};
    at.Offset = static_cast<DWORD>(offset & 0xFFFFFFFF);
    at.OffsetHigh = static_cast<DWORD>(offset >> 32);
    DWORD written = 0;
    const auto count = static_cast<DWORD>(bytes.size());
    return ::WriteFile(HandleOf(file), bytes.data(), count, &written, &at) != 0 && written == count;
}

std::filesystem::path MakeScratchFolder(const std::filesystem::path& parent,
                                        std::error_code& error) {
    constexpr int tries = 100;
    std::random_device random;
    for (int i = 0; i < tries; ++i) {
        const std::filesystem::path folder = parent / ("ombrix-" + std::to_string(random()));
        if (std::filesystem::create_directory(folder, error))
            return folder;
        if (error)
            return {};
    }
    error = std::make_error_code(std::errc::file_exists);
    return {};
}

} // namespace ombrix
