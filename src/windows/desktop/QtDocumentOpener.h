#pragma once

#include "platform/ports/DocumentOpener.h"

namespace ombrix {

/// Documents open in the program that the desktop has for them.
class QtDocumentOpener final : public DocumentOpener {
  public:
    bool OpenDocument(const std::filesystem::path& path) override;
};

} // namespace ombrix
