#pragma once

#include "board/AIBControl.h"
#include "platform/text/OleDate.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix {

// An EPROM has 512 words at byte addresses 0, 4, … 2044. The typed operations advance the address
// past what they transfer, also when that failed, so that the next field of a record is still
// addressed correctly.

inline constexpr std::int32_t EpromBytes = 2048;
inline constexpr std::int32_t EpromWordBytes = 4;

/// Where words can be read: a board, an image.
class EpromSource {
  public:
    virtual ~EpromSource() = default;

    virtual AIBStatus ReadEPROM(std::int32_t address, std::int32_t& word) = 0;

    /// A value that cannot be read is 0.
    AIBStatus ReadEPROMLng(std::int32_t& address, std::int32_t& value);
    AIBStatus ReadEPROMSng(std::int32_t& address, float& value);
    /// Two words, low half first; the status is that of the second. A half that is erased counts
    /// as 0, so that an erased date reads as "never".
    AIBStatus ReadEPROMDate(std::int32_t& address, OleDate& value);
    /// Text up to the first 0 byte; returns 0.
    AIBStatus ReadEPROMString(std::int32_t& address, std::string& text, std::int32_t length);
};

/// Where words can be written: a board, a list of what is to be written.
class EpromSink {
  public:
    virtual ~EpromSink() = default;

    virtual AIBStatus WriteEPROM(std::int32_t address, std::int32_t word) = 0;

    AIBStatus WriteEPROMLng(std::int32_t& address, std::int32_t value);
    AIBStatus WriteEPROMSng(std::int32_t& address, float value);
    /// Two words, low half first; the status is that of the second.
    AIBStatus WriteEPROMDate(std::int32_t& address, OleDate value);
    /// Text in 8-bit characters, four a word, filled up with 0 bytes to the length; returns 0.
    AIBStatus WriteEPROMString(std::int32_t& address, std::string_view text, std::int32_t length);
};

/// Words that are to be written, in the order of writing.
class EpromWords final : public EpromSink {
  public:
    struct Word {
        std::int32_t Address = 0;
        std::int32_t Value = 0;
    };

    AIBStatus WriteEPROM(std::int32_t address, std::int32_t word) override {
        m_Words.push_back({address, word});
        return Status::NoError;
    }
    const std::vector<Word>& All() const { return m_Words; }

  private:
    std::vector<Word> m_Words;
};

} // namespace ombrix
