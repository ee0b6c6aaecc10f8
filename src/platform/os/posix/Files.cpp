#include "platform/os/Files.h"

#include <cerrno>
#include <fcntl.h>
#include <stdlib.h>
#include <string>
#include <unistd.h>

namespace ombrix {

void FileDescriptor::Close(int descriptor) noexcept {
    ::close(descriptor);
}

FileDescriptor OpenInPlace(const std::filesystem::path& path) {
    return FileDescriptor(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
}

bool WriteAt(const FileDescriptor& file, std::int64_t offset, std::string_view bytes) {
    return ::pwrite(file.Get(), bytes.data(), bytes.size(), offset) ==
           static_cast<ssize_t>(bytes.size());
}

std::filesystem::path MakeScratchFolder(const std::filesystem::path& parent,
                                        std::error_code& error) {
    std::string name = (parent / "ombrix-XXXXXX").string();
    if (::mkdtemp(name.data()) != nullptr)
        return name;
    error = std::error_code(errno, std::generic_category());
    return {};
}

} // namespace ombrix
