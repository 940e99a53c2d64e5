#include "Brisalon/Platform/SettingsDefaultsStore.h"

#include <QByteArray>
#include <QSettings>
#include <QString>

namespace brisalon {

namespace {

QString name(std::string_view key)
{
    return QString::fromLatin1(key.data(), static_cast<qsizetype>(key.size()));
}

} // namespace

QVariant SettingsDefaultsStore::read(std::string_view key)
{
    return QSettings().value(name(key));
}

void SettingsDefaultsStore::write(std::string_view key, const QVariant& value)
{
    QSettings().setValue(name(key), value);
}

std::optional<std::string> SettingsDefaultsStore::text(std::string_view key) const
{
    const QVariant value = read(key);
    // A QString becomes UTF-8 here, and a QByteArray stays as it is. In a damaged file
    // there may be lists.
    const bool isText =
        value.typeId() == QMetaType::QString || value.typeId() == QMetaType::QByteArray;
    return isText ? std::optional(value.toByteArray().toStdString()) : std::nullopt;
}

std::optional<double> SettingsDefaultsStore::number(std::string_view key) const
{
    bool isNumber = false;
    const double number = read(key).toDouble(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

std::optional<bool> SettingsDefaultsStore::boolean(std::string_view key) const
{
    const QVariant value = read(key);
    return value.isValid() ? std::optional(value.toBool()) : std::nullopt;
}

void SettingsDefaultsStore::setText(std::string_view key, std::string_view value)
{
    // Readable in the file where the bytes are text, exact where they are not.
    const QByteArray bytes(value.data(), static_cast<qsizetype>(value.size()));
    const QString text = QString::fromUtf8(bytes);
    write(key, text.toUtf8() == bytes ? QVariant(text) : QVariant(bytes));
}

void SettingsDefaultsStore::setNumber(std::string_view key, double value)
{
    write(key, value);
}

void SettingsDefaultsStore::setBoolean(std::string_view key, bool value)
{
    write(key, value);
}

void SettingsDefaultsStore::remove(std::string_view key)
{
    QSettings().remove(name(key));
}

} // namespace brisalon
