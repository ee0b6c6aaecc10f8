#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

namespace ombrix {

/// Values that are only ever added, in chunks: adding never moves what is there, and a copy
/// shares it. A copy is for reading; it may be read on another thread while the original grows.
template <class T>
class TrendColumn {
  public:
    static constexpr std::size_t ChunkShift = 14;
    static constexpr std::size_t ChunkSize = std::size_t{1} << ChunkShift;

    std::size_t Size() const { return m_Size; }
    bool Empty() const { return m_Size == First(); }
    /// The first value that is still there: those before it have been dropped.
    std::size_t First() const { return m_DroppedChunks << ChunkShift; }
    /// @param index First() to Size() - 1
    T operator[](std::size_t index) const {
        return m_Chunks[index >> ChunkShift][index & (ChunkSize - 1)];
    }
    T Last() const { return (*this)[m_Size - 1]; }

    void Append(T value) {
        const std::size_t place = m_Size & (ChunkSize - 1);
        if (place == 0)
            m_Chunks.push_back(std::make_shared_for_overwrite<T[]>(ChunkSize));
        m_Chunks.back()[place] = value;
        ++m_Size;
    }

    /// Gives back the chunks that hold nothing from the index on.
    void DropBefore(std::size_t index) {
        for (const std::size_t end = std::min(index, m_Size) >> ChunkShift; m_DroppedChunks < end;)
            m_Chunks[m_DroppedChunks++].reset();
    }

    std::size_t Bytes() const {
        return (m_Chunks.size() - m_DroppedChunks) * ChunkSize * sizeof(T);
    }

  private:
    std::vector<std::shared_ptr<T[]>> m_Chunks;
    std::size_t m_Size = 0;
    std::size_t m_DroppedChunks = 0;
};

} // namespace ombrix
