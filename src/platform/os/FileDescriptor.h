#pragma once

#include <utility>

namespace ombrix {

/// Owns a file descriptor of the operating system: the number of an open file, pipe or event, on
/// Windows of its handle.
class FileDescriptor {
  public:
    explicit FileDescriptor(int descriptor = -1) noexcept : m_Descriptor(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept
        : m_Descriptor(std::exchange(other.m_Descriptor, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(m_Descriptor, other.m_Descriptor);
        return *this;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() {
        if (IsOpen())
            Close(m_Descriptor);
    }

    bool IsOpen() const noexcept { return m_Descriptor >= 0; }
    int Get() const noexcept { return m_Descriptor; }

  private:
    static void Close(int descriptor) noexcept;

    int m_Descriptor;
};

} // namespace ombrix
