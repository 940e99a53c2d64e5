#pragma once

#include "Brisalon/Platform/FolderPanel.h"

#include <string>

namespace brisalon::tests {

/// A folder panel whose user is the test.
class FakeFolderPanel final : public FolderPanel {
public:
    void open(const char* confirmTitle, std::function<void(const FileURL&)> chosen) override
    {
        title = confirmTitle;
        choose = std::move(chosen);
    }

    /// What the confirm button said; empty while the panel was never opened.
    std::string title;
    std::function<void(const FileURL&)> choose;
};

} // namespace brisalon::tests
