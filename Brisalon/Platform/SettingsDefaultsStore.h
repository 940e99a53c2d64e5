#pragma once

#include "Brisalon/Platform/DefaultsStore.h"

#include <QVariant>

namespace brisalon {

/// The defaults store of the desktop, through QSettings' native format, under the
/// application's organisation and name.
class SettingsDefaultsStore final : public DefaultsStore {
public:
    std::optional<std::string> text(std::string_view key) const override;
    std::optional<double> number(std::string_view key) const override;
    std::optional<bool> boolean(std::string_view key) const override;
    void setText(std::string_view key, std::string_view value) override;
    void setNumber(std::string_view key, double value) override;
    void setBoolean(std::string_view key, bool value) override;
    void remove(std::string_view key) override;

private:
    static QVariant read(std::string_view key);
    static void write(std::string_view key, const QVariant& value);
};

} // namespace brisalon
